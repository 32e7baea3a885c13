#include "MeshEntity.h"

#include "MeshEdge.h"
#include "MeshFace.h"
#include "MeshRegion.h"
#include "MeshVertex.h"
#include "ModelEntity.h"
#include "NeighbourSets.h"
#include "NeighbourTable.h"
#include "UpwardLists.h"

#include <QHash>

#include <algorithm>
#include <utility>

namespace Ovra::Geo
{

namespace
{

using Neighbours = QVarLengthArray<MeshEntity*, 16>;

// Up to this many candidates, scanning a list beats making a table of it, however long it is.
constexpr qsizetype FewCandidates = 8;

template <typename Predicate>
void removeIf(Neighbours& candidates, Predicate predicate)
{
    const auto end = std::remove_if(candidates.begin(), candidates.end(), predicate);
    candidates.resize(end - candidates.begin());
}

template <typename Set>
void keepThoseIn(const Set& set, Neighbours& candidates)
{
    removeIf(candidates, [&set](MeshEntity* entity) { return !set.contains(entity); });
}

NeighbourTable tableOf(const NeighbourList& list)
{
    NeighbourTable table;
    for (const MeshEntity* entity : list) {
        table.insert(entity);
    }
    return table;
}

void intersect(Neighbours& candidates, const NeighbourList& list)
{
    if (candidates.size() <= FewCandidates) {
        keepThoseIn(list, candidates);
    } else if (list.size() <= NeighbourTable::Most) {
        keepThoseIn(tableOf(list), candidates);
    } else {
        keepThoseIn(QSet<MeshEntity*>(list.begin(), list.end()), candidates);
    }
}

void removeDuplicatesOfMany(Neighbours& candidates)
{
    QSet<MeshEntity*> seen;
    removeIf(candidates, [&seen](MeshEntity* entity) {
        const qsizetype before = seen.size();
        seen.insert(entity);
        return seen.size() == before;
    });
}

void removeDuplicates(Neighbours& candidates)
{
    if (candidates.size() > NeighbourTable::Most) {
        removeDuplicatesOfMany(candidates);
        return;
    }
    if (candidates.size() > FewCandidates) {
        NeighbourTable seen;
        removeIf(candidates, [&seen](MeshEntity* entity) { return !seen.insert(entity); });
        return;
    }
    auto end = candidates.begin();
    for (MeshEntity* entity : std::as_const(candidates)) {
        if (std::find(candidates.begin(), end, entity) == end) {
            *end++ = entity;
        }
    }
    candidates.resize(end - candidates.begin());
}

} // namespace

MeshEntity* MeshEntity::create(int dimension)
{
    switch (dimension) {
    case 0:
        return new MeshVertex;
    case 1:
        return new MeshEdge;
    case 2:
        return new MeshFace;
    case 3:
        return new MeshRegion;
    default:
        return nullptr;
    }
}

bool MeshEntity::lessThan(MeshEntity* a, MeshEntity* b)
{
    return *a < *b;
}

QSet<MeshEntity*> MeshEntity::getDownwardAdjacencies(MeshEntity* entity, int dimension)
{
    const int own = entity->dimension();
    QSet<MeshEntity*> result;
    for (const MeshEntity* vertex : std::as_const(*entity).adjacencies(0)) {
        for (MeshEntity* candidate : vertex->adjacencies(dimension)) {
            if (std::as_const(*candidate).adjacencies(own).contains(entity)) {
                result.insert(candidate);
            }
        }
    }
    return result;
}

QSet<MeshEntity*> MeshEntity::getUpwardAdjacencies(MeshEntity* entity, int dimension)
{
    const Neighbours neighbours =
        commonNeighbours(std::as_const(*entity).adjacencies(0), dimension);
    return QSet<MeshEntity*>(neighbours.cbegin(), neighbours.cend());
}

QSet<MeshEntity*> MeshEntity::getUpwardAdjacencies(const QList<MeshEntity*>& entities,
                                                   int dimension)
{
    const Neighbours neighbours = commonNeighbours(entities, dimension);
    return QSet<MeshEntity*>(neighbours.cbegin(), neighbours.cend());
}

template <typename Entities>
MeshEntity::Neighbours MeshEntity::commonNeighbours(const Entities& entities, int dimension,
                                                    NeighbourSets* sets)
{
    if (entities.size() > FewCandidates) {
        // One that is named very often would be looked up as often.
        Neighbours distinct;
        distinct.append(&*entities.begin(), entities.size());
        removeDuplicates(distinct);
        return neighboursOfAll(distinct, dimension, sets);
    }
    return neighboursOfAll(entities, dimension, sets);
}

template <typename Entities>
MeshEntity::Neighbours MeshEntity::neighboursOfAll(const Entities& entities, int dimension,
                                                   NeighbourSets* sets)
{
    Neighbours result;
    // The shortest list leaves the least to look up, where a vertex has very many neighbours.
    const auto shortest = std::min_element(
        entities.begin(), entities.end(), [dimension](const MeshEntity* a, const MeshEntity* b) {
            return a->adjacencyCount(dimension) < b->adjacencyCount(dimension);
        });
    if (shortest == entities.end()) {
        return result;
    }
    const NeighbourList& start = std::as_const(**shortest).adjacencies(dimension);
    result.append(start.begin(), start.size());
    if (result.size() > NeighbourTable::Most) {
        removeDuplicates(result);
    }
    for (auto i = entities.begin(); i != entities.end(); ++i) {
        if (i == shortest) {
            continue;
        }
        const NeighbourList& list = std::as_const(**i).adjacencies(dimension);
        if (sets != nullptr && list.size() > NeighbourSets::Few) {
            keepThoseIn(sets->of(*i, list), result);
        } else {
            intersect(result, list);
        }
    }
    removeDuplicates(result);
    return result;
}

MeshEntity::~MeshEntity() = default;

void MeshEntity::setUpwardAdjacencies() {}

void MeshEntity::clearUpwardAdjacencies() {}

void MeshEntity::removeFromAdjacencies() {}

int MeshEntity::dimension() const
{
    return -1;
}

void MeshEntity::addAdjacency(MeshEntity* entity)
{
    adjacencies(entity->dimension()).append(entity);
}

bool MeshEntity::isAdjacentTo(MeshEntity* entity) const
{
    return adjacencies(entity->dimension()).contains(entity);
}

void MeshEntity::removeAdjacency(MeshEntity* entity)
{
    adjacencies(entity->dimension()).removeOne(entity);
}

bool MeshEntity::replaceAdjacency(MeshEntity* oldEntity, MeshEntity* newEntity)
{
    NeighbourList& list = adjacencies(oldEntity->dimension());
    const qsizetype index = list.indexOf(oldEntity);
    if (index < 0) {
        return false;
    }
    list.replace(index, newEntity);
    return true;
}

bool MeshEntity::operator==(const MeshEntity& other) const
{
    return id_ == other.id_ && dimension() == other.dimension();
}

bool MeshEntity::operator!=(const MeshEntity& other) const
{
    return !(*this == other);
}

bool MeshEntity::operator<(const MeshEntity& other) const
{
    return id_ < other.id_;
}

Box MeshEntity::vertexBox(int count) const
{
    Box box;
    for (int i = 0; i < std::min(count, adjacencyCount(0)); ++i) {
        box += vertexPoint(i);
    }
    return box;
}

void MeshEntity::clearAdjacencies(int dimension)
{
    adjacencies(dimension).clear();
}

void MeshEntity::addUpwardAdjacencies(int dimension)
{
    if (UpwardLists* lists = UpwardLists::current(dimension)) {
        lists->appendTo(this);
    } else {
        appendUpwardAdjacencies(dimension, nullptr);
    }
}

void MeshEntity::appendUpwardAdjacencies(int dimension, NeighbourSets* sets)
{
    for (MeshEntity* entity :
         commonNeighbours(std::as_const(*this).adjacencies(0), dimension, sets)) {
        addAdjacency(entity);
    }
}

void MeshEntity::removeFromVertices()
{
    const int own = dimension();
    for (MeshEntity* vertex : std::as_const(*this).adjacencies(0)) {
        vertex->adjacencies(own).removeOne(this);
    }
}

void MeshEntity::removeFromSides(int sideDimension)
{
    // Lists that sides share stay shared, since a copy for each would take memory by the product of
    // their number and length.
    QHash<const void*, NeighbourList> without;
    const QSet<MeshEntity*> sides = getDownwardAdjacencies(this, sideDimension);
    for (MeshEntity* side : sides) {
        NeighbourList& list = side->adjacencies(dimension());
        if (!list.isLong()) {
            list.removeOne(this);
            continue;
        }
        const auto known = without.find(list.begin());
        if (known == without.end()) {
            const void* const shared = list.begin();
            NeighbourList changed = list;
            changed.removeOne(this);
            list = *without.insert(shared, changed);
        } else {
            list = *known;
        }
    }
}

void MeshEntity::detachFromParent()
{
    if (parent_ != nullptr) {
        parent_->removeChild(this);
    }
}

} // namespace Ovra::Geo
