#include "CaseFields.h"

#include "CaseView.h"
#include "ElementQuality.h"
#include "EntityNames.h"
#include "FieldArrays.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <vtkCellData.h>
#include <vtkDataSet.h>
#include <vtkPointData.h>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr std::array<const char*, 4> measureNames = {"", "length", "area", "volume"};

/// \param entityAt gives the position among the entities that \p fields are of
/// \return the places from each of which to the next all stand on the same model entity
template <typename EntityAt>
FieldArrays::Runs runsOf(const MeshFields& fields, std::size_t size, const EntityAt& entityAt)
{
    FieldArrays::Runs runs;
    for (std::size_t i = 0; i < size; ++i) {
        if (i == 0 || fields.parentOf(entityAt(i)) != fields.parentOf(entityAt(i - 1))) {
            runs.push_back(i);
        }
    }
    return runs;
}

template <typename EntityAt>
void addIds(FieldArrays& arrays, const std::vector<MeshEntity*>& entities, const MeshFields& fields,
            const FieldArrays::Runs& runs, const EntityAt& entityAt)
{
    arrays.addIntegers(QStringLiteral("mesh_id"),
                       [&](std::size_t i) { return entities[entityAt(i)]->id(); });
    arrays.addIntegers(QStringLiteral("model_id"), runs, [&](std::size_t i) {
        const ModelEntity* const parent = fields.parentOf(entityAt(i));
        return parent ? parent->id() : 0;
    });
    arrays.addIntegers(QStringLiteral("model_dimension"), runs, [&](std::size_t i) {
        const ModelEntity* const parent = fields.parentOf(entityAt(i));
        return parent ? parent->dimension() : -1;
    });
}

void addNames(FieldArrays& arrays, const MeshFields& fields, const FieldArrays::Runs& runs,
              const std::vector<std::size_t>& cells)
{
    arrays.addTexts(QStringLiteral("model_name"), runs, [&](std::size_t i) {
        const ModelEntity* const parent = fields.parentOf(cells[i]);
        return parent ? parent->name().toStdString() : std::string();
    });
}

void addQuality(FieldArrays& arrays, const CaseView& view, int dimension,
                const std::vector<std::size_t>& cells)
{
    const std::vector<ElementQuality> qualities = ElementQuality::ofMany(
        view, dimension, cells.size(), [&cells](std::size_t i) { return cells[i]; });
    arrays.addReals(QLatin1String(measureNames[static_cast<std::size_t>(dimension)]),
                    [&](std::size_t i) { return qualities[i].measure; });
    if (dimension > 1) {
        arrays.addReals(QStringLiteral("aspect"),
                        [&](std::size_t i) { return qualities[i].aspect; });
    }
    arrays.addBytes(QStringLiteral("quality"),
                    [&](std::size_t i) { return static_cast<int>(qualities[i].state); });
}

void addAttributes(FieldArrays& arrays, const MeshFields& fields, const FieldArrays::Runs& runs,
                   const std::function<std::size_t(std::size_t)>& entityAt)
{
    ColumnValue own;
    for (const MeshFields::Field& field : fields.fields()) {
        arrays.addColumn(field.column.type().toString(), field.column, field.isPartial,
                         field.isOwn ? arrays.places() : runs,
                         [&](std::size_t i) { return fields.valueOf(field, entityAt(i), own); });
    }
}

/// The attributes of the model or the mesh as a whole, a row of one.
void addOwnAttributes(vtkFieldData& data, const QString& owner, const AttributeMap& attributes)
{
    FieldArrays arrays(data, 1);
    AttributeColumns columns;
    columns.include(attributes);
    for (const AttributeColumn& column : columns.sorted()) {
        const ColumnValue value = column.valueOf(attributes.value(column.type(), QVariant()));
        arrays.addColumn(QStringLiteral("%1_%2").arg(owner, column.type().toString()), column,
                         false, arrays.places(), [&](std::size_t) { return &value; });
    }
}

} // namespace

CaseFields::CaseFields(const CaseView& view)
    : view_(view)
    , sides_(view)
{
}

void CaseFields::addTo(vtkDataSet& dataSet, int dimension, const std::vector<std::size_t>& cells,
                       const std::vector<int>& vertices)
{
    addCellData(*dataSet.GetCellData(), dimension, cells);
    addPointData(*dataSet.GetPointData(), vertices);
}

void CaseFields::addTo(vtkFieldData& data, const std::vector<ModelEntity*>& entities)
{
    addOwnAttributes(data, QStringLiteral("model"), view_.model().attributes());
    addOwnAttributes(data, QStringLiteral("mesh"), view_.mesh().attributes());
    addModelTable(data, entities);
}

MeshFields& CaseFields::fieldsOf(int dimension)
{
    std::optional<MeshFields>& fields = fields_.at(static_cast<std::size_t>(dimension));
    if (!fields) {
        fields.emplace(view_.meshEntities(dimension), dimension == 0
                                                          ? MeshFields::Source::Mesh
                                                          : MeshFields::Source::MeshAndModel);
    }
    return *fields;
}

void CaseFields::addCellData(vtkFieldData& data, int dimension,
                             const std::vector<std::size_t>& cells)
{
    const MeshFields& fields = fieldsOf(dimension);
    const auto cellAt = [&](std::size_t i) { return cells[i]; };
    FieldArrays arrays(data, cells.size());
    const FieldArrays::Runs runs = runsOf(fields, cells.size(), cellAt);
    addIds(arrays, view_.meshEntities(dimension), fields, runs, cellAt);
    addNames(arrays, fields, runs, cells);
    addQuality(arrays, view_, dimension, cells);
    for (const TwinSides::Relation& relation : sides_.relations()) {
        arrays.addBytes(relation.name, [&](std::size_t i) {
            return sides_.of(relation, fields.parentOf(cells[i]), dimension, cells[i]);
        });
    }
    addAttributes(arrays, fields, runs, cellAt);
}

void CaseFields::addPointData(vtkFieldData& data, const std::vector<int>& vertices)
{
    const MeshFields& fields = fieldsOf(0);
    const auto vertexAt = [&](std::size_t i) { return static_cast<std::size_t>(vertices[i]); };
    FieldArrays arrays(data, vertices.size());
    const FieldArrays::Runs runs = runsOf(fields, vertices.size(), vertexAt);
    addIds(arrays, view_.meshEntities(0), fields, runs, vertexAt);
    for (const TwinSides::Relation& relation : sides_.relations()) {
        arrays.addBytes(relation.name,
                        [&](std::size_t i) { return relation.ofVertices[vertexAt(i)]; });
    }
    addAttributes(arrays, fields, runs, vertexAt);
}

void CaseFields::addModelTable(vtkFieldData& data, const std::vector<ModelEntity*>& entities)
{
    if (entities.empty()) {
        return;
    }
    const QString kind = kindName(entities.front()->dimension()) + QLatin1Char('_');
    FieldArrays arrays(data, entities.size());
    arrays.addIntegers(kind + QStringLiteral("id"),
                       [&](std::size_t i) { return entities[i]->id(); });
    arrays.addTexts(kind + QStringLiteral("name"),
                    [&](std::size_t i) { return entities[i]->name().toStdString(); });
    arrays.addTexts(kind + QStringLiteral("tag"),
                    [&](std::size_t i) { return entities[i]->tag().toStdString(); });
    AttributeColumns columns;
    for (const ModelEntity* entity : entities) {
        columns.include(entity->attributes());
    }
    for (const AttributeColumn& column : columns.sorted()) {
        ColumnValue value;
        const auto valueOf = [&](std::size_t i) -> const ColumnValue* {
            const AttributeMap& attributes = entities[i]->attributes();
            if (!attributes.contains(column.type())) {
                return nullptr;
            }
            value = column.valueOf(attributes.value(column.type(), QVariant()));
            return &value;
        };
        arrays.addColumn(kind + column.type().toString(), column, true, arrays.places(), valueOf);
    }
}

} // namespace Ovra::GeoTool
