#include "SurfaceFilling.h"

#include "Counted.h"

#include <algorithm>
#include <cmath>
#include <gmsh.h>
#include <map>
#include <set>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

constexpr int TriangleType = 2;

/// \brief Name of the first physical group of a surface; empty if there is none.
std::string nameOf(int surface)
{
    std::vector<int> groups;
    gmsh::model::getPhysicalGroupsForEntity(2, surface, groups);
    std::string name;
    if (!groups.empty()) {
        gmsh::model::getPhysicalName(2, *std::min_element(groups.begin(), groups.end()), name);
    }
    return name;
}

} // namespace

SurfaceFilling::SurfaceFilling(bool namesBodies)
    : namesBodies_(namesBodies)
{
}

void SurfaceFilling::collect()
{
    readPoints();
    readTriangles();
    checkClosed();
    if (!obstacle_.isEmpty()) {
        return;
    }
    partIntoPieces();
    nestPieces();
}

void SurfaceFilling::readPoints()
{
    std::vector<std::size_t> tags;
    std::vector<double> coordinates;
    std::vector<double> parameters;
    gmsh::model::mesh::getNodes(tags, coordinates, parameters);
    for (std::size_t i = 0; i < tags.size(); ++i) {
        positions_.emplace(tags[i], i);
        points_.emplace_back(coordinates[3 * i], coordinates[3 * i + 1], coordinates[3 * i + 2]);
    }
}

void SurfaceFilling::readTriangles()
{
    std::vector<int> types;
    gmsh::model::mesh::getElementTypes(types, 2);
    if (types != std::vector<int>{TriangleType}) {
        obstacle_ =
            QStringLiteral("its surface is not of plain triangles alone and cannot be filled; "
                           "make triangles of it, or a volume in the program that the file "
                           "comes from");
        return;
    }
    gmsh::vectorpair surfaces;
    gmsh::model::getEntities(surfaces, 2);
    for (const auto& [dimension, surface] : surfaces) {
        readPatch(surface);
    }
}

void SurfaceFilling::readPatch(int surface)
{
    std::vector<std::size_t> elements;
    std::vector<std::size_t> nodes;
    gmsh::model::mesh::getElementsByType(TriangleType, elements, nodes, surface);
    for (std::size_t i = 0; i + 2 < nodes.size(); i += 3) {
        triangles_.push_back(
            {{positions_.at(nodes[i]), positions_.at(nodes[i + 1]), positions_.at(nodes[i + 2])},
             names_.size()});
    }
    names_.push_back(nameOf(surface));
}

void SurfaceFilling::checkClosed()
{
    std::map<std::pair<std::size_t, std::size_t>, int> uses;
    for (const auto& [corners, patch] : triangles_) {
        for (std::size_t i = 0; i < 3; ++i) {
            ++uses[std::minmax(corners[i], corners[(i + 1) % 3])];
        }
    }
    int open = 0;
    int branching = 0;
    for (const auto& [edge, count] : uses) {
        open += count < 2 ? 1 : 0;
        branching += count > 2 ? 1 : 0;
    }
    if (!obstacle_.isEmpty()) {
        return;
    }
    const QString enclosesNothing = QStringLiteral("its surface encloses no volume: ");
    if (open > 0) {
        obstacle_ =
            enclosesNothing + counted(open, QStringLiteral("edge belongs to one triangle only"),
                                      QStringLiteral("edges belong to one triangle only"));
    } else if (branching > 0) {
        obstacle_ = enclosesNothing +
                    counted(branching, QStringLiteral("edge belongs to more than two triangles"),
                            QStringLiteral("edges belong to more than two triangles"));
    }
}

// By edges: bodies may have a corner in common.
UnionFind SurfaceFilling::connectedTriangles() const
{
    UnionFind sets(triangles_.size());
    std::map<std::pair<std::size_t, std::size_t>, std::size_t> firstAt;
    for (std::size_t i = 0; i < triangles_.size(); ++i) {
        const auto& corners = triangles_[i].corners;
        for (std::size_t n = 0; n < 3; ++n) {
            sets.join(
                firstAt.emplace(std::minmax(corners[n], corners[(n + 1) % 3]), i).first->second, i);
        }
    }
    return sets;
}

void SurfaceFilling::partIntoPieces()
{
    UnionFind sets = connectedTriangles();
    std::map<std::size_t, std::size_t> pieceOf;
    for (std::size_t i = 0; i < triangles_.size(); ++i) {
        const Triangle& triangle = triangles_[i];
        const auto& corners = triangle.corners;
        const auto [found, isNew] = pieceOf.emplace(sets.find(i), pieces_.size());
        if (isNew) {
            pieces_.emplace_back();
        }
        Piece& piece = pieces_[found->second];
        piece.triangles.push_back(triangle);
        for (const std::size_t corner : corners) {
            piece.box += points_[corner];
        }
        piece.volume += ((points_[corners[0]] ^ points_[corners[1]]) * points_[corners[2]]) / 6.0;
    }
}

void SurfaceFilling::nestPieces()
{
    for (Piece& inner : pieces_) {
        for (std::size_t i = 0; i < pieces_.size(); ++i) {
            const Piece& outer = pieces_[i];
            if (&outer == &inner || !isInside(inner, outer)) {
                continue;
            }
            ++inner.depth;
            if (inner.around < 0 ||
                std::abs(outer.volume) <
                    std::abs(pieces_[static_cast<std::size_t>(inner.around)].volume)) {
                inner.around = static_cast<int>(i);
            }
        }
    }
}

// Where bodies overlap, some points of one lie in the other and some do not.
bool SurfaceFilling::isInside(const Piece& inner, const Piece& outer) const
{
    constexpr std::size_t samples = 16;
    constexpr double twoPi = 6.283185307179586;
    if (!outer.box.contains(inner.box)) {
        return false;
    }
    const std::size_t step = std::max<std::size_t>(1, inner.triangles.size() / samples);
    for (std::size_t i = 0; i < inner.triangles.size(); i += step) {
        if (std::abs(solidAngle(outer, pointUnder(inner, inner.triangles[i]))) < twoPi) {
            return false;
        }
    }
    return true;
}

// Bodies that touch have points on one another's surface, which tell nothing; a little below its
// surface, a point of one is in the other or out of it.
Vector SurfaceFilling::pointUnder(const Piece& piece, const Triangle& triangle) const
{
    constexpr double depth = 1e-4;
    const Vector& a = points_[triangle.corners[0]];
    const Vector& b = points_[triangle.corners[1]];
    const Vector& c = points_[triangle.corners[2]];
    Vector normal = (b - a) ^ (c - a);
    const double size = std::sqrt(normal.length());
    normal.normalize();
    return (a + b + c) / 3.0 - std::copysign(depth * size, piece.volume) * normal;
}

// 4 pi inside, 0 outside (Van Oosterom and Strackee, The solid angle of a plane triangle, 1983).
double SurfaceFilling::solidAngle(const Piece& piece, const Vector& point) const
{
    double angle = 0;
    for (const auto& [corners, patch] : piece.triangles) {
        const Vector a = points_[corners[0]] - point;
        const Vector b = points_[corners[1]] - point;
        const Vector c = points_[corners[2]] - point;
        const double la = a.length();
        const double lb = b.length();
        const double lc = c.length();
        angle += 2.0 *
                 std::atan2((a ^ b) * c, la * lb * lc + (a * b) * lc + (b * c) * la + (c * a) * lb);
    }
    return angle;
}

void SurfaceFilling::addVolumes() const
{
    gmsh::clear();
    Groups groups;
    std::set<std::size_t> placed;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        gmsh::model::geo::addSurfaceLoop(addSurfaces(pieces_[i], groups, placed),
                                         static_cast<int>(i) + 1);
    }
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        if (pieces_[i].isHollow()) {
            continue;
        }
        std::vector<int> loops{static_cast<int>(i) + 1};
        for (std::size_t j = 0; j < pieces_.size(); ++j) {
            if (pieces_[j].around == static_cast<int>(i)) {
                loops.push_back(static_cast<int>(j) + 1);
            }
        }
        const int volume = gmsh::model::geo::addVolume(loops);
        if (givesItsNameToTheVolume(pieces_[i])) {
            groups[{3, names_[pieces_[i].triangles.front().patch]}].push_back(volume);
        }
    }
    gmsh::model::geo::synchronize();
    for (const auto& [key, tags] : groups) {
        if (!key.second.empty()) {
            const int group = gmsh::model::addPhysicalGroup(key.first, tags);
            gmsh::model::setPhysicalName(key.first, group, key.second);
        }
    }
}

bool SurfaceFilling::givesItsNameToTheVolume(const Piece& piece) const
{
    const std::size_t patch = piece.triangles.front().patch;
    return namesBodies_ && !piece.isHollow() &&
           std::all_of(piece.triangles.begin(), piece.triangles.end(),
                       [patch](const Triangle& triangle) { return triangle.patch == patch; });
}

/// \brief Makes a surface for each patch of a piece; their tags.
/// \param placed positions of the points that are nodes already
std::vector<int> SurfaceFilling::addSurfaces(const Piece& piece, Groups& groups,
                                             std::set<std::size_t>& placed) const
{
    std::map<std::size_t, std::vector<std::size_t>> corners; // by patch
    for (const Triangle& triangle : piece.triangles) {
        corners[triangle.patch].insert(corners[triangle.patch].end(), triangle.corners.begin(),
                                       triangle.corners.end());
    }
    const bool isNamed = !givesItsNameToTheVolume(piece);
    std::vector<int> surfaces;
    for (const auto& [patch, positions] : corners) {
        const int surface = gmsh::model::addDiscreteEntity(2);
        surfaces.push_back(surface);
        std::vector<std::size_t> added;
        std::vector<std::size_t> nodes;
        for (const std::size_t position : positions) {
            nodes.push_back(position + 1);
            if (placed.insert(position).second) {
                added.push_back(position);
            }
        }
        addNodes(surface, added);
        gmsh::model::mesh::addElementsByType(surface, TriangleType, {}, nodes);
        if (isNamed) {
            groups[{2, names_[patch]}].push_back(surface);
        }
    }
    return surfaces;
}

void SurfaceFilling::addNodes(int surface, const std::vector<std::size_t>& positions) const
{
    std::vector<std::size_t> tags;
    std::vector<double> coordinates;
    for (const std::size_t position : positions) {
        tags.push_back(position + 1);
        const Vector& point = points_[position];
        coordinates.insert(coordinates.end(), {point.x(), point.y(), point.z()});
    }
    gmsh::model::mesh::addNodes(2, surface, tags, coordinates);
}

} // namespace Ovra::GeoTool
