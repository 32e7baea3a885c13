#include "QualityHistogram.h"

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

void QualityHistogram::addAspect(double aspect)
{
    const auto* const beyond =
        std::upper_bound(AspectBounds.begin() + 1, AspectBounds.end(), aspect);
    ++aspects_.at(static_cast<std::size_t>(beyond - AspectBounds.begin()) - 1);
}

void QualityHistogram::addMeasure(double measure)
{
    if (std::isfinite(measure) && measure != 0.0) {
        ++measures_[std::ilogb(measure)];
    }
}

} // namespace Ovra::GeoTool
