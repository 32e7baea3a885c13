#pragma once

#include "Vector.h"

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Points of the shape of one of Gmsh's curves or surfaces, on a grid over its parameters;
/// none for a degenerate shape, which has no parameters.
/// \param dimension 1 or 2
std::vector<Geo::Vector> shapeGrid(int dimension, int tag);

} // namespace Ovra::GeoTool
