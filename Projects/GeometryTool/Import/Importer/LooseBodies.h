#pragma once

#include "BodyContact.h"

#include <optional>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Bodies of an input that touch or overlap without being joined, in its unit.
struct LooseBodies
{
    struct Overlap
    {
        int body;    ///< the lower id
        int other;   ///< the higher id
        double size; ///< volume, or area in a model without regions, that the two have in common
    };

    enum class Remedy
    {
        Join,                ///< by --join
        JoinUnmeshed,        ///< by --join, once the input leaves meshing to the import
        OtherKernel,         ///< by --join, once the script uses the kernel that can cut
        OtherKernelUnmeshed, ///< the same, once it leaves meshing to the import too
        OtherGeometry,       ///< there is no geometry that could be cut
    };

    std::vector<BodyContact> contacts; ///< ascending; none of bodies that overlap
    std::vector<Overlap> overlaps;     ///< ascending; none that closing the contacts would end
    Remedy remedy = Remedy::OtherGeometry;
    std::optional<double> givenTolerance; ///< as the user has it, with which the advice goes on
    double tolerance = 0;                 ///< with which the import joins unless told otherwise
    double wideTolerance = 0; ///< that closes all contacts; 0 if joining fails, as far as tried
};

} // namespace Ovra::GeoTool
