#include "MeshTransfer.h"

#include "Buckets.h"
#include "Database.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ModelVertex.h"

namespace Ovra::GeoTool
{

using namespace Geo;

namespace
{

ModelEntity* makeVertex(const ImportedGeometry& geometry)
{
    auto* vertex = new ModelVertex;
    vertex->setPoint(geometry.centroid);
    return vertex;
}

template <typename Entity>
Entity* makeWithBox(const ImportedGeometry& geometry)
{
    auto* entity = new Entity;
    entity->setBoundingBox(geometry.box);
    entity->setCentroid(geometry.centroid);
    return entity;
}

template <typename Entity>
Entity* makeWithNormal(const ImportedGeometry& geometry)
{
    auto* entity = makeWithBox<Entity>(geometry);
    entity->setNormal(geometry.normal);
    entity->setPlanar(geometry.planar);
    return entity;
}

ModelEntity* makeEdge(const ImportedGeometry& geometry)
{
    auto* edge = makeWithNormal<ModelEdge>(geometry);
    edge->setLength(geometry.measure);
    return edge;
}

ModelEntity* makeFace(const ImportedGeometry& geometry)
{
    auto* face = makeWithNormal<ModelFace>(geometry);
    face->setArea(geometry.measure);
    return face;
}

ModelEntity* makeRegion(const ImportedGeometry& geometry)
{
    auto* region = makeWithBox<ModelRegion>(geometry);
    region->setVolume(geometry.measure);
    return region;
}

ModelEntity* makeEntity(int dimension, const ImportedGeometry& geometry)
{
    static ModelEntity* (*const makers[])(const ImportedGeometry&) = {makeVertex, makeEdge,
                                                                      makeFace, makeRegion};
    return makers[dimension](geometry);
}

} // namespace

MeshTransfer::MeshTransfer(const ImportedMesh& mesh, Database& database)
    : mesh_(mesh)
    , database_(database)
{
}

void MeshTransfer::transfer()
{
    for (int d = 0; d <= mesh_.elementDimension; ++d) {
        addModelEntities(d);
    }
    addAdjacencies();
    addMeshVertices();
    for (int d = 0; d <= mesh_.elementDimension; ++d) {
        addMeshElements(d);
    }
}

ModelEntity* MeshTransfer::modelEntity(int dimension, int position) const
{
    return database_.model()->entity(dimension, mesh_.entity(dimension, position).id);
}

void MeshTransfer::addModelEntities(int dimension)
{
    Box box = database_.model()->boundingBox();
    for (const ImportedEntity& imported : mesh_.entitiesOf(dimension)) {
        if (imported.discarded) {
            continue;
        }
        ModelEntity* entity = makeEntity(dimension, imported.geometry);
        entity->setId(imported.id);
        entity->setName(imported.groups.isEmpty() ? imported.label : imported.groups.first());
        entity->setTag(imported.label);
        database_.model()->add(entity);
        box += imported.geometry.box;
    }
    database_.model()->setBoundingBox(box);
}

void MeshTransfer::addAdjacencies()
{
    for (int d = 0; d <= mesh_.elementDimension; ++d) {
        for (const ImportedEntity& imported : mesh_.entitiesOf(d)) {
            ModelEntity* entity = database_.model()->entity(d, imported.id);
            for (int other = 0; entity != nullptr && other <= mesh_.elementDimension; ++other) {
                for (const int position : imported.adjacent[static_cast<std::size_t>(other)]) {
                    entity->addAdjacency(modelEntity(other, position));
                }
            }
        }
    }
}

void MeshTransfer::addMeshVertices()
{
    vertices_.reserve(mesh_.nodes.size());
    for (const ImportedNode& node : mesh_.nodes) {
        auto* vertex = new MeshVertex;
        vertex->setPoint(node.point);
        database_.mesh()->add(vertex);
        if (node.dimension <= mesh_.elementDimension) {
            modelEntity(node.dimension, node.entity)->addChild(vertex);
        }
        vertices_.push_back(vertex);
    }
}

void MeshTransfer::addMeshElements(int dimension)
{
    if (dimension == 0) {
        return; // a node on a model vertex is its mesh already
    }
    const Buckets<const ImportedElement*> byEntity(
        mesh_.entitiesOf(dimension).size(), [&](auto add) {
            for (const ImportedElement& element : mesh_.elementsOf(dimension)) {
                add(static_cast<std::size_t>(element.entity), &element);
            }
        });
    for (const ImportedElement* element : byEntity.things()) {
        MeshEntity* entity = MeshEntity::create(dimension);
        for (int n = 0; n < element->nodeCount; ++n) {
            entity->addAdjacency(
                vertices_[static_cast<std::size_t>(element->nodes[static_cast<std::size_t>(n)])]);
        }
        database_.mesh()->add(entity);
        modelEntity(dimension, element->entity)->addChild(entity);
    }
}

} // namespace Ovra::GeoTool
