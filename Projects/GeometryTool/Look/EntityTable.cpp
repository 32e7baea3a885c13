#include "EntityTable.h"

#include "AdjacentIds.h"
#include "AttributeText.h"
#include "CaseSummary.h"
#include "CaseView.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QJsonObject>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

QJsonValue orNull(const QVariant& value)
{
    return value.isValid() ? QJsonValue(attributeText(value)) : QJsonValue(QJsonValue::Null);
}

QJsonArray attributesJson(const AttributeMap& attributes)
{
    QJsonArray array;
    for (const AttributeType& type : attributes.types()) {
        const QString tag = type.isValid() ? type.toString() : QStringLiteral("(unknown)");
        array.append(QJsonArray{tag, attributeText(attributes.value(type, {}))});
    }
    return array;
}

QJsonArray boundsJson(const ModelEntity& entity, int bodyDimension)
{
    return entity.dimension() < bodyDimension ? adjacentIdsJson(entity, bodyDimension)
                                              : QJsonArray();
}

double measureOf(const ModelEntity& entity, const CaseSummary& summary)
{
    for (const auto& [dimension, quality] : summary.quality) {
        if (dimension == entity.dimension()) {
            return quality.totalOn(&entity);
        }
    }
    return 0.0;
}

QJsonObject entityJson(const ModelEntity& entity, int bodyDimension, const CaseSummary& summary)
{
    const AttributeMap& attributes = entity.attributes();
    return {{"dimension", entity.dimension()},
            {"id", entity.id()},
            {"name", entity.name()},
            {"tag", entity.tag()},
            {"materialType", orNull(attributes.value(AttributeType::MaterialType, {}))},
            {"materialId", orNull(attributes.value(AttributeType::MaterialId, {}))},
            {"elements", entity.childCount()},
            {"measure", measureOf(entity, summary)},
            {"bounds", boundsJson(entity, bodyDimension)},
            {"attributes", attributesJson(attributes)}};
}

QJsonArray tableOf(int dimension, const CaseView& view, const CaseSummary& summary)
{
    QJsonArray table;
    for (const ModelEntity* entity : view.modelEntities(dimension)) {
        table.append(entityJson(*entity, view.elementDimension(), summary));
    }
    return table;
}

} // namespace

std::vector<int> listedDimensions(const Model& model)
{
    constexpr int mostEdges = 20000;
    const int faces = model.faceDimension();
    const bool isLong = faces == 1 && model.count(faces) > mostEdges;
    return isLong ? std::vector<int>{faces + 1} : std::vector<int>{faces + 1, faces};
}

QJsonArray bodyTable(const CaseView& view, const CaseSummary& summary)
{
    return tableOf(listedDimensions(view.model()).front(), view, summary);
}

QJsonArray boundaryTable(const CaseView& view, const CaseSummary& summary)
{
    const std::vector<int> dimensions = listedDimensions(view.model());
    return dimensions.size() > 1 ? tableOf(dimensions[1], view, summary) : QJsonArray();
}

} // namespace Ovra::GeoTool
