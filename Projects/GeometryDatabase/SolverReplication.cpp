#include "AttributeType.h"
#include "Database.h"
#include "IdOrder.h"
#include "MaterialKind.h"
#include "Mesh.h"
#include "MeshDuplication.h"
#include "MeshEntity.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Solver.h"
#include "Utility.h"

#include <QDebug>
#include <QSet>
#include <QVariant>

#include <algorithm>

namespace Ovra::Geo
{

namespace
{

bool isMoving(const ModelEntity* region)
{
    return region->attributes().contains(AttributeType::MotionType);
}

void addFace(Model* model, ModelEntity* region)
{
    // Not the dimension of what stands in the list, or the new faces would not all be in one list.
    ModelEntity* newFace = ModelEntity::create(model->faceDimension());
    model->add(newFace);
    region->addAdjacency(newFace);
    newFace->addAdjacency(region);
}

ModelEntity* addRegionLike(Model* model, const ModelEntity* region)
{
    ModelEntity* newRegion = ModelEntity::create(model->faceDimension() + 1);
    model->add(newRegion);
    auto faces = region->adjacencyIterator(model->faceDimension());
    while (faces.hasNext()) {
        faces.next();
        addFace(model, newRegion);
    }
    return newRegion;
}

void linkRegions(ModelEntity* region, ModelEntity* newRegion)
{
    region->attributes().insert(AttributeType::NewMotionRegion, newRegion->id());
    newRegion->attributes().insert(AttributeType::OriginalMotionRegion, region->id());
}

void handOverMotion(ModelEntity* region, ModelEntity* newRegion)
{
    for (const AttributeType& type : {AttributeType::MaterialType, AttributeType::MaterialId,
                                      AttributeType::MotionType, AttributeType::MeshSize}) {
        Utility::copyAttribute(region, newRegion, type);
    }
}

void becomeFluid(ModelEntity* region, ModelEntity* fluid)
{
    Utility::copyAttribute(fluid, region, AttributeType::MaterialType);
    Utility::copyAttribute(fluid, region, AttributeType::MaterialId);
    region->attributes().insert(AttributeType::FluidRegion, fluid->id());
    region->attributes().remove(AttributeType::MotionType);
}

} // namespace

void Solver::replicateMovingRegions()
{
    Model* model = database_->model();
    const QList<ModelEntity*> regions = inIdOrder(model->iterator(model->faceDimension() + 1));
    for (ModelEntity* region : regions) {
        if (!shouldReplicate(region)) {
            continue;
        }
        qDebug().noquote() << QStringLiteral("Replicate region %1").arg(region->id());
        replicateMovingRegion(region);
    }
}

bool Solver::shouldReplicate(ModelEntity* region) const
{
    if (!isMoving(region)) {
        return false;
    }
    const QSet<ModelEntity*> neighbours = Utility::getAdjacentRegions(region, database_->model());
    // Plain fluid alone: a device that the fluid flows through is not swept.
    return std::any_of(neighbours.cbegin(), neighbours.cend(), [](const ModelEntity* other) {
        return materialKind(other) == QLatin1String("fluid") || isMoving(other);
    });
}

void Solver::replicateMovingRegion(ModelEntity* region)
{
    Model* model = database_->model();
    ModelEntity* newRegion = addRegionLike(model, region);
    linkRegions(region, newRegion);
    handOverMotion(region, newRegion);
    becomeFluid(region, Utility::getAdjacentFluidRegion(region, model));

    // A vertex between two moving regions needs a copy in each.
    vertexMap_.clear();
    // The mesh faces find their elements through the copies of the vertices, so elements go first.
    replicateMesh(region, newRegion);
    auto faces = region->adjacencyIterator(model->faceDimension());
    auto newFaces = newRegion->adjacencyIterator(model->faceDimension());
    while (faces.hasNext()) {
        replicateMesh(faces.next(), newFaces.next());
    }
}

void Solver::replicateMesh(ModelEntity* oldEntity, ModelEntity* newEntity)
{
    const QList<MeshEntity*> children = inIdOrder(oldEntity->childIterator());
    for (MeshEntity* child : children) {
        MeshEntity* copy = MeshDuplication::addEntityCopy(
            database_->mesh(), child, newEntity,
            [this](MeshVertex* vertex) { return addReplicatedVertex(vertex); });
        copy->setUpwardAdjacencies();
    }
}

MeshVertex* Solver::addReplicatedVertex(MeshVertex* vertex)
{
    if (MeshVertex* copy = vertexMap_.copyOf(vertex)) {
        return copy;
    }

    MeshVertex* copy = MeshDuplication::addVertexCopy(database_->mesh(), vertex);
    vertexMap_.insert(vertex, copy);
    if (!vertex->attributes().contains(AttributeType::NewMotionVertex)) {
        vertex->attributes().insert(AttributeType::NewMotionVertex, copy->id());
    }
    copy->attributes().insert(AttributeType::OriginalMotionVertex, vertex->id());
    return copy;
}

} // namespace Ovra::Geo
