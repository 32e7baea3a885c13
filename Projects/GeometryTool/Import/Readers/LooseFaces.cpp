#include "LooseFaces.h"

#include "Box.h"
#include "Flatness.h"
#include "ShapeGrid.h"

#include <algorithm>
#include <cmath>
#include <gmsh.h>
#include <set>
#include <utility>

namespace Ovra::GeoTool
{

namespace
{

namespace occ = gmsh::model::occ;

std::vector<int> facesWithoutSolid()
{
    gmsh::vectorpair all;
    gmsh::model::getEntities(all, 2);
    std::vector<int> loose;
    for (const auto& [dimension, tag] : all) {
        std::vector<int> solids;
        std::vector<int> edges;
        gmsh::model::getAdjacencies(dimension, tag, solids, edges);
        if (solids.empty()) {
            loose.push_back(tag);
        }
    }
    std::sort(loose.begin(), loose.end());
    return loose;
}

double lengthOf(int edge)
{
    double length = 0;
    occ::getMass(1, edge, length);
    return length;
}

/// \brief The edges of a face, a seam twice, and none that has shrunk to a point.
std::vector<int> edgesOf(int face, double tolerance)
{
    constexpr bool combined = false;
    constexpr bool oriented = false;
    gmsh::vectorpair boundary;
    gmsh::model::getBoundary({{2, face}}, boundary, combined, oriented);
    std::vector<int> edges;
    for (const auto& [dimension, tag] : boundary) {
        if (lengthOf(tag) > tolerance) {
            edges.push_back(tag);
        }
    }
    return edges;
}

Geo::Box boxOf(int solid)
{
    double low[3] = {0, 0, 0};
    double high[3] = {0, 0, 0};
    occ::getBoundingBox(3, solid, low[0], low[1], low[2], high[0], high[1], high[2]);
    return Geo::Box(Geo::Vector(low[0], low[1], low[2]), Geo::Vector(high[0], high[1], high[2]));
}

Geo::Vector someVertexOf(int face)
{
    constexpr bool recursive = true;
    gmsh::vectorpair vertices;
    gmsh::model::getBoundary({{2, face}}, vertices, false, false, recursive);
    std::vector<double> c;
    gmsh::model::getValue(0, vertices.at(0).second, {}, c);
    return Geo::Vector(c.at(0), c.at(1), c.at(2));
}

bool contains(int solid, const Geo::Vector& point)
{
    const int probe = occ::addPoint(point.x(), point.y(), point.z());
    gmsh::vectorpair common;
    std::vector<gmsh::vectorpair> origins;
    constexpr bool removeProbe = true;
    constexpr bool removeSolid = false;
    occ::intersect({{0, probe}}, {{3, solid}}, common, origins, -1, removeProbe, removeSolid);
    occ::remove(common);
    return !common.empty();
}

} // namespace

LooseFaces::LooseFaces(double tolerance)
    : faces_(facesWithoutSolid())
{
    std::map<int, std::vector<int>> edges;
    for (const int face : faces_) {
        edges[face] = edgesOf(face, tolerance);
    }
    shells_ = FaceShells(edges).shells();
}

int LooseFaces::closedCount() const
{
    return static_cast<int>(std::count_if(shells_.begin(), shells_.end(),
                                          [](const auto& shell) { return shell.freeEdges == 0; }));
}

int LooseFaces::freeEdgeCount() const
{
    int count = 0;
    for (const FaceShells::Shell& shell : shells_) {
        count += shell.freeEdges;
    }
    return count;
}

bool LooseFaces::areFlat() const
{
    std::vector<Geo::Vector> points;
    for (const int face : faces_) {
        const std::vector<Geo::Vector> grid = shapeGrid(2, face);
        points.insert(points.end(), grid.begin(), grid.end());
    }
    return Flatness::isFlat(points);
}

// Closed shells stay out of it, as sewing takes the poles off a sphere.
void LooseFaces::sew(double tolerance) const
{
    constexpr bool sewFaces = true;
    gmsh::vectorpair open;
    for (const FaceShells::Shell& shell : shells_) {
        for (const int face : shell.faces) {
            if (shell.freeEdges > 0) {
                open.emplace_back(2, face);
            }
        }
    }
    gmsh::vectorpair sewn;
    occ::healShapes(sewn, open, tolerance, false, false, false, sewFaces, false);
    const std::set<std::pair<int, int>> kept(sewn.begin(), sewn.end());
    std::erase_if(open, [&kept](const auto& face) { return kept.count(face) > 0; });
    constexpr bool recursive = true;
    occ::remove(open, recursive);
    occ::synchronize();
}

void LooseFaces::makeSolids()
{
    for (const FaceShells::Shell& shell : shells_) {
        if (shell.freeEdges == 0) {
            addBody(shell);
        }
    }
    for (Body& body : bodies_) {
        nest(body);
    }
    for (const Body& body : bodies_) {
        occ::remove({{3, body.loop}});
    }
    addSolids();
    occ::synchronize();
}

void LooseFaces::addBody(const FaceShells::Shell& shell)
{
    Body body;
    body.faces = shell.faces;
    body.loop = static_cast<int>(bodies_.size()) + emptyCount_ + 1; // a number always: 4.8 returns
    occ::addSurfaceLoop(body.faces, body.loop);                     // none that it has chosen
    occ::addVolume({body.loop}, body.loop);
    occ::getMass(3, body.loop, body.volume);
    const double size = boxOf(body.loop).extent().length();
    constexpr double flat = 1e-12;
    if (!std::isfinite(body.volume) || std::abs(body.volume) <= flat * size * size * size) {
        occ::remove({{3, body.loop}});
        ++emptyCount_;
        return;
    }
    bodies_.push_back(body);
}

void LooseFaces::nest(Body& inner)
{
    const Geo::Box box = boxOf(inner.loop);
    const Geo::Vector point = someVertexOf(inner.faces.front());
    for (std::size_t i = 0; i < bodies_.size(); ++i) {
        const Body& outer = bodies_[i];
        const bool isOther = &outer != &inner && std::abs(outer.volume) > std::abs(inner.volume);
        if (!isOther || !boxOf(outer.loop).contains(box) || !contains(outer.loop, point)) {
            continue;
        }
        ++inner.depth;
        if (inner.around < 0 ||
            std::abs(outer.volume) <
                std::abs(bodies_[static_cast<std::size_t>(inner.around)].volume)) {
            inner.around = static_cast<int>(i);
        }
    }
}

void LooseFaces::addSolids()
{
    for (std::size_t i = 0; i < bodies_.size(); ++i) {
        if (bodies_[i].depth % 2 == 1) {
            ++hollowCount_;
            continue;
        }
        std::vector<int> loops{bodies_[i].loop};
        for (const Body& inner : bodies_) {
            if (inner.around == static_cast<int>(i)) {
                loops.push_back(inner.loop);
            }
        }
        occ::addVolume(loops, ++solidCount_);
    }
}

} // namespace Ovra::GeoTool
