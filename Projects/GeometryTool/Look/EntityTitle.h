#pragma once

#include <QString>

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

/// \brief What people call an entity: its name, else its name in the input, else "face 7".
QString entityTitle(const Geo::ModelEntity& entity);

} // namespace Ovra::GeoTool
