#include "Solver.h"

#include "AttributeType.h"
#include "Database.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshDuplication.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"

#include <QDebug>
#include <QVariant>

namespace Ovra::Geo
{

namespace
{

bool isOfMaterialType(const ModelEntity* entity, const QString& type)
{
    return entity->attributes().value(AttributeType::MaterialType, QVariant()) == QVariant(type);
}

bool isMissingFrom(const ModelEntity* device, const AttributeType& type, int faceId)
{
    const QVariantList faceIds = device->attributes().value(type, QVariant()).toList();
    return !faceIds.isEmpty() && !faceIds.contains(QVariant(faceId));
}

bool isShutOut(const ModelEntity* device, int faceId)
{
    return isMissingFrom(device, AttributeType::HotFaces, faceId) ||
           isMissingFrom(device, AttributeType::ColdFaces, faceId) ||
           isMissingFrom(device, AttributeType::CaseFaces, faceId);
}

bool allowsSplit(ModelEntity* region, int faceId)
{
    return Utility::isUnmeshedDevice(region) ? !isShutOut(region, faceId)
                                             : region->childCount() > 0;
}

} // namespace

Solver::Solver(Database* database)
    : database_(database)
{
}

QString Solver::error() const
{
    return error_;
}

void Solver::setError(const QString& text)
{
    error_ = text;
}

bool Solver::isOk() const
{
    return error_.isEmpty();
}

double Solver::extrusionTolerance() const
{
    return extrusionTolerance_;
}

void Solver::setExtrusionTolerance(double tolerance)
{
    extrusionTolerance_ = tolerance;
}

void Solver::splitFluidSolidFaces()
{
    vertexMap_.clear();
    Model* model = database_->model();
    const QList<ModelEntity*> faces = inIdOrder(model->iterator(model->faceDimension()));
    for (ModelEntity* face : faces) {
        if (!shouldSplitFluidSolidFace(face)) {
            continue;
        }
        qDebug().noquote() << QStringLiteral("Split fluid-solid face %1").arg(face->id());
        splitFluidSolidFace(face);
    }
    qDebug().noquote() << QStringLiteral("Created %1 new vertices").arg(vertexMap_.size());
    breakFluidSolidVertexAdjacencies();
}

bool Solver::isSolid(ModelEntity* entity) const
{
    return isOfMaterialType(entity, QStringLiteral("solid"));
}

bool Solver::isRotatingDevice(ModelEntity* entity) const
{
    return isOfMaterialType(entity, QStringLiteral("rotating_device"));
}

bool Solver::shouldSplitFluidSolidFace(ModelEntity* face) const
{
    if (Utility::isExternalFace(face)) {
        return false;
    }

    bool hasFluid = false;
    bool hasOther = false;
    auto regions = face->adjacencyIterator(face->dimension() + 1);
    while (regions.hasNext()) {
        ModelEntity* region = regions.next();
        if (!allowsSplit(region, face->id())) {
            return false;
        }
        (Utility::isFluid(region) ? hasFluid : hasOther) = true;
    }
    return hasFluid && hasOther;
}

void Solver::splitFluidSolidFace(ModelEntity* face)
{
    ModelEntity* fluidRegion = nullptr;
    ModelEntity* otherRegion = nullptr;
    auto regions = face->adjacencyIterator(face->dimension() + 1);
    while (regions.hasNext()) {
        ModelEntity* region = regions.next();
        (Utility::isFluid(region) ? fluidRegion : otherRegion) = region;
    }

    Model* model = database_->model();
    ModelEntity* newFace = ModelEntity::create(model->faceDimension());
    model->add(newFace);
    Utility::replaceAdjacencies(otherRegion, face, newFace);
    face->attributes().insert(AttributeType::SolidFace, newFace->id());
    newFace->attributes().insert(AttributeType::FluidFace, face->id());
    splitMesh(face, newFace, fluidRegion, otherRegion);
}

void Solver::splitMesh(ModelEntity* oldFace, ModelEntity* newFace, ModelEntity* fluidRegion,
                       ModelEntity* otherRegion)
{
    // A device without a mesh has no elements at all and still needs a surface.
    const bool elementsAreOptional = Utility::isUnmeshedDevice(otherRegion);
    const QList<MeshEntity*> meshFaces = inIdOrder(oldFace->childIterator());
    for (MeshEntity* meshFace : meshFaces) {
        MeshEntity* element = MeshDuplication::lastElementOutside(meshFace, fluidRegion);
        if (!element && !elementsAreOptional) {
            continue;
        }
        MeshEntity* newMeshFace = MeshDuplication::addEntityCopy(
            database_->mesh(), meshFace, newFace,
            [this](MeshVertex* vertex) { return addSplitVertex(vertex); });
        if (element) {
            Utility::replaceAdjacencies(element, meshFace, newMeshFace);
        }
    }
}

MeshVertex* Solver::addSplitVertex(MeshVertex* vertex)
{
    if (MeshVertex* copy = vertexMap_.copyOf(vertex)) {
        return copy;
    }

    MeshVertex* copy = MeshDuplication::addVertexCopy(database_->mesh(), vertex);
    vertexMap_.insert(vertex, copy);
    return copy;
}

void Solver::breakFluidSolidVertexAdjacencies()
{
    // The literal "solid": what is neither fluid nor solid keeps the vertices that it shares.
    MeshDuplication::moveToCopies(vertexMap_, database_->model()->faceDimension(),
                                  [this](ModelEntity* region) { return isSolid(region); });
}

} // namespace Ovra::Geo
