#pragma once

#include "Vector.h"

#include <cstddef>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Answers which of many points lies nearest to a given one, by the coordinate that differs
/// most.
///
/// A balanced k-d tree in one array (Bentley, Multidimensional binary search trees used for
/// associative searching, 1975). However the points lie, a question costs no more than a few
/// thousand steps: where that is not enough to be sure of the nearest, as it is in any mesh, the
/// nearest of those seen is the answer.
class PlaceTree
{
public:
    /// \param points those that are not finite are left out
    explicit PlaceTree(std::vector<Geo::Vector> points);

    /// \brief The position in the list of the point nearest to \p place; of several, the first.
    /// \return -1 if none is within \p reach
    int nearest(const Geo::Vector& place, double reach) const;

private:
    struct Part
    {
        std::size_t begin = 0;
        std::size_t end = 0;
        int axis = 0;
        double distance = 0.0; ///< at least so far away
    };

    void order(const Part& part);

    std::vector<Geo::Vector> points_;
    std::vector<int> order_; ///< in the middle of each part its root
};

} // namespace Ovra::GeoTool
