#include "VertexLists.h"

#include "MeshEntity.h"

#include <algorithm>
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

namespace
{

/// Elements whose vertices are asked for before their turn.
constexpr std::size_t ahead = 8;

/// They lie anywhere in memory, and come sooner when many are asked for at once.
void announceVertices(const MeshEntity& entity)
{
    for (int i = 0; i < entity.adjacencyCount(0); ++i) {
        __builtin_prefetch(entity.adjacencyAt(0, i));
    }
}

std::size_t vertexCount(const MeshEntity* entity)
{
    return static_cast<std::size_t>(entity->adjacencyCount(0));
}

std::size_t commonVertexCount(const std::vector<MeshEntity*>& entities)
{
    const bool isCommon = std::all_of(entities.begin(), entities.end(),
                                      [first = entities.begin()](const MeshEntity* entity) {
                                          return vertexCount(entity) == vertexCount(*first);
                                      });
    return isCommon && !entities.empty() ? vertexCount(entities.front()) : 0;
}

std::vector<std::size_t> startsOf(const std::vector<MeshEntity*>& entities)
{
    std::vector<std::size_t> starts;
    starts.reserve(entities.size() + 1);
    starts.push_back(0);
    for (const MeshEntity* entity : entities) {
        starts.push_back(starts.back() + vertexCount(entity));
    }
    return starts;
}

} // namespace

VertexLists::VertexLists(const std::vector<MeshEntity*>& entities, const IdPositions& positions)
    : size_(entities.size())
    , commonCount_(commonVertexCount(entities))
{
    if (commonCount_ == 0) {
        starts_ = startsOf(entities);
    }
    vertices_.reserve(commonCount_ > 0 ? size_ * commonCount_ : starts_.back());
    for (std::size_t i = 0; i < size_; ++i) {
        if (i + ahead < size_) {
            announceVertices(*entities[i + ahead]);
        }
        append(*entities[i], positions);
    }
}

void VertexLists::mark(std::vector<bool>& vertices) const
{
    for (const int vertex : vertices_) {
        vertices[static_cast<std::size_t>(vertex)] = true;
    }
}

void VertexLists::append(const MeshEntity& entity, const IdPositions& positions)
{
    for (int i = 0; i < entity.adjacencyCount(0); ++i) {
        vertices_.push_back(positions.find(entity.adjacencyAt(0, i)->id()));
    }
}

} // namespace Ovra::GeoTool
