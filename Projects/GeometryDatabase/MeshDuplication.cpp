#include "MeshDuplication.h"

#include "Mesh.h"
#include "MeshVertex.h"
#include "ModelEntity.h"
#include "Utility.h"
#include "VertexMap.h"

#include <QHash>

namespace Ovra::Geo
{

namespace
{

using RegionTest = MeshDuplication::RegionTest;

// Many thousand elements ask about a few model entities, and their kind is told by comparing texts.
class RememberedTest
{
public:
    explicit RememberedTest(RegionTest test)
        : test_(std::move(test))
    {
    }

    bool operator()(ModelEntity* entity)
    {
        const auto known = answers_.constFind(entity);
        return known != answers_.cend() ? *known : *answers_.insert(entity, test_(entity));
    }

private:
    RegionTest test_;
    QHash<ModelEntity*, bool> answers_;
};

bool touchesMeshedRegion(const ModelEntity* face, int regionDimension, RememberedTest& test)
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

void moveElements(MeshVertex* vertex, MeshVertex* copy, int dimension, RememberedTest& movesFrom)
{
    auto elements = vertex->adjacencyIterator(dimension);
    while (elements.hasNext()) {
        MeshEntity* element = elements.next();
        if (movesFrom(element->parent())) {
            Utility::replaceAdjacencies(element, vertex, copy);
        }
    }
}

void moveMeshFaces(MeshVertex* vertex, MeshVertex* copy, int dimension, RememberedTest& movesFrom)
{
    auto meshFaces = vertex->adjacencyIterator(dimension);
    while (meshFaces.hasNext()) {
        MeshEntity* meshFace = meshFaces.next();
        if (movesFrom(meshFace->parent())) {
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
    RememberedTest regions(takesCopies);
    RememberedTest faces(
        [&](ModelEntity* face) { return touchesMeshedRegion(face, faceDimension + 1, regions); });
    const QList<VertexMap::Pair> pairs = copies.pairs();
    for (const auto& [vertex, copy] : pairs) {
        moveElements(vertex, copy, faceDimension + 1, regions);
        moveMeshFaces(vertex, copy, faceDimension, faces);
    }
}

} // namespace Ovra::Geo
