#include "PlaceTree.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr int mostSteps = 4096;
constexpr std::size_t mostDepth = 128; // halves of any number of points in memory fit

bool isFinite(const Vector& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y()) && std::isfinite(point.z());
}

double distanceOf(const Vector& a, const Vector& b)
{
    const Vector apart = a - b;
    return std::max({std::abs(apart.x()), std::abs(apart.y()), std::abs(apart.z())});
}

std::size_t middleOf(std::size_t begin, std::size_t end)
{
    return begin + (end - begin) / 2;
}

} // namespace

PlaceTree::PlaceTree(std::vector<Vector> points)
    : points_(std::move(points))
{
    for (std::size_t i = 0; i < points_.size(); ++i) {
        if (isFinite(points_[i])) {
            order_.push_back(static_cast<int>(i));
        }
    }
    order({0, order_.size(), 0, 0.0});
}

// Recursion is as deep as the logarithm of the number of points.
void PlaceTree::order(const Part& part)
{
    if (part.end - part.begin < 2) {
        return;
    }
    const std::size_t middle = middleOf(part.begin, part.end);
    const auto at = [this](std::size_t i) {
        return order_.begin() + static_cast<std::ptrdiff_t>(i);
    };
    std::nth_element(at(part.begin), at(middle), at(part.end), [&](int a, int b) {
        return points_[static_cast<std::size_t>(a)][part.axis] <
               points_[static_cast<std::size_t>(b)][part.axis];
    });
    order({part.begin, middle, (part.axis + 1) % 3, 0.0});
    order({middle + 1, part.end, (part.axis + 1) % 3, 0.0});
}

int PlaceTree::nearest(const Vector& place, double reach) const
{
    int found = -1;
    double least = reach;
    std::array<Part, mostDepth> open{};
    open[0] = {0, order_.size(), 0, 0.0};
    std::size_t count = 1;
    for (int steps = 0; count > 0 && steps < mostSteps; ++steps) {
        const Part part = open[--count];
        if (part.begin == part.end || part.distance > least) {
            continue;
        }
        const std::size_t middle = middleOf(part.begin, part.end);
        const int candidate = order_[middle];
        const Vector& point = points_[static_cast<std::size_t>(candidate)];
        const double distance = distanceOf(place, point);
        if (distance < least || (distance == least && (found < 0 || candidate < found))) {
            found = candidate;
            least = distance;
        }
        const double aside = place[part.axis] - point[part.axis];
        const int axis = (part.axis + 1) % 3;
        const Part below{part.begin, middle, axis, std::max(0.0, aside)};
        const Part above{middle + 1, part.end, axis, std::max(0.0, -aside)};
        open[count++] = aside < 0 ? above : below;
        open[count++] = aside < 0 ? below : above; // the nearer one is next
    }
    return found;
}

} // namespace Ovra::GeoTool
