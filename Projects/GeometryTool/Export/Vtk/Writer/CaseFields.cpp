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

/// \param entityAt gives the position among \p entities, those that \p fields are of
template <typename EntityAt>
void addIds(FieldArrays& arrays, const std::vector<MeshEntity*>& entities, const MeshFields& fields,
            const EntityAt& entityAt)
{
    arrays.addIntegers(QStringLiteral("mesh_id"),
                       [&](std::size_t i) { return entities[entityAt(i)]->id(); });
    arrays.addIntegers(QStringLiteral("model_id"), [&](std::size_t i) {
        const ModelEntity* const parent = fields.parentOf(entityAt(i));
        return parent ? parent->id() : 0;
    });
    arrays.addIntegers(QStringLiteral("model_dimension"), [&](std::size_t i) {
        const ModelEntity* const parent = fields.parentOf(entityAt(i));
        return parent ? parent->dimension() : -1;
    });
}

void addNames(FieldArrays& arrays, const MeshFields& fields, const std::vector<std::size_t>& cells)
{
    const ModelEntity* last = nullptr; // neighbours mostly stand on the same
    std::string name;
    arrays.addTexts(QStringLiteral("model_name"), [&](std::size_t i) {
        const ModelEntity* const parent = fields.parentOf(cells[i]);
        if (parent != last) {
            last = parent;
            name = parent ? parent->name().toStdString() : std::string();
        }
        return name;
    });
}

void addQuality(FieldArrays& arrays, const CaseView& view, int dimension,
                const std::vector<std::size_t>& cells)
{
    std::vector<ElementQuality> qualities;
    qualities.reserve(cells.size());
    for (const std::size_t cell : cells) {
        qualities.emplace_back(view, dimension, cell);
    }
    arrays.addReals(QLatin1String(measureNames[static_cast<std::size_t>(dimension)]),
                    [&](std::size_t i) { return qualities[i].measure; });
    if (dimension > 1) {
        arrays.addReals(QStringLiteral("aspect"),
                        [&](std::size_t i) { return qualities[i].aspect; });
    }
    arrays.addBytes(QStringLiteral("quality"),
                    [&](std::size_t i) { return static_cast<int>(qualities[i].state); });
}

void addAttributes(FieldArrays& arrays, const MeshFields& fields,
                   const std::function<std::size_t(std::size_t)>& entityAt)
{
    ColumnValue own;
    for (const MeshFields::Field& field : fields.fields()) {
        arrays.addColumn(field.column.type().toString(), field.column, field.isPartial,
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
                         false, [&](std::size_t) { return &value; });
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
    addIds(arrays, view_.meshEntities(dimension), fields, cellAt);
    addNames(arrays, fields, cells);
    addQuality(arrays, view_, dimension, cells);
    for (const TwinSides::Relation& relation : sides_.relations()) {
        arrays.addBytes(relation.name, [&](std::size_t i) {
            return sides_.of(relation, fields.parentOf(cells[i]), dimension, cells[i]);
        });
    }
    addAttributes(arrays, fields, cellAt);
}

void CaseFields::addPointData(vtkFieldData& data, const std::vector<int>& vertices)
{
    const MeshFields& fields = fieldsOf(0);
    const auto vertexAt = [&](std::size_t i) { return static_cast<std::size_t>(vertices[i]); };
    FieldArrays arrays(data, vertices.size());
    addIds(arrays, view_.meshEntities(0), fields, vertexAt);
    for (const TwinSides::Relation& relation : sides_.relations()) {
        arrays.addBytes(relation.name,
                        [&](std::size_t i) { return relation.ofVertices[vertexAt(i)]; });
    }
    addAttributes(arrays, fields, vertexAt);
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
        arrays.addColumn(kind + column.type().toString(), column, true, [&](std::size_t i) {
            const AttributeMap& attributes = entities[i]->attributes();
            if (!attributes.contains(column.type())) {
                return static_cast<const ColumnValue*>(nullptr);
            }
            value = column.valueOf(attributes.value(column.type(), QVariant()));
            return static_cast<const ColumnValue*>(&value);
        });
    }
}

} // namespace Ovra::GeoTool
