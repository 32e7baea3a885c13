#pragma once

#include "IdPositions.h"

#include <cstddef>
#include <span>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
}

namespace Ovra::GeoTool
{

/// \brief The positions of mesh vertices in their list, by their ids.
/// \param vertices in ascending order of ids
IdPositions positionsOf(const std::vector<Geo::MeshEntity*>& vertices);

/// \brief Whether a vertex stands in the list of an element twice.
inline bool hasRepeatedVertex(std::span<const int> vertices)
{
    for (std::size_t i = 1; i < vertices.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (vertices[i] == vertices[j]) {
                return true;
            }
        }
    }
    return false;
}

/// \brief The vertices of all mesh entities of one dimension, as positions in the list of all
/// vertices, in one array.
///
/// Vertices lie anywhere in memory, and to ask each one of each element for its id or its place is
/// a cache miss; most of what a check costs is these. Here they are asked for once.
class VertexLists
{
public:
    /// \param positions of all vertices that the entities list
    VertexLists(const std::vector<Geo::MeshEntity*>& entities, const IdPositions& positions);

    /// \brief The vertices of the entity at that position of the list, in their order.
    std::span<const int> of(std::size_t entity) const
    {
        return commonCount_ > 0 ? std::span(vertices_).subspan(entity * commonCount_, commonCount_)
                                : std::span(vertices_).subspan(
                                      starts_[entity], starts_[entity + 1] - starts_[entity]);
    }

    std::size_t size() const { return size_; }

    /// \brief Sets the mark at the position of each vertex that is listed.
    void mark(std::vector<bool>& vertices) const;

private:
    void append(const Geo::MeshEntity& entity, const IdPositions& positions);

    std::size_t size_;
    std::size_t commonCount_;         ///< of vertices, if all entities have as many; or else 0
    std::vector<std::size_t> starts_; ///< without a common count
    std::vector<int> vertices_;
};

} // namespace Ovra::GeoTool
