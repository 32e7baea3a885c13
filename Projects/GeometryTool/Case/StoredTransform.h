#pragma once

#include "PeriodicTransform.h"

namespace Ovra::Geo
{
class Model;
}

namespace Ovra::GeoTool
{

/// \brief The periodic transform that the attributes of the model hold, those of the preparation;
/// all zero where they are missing.
Geo::PeriodicTransform storedTransform(Geo::Model& model);

} // namespace Ovra::GeoTool
