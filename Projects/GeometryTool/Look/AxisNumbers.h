#pragma once

#include "PictureData.h"

namespace Ovra::GeoTool
{

/// \brief The numbers to write along an axis from \p low to \p high: about four, at round places,
/// each in as many digits as tell it from the next.
/// \return none where that would be more digits than a number of double precision has
/// \pre both are finite
std::vector<PictureData::AxisNumber> axisNumbers(double low, double high);

} // namespace Ovra::GeoTool
