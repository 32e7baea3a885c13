#include "Additions.h"

#include "Database.h"
#include "Floors.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

constexpr int noParent = -1;

// An operation may give the id of an element that it takes away to another.
bool isNew(const MeshEntity* entity, const Mesh& before)
{
    const MeshEntity* former = before.entity(entity->dimension(), entity->id());
    return former == nullptr || former->adjacencyCount(0) != entity->adjacencyCount(0);
}

MeshEntity* create(int dimension, const Vector& point)
{
    if (dimension > 0) {
        return MeshEntity::create(dimension);
    }
    auto* vertex = new MeshVertex;
    vertex->setPoint(point);
    return vertex;
}

} // namespace

Additions::Additions(Database& before, Database& after)
{
    for (int dimension = 0; dimension <= 3; ++dimension) {
        for (auto walk = after.mesh()->iterator(dimension); walk.hasNext();) {
            MeshEntity* entity = walk.next().value();
            if (isNew(entity, *before.mesh())) {
                record(entity);
            } else {
                recordTakeovers(entity, *before.mesh());
            }
        }
    }
}

void Additions::record(MeshEntity* entity)
{
    Record record;
    record.dimension = entity->dimension();
    record.parent = {noParent, 0};
    if (entity->parent() != nullptr) {
        record.parent = {entity->parent()->dimension(), entity->parent()->id()};
    }
    if (record.dimension == 0) {
        record.point = entity->centroid();
    }
    record.place = placeOf(entity);
    for (auto vertices = entity->adjacencyIterator(0); vertices.hasNext();) {
        record.vertices.push_back(placeOf(vertices.next()));
    }
    if (record.dimension == 1 || record.dimension == 2) {
        for (auto users = entity->adjacencyIterator(record.dimension + 1); users.hasNext();) {
            record.upward.push_back(placeOf(users.next()));
        }
    }
    records_.push_back(std::move(record));
}

void Additions::recordTakeovers(MeshEntity* entity, const Mesh& before)
{
    const MeshEntity* former = before.entity(entity->dimension(), entity->id());
    for (int i = 0; i < entity->adjacencyCount(0); ++i) {
        const MeshEntity* vertex = entity->adjacencyAt(0, i);
        if (vertex->id() != former->adjacencyAt(0, i)->id() && isNew(vertex, before)) {
            takeovers_.push_back({placeOf(entity), i, placeOf(vertex)});
        }
    }
}

std::size_t Additions::placeOf(const MeshEntity* entity)
{
    const Key key{entity->dimension(), entity->id()};
    const auto found = places_.constFind(key);
    if (found != places_.cend()) {
        return *found;
    }
    keys_.push_back(key);
    places_.insert(key, keys_.size() - 1);
    return keys_.size() - 1;
}

double Additions::make(Database& before)
{
    findPlaces(before);
    findParents(before);
    return processorSeconds([&] {
        for (std::size_t i = 0; i < records_.size(); ++i) {
            makeEntity(i, before);
        }
        for (const Record& record : records_) {
            linkUpward(record);
        }
        for (const Takeover& takeover : takeovers_) {
            takeOver(takeover);
        }
    });
}

void Additions::findPlaces(Database& before)
{
    entities_.clear();
    for (const Key& key : keys_) {
        entities_.push_back(before.mesh()->entity(key.first, key.second));
    }
}

void Additions::findParents(Database& before)
{
    parents_.clear();
    for (const Record& record : records_) {
        const auto [dimension, id] = record.parent;
        ModelEntity* parent =
            dimension == noParent ? nullptr : before.model()->entity(dimension, id);
        if (parent == nullptr && dimension != noParent) {
            parent = ModelEntity::create(dimension);
            parent->setId(id);
            before.model()->add(parent);
        }
        parents_.push_back(parent);
    }
}

void Additions::makeEntity(std::size_t index, Database& before)
{
    const Record& record = records_[index];
    MeshEntity* entity = create(record.dimension, record.point);
    entities_[record.place] = entity;
    for (const std::size_t vertex : record.vertices) {
        entity->addAdjacency(entities_[vertex]);
    }
    before.mesh()->add(entity);
    if (parents_[index] != nullptr) {
        parents_[index]->addChild(entity);
    }
    for (const std::size_t vertex : record.vertices) {
        entities_[vertex]->addAdjacency(entity);
    }
}

void Additions::linkUpward(const Record& record)
{
    for (const std::size_t user : record.upward) {
        entities_[record.place]->addAdjacency(entities_[user]);
    }
}

void Additions::takeOver(const Takeover& takeover)
{
    MeshEntity* entity = entities_[takeover.place];
    MeshEntity* former = entity->adjacencyAt(0, takeover.index);
    former->removeAdjacency(entity);
    entity->replaceAdjacency(former, entities_[takeover.vertex]);
    entities_[takeover.vertex]->addAdjacency(entity);
}

} // namespace Benchmarks
