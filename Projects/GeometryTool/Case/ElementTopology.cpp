#include "ElementTopology.h"

#include <array>
#include <cstddef>

namespace Ovra::GeoTool
{

namespace
{

constexpr int mostVertices = 8;

/// By dimension and number of vertices: it is asked several times for each element.
using KindTable = std::array<std::array<const ElementTopology*, mostVertices + 1>, 4>;

KindTable kindTable()
{
    KindTable table = {};
    for (const ElementTopology& kind : ElementTopology::all()) {
        table[static_cast<std::size_t>(kind.dimension)]
             [static_cast<std::size_t>(kind.vertexCount)] = &kind;
    }
    return table;
}

} // namespace

const std::vector<ElementTopology>& ElementTopology::all()
{
    // The figures follow from edges of length 1: a triangle's inscribed radius is 1 / (2 sqrt 3),
    // ...
    static const std::vector<ElementTopology> kinds = {
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
    };
    return kinds;
}

const ElementTopology* ElementTopology::find(int dimension, int vertexCount)
{
    static const KindTable table = kindTable();
    const bool isInTable =
        dimension >= 0 && dimension <= 3 && vertexCount >= 0 && vertexCount <= mostVertices;
    return isInTable
               ? table[static_cast<std::size_t>(dimension)][static_cast<std::size_t>(vertexCount)]
               : nullptr;
}

} // namespace Ovra::GeoTool
