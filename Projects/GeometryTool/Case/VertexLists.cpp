#include "VertexLists.h"

#include "MeshEntity.h"

#include <cstdint>
#include <utility>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

IdPositions positionsOf(const std::vector<MeshEntity*>& vertices)
{
    std::vector<std::int64_t> ids;
    ids.reserve(vertices.size());
    for (const MeshEntity* vertex : vertices) {
        ids.push_back(vertex->id());
    }
    return IdPositions(std::move(ids));
}

VertexLists::VertexLists(const std::vector<MeshEntity*>& entities, const IdPositions& positions)
{
    starts_.reserve(entities.size() + 1);
    starts_.push_back(0);
    for (const MeshEntity* entity : entities) {
        starts_.push_back(starts_.back() + static_cast<std::size_t>(entity->adjacencyCount(0)));
    }
    vertices_.reserve(starts_.back());
    for (const MeshEntity* entity : entities) {
        for (int i = 0; i < entity->adjacencyCount(0); ++i) {
            vertices_.push_back(positions.find(entity->adjacencyAt(0, i)->id()));
        }
    }
}

} // namespace Ovra::GeoTool
