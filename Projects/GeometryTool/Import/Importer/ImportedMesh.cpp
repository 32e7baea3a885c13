#include "ImportedMesh.h"

#include <algorithm>

namespace Ovra::GeoTool
{

QStringList ImportedEntity::names() const
{
    return label.isEmpty() ? groups : groups + QStringList(label);
}

int ImportedMesh::addEntity(int dimension, const ImportedEntity& entity)
{
    auto& list = entitiesOf(dimension);
    const int highest = list.empty() ? 0 : list.back().id;
    list.push_back(entity);
    list.back().id = highest + 1;
    return static_cast<int>(list.size()) - 1;
}

int ImportedMesh::positionOf(int dimension, int id) const
{
    const auto& list = entitiesOf(dimension);
    const auto found =
        std::lower_bound(list.begin(), list.end(), id,
                         [](const ImportedEntity& entity, int value) { return entity.id < value; });
    if (found == list.end() || found->id != id || found->discarded) {
        return -1;
    }
    return static_cast<int>(found - list.begin());
}

std::vector<int> ImportedMesh::entitiesOfElements(int dimension) const
{
    std::vector<int> result;
    result.reserve(elementsOf(dimension).size());
    for (const ImportedElement& element : elementsOf(dimension)) {
        result.push_back(element.entity);
    }
    return result;
}

void ImportedMesh::removeElementsOf(int dimension, int position)
{
    std::erase_if(elementsOf(dimension), [position](const ImportedElement& element) {
        return element.entity == position;
    });
}

std::vector<bool> ImportedMesh::removeUnusedNodes()
{
    std::vector<bool> unused(nodes.size(), true);
    for (int d = 1; d <= 3; ++d) {
        for (const ImportedElement& element : elementsOf(d)) {
            for (std::size_t n = 0; n < static_cast<std::size_t>(element.nodeCount); ++n) {
                unused[static_cast<std::size_t>(element.nodes[n])] = false;
            }
        }
    }
    std::erase_if(elementsOf(0), [&unused](const ImportedElement& point) {
        return unused[static_cast<std::size_t>(point.nodes[0])];
    });
    std::vector<int> renamed(nodes.size(), -1);
    std::vector<ImportedNode> kept;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (unused[i]) {
            continue;
        }
        renamed[i] = static_cast<int>(kept.size());
        kept.push_back(nodes[i]);
    }
    nodes = std::move(kept);
    for (auto& list : elements) {
        for (ImportedElement& element : list) {
            for (std::size_t n = 0; n < static_cast<std::size_t>(element.nodeCount); ++n) {
                element.nodes[n] = renamed[static_cast<std::size_t>(element.nodes[n])];
            }
        }
    }
    return unused;
}

void ImportedMesh::link(int dimensionA, int positionA, int dimensionB, int positionB)
{
    entity(dimensionA, positionA).adjacent[static_cast<std::size_t>(dimensionB)].insert(positionB);
    entity(dimensionB, positionB).adjacent[static_cast<std::size_t>(dimensionA)].insert(positionA);
}

void ImportedMesh::unlink(int dimension, int position)
{
    for (int d = 0; d <= 3; ++d) {
        auto& neighbours = entity(dimension, position).adjacent[static_cast<std::size_t>(d)];
        for (const int neighbour : neighbours) {
            entity(d, neighbour).adjacent[static_cast<std::size_t>(dimension)].erase(position);
        }
        neighbours.clear();
    }
}

} // namespace Ovra::GeoTool
