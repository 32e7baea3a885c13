#pragma once

#include <QString>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief "vertex", "edge", "face" or "region".
/// \param dimension 0 to 3
QString kindName(int dimension);

/// \brief How messages name an entity: \p owner "mesh", dimension 2 and id 7 give "mesh face 7".
/// \param owner "model" or "mesh"
/// \param dimension 0 to 3
QString nameOf(const QString& owner, int dimension, int id);

/// \brief "model region 3".
QString nameOf(const Geo::ModelEntity& entity);

/// \brief "mesh vertex 12".
QString nameOf(const Geo::MeshEntity& entity);

} // namespace Ovra::GeoTool
