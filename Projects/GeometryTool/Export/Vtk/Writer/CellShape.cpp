#include "CellShape.h"

#include <vtkCellType.h>

namespace Ovra::GeoTool
{

namespace
{

constexpr std::array<int, CellShape::MostVertices> sameOrder = {0, 1, 2, 3, 4, 5, 6, 7};
constexpr std::array<int, CellShape::MostVertices> wedgeOrder = {0, 2, 1, 3, 5, 4, 6, 7};

struct Kind
{
    int dimension;
    int vertexCount;
    CellShape shape;
};

constexpr std::array<Kind, 8> kinds = {{
    {0, 1, {VTK_VERTEX, sameOrder}},
    {1, 2, {VTK_LINE, sameOrder}},
    {2, 3, {VTK_TRIANGLE, sameOrder}},
    {2, 4, {VTK_QUAD, sameOrder}},
    {3, 4, {VTK_TETRA, sameOrder}},
    {3, 5, {VTK_PYRAMID, sameOrder}},
    {3, 6, {VTK_WEDGE, wedgeOrder}},
    {3, 8, {VTK_HEXAHEDRON, sameOrder}},
}};

} // namespace

const CellShape* CellShape::find(int dimension, int vertexCount)
{
    for (const Kind& kind : kinds) {
        if (kind.dimension == dimension && kind.vertexCount == vertexCount) {
            return &kind.shape;
        }
    }
    return nullptr;
}

} // namespace Ovra::GeoTool
