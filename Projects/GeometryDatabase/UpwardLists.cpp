#include "UpwardLists.h"

#include "MeshEntity.h"

#include <algorithm>
#include <limits>

namespace Ovra::Geo
{

namespace
{

// Up to this many neighbours a list of its own is not much more than the element itself.
constexpr int FewNeighbours = 64;

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

} // namespace

void UpwardLists::set(MeshEntity* element)
{
    const int upward = element->dimension() + 1;
    const Range neighbours = neighbourCounts(element, upward);
    if (neighbours.most <= FewNeighbours) {
        element->setUpwardAdjacencies();
    } else if (neighbours.least <= FewNeighbours || element->adjacencyCount(upward) > 0) {
        element->addUpwardAdjacencies(upward, &sets_);
    } else {
        setOrShare(element, upward);
    }
}

void UpwardLists::setOrShare(MeshEntity* element, int upward)
{
    MeshEntity*& first = firstOn_[vertexSet(element)];
    if (first == nullptr) {
        element->addUpwardAdjacencies(upward, &sets_);
        first = element;
    } else {
        element->shareAdjacencies(upward, *first);
    }
}

} // namespace Ovra::Geo
