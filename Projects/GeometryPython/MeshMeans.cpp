#include "MeshMeans.h"

#include "MeshEntity.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelFace.h"

#include <vector>

namespace Ovra::GeoPython
{

using namespace Ovra::Geo;

namespace
{

void copySize(const ModelEdge& from, ModelEdge& to)
{
    to.setLength(from.length());
}

void copySize(const ModelFace& from, ModelFace& to)
{
    to.setArea(from.area());
}

void copyLinks(const ModelEntity& from, ModelEntity& to)
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (auto walk = from.adjacencyIterator(dimension); walk.hasNext();) {
            to.addAdjacency(walk.next());
        }
    }
}

/// Without children, and without what is kept of them.
template <typename Entity>
Entity childlessCopy(const Entity& entity)
{
    Entity copy;
    copy.setId(entity.id());
    copy.setTag(entity.tag());
    copy.setName(entity.name());
    copy.attributes() = entity.attributes();
    copyLinks(entity, copy);
    copy.setBoundingBox(entity.boundingBox());
    copy.setCentroid(entity.centroid());
    copy.setNormal(entity.normal());
    copy.setPlanar(entity.isPlanar());
    copySize(entity, copy);
    return copy;
}

std::vector<MeshEntity*> childrenOf(const ModelEntity& entity)
{
    std::vector<MeshEntity*> children;
    children.reserve(static_cast<std::size_t>(entity.childCount()));
    for (auto walk = entity.childIterator(); walk.hasNext();) {
        children.push_back(walk.next().value());
    }
    return children;
}

template <typename Entity>
void forgetIn(Entity& entity)
{
    const std::vector<MeshEntity*> children = childrenOf(entity);
    entity = childlessCopy(entity);
    for (MeshEntity* const child : children) {
        entity.addChild(child);
    }
}

template <typename Entity>
void forgetInAll(const Model& model, int dimension)
{
    for (auto walk = model.iterator(dimension); walk.hasNext();) {
        forgetIn(static_cast<Entity&>(*walk.next().value()));
    }
}

} // namespace

void MeshMeans::forget(const Model& model)
{
    forgetInAll<ModelEdge>(model, 1);
    forgetInAll<ModelFace>(model, 2);
}

} // namespace Ovra::GeoPython
