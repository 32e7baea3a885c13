#include "ConvexClip.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace Ovra::GeoTool::ConvexClip
{

using Geo::Vector;

namespace
{

Vector unit(Vector vector)
{
    vector.normalize();
    return vector;
}

/// \brief Where the plane of \p space cuts the line between two points, one on each side.
Vector cut(const Vector& a, const Vector& b, const HalfSpace& space)
{
    const double depth = space.depth(a);
    return a + (depth / (depth - space.depth(b))) * (b - a);
}

Polygon clippedBy(const Polygon& polygon, const HalfSpace& space)
{
    Polygon kept;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Vector& from = polygon[i];
        const Vector& to = polygon[(i + 1) % polygon.size()];
        const bool isFromIn = space.depth(from) >= 0;
        const bool isToIn = space.depth(to) >= 0;
        if (isFromIn != isToIn) {
            kept.push_back(cut(from, to, space));
        }
        if (isToIn) {
            kept.push_back(to);
        }
    }
    return kept;
}

using Spaces = std::span<const HalfSpace>;

double volumeIn(const Tetrahedron& body, Spaces spaces);

/// \brief Of the wedge between two triangles.
double volumeIn(const std::array<Vector, 3>& a, const std::array<Vector, 3>& b, Spaces spaces)
{
    return volumeIn({a[0], a[1], a[2], b[0]}, spaces) + volumeIn({a[1], a[2], b[0], b[1]}, spaces) +
           volumeIn({a[2], b[0], b[1], b[2]}, spaces);
}

double volumeIn(const Tetrahedron& body, Spaces spaces)
{
    if (spaces.empty()) {
        return std::abs(((body[1] - body[0]) ^ (body[2] - body[0])) * (body[3] - body[0])) / 6;
    }
    const HalfSpace& space = spaces.front();
    const Spaces others = spaces.subspan(1);
    Tetrahedron p = body; // those inside first
    const auto outside = std::stable_partition(
        p.begin(), p.end(), [&space](const Vector& corner) { return space.depth(corner) >= 0; });
    const auto at = [&p, &space](std::size_t i, std::size_t j) { return cut(p[i], p[j], space); };
    switch (outside - p.begin()) {
    case 1:
        return volumeIn({p[0], at(0, 1), at(0, 2), at(0, 3)}, others);
    case 2:
        return volumeIn({p[0], at(0, 2), at(0, 3)}, {p[1], at(1, 2), at(1, 3)}, others);
    case 3:
        return volumeIn({p[0], p[1], p[2]}, {at(0, 3), at(1, 3), at(2, 3)}, others);
    case 4:
        return volumeIn(p, others);
    default:
        return 0;
    }
}

} // namespace

double size(const Polygon& polygon, int dimension)
{
    if (dimension == 2) {
        return 0.5 * normal(polygon).length();
    }
    double round = 0; // to the end and back
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        round += (polygon[(i + 1) % polygon.size()] - polygon[i]).length();
    }
    return 0.5 * round;
}

Vector normal(const Polygon& polygon)
{
    Vector sum;
    for (std::size_t i = 1; i + 1 < polygon.size(); ++i) {
        sum += (polygon[i] - polygon[0]) ^ (polygon[i + 1] - polygon[0]);
    }
    return sum;
}

Polygon clipped(Polygon polygon, const std::vector<HalfSpace>& spaces)
{
    for (const HalfSpace& space : spaces) {
        polygon = clippedBy(polygon, space);
    }
    return polygon;
}

std::vector<HalfSpace> column(const Polygon& polygon)
{
    const Vector up = unit(normal(polygon));
    std::vector<HalfSpace> spaces;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Vector along = polygon[(i + 1) % polygon.size()] - polygon[i];
        spaces.push_back({polygon[i], unit(polygon.size() == 2 ? along : up ^ along)});
    }
    return spaces;
}

std::vector<HalfSpace> sides(const Tetrahedron& body)
{
    std::vector<HalfSpace> spaces;
    for (std::size_t i = 0; i < 4; ++i) {
        const Vector& a = body[(i + 1) % 4];
        const Vector& b = body[(i + 2) % 4];
        const Vector& c = body[(i + 3) % 4];
        HalfSpace side{a, unit((b - a) ^ (c - a))};
        if (side.depth(body[i]) < 0) {
            side.normal = -side.normal;
        }
        spaces.push_back(side);
    }
    return spaces;
}

double volume(const Tetrahedron& body, const std::vector<HalfSpace>& spaces)
{
    return volumeIn(body, spaces);
}

} // namespace Ovra::GeoTool::ConvexClip
