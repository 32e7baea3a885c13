#include "UpwardLists.h"

#include "MeshEntity.h"

#include <algorithm>
#include <utility>

namespace Ovra::Geo
{

namespace
{

struct Range
{
    int least = 0;
    int most = 0;
};

Range neighbourCounts(const MeshEntity* element, int dimension)
{
    Range range{std::numeric_limits<int>::max(), 0};
    const int count = element->adjacencyCount(0);
    for (int i = 0; i < count; ++i) {
        const int neighbours = element->adjacencyAt(0, i)->adjacencyCount(dimension);
        range = {std::min(range.least, neighbours), std::max(range.most, neighbours)};
    }
    return range;
}

QList<MeshEntity*> vertexSet(const MeshEntity* element)
{
    QList<MeshEntity*> vertices;
    auto i = element->adjacencyIterator(0);
    while (i.hasNext()) {
        vertices.append(i.next());
    }
    std::sort(vertices.begin(), vertices.end());
    vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
    return vertices;
}

UpwardLists*& currentOfThread()
{
    thread_local UpwardLists* current = nullptr;
    return current;
}

} // namespace

UpwardLists::UpwardLists(int dimension, const Limits& limits)
    : outer_(currentOfThread())
    , dimension_(dimension)
    , left_(limits)
{
    currentOfThread() = this;
}

UpwardLists::~UpwardLists()
{
    currentOfThread() = outer_;
}

UpwardLists* UpwardLists::current(int dimension)
{
    UpwardLists* lists = currentOfThread();
    return lists != nullptr && lists->dimension_ == dimension ? lists : nullptr;
}

void UpwardLists::appendTo(MeshEntity* element)
{
    const Range neighbours = neighbourCounts(element, dimension_);
    if (neighbours.most <= NeighbourSets::Few) {
        element->appendUpwardAdjacencies(dimension_, nullptr);
    } else if (neighbours.least <= NeighbourSets::Few) {
        element->appendUpwardAdjacencies(dimension_, &sets_);
    } else {
        appendMany(element, neighbours.least);
    }
}

void UpwardLists::appendMany(MeshEntity* element, qint64 neighbours)
{
    const QList<MeshEntity*> vertices = vertexSet(element);
    const auto found = lists_.constFind(vertices);
    const NeighbourList& list = std::as_const(*element).adjacencies(dimension_);
    if (found != lists_.cend() && list.isCopyOf(found->before)) {
        element->adjacencies(dimension_) = found->after;
        return;
    }
    const qint64 steps = neighbours * vertices.size();
    if (steps > left_.steps || left_.entries <= 0) {
        isComplete_ = false;
        return;
    }
    const NeighbourList before = list;
    element->appendUpwardAdjacencies(dimension_, &sets_);
    left_.steps -= steps;
    left_.entries -= list.size() - before.size();
    lists_.insert(vertices, {before, list});
}

} // namespace Ovra::Geo
