#pragma once

#include <QJsonArray>

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

/// \brief The ids of what an entity lists as its neighbours of a dimension, ascending.
QJsonArray adjacentIdsJson(const Geo::ModelEntity& entity, int dimension);

} // namespace Ovra::GeoTool
