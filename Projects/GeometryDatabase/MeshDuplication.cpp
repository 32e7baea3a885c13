#include "MeshDuplication.h"

#include "Mesh.h"
#include "MeshVertex.h"
#include "ModelEntity.h"
#include "Utility.h"

namespace Ovra::Geo
{

namespace
{

using RegionTest = MeshDuplication::RegionTest;

bool touchesMeshedRegion(const ModelEntity* face, int regionDimension, const RegionTest& test)
{
    auto regions = face->adjacencyIterator(regionDimension);
    while (regions.hasNext()) {
        ModelEntity* region = regions.next();
        if (test(region) && region->childCount() > 0) {
            return true;
        }
    }
    return false;
}

void moveElements(MeshVertex* vertex, MeshVertex* copy, int dimension, const RegionTest& test)
{
    auto elements = vertex->adjacencyIterator(dimension);
    while (elements.hasNext()) {
        MeshEntity* element = elements.next();
        if (test(element->parent())) {
            Utility::replaceAdjacencies(element, vertex, copy);
        }
    }
}

void moveMeshFaces(MeshVertex* vertex, MeshVertex* copy, int dimension, const RegionTest& test)
{
    auto meshFaces = vertex->adjacencyIterator(dimension);
    while (meshFaces.hasNext()) {
        MeshEntity* meshFace = meshFaces.next();
        if (touchesMeshedRegion(meshFace->parent(), dimension + 1, test)) {
            Utility::replaceAdjacencies(meshFace, vertex, copy);
        }
    }
}

} // namespace

MeshVertex* MeshDuplication::addVertexCopy(Mesh* mesh, const MeshVertex* vertex)
{
    auto* copy = new MeshVertex;
    copy->setPoint(vertex->point());
    mesh->add(copy);
    return copy;
}

MeshEntity* MeshDuplication::addEntityCopy(Mesh* mesh, MeshEntity* source, ModelEntity* parent,
                                           const VertexCopier& copyOf)
{
    MeshEntity* copy = MeshEntity::create(source->dimension());
    mesh->add(copy);
    parent->addChild(copy);

    auto vertices = source->adjacencyIterator(0);
    while (vertices.hasNext()) {
        MeshVertex* vertex = copyOf(static_cast<MeshVertex*>(vertices.next()));
        copy->addAdjacency(vertex);
        vertex->addAdjacency(copy);
    }
    return copy;
}

MeshEntity* MeshDuplication::lastElementOutside(MeshEntity* meshFace, const ModelEntity* region)
{
    MeshEntity* last = nullptr;
    auto elements = meshFace->adjacencyIterator(meshFace->dimension() + 1);
    while (elements.hasNext()) {
        MeshEntity* element = elements.next();
        if (element->parent() != region) {
            last = element;
        }
    }
    return last;
}

void MeshDuplication::moveToCopies(const VertexMap& copies, int faceDimension,
                                   const RegionTest& takesCopies)
{
    for (auto pair = copies.cbegin(); pair != copies.cend(); ++pair) {
        moveElements(pair.key(), pair.value(), faceDimension + 1, takesCopies);
        moveMeshFaces(pair.key(), pair.value(), faceDimension, takesCopies);
    }
}

} // namespace Ovra::Geo
