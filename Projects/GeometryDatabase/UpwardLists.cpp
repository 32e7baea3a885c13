#include "UpwardLists.h"

#include "MeshEntity.h"

#include <algorithm>

namespace Ovra::Geo
{

namespace
{

// Up to this many neighbours a list of its own is not much more than the element itself.
constexpr int FewNeighbours = 64;

bool mayHaveMany(const MeshEntity* element, int dimension)
{
    auto vertices = element->adjacencyIterator(0);
    while (vertices.hasNext()) {
        if (vertices.next()->adjacencyCount(dimension) <= FewNeighbours) {
            return false;
        }
    }
    return true;
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
    if (element->adjacencyCount(upward) > 0 || !mayHaveMany(element, upward)) {
        element->setUpwardAdjacencies();
        return;
    }
    MeshEntity*& first = firstOn_[vertexSet(element)];
    if (first == nullptr) {
        element->setUpwardAdjacencies();
        first = element;
    } else {
        element->shareAdjacencies(upward, *first);
    }
}

} // namespace Ovra::Geo
