#pragma once

#include "PeriodicTransform.h"

#include <array>

namespace Ovra::GeoTool
{

/// \brief A periodic transform as CGNS has it: a rotation about a center, by angles in radians first
/// about the x axis, then y, then z, and a translation.
struct PeriodicAngles
{
    explicit PeriodicAngles(const Geo::PeriodicTransform& transform);

    std::array<float, 3> center = {};
    std::array<float, 3> angle = {};
    std::array<float, 3> translation = {};
};

} // namespace Ovra::GeoTool
