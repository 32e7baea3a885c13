#include "EntityNames.h"

#include "MeshEntity.h"
#include "ModelEntity.h"

#include <array>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

QString nameOf(const QString& owner, int dimension, int id)
{
    static const std::array<const char*, 4> names = {"vertex", "edge", "face", "region"};
    return QStringLiteral("%1 %2 %3")
        .arg(owner, QLatin1String(names[static_cast<std::size_t>(dimension)]), QString::number(id));
}

QString nameOf(const ModelEntity& entity)
{
    return nameOf(QStringLiteral("model"), entity.dimension(), entity.id());
}

QString nameOf(const MeshEntity& entity)
{
    return nameOf(QStringLiteral("mesh"), entity.dimension(), entity.id());
}

} // namespace Ovra::GeoTool
