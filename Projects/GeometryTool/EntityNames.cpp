#include "EntityNames.h"

#include "EntityName.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

QString nameOf(const QString& owner, int dimension, int id)
{
    const bool isModel = owner == QLatin1String("model");
    return EntityName(isModel ? EntityName::Owner::Model : EntityName::Owner::Mesh, dimension, id)
        .text();
}

QString nameOf(const ModelEntity& entity)
{
    return EntityName(entity).text();
}

QString nameOf(const MeshEntity& entity)
{
    return EntityName(entity).text();
}

} // namespace Ovra::GeoTool
