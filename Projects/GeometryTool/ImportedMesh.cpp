#include "ImportedMesh.h"

namespace Ovra::GeoTool
{

int ImportedMesh::addEntity(int dimension, const ImportedEntity& entity)
{
    auto& list = entitiesOf(dimension);
    const int highest = list.empty() ? 0 : list.back().id;
    list.push_back(entity);
    list.back().id = highest + 1;
    return static_cast<int>(list.size()) - 1;
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
        for (const int neighbour : neighbours)
            entity(d, neighbour).adjacent[static_cast<std::size_t>(dimension)].erase(position);
        neighbours.clear();
    }
}

} // namespace Ovra::GeoTool
