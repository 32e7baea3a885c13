#include "EntityName.h"

#include "EntityNames.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

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
    const QString container =
        owner == Owner::Model ? QStringLiteral("model") : QStringLiteral("mesh");
    return dimension == Whole ? QStringLiteral("the ") + container
                              : nameOf(container, dimension, id);
}

QString placeText(const Geo::Vector& place)
{
    const auto number = [](double value) { return QString::number(value, 'g', 6); };
    return QStringLiteral("(%1, %2, %3)")
        .arg(number(place.x()), number(place.y()), number(place.z()));
}

} // namespace Ovra::GeoTool
