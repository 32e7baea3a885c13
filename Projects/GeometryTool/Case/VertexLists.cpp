#include "VertexLists.h"

#include "MeshEntity.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// As many places of a table by id as there may be for each vertex.
constexpr std::size_t placesOfVertex = 8;

bool areDense(const std::vector<MeshEntity*>& vertices)
{
    return vertices.empty() ||
           (vertices.front()->id() >= 0 &&
            static_cast<std::size_t>(vertices.back()->id()) / placesOfVertex <= vertices.size());
}

} // namespace

VertexPositions::VertexPositions(const std::vector<MeshEntity*>& vertices)
{
    const bool dense = areDense(vertices);
    if (!dense) {
        ids_.reserve(vertices.size());
    } else if (!vertices.empty()) {
        byId_.resize(static_cast<std::size_t>(vertices.back()->id()) + 1);
    }
    int position = 0;
    for (const MeshEntity* vertex : vertices) {
        if (dense) {
            byId_[static_cast<std::size_t>(vertex->id())] = position++;
        } else {
            ids_.push_back(vertex->id());
        }
    }
}

int VertexPositions::of(const MeshEntity& vertex) const
{
    if (ids_.empty()) {
        return byId_[static_cast<std::size_t>(vertex.id())];
    }
    return static_cast<int>(std::lower_bound(ids_.begin(), ids_.end(), vertex.id()) - ids_.begin());
}

VertexLists::VertexLists(const std::vector<MeshEntity*>& entities, const VertexPositions& positions)
{
    starts_.reserve(entities.size() + 1);
    starts_.push_back(0);
    for (const MeshEntity* entity : entities) {
        starts_.push_back(starts_.back() + static_cast<std::size_t>(entity->adjacencyCount(0)));
    }
    vertices_.reserve(starts_.back());
    for (const MeshEntity* entity : entities) {
        for (int i = 0; i < entity->adjacencyCount(0); ++i) {
            vertices_.push_back(positions.of(*entity->adjacencyAt(0, i)));
        }
    }
}

} // namespace Ovra::GeoTool
