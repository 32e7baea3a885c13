#include "PointMerger.h"

#include <QHashFunctions>

#include <cmath>

namespace Ovra::GeoTool
{

using Geo::Vector;

std::size_t PointMerger::CellHash::operator()(const Cell& cell) const
{
    return qHashMulti(0, cell[0], cell[1], cell[2]);
}

PointMerger::PointMerger(const Vector& low, double tolerance)
    : low_(low)
    , tolerance_(tolerance)
{
}

// Cells are much larger than the tolerance, so that few points lie near the side of one.
PointMerger::Cell PointMerger::cellOf(const Vector& point) const
{
    constexpr double tolerancesInCell = 64;
    const Vector steps = (point - low_) / (tolerancesInCell * tolerance_);
    return {static_cast<std::int64_t>(std::floor(steps.x())),
            static_cast<std::int64_t>(std::floor(steps.y())),
            static_cast<std::int64_t>(std::floor(steps.z()))};
}

std::size_t PointMerger::add(const Vector& point)
{
    const std::size_t found = find(point);
    if (found == points_.size()) {
        points_.push_back(point);
        cells_[cellOf(point)].push_back(found);
    }
    return found;
}

/// \brief The first point that agrees; the number of points if none does.
std::size_t PointMerger::find(const Vector& point) const
{
    const Vector reach(tolerance_, tolerance_, tolerance_);
    const Cell first = cellOf(point - reach);
    const Cell last = cellOf(point + reach);
    std::size_t found = points_.size();
    for (std::int64_t x = first[0]; x <= last[0]; ++x) {
        for (std::int64_t y = first[1]; y <= last[1]; ++y) {
            for (std::int64_t z = first[2]; z <= last[2]; ++z) {
                const auto cell = cells_.find({x, y, z});
                if (cell == cells_.end()) {
                    continue;
                }
                for (const std::size_t other : cell->second) {
                    const bool agrees = (points_[other] - point).length() <= tolerance_;
                    found = agrees ? std::min(found, other) : found;
                }
            }
        }
    }
    return found;
}

} // namespace Ovra::GeoTool
