#pragma once

namespace Ovra::GeoTool
{

/// \brief Two faces, each of one body alone, that lie on one another wholly or in part; edges in a
/// model without regions.
struct BodyContact
{
    static constexpr double narrow = 10; ///< contacts narrower than so many tolerances pass nothing

    int face;         ///< the lower number
    int other;        ///< the higher number
    double size;      ///< area or length that the two have in common
    double tolerance; ///< with which they touch: how far apart they are at most
};

} // namespace Ovra::GeoTool
