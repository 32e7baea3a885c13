#include "MortonOrder.h"

#include "Box.h"

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr int bitsAnAxis = 10;

/// The bits of a number with two others between each.
std::uint32_t spread(std::uint32_t number)
{
    std::uint32_t result = 0;
    for (unsigned bit = 0; bit < bitsAnAxis; ++bit) {
        result |= ((number >> bit) & 1U) << (3U * bit);
    }
    return result;
}

/// \param share of the box, from 0 to 1; no number in a box without bounds
std::uint32_t cellOf(double share)
{
    constexpr double cells = 1U << bitsAnAxis;
    return share > 0.0 ? static_cast<std::uint32_t>(std::min(share * cells, cells - 1.0)) : 0U;
}

bool isFinite(const Vector& point)
{
    return std::isfinite(point.x() + point.y() + point.z());
}

} // namespace

MortonOrder::MortonOrder(const std::vector<Vector>& points)
    : points_(points)
{
    Box box;
    for (const Vector& point : points) {
        if (isFinite(point)) {
            box += point;
        }
    }
    if (!box.isValid()) { // true for exactly the box of nothing
        low_ = box.minimum();
        const Vector extent = box.maximum() - low_;
        size_ = std::max({extent.x(), extent.y(), extent.z()});
    }
}

std::uint32_t MortonOrder::placeOf(const int* polygon, std::size_t corners) const
{
    Vector sum;
    for (std::size_t i = 0; i < corners; ++i) {
        sum += points_[static_cast<std::size_t>(polygon[i])] - low_;
    }
    const Vector share = size_ > 0.0 ? sum / (static_cast<double>(corners) * size_) : Vector();
    return spread(cellOf(share.x())) | spread(cellOf(share.y())) << 1U |
           spread(cellOf(share.z())) << 2U;
}

std::vector<int> MortonOrder::sorted(const std::vector<int>& polygons, std::size_t corners) const
{
    std::vector<std::pair<std::uint32_t, std::size_t>> places;
    places.reserve(polygons.size() / corners);
    for (std::size_t i = 0; i < polygons.size(); i += corners) {
        places.emplace_back(placeOf(&polygons[i], corners), i);
    }
    std::sort(places.begin(), places.end());
    std::vector<int> result;
    result.reserve(polygons.size());
    for (const auto& [place, first] : places) {
        const auto begin = polygons.begin() + static_cast<std::ptrdiff_t>(first);
        result.insert(result.end(), begin, begin + static_cast<std::ptrdiff_t>(corners));
    }
    return result;
}

} // namespace Ovra::GeoTool
