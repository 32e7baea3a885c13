#pragma once

#include <array>

namespace Ovra::GeoTool
{

/// \brief What a mesh element is to VTK.
struct CellShape
{
    static constexpr int MostVertices = 8;

    int type; ///< as in vtkCellType.h

    /// Which of the element's vertices comes where. A wedge has its first triangle the other way
    /// round: with its normal outward.
    std::array<int, MostVertices> order;

    /// \brief The shape of an element of \p dimension with \p vertexCount vertices.
    /// \return null if its kind is unknown
    static const CellShape* find(int dimension, int vertexCount);
};

} // namespace Ovra::GeoTool
