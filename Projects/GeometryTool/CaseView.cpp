#include "CaseView.h"

#include "Database.h"
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
    entities.reserve(slot(container.count(dimension)));
    auto walk = container.iterator(dimension);
    while (walk.hasNext()) {
        walk.next();
        entities.push_back(walk.value());
    }
    std::sort(entities.begin(), entities.end(), Entity::lessThan);
    return entities;
}

} // namespace

CaseView::CaseView(const Database& database)
    : model_(database.model())
    , mesh_(database.mesh())
    , faceDimension_(model_->faceDimension())
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        modelEntities_[slot(dimension)] = sortedEntities<ModelEntity>(*model_, dimension);
        meshEntities_[slot(dimension)] = sortedEntities<MeshEntity>(*mesh_, dimension);
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

std::vector<MeshEntity*> CaseView::childrenOf(const ModelEntity& entity)
{
    std::vector<MeshEntity*> children;
    auto walk = entity.childIterator();
    while (walk.hasNext()) {
        walk.next();
        children.push_back(walk.value());
    }
    std::sort(children.begin(), children.end(), MeshEntity::lessThan);
    return children;
}

std::vector<MeshEntity*> CaseView::verticesOn(const ModelEntity& entity)
{
    const QSet<MeshEntity*> set = Utility::getMeshVerticesOnModelEntity(&entity);
    std::vector<MeshEntity*> vertices(set.begin(), set.end());
    std::sort(vertices.begin(), vertices.end(), MeshEntity::lessThan);
    return vertices;
}

} // namespace Ovra::GeoTool
