#pragma once

#include "Vector.h"

#include <vector>

namespace Ovra::GeoTool::Flatness
{

/// \brief Whether points lie on a straight line, to within 1e-8 of their spread; no points do not.
bool isStraight(const std::vector<Geo::Vector>& points);

/// \brief Whether points lie in a plane, of whatever direction, to within 1e-8 of their spread; no
/// points do not.
bool isFlat(const std::vector<Geo::Vector>& points);

} // namespace Ovra::GeoTool::Flatness
