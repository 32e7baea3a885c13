#pragma once

#include "Signatures.h"
#include "Vector.h"

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Numbers for the places of points in two cases: points at one place share theirs, within a
/// case and across both. None is 0.
struct PlaceNumbers
{
    std::vector<Signature> inA;
    std::vector<Signature> inB;

    /// \param tolerance how far a coordinate may differ; a place of A that B does not have is that
    ///        of the nearest in B that A does not have
    static PlaceNumbers of(const std::vector<Geo::Vector>& a, const std::vector<Geo::Vector>& b,
                           double tolerance);
};

} // namespace Ovra::GeoTool
