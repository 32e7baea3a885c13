#include "Flatness.h"

#include "Box.h"

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

constexpr double tolerance = 1e-8; ///< distance from the plane or line by the spread of the points

double spreadOf(const std::vector<Vector>& points)
{
    Geo::Box box;
    for (const Vector& point : points) {
        box += point;
    }
    return points.empty() ? 0.0 : box.extent().length();
}

const Vector& farthestFrom(const Vector& from, const std::vector<Vector>& points)
{
    return *std::max_element(points.begin(), points.end(),
                             [&from](const Vector& a, const Vector& b) {
                                 return (a - from).length() < (b - from).length();
                             });
}

} // namespace

bool Flatness::isStraight(const std::vector<Vector>& points)
{
    if (points.empty()) {
        return false;
    }
    const Vector origin = points.front();
    Vector along = farthestFrom(origin, points) - origin;
    along.normalize();
    const double limit = tolerance * spreadOf(points);
    return std::all_of(points.begin(), points.end(), [&](const Vector& point) {
        return ((point - origin) ^ along).length() <= limit;
    });
}

bool Flatness::isFlat(const std::vector<Vector>& points)
{
    if (points.empty()) {
        return false;
    }
    const Vector origin = points.front();
    const Vector along = farthestFrom(origin, points) - origin;
    Vector normal;
    for (const Vector& point : points) {
        const Vector candidate = along ^ (point - origin);
        if (candidate.length() > normal.length()) {
            normal = candidate;
        }
    }
    normal.normalize();
    const double limit = tolerance * spreadOf(points);
    return std::all_of(points.begin(), points.end(), [&](const Vector& point) {
        return std::abs((point - origin) * normal) <= limit;
    });
}

} // namespace Ovra::GeoTool
