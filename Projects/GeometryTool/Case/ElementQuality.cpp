#include "ElementQuality.h"

#include "CaseView.h"
#include "ElementTopology.h"
#include "InParallel.h"
#include "MeshEntity.h"

#include <algorithm>
#include <array>
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

/// It takes a millisecond to judge these.
constexpr std::size_t fewElements = 8192;

const Vector& at(const Points& points, int index)
{
    return points[index];
}

constexpr int cyclic(const ElementTopology::Side& ring, std::size_t index)
{
    return ring[index % ring.size()];
}

Points pick(const ElementTopology::Side& side, const Points& points)
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

Sums sumsOfSide(const ElementTopology::Side& side, const Points& points)
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
    ElementTopology::with(topology, [&](auto kind) {
        for (const ElementTopology::Side& side : kind().sides) {
            const Sums ofSide = sumsOfSide(side, points);
            sums.measure += ofSide.measure;
            sums.boundary += ofSide.boundary;
        }
    });
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
                                  const ElementTopology::Side& side)
{
    std::vector<int> neighbours;
    for (const ElementTopology::Side& other : topology.sides) {
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

using Edge = std::array<int, 2>;
using Edges = ShortList<Edge, 12>;

/// Each edge is met once in either direction.
constexpr Edges edgesOf(const ElementTopology& topology)
{
    Edges edges;
    if (topology.dimension == 1) {
        edges.push_back({0, 1});
    }
    for (const ElementTopology::Side& side : topology.sides) {
        for (std::size_t i = 0; i < side.size(); ++i) {
            const int next = cyclic(side, i + 1);
            if (side[i] < next) {
                edges.push_back({side[i], next});
            }
        }
    }
    return edges;
}

constexpr std::size_t positionOf(const ElementTopology& topology)
{
    return static_cast<std::size_t>(&topology - ElementTopology::all().data());
}

/// What \p makeOne makes of each kind, at its position.
template <typename MakeOne>
constexpr auto ofAllKinds(MakeOne makeOne)
{
    std::array<decltype(makeOne(ElementTopology::all()[0])), ElementTopology::all().size()> table;
    for (const ElementTopology& topology : ElementTopology::all()) {
        table[positionOf(topology)] = makeOne(topology);
    }
    return table;
}

constexpr auto edgesOfKinds = ofAllKinds(edgesOf);

/// The root is taken once: that of the largest square is the largest of the roots.
double longestEdge(const ElementTopology& topology, const Points& points)
{
    double longest = 0.0;
    ElementTopology::with(topology, [&](auto kind) {
        for (const auto& [from, to] : edgesOfKinds[positionOf(kind())]) {
            longest = std::max(longest, squareOf(at(points, to) - at(points, from)));
        }
    });
    return std::sqrt(longest);
}

/// Found once: the walk over a mesh meets few kinds very often.
const std::vector<Corner>& knownCornersOf(const ElementTopology& topology)
{
    static const auto corners = ofAllKinds([](const ElementTopology& kind) {
        return kind.dimension == 3 ? cornersOf(kind) : std::vector<Corner>();
    });
    return corners[positionOf(topology)];
}

/// Asked of solids of positive volume: all corners of a tetrahedron span that very volume.
bool isSolidTwisted(const ElementTopology& topology, const Points& points)
{
    if (points.size() == 4) {
        return false;
    }
    const std::vector<Corner>& corners = knownCornersOf(topology);
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

/// That of an unknown element, if it is no kind.
ElementQuality qualityOf(int dimension, std::span<const int> vertices,
                         const std::vector<Vector>& allPoints)
{
    const auto* const topology =
        ElementTopology::find(dimension, static_cast<int>(vertices.size()));
    return topology ? ElementQuality(*topology, pointsOf(vertices, allPoints),
                                     hasRepeatedVertex(vertices))
                    : ElementQuality();
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

std::vector<ElementQuality>
ElementQuality::ofMany(const CaseView& view, int dimension, std::size_t count,
                       const std::function<std::size_t(std::size_t)>& elementAt)
{
    const VertexLists& lists = view.vertexLists(dimension);
    const std::vector<Vector>& points = view.points();
    std::vector<ElementQuality> qualities(count);
    inParallel(count, fewElements, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            qualities[i] = qualityOf(dimension, lists.of(elementAt(i)), points);
        }
    });
    return qualities;
}

double ElementQuality::measureOf(const MeshEntity& element)
{
    const auto* const topology =
        ElementTopology::find(element.dimension(), element.adjacencyCount(0));
    return sumsOf(*topology, pointsOf(element)).measure;
}

} // namespace Ovra::GeoTool
