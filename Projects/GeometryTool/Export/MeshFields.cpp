#include "MeshFields.h"

#include "MeshEntity.h"
#include "ModelEntity.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

MeshFields::MeshFields(const std::vector<MeshEntity*>& entities, Source source)
    : entities_(entities)
{
    findParents();
    makeFields(source);
    countGiven();
}

const ColumnValue* MeshFields::valueOf(const Field& field, std::size_t entity,
                                       ColumnValue& own) const
{
    if (field.isOwn && entities_[entity]->attributes().contains(field.column.type())) {
        own = field.column.valueOf(
            entities_[entity]->attributes().value(field.column.type(), QVariant()));
        return &own;
    }
    return ofParent(field, entity);
}

void MeshFields::findParents()
{
    QHash<const ModelEntity*, int> places;
    parentOf_.reserve(entities_.size());
    for (std::size_t entity = 0; entity < entities_.size(); ++entity) {
        if (const ModelEntity* const parent = entities_[entity]->parent()) {
            countChild(parent, places);
        } else {
            parentOf_.push_back(-1);
        }
        if (!entities_[entity]->attributes().isEmpty()) {
            withOwn_.push_back(entity);
        }
    }
}

/// Neighbours in the list mostly stand on the same model entity.
void MeshFields::countChild(const ModelEntity* parent, QHash<const ModelEntity*, int>& places)
{
    int place = parentOf_.empty() ? -1 : parentOf_.back();
    if (place < 0 || parents_[static_cast<std::size_t>(place)] != parent) {
        place = places.value(parent, -1);
    }
    if (place < 0) {
        place = static_cast<int>(parents_.size());
        places.insert(parent, place);
        parents_.push_back(parent);
        childCounts_.push_back(0);
    }
    ++childCounts_[static_cast<std::size_t>(place)];
    parentOf_.push_back(place);
}

void MeshFields::makeFields(Source source)
{
    AttributeColumns columns;
    for (const std::size_t entity : withOwn_) {
        columns.include(entities_[entity]->attributes());
    }
    if (source == Source::MeshAndModel) {
        for (const ModelEntity* parent : parents_) {
            columns.include(parent->attributes());
        }
    }
    for (const AttributeColumn& column : columns.sorted()) {
        Field& field = fields_.emplace_back(column);
        for (const ModelEntity* parent : parents_) {
            const bool isGiven =
                source == Source::MeshAndModel && parent->attributes().contains(column.type());
            field.ofParents.push_back(
                isGiven ? std::optional(
                              column.valueOf(parent->attributes().value(column.type(), QVariant())))
                        : std::nullopt);
        }
    }
}

void MeshFields::countGiven()
{
    for (Field& field : fields_) {
        std::size_t given = 0;
        for (std::size_t parent = 0; parent < parents_.size(); ++parent) {
            given += field.ofParents[parent] ? childCounts_[parent] : 0;
        }
        for (const std::size_t entity : withOwn_) {
            if (entities_[entity]->attributes().contains(field.column.type())) {
                field.isOwn = true;
                given += ofParent(field, entity) ? 0U : 1U;
            }
        }
        field.isPartial = given < entities_.size();
    }
}

const ColumnValue* MeshFields::ofParent(const Field& field, std::size_t entity) const
{
    const int parent = parentOf_[entity];
    if (parent < 0 || !field.ofParents[static_cast<std::size_t>(parent)]) {
        return nullptr;
    }
    return &*field.ofParents[static_cast<std::size_t>(parent)];
}

} // namespace Ovra::GeoTool
