#pragma once

#include "AttributeColumn.h"

#include <QHash>

#include <cstddef>
#include <optional>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief The attributes of all mesh entities of one dimension as columns, for whatever choice of
/// them is asked for: every part of a mesh has the same columns.
class MeshFields
{
public:
    enum class Source
    {
        Mesh,        ///< their own attributes
        MeshAndModel ///< and, where they lack one, that of the model entity that they stand on
    };

    struct Field
    {
        explicit Field(const AttributeColumn& ofColumn)
            : column(ofColumn)
        {
        }

        AttributeColumn column;
        bool isPartial = false; ///< some entity has neither its own nor its model entity's
        bool isOwn = false;     ///< some entity has its own
        std::vector<std::optional<ColumnValue>> ofParents;
    };

    /// \param entities must outlive this
    MeshFields(const std::vector<Geo::MeshEntity*>& entities, Source source);

    const std::vector<Field>& fields() const { return fields_; }

    /// \brief The model entity that the entity at that position stands on, or null.
    const Geo::ModelEntity* parentOf(std::size_t entity) const
    {
        const int parent = parentOf_[entity];
        return parent < 0 ? nullptr : parents_[static_cast<std::size_t>(parent)];
    }

    /// \brief The value of \p field for the entity at that position; null if it has none.
    /// \param own where a value of the entity itself is put
    const ColumnValue* valueOf(const Field& field, std::size_t entity, ColumnValue& own) const;

private:
    void findParents();
    void countChild(const Geo::ModelEntity* parent, QHash<const Geo::ModelEntity*, int>& places);
    void makeFields(Source source);
    void countGiven();
    const ColumnValue* ofParent(const Field& field, std::size_t entity) const;

    const std::vector<Geo::MeshEntity*>& entities_;
    std::vector<const Geo::ModelEntity*> parents_; ///< distinct ones, as they are met
    std::vector<int> parentOf_;                    ///< by entity; -1 for none
    std::vector<std::size_t> childCounts_;         ///< by parent
    std::vector<std::size_t> withOwn_;             ///< entities that have attributes themselves
    std::vector<Field> fields_;
};

} // namespace Ovra::GeoTool
