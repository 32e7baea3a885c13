#include "EntityNames.h"

#include "EntityName.h"

#include <array>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

QString kindName(int dimension)
{
    static const std::array<const char*, 4> names = {"vertex", "edge", "face", "region"};
    return QLatin1String(names[static_cast<std::size_t>(dimension)]);
}

QString nameOf(const QString& owner, int dimension, int id)
{
    return QStringLiteral("%1 %2 %3").arg(owner, kindName(dimension), QString::number(id));
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
