#include "ElementQuality.h"

#include "CaseView.h"
#include "ElementTopology.h"
#include "MeshEntity.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <utility>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Points = ElementQuality::Points;

constexpr double degenerateFraction = 1e-12;

const Vector& at(const Points& points, int index)
{
    return points[index];
}

int cyclic(const std::vector<int>& ring, std::size_t index)
{
    return ring[index % ring.size()];
}

Points pick(const std::vector<int>& side, const Points& points)
{
    Points picked(static_cast<qsizetype>(side.size()));
    std::transform(side.begin(), side.end(), picked.begin(),
                   [&points](int index) { return at(points, index); });
    return picked;
}

Vector mean(const Points& points)
{
    Vector sum;
    for (const Vector& point : points) {
        sum += point;
    }
    return sum / static_cast<double>(points.size());
}

bool isFinite(const Vector& vector)
{
    return std::isfinite(vector.x() + vector.y() + vector.z());
}

Vector areaVector(const Vector& a, const Vector& b, const Vector& c)
{
    return 0.5 * ((b - a) ^ (c - a));
}

Vector splitPoint(const Points& ring)
{
    return ring.size() == 3 ? ring[0] : mean(ring);
}

/// The size of an element, or what a side adds to that of a solid, and the size of its boundary.
struct Sums
{
    double measure = 0.0;
    double boundary = 0.0;
};

void addTriangle(Sums& sums, const Vector& area, const Vector& place, const Vector& apex)
{
    sums.measure += area * (place - apex) / 3.0;
    sums.boundary += area.length();
}

Sums sumsOfRing(const Points& ring, const Vector& apex)
{
    const Vector about = splitPoint(ring);
    Sums sums;
    for (qsizetype i = 0; i < ring.size(); ++i) {
        addTriangle(sums, areaVector(about, ring[i], ring[(i + 1) % ring.size()]), about, apex);
    }
    return sums;
}

Sums sumsOfSide(const std::vector<int>& side, const Points& points)
{
    if (side.size() == 3) {
        // About its first vertex, where splitPoint() has it, the other two triangles are nothing;
        // among numbers that are not finite they are no numbers.
        const Vector& first = at(points, side[0]);
        const Vector area = areaVector(first, at(points, side[1]), at(points, side[2]));
        if (isFinite(area)) {
            Sums sums;
            addTriangle(sums, area, first, points[0]);
            return sums;
        }
    }
    return sumsOfRing(pick(side, points), points[0]);
}

Sums sumsOfSides(const ElementTopology& topology, const Points& points)
{
    Sums sums;
    for (const std::vector<int>& side : topology.sides) {
        const Sums ofSide = sumsOfSide(side, points);
        sums.measure += ofSide.measure;
        sums.boundary += ofSide.boundary;
    }
    return sums;
}

double fanArea(const Points& points)
{
    double area = 0.0;
    for (qsizetype i = 2; i < points.size(); ++i) {
        area += 0.5 * ((points[i - 1] - points[0]) ^ (points[i] - points[0])).length();
    }
    return area;
}

double perimeter(const Points& points)
{
    double length = 0.0;
    for (qsizetype i = 0; i < points.size(); ++i) {
        length += (points[(i + 1) % points.size()] - points[i]).length();
    }
    return length;
}

/// The measure of an element and that of its boundary.
Sums sumsOf(const ElementTopology& topology, const Points& points)
{
    switch (topology.dimension) {
    case 1:
        return {(points[1] - points[0]).length(), 0.0};
    case 2:
        return {fanArea(points), perimeter(points)};
    default:
        return sumsOfSides(topology, points);
    }
}

double squareOf(const Vector& vector)
{
    return vector * vector;
}

double powerOf(double base, int exponent)
{
    return exponent == 1 ? base : base * powerOf(base, exponent - 1);
}

double aspectOf(const ElementTopology& topology, const Sums& sums, double longest)
{
    const double radius = topology.dimension * sums.measure / sums.boundary;
    return longest / radius / topology.regularAspect;
}

/// One corner of a solid: the vertex and its three neighbours, in the order that spans a positive
/// volume.
struct Corner
{
    int vertex;
    int first;
    int second;
    int third;
};

/// The third edge at a corner of a side is the one that leaves the side.
std::vector<int> neighboursBeyond(const ElementTopology& topology, int vertex,
                                  const std::vector<int>& side)
{
    std::vector<int> neighbours;
    for (const std::vector<int>& other : topology.sides) {
        for (std::size_t i = 0; i < other.size(); ++i) {
            const int next = cyclic(other, i + 1);
            if (other[i] == vertex && std::find(side.begin(), side.end(), next) == side.end()) {
                neighbours.push_back(next);
            }
        }
    }
    return neighbours;
}

std::vector<Corner> cornersOf(const ElementTopology& topology)
{
    std::vector<Corner> corners;
    for (int vertex = 0; vertex < topology.vertexCount; ++vertex) {
        const auto side =
            std::find_if(topology.sides.begin(), topology.sides.end(), [=](const auto& each) {
                return std::find(each.begin(), each.end(), vertex) != each.end();
            });
        const auto place =
            static_cast<std::size_t>(std::find(side->begin(), side->end(), vertex) - side->begin());
        const std::vector<int> beyond = neighboursBeyond(topology, vertex, *side);
        if (beyond.size() == 1) {
            corners.push_back({vertex, cyclic(*side, place + side->size() - 1),
                               cyclic(*side, place + 1), beyond.front()});
        }
    }
    return corners;
}

/// Each edge is met once in either direction.
std::vector<std::pair<int, int>> edgesOf(const ElementTopology& topology)
{
    std::vector<std::pair<int, int>> edges;
    if (topology.dimension == 1) {
        edges.emplace_back(0, 1);
    }
    for (const std::vector<int>& side : topology.sides) {
        for (std::size_t i = 0; i < side.size(); ++i) {
            const int next = cyclic(side, i + 1);
            if (side[i] < next) {
                edges.emplace_back(side[i], next);
            }
        }
    }
    return edges;
}

/// What follows from the sides of a kind.
struct Outline
{
    std::vector<std::pair<int, int>> edges;
    std::vector<Corner> corners;
};

std::vector<Outline> allOutlines()
{
    std::vector<Outline> outlines;
    for (const ElementTopology& topology : ElementTopology::all()) {
        outlines.push_back({edgesOf(topology),
                            topology.dimension == 3 ? cornersOf(topology) : std::vector<Corner>()});
    }
    return outlines;
}

/// Found once: the walk over a mesh meets few kinds very often.
const Outline& outlineOf(const ElementTopology& topology)
{
    static const std::vector<Outline> outlines = allOutlines();
    return outlines[static_cast<std::size_t>(&topology - ElementTopology::all().data())];
}

/// The root is taken once: that of the largest square is the largest of the roots.
double longestEdge(const ElementTopology& topology, const Points& points)
{
    double longest = 0.0;
    for (const auto& [from, to] : outlineOf(topology).edges) {
        longest = std::max(longest, squareOf(at(points, to) - at(points, from)));
    }
    return std::sqrt(longest);
}

/// Asked of solids of positive volume: all corners of a tetrahedron span that very volume.
bool isSolidTwisted(const ElementTopology& topology, const Points& points)
{
    if (points.size() == 4) {
        return false;
    }
    const std::vector<Corner>& corners = outlineOf(topology).corners;
    return std::any_of(corners.begin(), corners.end(), [&points](const Corner& corner) {
        const Vector& origin = at(points, corner.vertex);
        const Vector normal =
            (at(points, corner.first) - origin) ^ (at(points, corner.second) - origin);
        return normal * (at(points, corner.third) - origin) <= 0.0;
    });
}

/// True if the triangles on both sides of the diagonal from \p from face opposite ways.
bool foldsAlongDiagonal(const Points& quad, qsizetype from)
{
    const Vector& a = quad[from];
    const Vector& b = quad[from + 1];
    const Vector& c = quad[(from + 2) % 4];
    const Vector& d = quad[(from + 3) % 4];
    return ((b - a) ^ (c - a)) * ((c - a) ^ (d - a)) < 0.0;
}

bool isTwisted(const ElementTopology& topology, const Points& points)
{
    if (topology.dimension == 3) {
        return isSolidTwisted(topology, points);
    }
    return points.size() == 4 && foldsAlongDiagonal(points, 0) && foldsAlongDiagonal(points, 1);
}

bool hasRepeatedVertex(std::span<const int> vertices)
{
    for (std::size_t i = 1; i < vertices.size(); ++i) {
        if (std::find(vertices.begin(), vertices.begin() + static_cast<std::ptrdiff_t>(i),
                      vertices[i]) != vertices.begin() + static_cast<std::ptrdiff_t>(i)) {
            return true;
        }
    }
    return false;
}

Points pointsOf(const MeshEntity& element)
{
    Points points;
    for (int i = 0; i < element.adjacencyCount(0); ++i) {
        points.push_back(element.adjacencyAt(0, i)->centroid());
    }
    return points;
}

Points pointsOf(std::span<const int> vertices, const std::vector<Vector>& allPoints)
{
    Points points(static_cast<qsizetype>(vertices.size()));
    std::transform(vertices.begin(), vertices.end(), points.begin(), [&allPoints](int vertex) {
        return allPoints[static_cast<std::size_t>(vertex)];
    });
    return points;
}

bool isDegenerate(double measure, double longest, int dimension)
{
    // Written so that a measure that is no number counts as degenerate.
    return !(std::abs(measure) > degenerateFraction * powerOf(longest, dimension));
}

} // namespace

ElementQuality::ElementQuality(const ElementTopology& topology, const Points& points,
                               bool repeatsVertex)
{
    const Sums sums = sumsOf(topology, points);
    const double longest = longestEdge(topology, points);
    measure = sums.measure;
    if (repeatsVertex || isDegenerate(measure, longest, topology.dimension)) {
        state = State::Degenerate;
    } else if (measure < 0.0) {
        state = State::Inverted;
    } else {
        state = isTwisted(topology, points) ? State::Twisted : State::Sound;
    }
    if (topology.dimension > 1 && state != State::Degenerate && measure > 0.0) {
        aspect = aspectOf(topology, sums, longest);
    }
}

ElementQuality::ElementQuality(const CaseView& view, int dimension, std::size_t element)
{
    const std::span<const int> vertices = view.vertexLists(dimension).of(element);
    const auto* const topology =
        ElementTopology::find(dimension, static_cast<int>(vertices.size()));
    if (topology) {
        *this = ElementQuality(*topology, pointsOf(vertices, view.points()),
                               hasRepeatedVertex(vertices));
    }
}

double ElementQuality::measureOf(const MeshEntity& element)
{
    const auto* const topology =
        ElementTopology::find(element.dimension(), element.adjacencyCount(0));
    return sumsOf(*topology, pointsOf(element)).measure;
}

} // namespace Ovra::GeoTool
