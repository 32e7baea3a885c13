#include "EntityTitle.h"

#include "EntityNames.h"
#include "ModelEntity.h"

namespace Ovra::GeoTool
{

QString entityTitle(const Geo::ModelEntity& entity)
{
    if (!entity.name().isEmpty()) {
        return entity.name();
    }
    return entity.tag().isEmpty()
               ? QStringLiteral("%1 %2").arg(kindName(entity.dimension())).arg(entity.id())
               : entity.tag();
}

} // namespace Ovra::GeoTool
