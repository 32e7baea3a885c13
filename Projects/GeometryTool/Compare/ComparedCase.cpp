#include "ComparedCase.h"

#include "MeanPlace.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

std::size_t slot(int index)
{
    return static_cast<std::size_t>(index);
}

/// Of the eight lists of a case, four for each owner.
std::size_t slot(EntityName::Owner owner, int dimension)
{
    return slot(owner == EntityName::Owner::Model ? dimension : dimension + 4);
}

template <typename Entity>
std::vector<int> idsOf(const std::vector<Entity*>& entities)
{
    std::vector<int> ids;
    ids.reserve(entities.size());
    for (const Entity* entity : entities) {
        ids.push_back(entity->id());
    }
    return ids;
}

} // namespace

ComparedCase::ComparedCase(const Database& database, CaseView::Part part)
    : view_(database, part)
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        ids_[slot(Owner::Model, dimension)] = idsOf(view_.modelEntities(dimension));
        ids_[slot(Owner::Mesh, dimension)] = idsOf(view_.meshEntities(dimension));
    }
}

const std::vector<int>& ComparedCase::ids(Owner owner, int dimension) const
{
    return ids_[slot(owner, dimension)];
}

int ComparedCase::id(Owner owner, int dimension, int position) const
{
    return ids(owner, dimension)[slot(position)];
}

int ComparedCase::position(Owner owner, int dimension, int id) const
{
    if (dimension < 0 || dimension > 3) {
        return -1;
    }
    std::optional<IdPositions>& positions = positions_[slot(owner, dimension)];
    if (!positions) {
        const std::vector<int>& all = ids(owner, dimension);
        positions.emplace(std::vector<std::int64_t>(all.begin(), all.end()));
    }
    return positions->find(id);
}

ModelEntity& ComparedCase::modelEntity(int dimension, int position) const
{
    return *view_.modelEntities(dimension)[slot(position)];
}

MeshEntity& ComparedCase::meshEntity(int dimension, int position) const
{
    return *view_.meshEntities(dimension)[slot(position)];
}

AttributeMap& ComparedCase::attributes(Owner owner, int dimension, int position) const
{
    return owner == Owner::Model ? modelEntity(dimension, position).attributes()
                                 : meshEntity(dimension, position).attributes();
}

std::optional<Vector> ComparedCase::placeOf(Owner owner, int dimension, int position) const
{
    return owner == Owner::Model ? modelEntity(dimension, position).centroid()
                                 : meanPlaceOf(meshEntity(dimension, position));
}

std::span<const int> ComparedCase::vertices(int dimension, int position) const
{
    return view_.vertexLists(dimension).of(slot(position));
}

const std::vector<EntityPosition>& ComparedCase::parents(int dimension) const
{
    std::optional<std::vector<EntityPosition>>& parents = parents_[slot(dimension)];
    if (!parents) {
        parents.emplace();
        parents->reserve(count(Owner::Mesh, dimension));
        const ModelEntity* last = nullptr; // entities of one parent mostly follow one another
        EntityPosition lastPosition;
        for (const MeshEntity* entity : view_.meshEntities(dimension)) {
            if (entity->parent() != last) {
                last = entity->parent();
                lastPosition = positionOf(last);
            }
            parents->push_back(lastPosition);
        }
    }
    return *parents;
}

std::vector<int> ComparedCase::neighbours(Owner owner, int dimension, int position,
                                          int neighbourDimension) const
{
    return owner == Owner::Model
               ? listed(modelEntity(dimension, position), owner, neighbourDimension)
               : listed(meshEntity(dimension, position), owner, neighbourDimension);
}

EntityPosition ComparedCase::positionOf(const ModelEntity* entity) const
{
    if (!entity) {
        return {};
    }
    return {entity->dimension(), position(Owner::Model, entity->dimension(), entity->id())};
}

template <typename Entity>
std::vector<int> ComparedCase::listed(const Entity& entity, Owner owner, int dimension) const
{
    std::vector<int> list;
    const int count = entity.adjacencyCount(dimension);
    list.reserve(slot(count));
    for (int i = 0; i < count; ++i) {
        list.push_back(position(owner, dimension, entity.adjacencyAt(dimension, i)->id()));
    }
    return list;
}

} // namespace Ovra::GeoTool
