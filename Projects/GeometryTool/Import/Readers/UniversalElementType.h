#pragma once

#include "NumberedMesh.h"

#include <vector>

namespace Ovra::GeoTool
{

/// \brief A kind of elements of a universal file.
struct UniversalElementType
{
    NumberedMesh::Kind kind;            ///< of dimension 0 if there is no counterpart
    std::vector<std::size_t> corners{}; ///< where they stand among the nodes

    /// \brief The kind with a number, for elements of so many nodes.
    /// \param descriptor the number of the FE descriptor
    static UniversalElementType of(int descriptor, int nodeCount);

    /// \brief Whether a line of orientation stands between record and nodes.
    static bool isBeam(int descriptor);

    /// \brief Nodes with the corners first, as Gmsh has them. What follows is in no order that
    /// counts, as elements become linear.
    std::vector<qint64> cornersFirst(const std::vector<qint64>& nodes) const;
};

} // namespace Ovra::GeoTool
