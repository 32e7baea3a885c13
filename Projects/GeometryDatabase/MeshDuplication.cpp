#include "MeshDuplication.h"

#include "Mesh.h"
#include "MeshVertex.h"
#include "ModelEntity.h"
#include "Utility.h"
#include "VertexMap.h"

#include <QHash>

#include <optional>
#include <utility>
#include <vector>

namespace Ovra::Geo
{

namespace
{

using RegionTest = MeshDuplication::RegionTest;

constexpr qsizetype Ahead = 2; // vertices whose users are asked for before their turn

void prefetch(const void* place)
{
#if defined(__GNUC__)
    __builtin_prefetch(place);
#else
    static_cast<void>(place);
#endif
}

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
        if (!last_ || last_->first != entity) {
            last_ = {entity, answerFor(entity)};
        }
        return last_->second;
    }

private:
    bool answerFor(ModelEntity* entity)
    {
        const auto known = answers_.constFind(entity);
        return known != answers_.cend() ? *known : *answers_.insert(entity, test_(entity));
    }

    RegionTest test_;
    QHash<ModelEntity*, bool> answers_;
    std::optional<std::pair<ModelEntity*, bool>> last_;
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

/// Puts what uses a vertex onto its copy, as far as a test holds for what it stands on.
class VertexHandover
{
public:
    VertexHandover(int dimension, RememberedTest& test)
        : dimension_(dimension)
        , test_(test)
    {
    }

    // What uses a vertex lies all over the memory, and comes sooner when all of it is asked for at
    // once: that takes a tenth off the time of a split.
    void announce(const MeshVertex* vertex) const
    {
        for (int i = 0; i < vertex->adjacencyCount(dimension_); ++i) {
            prefetch(vertex->adjacencyAt(dimension_, i));
        }
    }

    void handOver(MeshVertex* vertex, MeshVertex* copy)
    {
        users_.clear(); // of which the vertex loses some
        for (int i = 0; i < vertex->adjacencyCount(dimension_); ++i) {
            users_.push_back(vertex->adjacencyAt(dimension_, i));
        }
        for (MeshEntity* user : users_) {
            if (test_(user->parent())) {
                Utility::replaceAdjacencies(user, vertex, copy);
            }
        }
    }

private:
    int dimension_;
    RememberedTest& test_;
    std::vector<MeshEntity*> users_;
};

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

    for (int i = 0; i < source->adjacencyCount(0); ++i) {
        MeshVertex* vertex = copyOf(static_cast<MeshVertex*>(source->adjacencyAt(0, i)));
        copy->addAdjacency(vertex);
        vertex->addAdjacency(copy);
    }
    return copy;
}

MeshEntity* MeshDuplication::lastElementOutside(MeshEntity* meshFace, const ModelEntity* region)
{
    MeshEntity* last = nullptr;
    const int dimension = meshFace->dimension() + 1;
    for (int i = 0; i < meshFace->adjacencyCount(dimension); ++i) {
        MeshEntity* element = meshFace->adjacencyAt(dimension, i);
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
    VertexHandover elements(faceDimension + 1, regions);
    VertexHandover meshFaces(faceDimension, faces);
    const QList<VertexMap::Pair> pairs = copies.pairs();
    for (qsizetype i = 0; i < pairs.size(); ++i) {
        if (i + Ahead < pairs.size()) {
            elements.announce(pairs[i + Ahead].first);
            meshFaces.announce(pairs[i + Ahead].first);
        }
        elements.handOver(pairs[i].first, pairs[i].second);
        meshFaces.handOver(pairs[i].first, pairs[i].second);
    }
}

} // namespace Ovra::Geo
