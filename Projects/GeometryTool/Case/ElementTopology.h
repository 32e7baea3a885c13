#pragma once

#include "ShortList.h"

#include <array>
#include <cstddef>

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
    using Side = ShortList<int, 4>;
    using Sides = ShortList<Side, 6>;

    const char* name;   ///< "tetrahedron"
    const char* plural; ///< "tetrahedra"
    int dimension;
    int vertexCount;
    double regularAspect; ///< longest edge over inscribed radius of the regular element, see
                          ///< MeshQuality
    Sides sides;

    /// \brief The kind of an element of \p dimension with \p vertexCount vertices; null if there is
    /// none.
    static constexpr const ElementTopology* find(int dimension, int vertexCount);

    /// \brief Calls \p action with what gives \p kind when it is called: by a type of its own for
    /// tetrahedra, which most elements are, so that the compiler has its table before it.
    template <typename Action>
    static constexpr void with(const ElementTopology& kind, Action action);

    /// \brief All kinds, by dimension and number of vertices.
    static constexpr const std::array<ElementTopology, 7>& all();
};

// In the header, as loops over all elements of a mesh ask for it.
namespace ElementTopologyTable
{

// The figures follow from edges of length 1: a triangle's inscribed radius is 1 / (2 sqrt 3), ...
inline constexpr std::array<ElementTopology, 7> kinds = {{
    {"line", "lines", 1, 2, 1.0, {}},
    {"triangle", "triangles", 2, 3, 3.4641016151377544, {{0, 1}, {1, 2}, {2, 0}}},
    {"quadrilateral", "quadrilaterals", 2, 4, 2.0, {{0, 1}, {1, 2}, {2, 3}, {3, 0}}},
    {"tetrahedron",
     "tetrahedra",
     3,
     4,
     4.898979485566356,
     {{1, 2, 3}, {0, 3, 2}, {0, 1, 3}, {0, 2, 1}}},
    {"pyramid",
     "pyramids",
     3,
     5,
     3.863703305156273,
     {{3, 2, 1, 0}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}}},
    {"wedge",
     "wedges",
     3,
     6,
     2.9760677434251694,
     {{0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}, {0, 2, 1}, {3, 4, 5}}},
    {"hexahedron",
     "hexahedra",
     3,
     8,
     2.0,
     {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4}, {2, 3, 7, 6}, {0, 3, 2, 1}, {4, 5, 6, 7}}},
}};

inline constexpr int mostVertices = 8;

using ByCount = std::array<std::array<const ElementTopology*, mostVertices + 1>, 4>;

constexpr ByCount makeByCount()
{
    ByCount table = {};
    for (const ElementTopology& kind : kinds) {
        table[static_cast<std::size_t>(kind.dimension)]
             [static_cast<std::size_t>(kind.vertexCount)] = &kind;
    }
    return table;
}

/// By dimension and number of vertices.
inline constexpr ByCount byCount = makeByCount();

} // namespace ElementTopologyTable

constexpr const ElementTopology* ElementTopology::find(int dimension, int vertexCount)
{
    using namespace ElementTopologyTable;
    const bool isInTable =
        dimension >= 0 && dimension <= 3 && vertexCount >= 0 && vertexCount <= mostVertices;
    return isInTable
               ? byCount[static_cast<std::size_t>(dimension)][static_cast<std::size_t>(vertexCount)]
               : nullptr;
}

template <typename Action>
constexpr void ElementTopology::with(const ElementTopology& kind, Action action)
{
    if (&kind == ElementTopologyTable::byCount[3][4]) {
        action([]() -> const ElementTopology& { return *ElementTopologyTable::byCount[3][4]; });
    } else {
        action([&kind]() -> const ElementTopology& { return kind; });
    }
}

constexpr const std::array<ElementTopology, 7>& ElementTopology::all()
{
    return ElementTopologyTable::kinds;
}

} // namespace Ovra::GeoTool
