#pragma once

#include "CaseView.h"
#include "EntityName.h"
#include "IdPositions.h"

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace Ovra::Geo
{
class AttributeMap;
}

namespace Ovra::GeoTool
{

/// \brief An entity by its position among those of its dimension.
struct EntityPosition
{
    int dimension = 0;
    int position = -1; ///< -1 for none

    bool isNone() const { return position < 0; }
};

/// \brief One of the two cases that are compared, in flat lists by ascending ids.
///
/// It owns nothing and holds as long as no entity is added, removed or changed.
class ComparedCase
{
public:
    using Owner = EntityName::Owner;

    explicit ComparedCase(const Geo::Database& database,
                          CaseView::Part part = CaseView::Part::Case);

    const CaseView& view() const { return view_; }

    std::size_t count(Owner owner, int dimension) const { return ids(owner, dimension).size(); }
    const std::vector<int>& ids(Owner owner, int dimension) const;
    int id(Owner owner, int dimension, int position) const;

    /// \brief The position of an entity; -1 if there is none of that id, or no such dimension.
    int position(Owner owner, int dimension, int id) const;

    Geo::ModelEntity& modelEntity(int dimension, int position) const;
    Geo::MeshEntity& meshEntity(int dimension, int position) const;
    Geo::AttributeMap& attributes(Owner owner, int dimension, int position) const;

    /// \brief Mean of the vertices of a mesh entity, none without any; stored centroid of one of the model.
    std::optional<Geo::Vector> placeOf(Owner owner, int dimension, int position) const;

    /// \brief The vertices of a mesh entity by their positions, in its order.
    std::span<const int> vertices(int dimension, int position) const;

    /// \brief What the mesh entities of \p dimension stand on, made at the first call.
    const std::vector<EntityPosition>& parents(int dimension) const;

    /// \brief The neighbours of \p neighbourDimension that an entity lists, by their positions, in
    ///        the order of its list.
    std::vector<int> neighbours(Owner owner, int dimension, int position,
                                int neighbourDimension) const;

private:
    EntityPosition positionOf(const Geo::ModelEntity* entity) const;

    template <typename Entity>
    std::vector<int> listed(const Entity& entity, Owner owner, int dimension) const;

    CaseView view_;
    std::array<std::vector<int>, 8> ids_;
    mutable std::array<std::optional<IdPositions>, 8> positions_;
    mutable std::array<std::optional<std::vector<EntityPosition>>, 4> parents_;
};

} // namespace Ovra::GeoTool
