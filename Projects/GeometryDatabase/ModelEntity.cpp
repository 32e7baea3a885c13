#include "ModelEntity.h"

#include "AdjacencyList.h"
#include "IdOrder.h"
#include "MeshEntity.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ModelVertex.h"
#include "Utility.h"

#include <QSet>

#include <utility>

namespace Ovra::Geo
{

ModelEntity* ModelEntity::create(int dimension)
{
    switch (dimension) {
    case 0:
        return new ModelVertex;
    case 1:
        return new ModelEdge;
    case 2:
        return new ModelFace;
    case 3:
        return new ModelRegion;
    default:
        return nullptr;
    }
}

bool ModelEntity::lessThan(ModelEntity* a, ModelEntity* b)
{
    return *a < *b;
}

ModelEntity::~ModelEntity() = default;

void ModelEntity::addAdjacency(ModelEntity* entity)
{
    adjacencies(entity->dimension()).append(entity);
}

void ModelEntity::removeAdjacency(ModelEntity* entity)
{
    adjacencies(entity->dimension()).removeOne(entity);
}

bool ModelEntity::replaceAdjacency(ModelEntity* oldEntity, ModelEntity* newEntity)
{
    return replaceFirst(adjacencies(oldEntity->dimension()), oldEntity, newEntity);
}

bool ModelEntity::isAdjacentTo(ModelEntity* entity) const
{
    return adjacencies(entity->dimension()).contains(entity);
}

int ModelEntity::adjacencyCount(int dimension) const
{
    return static_cast<int>(adjacencies(dimension).size());
}

ModelEntity* ModelEntity::adjacencyAt(int dimension, int index) const
{
    return adjacencies(dimension).value(index, nullptr);
}

QListIterator<ModelEntity*> ModelEntity::adjacencyIterator(int dimension) const
{
    return QListIterator<ModelEntity*>(adjacencies(dimension));
}

void ModelEntity::addChild(MeshEntity* child)
{
    if (child->parent() != nullptr) {
        child->parent()->removeChild(child);
    }
    child->setParent(this);
    if (child->dimension() == dimension()) {
        children_.insert(child->id(), child);
    }
}

void ModelEntity::removeChild(MeshEntity* child)
{
    if (child->dimension() == dimension()) {
        children_.remove(child->id());
    }
    child->setParent(nullptr);
}

void ModelEntity::removeAllChildren()
{
    for (auto children = childIterator(); children.hasNext();) {
        delete children.next().value();
    }
    // What a renumbering has left under old ids, where the destructors do not look.
    children_ = {};
}

HashIterator<int, MeshEntity*> ModelEntity::childIterator() const
{
    return HashIterator<int, MeshEntity*>(children_);
}

bool ModelEntity::operator==(const ModelEntity& other) const
{
    return id_ == other.id_ && dimension() == other.dimension();
}

bool ModelEntity::operator!=(const ModelEntity& other) const
{
    return !(*this == other);
}

bool ModelEntity::operator<(const ModelEntity& other) const
{
    return id_ < other.id_;
}

Vector ModelEntity::childMean(Vector (MeshEntity::*quantity)() const) const
{
    Vector sum;
    for (auto children = childIterator(); children.hasNext();) {
        sum += (children.next().value()->*quantity)();
    }
    return sum / childCount();
}

Vector ModelEntity::meshVertexMean() const
{
    const QList<MeshEntity*> vertices = inIdOrder(Utility::getMeshVerticesOnModelEntity(this));
    Vector sum;
    for (const MeshEntity* vertex : vertices) {
        sum += vertex->centroid();
    }
    return sum / static_cast<double>(vertices.size());
}

} // namespace Ovra::Geo
