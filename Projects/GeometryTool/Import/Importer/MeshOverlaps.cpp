#include "MeshOverlaps.h"

#include "BodyBoxes.h"
#include "BoxTree.h"
#include "ElementShape.h"
#include "ImportedMesh.h"

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using ConvexClip::Polygon;
using Geo::Box;
using Geo::Vector;

namespace
{

// A share of lengths and sizes that differences of coordinates cannot tell from nothing.
constexpr double rounding = 1e-6;

Polygon cornersOf(const ImportedMesh& mesh, const ImportedElement& element)
{
    Polygon corners;
    for (int n = 0; n < element.nodeCount; ++n) {
        corners.push_back(mesh.point(element, n));
    }
    return corners;
}

std::vector<Box> boxesOf(const ImportedMesh& mesh,
                         const std::vector<const ImportedElement*>& elements)
{
    std::vector<Box> boxes;
    boxes.reserve(elements.size());
    for (const ImportedElement* element : elements) {
        boxes.push_back(mesh.boxOf(*element));
    }
    return boxes;
}

Vector middleOf(const Polygon& corners)
{
    Vector sum;
    for (const Vector& corner : corners) {
        sum += corner;
    }
    return sum / static_cast<double>(corners.size());
}

bool areAlike(const ImportedEntity& a, const ImportedEntity& b)
{
    return !a.discarded && !b.discarded && a.geometry.box.matches(b.geometry.box, rounding) &&
           std::abs(a.geometry.measure - b.geometry.measure) <= rounding * a.geometry.measure;
}

} // namespace

MeshOverlaps::MeshOverlaps(const ImportedMesh& mesh)
    : mesh_(mesh)
    , dimension_(mesh.elementDimension)
{
}

std::set<MeshOverlaps::Pair> MeshOverlaps::find() const
{
    std::set<Pair> pairs;
    if (mesh_.entitiesOf(dimension_).size() > 1) {
        addCrossings(pairs);
        addTwins(pairs);
    }
    return pairs;
}

void MeshOverlaps::addCrossings(std::set<Pair>& pairs) const
{
    const BodyBoxes boxes(mesh_);
    std::vector<const ImportedElement*> facets;
    for (const ImportedElement& facet : mesh_.elementsOf(dimension_ - 1)) {
        const std::set<int>& bodies = bodiesAt(facet);
        if (!bodies.empty() && boxes.hasOther(mesh_.boxOf(facet), bodies)) {
            facets.push_back(&facet);
        }
    }
    const BoxTree tree(boxesOf(mesh_, facets));
    for (const ImportedElement& element : mesh_.elementsOf(dimension_)) {
        tree.forEachMeeting(mesh_.boxOf(element), [&](std::size_t i) {
            const std::set<int>& bodies = bodiesAt(*facets[i]);
            if (bodies.contains(element.entity)) {
                return; // bounds it
            }
            const Pair first = std::minmax(*bodies.begin(), element.entity);
            if (pairs.contains(first) || !passesThrough(*facets[i], element)) {
                return;
            }
            for (const int body : bodies) {
                pairs.insert(std::minmax(body, element.entity));
            }
        });
    }
}

// Of two bodies that are the same, no surface passes through the other.
void MeshOverlaps::addTwins(std::set<Pair>& pairs) const
{
    const auto& bodies = mesh_.entitiesOf(dimension_);
    std::vector<Box> boxes;
    boxes.reserve(bodies.size());
    for (const ImportedEntity& body : bodies) {
        boxes.push_back(body.geometry.box);
    }
    const BoxTree tree(boxes);
    for (std::size_t a = 0; a < bodies.size(); ++a) {
        tree.forEachMeeting(boxes[a], [&](std::size_t b) {
            if (a < b && areAlike(bodies[a], bodies[b])) {
                pairs.emplace(static_cast<int>(a), static_cast<int>(b));
            }
        });
    }
}

const std::set<int>& MeshOverlaps::bodiesAt(const ImportedElement& facet) const
{
    return mesh_.entity(dimension_ - 1, facet.entity)
        .adjacent[static_cast<std::size_t>(dimension_)];
}

bool MeshOverlaps::passesThrough(const ImportedElement& facet, const ImportedElement& element) const
{
    const Polygon corners = cornersOf(mesh_, facet);
    const double depth = rounding * mesh_.boxOf(element).extent().length();
    const std::vector<Simplex> simplices = simplicesOf(element);
    return std::any_of(simplices.begin(), simplices.end(), [&](const Simplex& simplex) {
        std::vector<HalfSpace> inside = boundsOf(simplex);
        for (HalfSpace& space : inside) {
            space.point += depth * space.normal;
        }
        return ConvexClip::size(ConvexClip::clipped(corners, inside), dimension_ - 1) > 0;
    });
}

// Without flat ones, whose sides do not tell what lies between them.
std::vector<MeshOverlaps::Simplex> MeshOverlaps::simplicesOf(const ImportedElement& element) const
{
    const double extent = mesh_.boxOf(element).extent().length();
    std::vector<Simplex> simplices = partsOf(element);
    std::erase_if(simplices, [&](const Simplex& simplex) { return isFlat(simplex, extent); });
    return simplices;
}

bool MeshOverlaps::isFlat(const Simplex& p, double extent) const
{
    const double size =
        dimension_ == 2 ? ConvexClip::size(p, 2) : ConvexClip::volume({p[0], p[1], p[2], p[3]});
    return size <= rounding * std::pow(extent, dimension_);
}

std::vector<MeshOverlaps::Simplex> MeshOverlaps::partsOf(const ImportedElement& element) const
{
    const Polygon corners = cornersOf(mesh_, element);
    if (element.nodeCount == dimension_ + 1) {
        return {corners};
    }
    if (dimension_ == 2) {
        return {{corners[0], corners[1], corners[2]}, {corners[0], corners[2], corners[3]}};
    }
    const Vector middle = middleOf(corners);
    std::vector<Simplex> simplices;
    for (const auto& local : ElementShape::faces(element.nodeCount)) {
        const auto corner = [&](std::size_t n) {
            return corners[static_cast<std::size_t>(local[n])];
        };
        for (std::size_t n = 1; n + 1 < local.size(); ++n) {
            simplices.push_back({corner(0), corner(n), corner(n + 1), middle});
        }
    }
    return simplices;
}

std::vector<HalfSpace> MeshOverlaps::boundsOf(const Simplex& simplex) const
{
    return dimension_ == 2 ? ConvexClip::column(simplex)
                           : ConvexClip::sides({simplex[0], simplex[1], simplex[2], simplex[3]});
}

double MeshOverlaps::measure(const Pair& pair) const
{
    const auto& bodies = mesh_.entitiesOf(dimension_);
    const auto first =
        elementsOf(pair.first, bodies[static_cast<std::size_t>(pair.second)].geometry.box);
    const auto second =
        elementsOf(pair.second, bodies[static_cast<std::size_t>(pair.first)].geometry.box);
    const BoxTree tree(boxesOf(mesh_, first));
    double sum = 0;
    for (const ImportedElement* element : second) {
        tree.forEachMeeting(mesh_.boxOf(*element),
                            [&](std::size_t i) { sum += common(*first[i], *element); });
    }
    const double smaller = std::min(bodies[static_cast<std::size_t>(pair.first)].geometry.measure,
                                    bodies[static_cast<std::size_t>(pair.second)].geometry.measure);
    return sum > rounding * smaller ? sum : 0;
}

std::vector<const ImportedElement*> MeshOverlaps::elementsOf(int body, const Box& within) const
{
    std::vector<const ImportedElement*> elements;
    for (const ImportedElement& element : mesh_.elementsOf(dimension_)) {
        if (element.entity == body && mesh_.boxOf(element).intersects(within)) {
            elements.push_back(&element);
        }
    }
    return elements;
}

double MeshOverlaps::common(const ImportedElement& a, const ImportedElement& b) const
{
    double sum = 0;
    for (const Simplex& other : simplicesOf(b)) {
        const std::vector<HalfSpace> inside = boundsOf(other);
        for (const Simplex& p : simplicesOf(a)) {
            sum += dimension_ == 2 ? ConvexClip::size(ConvexClip::clipped(p, inside), 2)
                                   : ConvexClip::volume({p[0], p[1], p[2], p[3]}, inside);
        }
    }
    return sum;
}

} // namespace Ovra::GeoTool
