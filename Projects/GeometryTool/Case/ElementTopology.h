#pragma once

#include <QString>

#include <initializer_list>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief What makes one kind of mesh element: its sides, in terms of the element's local vertices.
///
/// The sides of a solid stand in the order of its local face numbers, each with its vertices in the
/// sense that makes the normal point out of the element; the sides of a face are its edges in
/// order.
///
/// \code
///      3            4             5           7------6
///     /|\          /|\           /|\         /|     /|
///    / | \        / | \         3---4       4------5 |
///   0--|--2      3-----2        | 2 |       | 3----|-2
///    \ | /      /     /         |/ \|       |/     |/
///      1       0-----1          0---1       0------1
/// \endcode
struct ElementTopology
{
    const char* name;   ///< "tetrahedron"
    const char* plural; ///< "tetrahedra"
    int dimension;
    int vertexCount;
    double regularAspect; ///< longest edge over inscribed radius of the regular element, see
                          ///< MeshQuality
    std::vector<std::vector<int>> sides;

    /// \brief The kind of an element of \p dimension with \p vertexCount vertices; null if there is
    /// none.
    static const ElementTopology* find(int dimension, int vertexCount);

    /// \brief All kinds, by dimension and number of vertices.
    static const std::vector<ElementTopology>& all();
};

} // namespace Ovra::GeoTool
