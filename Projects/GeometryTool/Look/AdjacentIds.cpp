#include "AdjacentIds.h"

#include "ModelEntity.h"

#include <algorithm>
#include <vector>

namespace Ovra::GeoTool
{

QJsonArray adjacentIdsJson(const Geo::ModelEntity& entity, int dimension)
{
    std::vector<int> ids;
    ids.reserve(static_cast<std::size_t>(entity.adjacencyCount(dimension)));
    for (int i = 0; i < entity.adjacencyCount(dimension); ++i) {
        ids.push_back(entity.adjacencyAt(dimension, i)->id());
    }
    std::sort(ids.begin(), ids.end());
    QJsonArray array;
    for (const int id : ids) {
        array.append(id);
    }
    return array;
}

} // namespace Ovra::GeoTool
