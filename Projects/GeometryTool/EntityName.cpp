#include "EntityName.h"

#include "MeshEntity.h"
#include "ModelEntity.h"

#include <array>

namespace Ovra::GeoTool
{

EntityName::EntityName(Owner nameOwner, int nameDimension, int nameId)
    : owner(nameOwner)
    , dimension(nameDimension)
    , id(nameId)
{
}

EntityName::EntityName(const Geo::ModelEntity& entity)
    : EntityName(Owner::Model, entity.dimension(), entity.id())
{
}

EntityName::EntityName(const Geo::MeshEntity& entity)
    : EntityName(Owner::Mesh, entity.dimension(), entity.id())
{
}

QString EntityName::text() const
{
    static const std::array<const char*, 4> names = {"vertex", "edge", "face", "region"};
    if (owner == Owner::Case)
        return QStringLiteral("the case");
    return QStringLiteral("%1 %2 %3")
        .arg(owner == Owner::Model ? QStringLiteral("model") : QStringLiteral("mesh"),
             QLatin1String(names.at(static_cast<std::size_t>(dimension))))
        .arg(id);
}

QString placeText(const Geo::Vector& place)
{
    const auto number = [](double value) { return QString::number(value, 'g', 6); };
    return QStringLiteral("(%1, %2, %3)")
        .arg(number(place.x()), number(place.y()), number(place.z()));
}

} // namespace Ovra::GeoTool
