#include "AttributeType.h"
#include "Database.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshDuplication.h"
#include "MeshEntity.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Solver.h"
#include "Utility.h"

#include <QSet>
#include <QVariant>

namespace Ovra::Geo
{

namespace
{

bool touchesAny(const ModelEntity* face, const QSet<ModelEntity*>& regions, int regionDimension)
{
    auto own = face->adjacencyIterator(regionDimension);
    while (own.hasNext()) {
        if (regions.contains(own.next())) {
            return true;
        }
    }
    return false;
}

QSet<ModelEntity*> adjacentMeshedFluidRegions(ModelEntity* device, Model* model)
{
    QSet<ModelEntity*> regions = Utility::getAdjacentRegions(device, model);
    regions.removeIf(
        [](ModelEntity* region) { return !Utility::isFluid(region) || region->childCount() == 0; });
    return regions;
}

} // namespace

void Solver::addPeripheralFaces()
{
    Model* model = database_->model();
    const QList<ModelEntity*> regions = inIdOrder(model->iterator(model->faceDimension() + 1));
    for (ModelEntity* region : regions) {
        if (isRotatingDevice(region)) {
            addPeripheralFaces(region);
        }
    }
}

void Solver::addPeripheralFaces(ModelEntity* device)
{
    vertexMap_.clear();
    Model* model = database_->model();
    const QList<ModelEntity*> faces = getPeripheralFaces(device);
    for (ModelEntity* face : faces) {
        ModelEntity* newFace = ModelEntity::create(model->faceDimension());
        model->add(newFace);
        ModelEntity* otherRegion = Utility::getOtherAdjacentRegion(face, device);
        face->attributes().insert(AttributeType::StatorFace, newFace->id());
        newFace->attributes().insert(AttributeType::RotorFace, face->id());
        Utility::replaceAdjacencies(otherRegion, face, newFace);
        splitPeripheralMesh(face, newFace, device, otherRegion);
    }
    breakRotorStatorVertexAdjacencies();
}

QList<ModelEntity*> Solver::getPeripheralFaces(ModelEntity* device)
{
    const QSet<ModelEntity*> regions = adjacentMeshedFluidRegions(device, database_->model());
    QList<ModelEntity*> peripheralFaces;
    auto faces = device->adjacencyIterator(device->dimension() - 1);
    while (faces.hasNext()) {
        ModelEntity* face = faces.next();
        if (!peripheralFaces.contains(face) && touchesAny(face, regions, device->dimension())) {
            peripheralFaces.append(face);
        }
    }
    return peripheralFaces;
}

void Solver::splitPeripheralMesh(ModelEntity* oldFace, ModelEntity* newFace, ModelEntity* device,
                                 ModelEntity* /*otherRegion*/)
{
    const QList<MeshEntity*> meshFaces = inIdOrder(oldFace->childIterator());
    for (MeshEntity* meshFace : meshFaces) {
        MeshEntity* element = MeshDuplication::lastElementOutside(meshFace, device);
        MeshEntity* newMeshFace = MeshDuplication::addEntityCopy(
            database_->mesh(), meshFace, newFace,
            [this](MeshVertex* vertex) { return addPeripheralVertex(vertex); });
        Utility::replaceAdjacencies(element, meshFace, newMeshFace);
    }
}

MeshVertex* Solver::addPeripheralVertex(MeshVertex* vertex)
{
    if (MeshVertex* copy = vertexMap_.copyOf(vertex)) {
        return copy;
    }

    MeshVertex* copy = MeshDuplication::addVertexCopy(database_->mesh(), vertex);
    vertexMap_.insert(vertex, copy);
    vertex->attributes().insert(AttributeType::StatorVertex, copy->id());
    copy->attributes().insert(AttributeType::RotorVertex, vertex->id());
    return copy;
}

void Solver::breakRotorStatorVertexAdjacencies()
{
    // Another rotating device counts as fluid, yet stays on its rotor's vertices.
    MeshDuplication::moveToCopies(vertexMap_, database_->model()->faceDimension(),
                                  [this](ModelEntity* region) {
                                      return !isRotatingDevice(region) && Utility::isFluid(region);
                                  });
}

} // namespace Ovra::Geo
