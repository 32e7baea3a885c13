#pragma once

#include "Buckets.h"

#include <cstddef>
#include <span>
#include <vector>

namespace Ovra::GeoTool
{

class CaseView;

/// \brief What lies at the mesh entities of one dimension: the elements at each mesh face, or the
/// mesh faces at each edge.
///
/// It tells what the upward lists of a mesh do once Geo::Mesh::setUpwardAdjacencies() has made
/// them. To make those of a whole mesh takes two fifths of the time in which it is read.
class UpwardPositions
{
public:
    /// Throws ToolError InputDamaged for a mesh in which entities lie within one another in numbers
    /// that no mesher leaves, and that would take time and memory out of all proportion.
    /// \param dimension of the lower
    UpwardPositions(const CaseView& view, int dimension);

    /// \brief The mesh entities of the upper dimension that have all vertices of one of the lower,
    /// as ascending positions.
    std::span<const int> of(std::size_t lower) const
    {
        return upper_[static_cast<std::size_t>(twins_[lower])];
    }

private:
    std::vector<int> twins_; ///< of the lower: the first that has the same vertices
    Buckets<int> upper_;     ///< by position of the lower; of twins, that of the first
};

} // namespace Ovra::GeoTool
