#include "CaseView.h"

#include "Database.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

std::size_t slot(int dimension)
{
    return static_cast<std::size_t>(dimension);
}

template <typename Entity, typename Container>
std::vector<Entity*> sortedEntities(const Container& container, int dimension)
{
    std::vector<Entity*> entities;
    entities.reserve(static_cast<std::size_t>(container.count(dimension)));
    for (auto walk = container.iterator(dimension); walk.hasNext();) {
        entities.push_back(walk.next().value());
    }
    // In memory an entity may stand under another id than its own.
    if (!std::is_sorted(entities.begin(), entities.end(), Entity::lessThan)) {
        std::sort(entities.begin(), entities.end(), Entity::lessThan);
    }
    return entities;
}

} // namespace

CaseView::CaseView(const Database& database, Part part)
    : model_(database.model())
    , mesh_(database.mesh())
    , faceDimension_(model_->faceDimension())
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        modelEntities_[slot(dimension)] = sortedEntities<ModelEntity>(*model_, dimension);
        if (part == Part::Case) {
            meshEntities_[slot(dimension)] = sortedEntities<MeshEntity>(*mesh_, dimension);
        }
    }
}

const std::vector<ModelEntity*>& CaseView::modelEntities(int dimension) const
{
    return modelEntities_.at(slot(dimension));
}

const std::vector<MeshEntity*>& CaseView::meshEntities(int dimension) const
{
    return meshEntities_.at(slot(dimension));
}

const std::vector<int>& CaseView::ids(int dimension) const
{
    std::optional<std::vector<int>>& ids = ids_.at(slot(dimension));
    if (!ids) {
        ids.emplace();
        ids->reserve(meshEntities(dimension).size());
        for (const MeshEntity* entity : meshEntities(dimension)) {
            ids->push_back(entity->id());
        }
    }
    return *ids;
}

const IdPositions& CaseView::positions(int dimension) const
{
    std::optional<IdPositions>& positions = positions_.at(slot(dimension));
    if (!positions) {
        positions = positionsOf(meshEntities(dimension));
    }
    return *positions;
}

const VertexLists& CaseView::vertexLists(int dimension) const
{
    std::optional<VertexLists>& lists = vertexLists_.at(slot(dimension));
    if (!lists) {
        lists.emplace(meshEntities(dimension), positions(0));
    }
    return *lists;
}

const UpwardPositions& CaseView::upward(int dimension) const
{
    std::optional<UpwardPositions>& upward = upward_.at(slot(dimension));
    if (!upward) {
        upward.emplace(*this, dimension);
    }
    return *upward;
}

const MeshQuality& CaseView::quality(int dimension, Progress& progress) const
{
    std::optional<MeshQuality>& quality = qualities_.at(slot(dimension));
    if (!quality) {
        quality.emplace(*this, dimension, progress);
    }
    return *quality;
}

const std::vector<Vector>& CaseView::points() const
{
    if (!points_) {
        points_.emplace();
        points_->reserve(meshEntities(0).size());
        for (const MeshEntity* vertex : meshEntities(0)) {
            points_->push_back(vertex->centroid());
        }
    }
    return *points_;
}

std::vector<MeshEntity*> CaseView::childrenOf(const ModelEntity& entity)
{
    const QList<MeshEntity*> children = inIdOrder(entity.childIterator());
    return {children.begin(), children.end()};
}

std::vector<MeshEntity*> CaseView::verticesOn(const ModelEntity& entity)
{
    const QSet<MeshEntity*> set = Utility::getMeshVerticesOnModelEntity(&entity);
    std::vector<MeshEntity*> vertices(set.begin(), set.end());
    std::sort(vertices.begin(), vertices.end(), MeshEntity::lessThan);
    return vertices;
}

} // namespace Ovra::GeoTool
