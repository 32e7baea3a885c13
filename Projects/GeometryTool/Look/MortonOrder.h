#pragma once

#include "Vector.h"

#include <cstdint>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Puts polygons that lie near one another in space near one another in a list, along the
/// curve of G. M. Morton, "A computer oriented geodetic data base", 1966.
class MortonOrder
{
public:
    /// \param points of all vertices; not owned, must outlive this object
    explicit MortonOrder(const std::vector<Geo::Vector>& points);

    /// \brief The same polygons, of \p corners vertices each, by where their middles lie.
    std::vector<int> sorted(const std::vector<int>& polygons, std::size_t corners) const;

private:
    std::uint32_t placeOf(const int* polygon, std::size_t corners) const;

    const std::vector<Geo::Vector>& points_;
    Geo::Vector low_;
    double size_ = 0.0; ///< of the longest side of the box; 0 for one without extent
};

} // namespace Ovra::GeoTool
