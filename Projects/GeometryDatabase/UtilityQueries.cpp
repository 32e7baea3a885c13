#include "Assertion.h"
#include "ElementFaceData.h"
#include "MaterialKind.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelEntity.h"
#include "ModelFace.h"
#include "ModelVertex.h"
#include "Utility.h"

#include <QLatin1String>
#include <QListIterator>

#include <algorithm>
#include <array>

namespace Ovra::Geo
{

namespace
{

constexpr std::array FluidKinds{
    QLatin1String("fluid"),           QLatin1String("resistance"),
    QLatin1String("internal_fan"),    QLatin1String("check_valve"),
    QLatin1String("rotating_device"), QLatin1String("centrifugal_fan"),
    QLatin1String("heat_exchanger"),  QLatin1String("heat_sink"),
};

constexpr std::array UnmeshedDeviceKinds{
    QLatin1String("ecomp_2resist"),
    QLatin1String("ecomp_tec"),
    QLatin1String("led_device"),
};

template <std::size_t Count>
bool isOneOf(const std::array<QLatin1String, Count>& kinds, const QString& kind)
{
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

bool hasOnlyFluidRegions(const ModelEntity* face)
{
    // Regions proper, in planar models too.
    QListIterator<ModelEntity*> regions = face->adjacencyIterator(3);
    while (regions.hasNext()) {
        if (!Utility::isFluid(regions.next())) {
            return false;
        }
    }
    return true;
}

// A list may hold entities of any dimension, so that there may be none above or below.
QListIterator<ModelEntity*> neighbours(const ModelEntity* entity, int dimension)
{
    const bool exists = dimension >= 0 && dimension <= 3;
    return exists ? entity->adjacencyIterator(dimension)
                  : QListIterator<ModelEntity*>(QList<ModelEntity*>());
}

QListIterator<ModelEntity*> neighboursAbove(const ModelEntity* entity)
{
    return neighbours(entity, entity->dimension() + 1);
}

// The face that stands in for an extruded one, or the bounding entity itself.
ModelEntity* nonExtruded(ModelEntity* boundary, int dimension, const Model* model)
{
    const int id = boundary->attributes().value(AttributeType::NonExtrudedFace, 0).toInt();
    return id == 0 ? boundary : model->entity(dimension, id);
}

// Only plain fluid will do: not the devices that fluid flows through, nor what has been
// replicated.
bool isUnmovedFluid(const ModelEntity* region)
{
    const AttributeMap& attributes = region->attributes();
    return materialKind(region) == QLatin1String("fluid") &&
           attributes.value(AttributeType::NewMotionRegion, 0).toInt() == 0 &&
           !attributes.value(AttributeType::IsSuppressed, QVariant()).toBool();
}

ModelVertex* nextVertex(QListIterator<ModelEntity*>* i)
{
    OVRA_GEO_ASSERT(i->hasNext(), "i.hasNext()", "Projects/GeometryDatabase/Utility");
    return static_cast<ModelVertex*>(i->next());
}

// What both forms of the replacement do first.
template <typename Entity>
void handOver(Entity* entity, Entity* oldEntity, Entity* newEntity)
{
    entity->replaceAdjacency(oldEntity, newEntity);
    oldEntity->removeAdjacency(entity);
}

} // namespace

bool Utility::isFluid(ModelEntity* region)
{
    return isOneOf(FluidKinds, materialKind(region));
}

bool Utility::isUnmeshedDevice(ModelEntity* region)
{
    return isOneOf(UnmeshedDeviceKinds, materialKind(region));
}

bool Utility::isExternalFace(ModelEntity* face)
{
    return face->dimension() == 3 || face->adjacencyCount(face->dimension() + 1) != 2;
}

bool Utility::isFluidFluidInterface(ModelEntity* face, ModelEntity* otherFace)
{
    return hasOnlyFluidRegions(face) && (!otherFace || hasOnlyFluidRegions(otherFace));
}

ModelEntity* Utility::getOtherAdjacentRegion(ModelEntity* face, ModelEntity* region)
{
    QListIterator<ModelEntity*> regions = neighboursAbove(face);
    while (regions.hasNext()) {
        ModelEntity* candidate = regions.next();
        if (candidate != region) {
            return candidate;
        }
    }
    return nullptr;
}

QSet<ModelEntity*> Utility::getAdjacentRegions(ModelEntity* entity, Model* model)
{
    const bool extruded =
        entity->attributes().value(AttributeType::MeshByExtrusion, false).toBool();
    QSet<ModelEntity*> result;
    const int dimension = entity->dimension() - 1;
    QListIterator<ModelEntity*> boundaries = neighbours(entity, dimension);
    while (boundaries.hasNext()) {
        ModelEntity* boundary = boundaries.next();
        if (extruded) {
            boundary = nonExtruded(boundary, dimension, model);
        }
        QListIterator<ModelEntity*> regions = neighboursAbove(boundary);
        while (regions.hasNext()) {
            result.insert(regions.next());
        }
    }
    result.remove(entity);
    return result;
}

ModelEntity* Utility::getAdjacentFluidRegion(ModelEntity* entity, Model* model)
{
    // Of several that qualify the one of the lowest id is taken, so that runs agree.
    ModelEntity* result = nullptr;
    const QSet<ModelEntity*> neighbours = getAdjacentRegions(entity, model);
    for (ModelEntity* region : neighbours) {
        if (isUnmovedFluid(region) && (!result || ModelEntity::lessThan(region, result))) {
            result = region;
        }
    }
    return result;
}

bool Utility::hasNonSimplexMeshEntities(Model* model)
{
    HashIterator<int, ModelEntity*> regions = model->iterator(model->faceDimension() + 1);
    while (regions.hasNext()) {
        regions.next();
        if (hasNonSimplexMeshEntities(regions.value())) {
            return true;
        }
    }
    return false;
}

bool Utility::hasNonSimplexMeshEntities(ModelEntity* entity)
{
    const int expected = entity->dimension() == 2 ? 3 : 4;
    HashIterator<int, MeshEntity*> children = entity->childIterator();
    while (children.hasNext()) {
        children.next();
        if (children.value()->adjacencyCount(0) != expected) {
            return true;
        }
    }
    return false;
}

void Utility::copyAttribute(ModelEntity* source, ModelEntity* target, AttributeType const& type)
{
    if (source->attributes().contains(type)) {
        target->attributes().insert(type, source->attributes().value(type, QVariant()));
    }
}

bool Utility::replaceAdjacencies(MeshEntity* entity, MeshEntity* oldEntity, MeshEntity* newEntity)
{
    // Mesh lists may be linked in one direction only while a mesh is rewired; either will do.
    if (!entity->isAdjacentTo(oldEntity) && !oldEntity->isAdjacentTo(entity)) {
        return false;
    }
    handOver(entity, oldEntity, newEntity);
    newEntity->addAdjacency(entity);
    return true;
}

bool Utility::replaceAdjacencies(ModelEntity* entity, ModelEntity* oldEntity,
                                 ModelEntity* newEntity)
{
    if (!entity->isAdjacentTo(oldEntity) || !oldEntity->isAdjacentTo(entity)) {
        return false;
    }
    handOver(entity, oldEntity, newEntity);
    if (!newEntity->isAdjacentTo(entity)) {
        newEntity->addAdjacency(entity);
    }
    return true;
}

std::pair<ModelVertex*, ModelVertex*> Utility::getCounterClockwiseEdge(ModelFace const* face,
                                                                       ModelEdge const* edge)
{
    QListIterator<ModelEntity*> vertices = edge->adjacencyIterator(0);
    ModelVertex* a = nextVertex(&vertices);
    ModelVertex* b = nextVertex(&vertices);
    const Vector c = face->centroid();
    const double turn = face->normal() * ((a->point() - c) ^ (b->point() - c));
    return turn > 0.0 ? std::make_pair(a, b) : std::make_pair(b, a);
}

QList<ElementFaceData> Utility::getElementFaceDataOnModelFace(ModelEntity* face,
                                                              ModelEntity* otherFace)
{
    const bool fluidInterface = isFluidFluidInterface(face, otherFace);
    QList<ElementFaceData> result;
    HashIterator<int, MeshEntity*> children = face->childIterator();
    while (children.hasNext()) {
        children.next();
        MeshEntity* child = children.value();
        // Volume elements, in planar models too.
        QListIterator<MeshEntity*> elements = child->adjacencyIterator(3);
        while (elements.hasNext()) {
            MeshEntity* element = elements.next();
            ElementFaceData data;
            data.elementId_ = element->id();
            data.localFace_ = getLocalFaceIndex(child, element);
            data.fluidInterface_ = fluidInterface;
            result.append(data);
        }
    }
    return result;
}

Box Utility::getMeshBoundingBox(ModelEntity* entity)
{
    Box result;
    HashIterator<int, MeshEntity*> children = entity->childIterator();
    while (children.hasNext()) {
        children.next();
        result += children.value()->boundingBox();
    }
    return result;
}

} // namespace Ovra::Geo
