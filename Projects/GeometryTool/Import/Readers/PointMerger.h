#pragma once

#include "Vector.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Gives points that agree within a tolerance the same position in a list.
///
/// Each point is compared with those that are there already, so that the first of several that
/// agree stays. Takes constant time a point as long as few points are closer together than some
/// tolerances.
class PointMerger
{
public:
    /// \param low a point that no coordinate is below
    /// \param tolerance largest distance of points that agree, above 0; no coordinate is above
    /// \p low by more than 1e15 tolerances
    PointMerger(const Geo::Vector& low, double tolerance);

    /// \brief Position of the point; appended if it agrees with none.
    std::size_t add(const Geo::Vector& point);

    const std::vector<Geo::Vector>& points() const { return points_; }

private:
    using Cell = std::array<std::int64_t, 3>;
    struct CellHash
    {
        std::size_t operator()(const Cell& cell) const;
    };

    Cell cellOf(const Geo::Vector& point) const;
    std::size_t find(const Geo::Vector& point) const;

    Geo::Vector low_;
    double tolerance_;
    std::vector<Geo::Vector> points_;
    std::unordered_map<Cell, std::vector<std::size_t>, CellHash> cells_;
};

} // namespace Ovra::GeoTool
