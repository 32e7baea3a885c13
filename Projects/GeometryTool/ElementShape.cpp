#include "ElementShape.h"

#include <algorithm>
#include <utility>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

using LocalFaces = std::vector<std::array<int, 4>>;

const LocalFaces TetrahedronFaces{{1, 2, 3, -1}, {0, 3, 2, -1}, {0, 1, 3, -1}, {0, 2, 1, -1}};
const LocalFaces PyramidFaces{
    {3, 2, 1, 0}, {0, 1, 4, -1}, {1, 2, 4, -1}, {2, 3, 4, -1}, {3, 0, 4, -1}};
const LocalFaces WedgeFaces{{0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}, {0, 2, 1, -1}, {3, 4, 5, -1}};
const LocalFaces HexahedronFaces{{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4},
                                 {2, 3, 7, 6}, {0, 3, 2, 1}, {4, 5, 6, 7}};

std::vector<std::array<int, 2>> edgesOfFaces(const LocalFaces& faces)
{
    std::vector<std::array<int, 2>> edges;
    for (const auto& face : faces) {
        const std::size_t count = face[3] < 0 ? 3 : 4;
        for (std::size_t i = 0; i < count; ++i)
            edges.push_back({std::min(face[i], face[(i + 1) % count]),
                             std::max(face[i], face[(i + 1) % count])});
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

const std::vector<std::array<int, 2>>& localEdges(int nodeCount, int dimension)
{
    static const std::vector<std::array<int, 2>> Triangle{{0, 1}, {1, 2}, {2, 0}};
    static const std::vector<std::array<int, 2>> Quadrilateral{{0, 1}, {1, 2}, {2, 3}, {3, 0}};
    static const auto Tetrahedron = edgesOfFaces(TetrahedronFaces);
    static const auto Pyramid = edgesOfFaces(PyramidFaces);
    static const auto Wedge = edgesOfFaces(WedgeFaces);
    static const auto Hexahedron = edgesOfFaces(HexahedronFaces);
    if (dimension == 2)
        return nodeCount == 3 ? Triangle : Quadrilateral;
    switch (nodeCount) {
    case 4:
        return Tetrahedron;
    case 5:
        return Pyramid;
    case 6:
        return Wedge;
    default:
        return Hexahedron;
    }
}

double sixVolumes(const Vector& a, const Vector& b, const Vector& c)
{
    return (a ^ b) * c;
}

} // namespace

const std::vector<std::array<int, 4>>& ElementShape::faces(int nodeCount)
{
    switch (nodeCount) {
    case 4:
        return TetrahedronFaces;
    case 5:
        return PyramidFaces;
    case 6:
        return WedgeFaces;
    default:
        return HexahedronFaces;
    }
}

ImportedElement ElementShape::face(const ImportedElement& element, const std::array<int, 4>& local)
{
    ImportedElement result;
    result.nodeCount = local[3] < 0 ? 3 : 4;
    for (std::size_t i = 0; i < static_cast<std::size_t>(result.nodeCount); ++i)
        result.nodes[i] = element.nodes[static_cast<std::size_t>(local[i])];
    return result;
}

void ElementShape::edges(const ImportedElement& element, int dimension,
                         std::vector<std::array<int, 2>>& result)
{
    result.clear();
    for (const auto& edge : localEdges(element.nodeCount, dimension))
        result.push_back({element.nodes[static_cast<std::size_t>(edge[0])],
                          element.nodes[static_cast<std::size_t>(edge[1])]});
}

NodeKey ElementShape::key(const ImportedElement& element)
{
    NodeKey result;
    const auto count = static_cast<std::ptrdiff_t>(std::min(element.nodeCount, 4));
    std::copy_n(element.nodes.begin(), count, result.nodes.begin());
    std::sort(result.nodes.begin(), result.nodes.begin() + count);
    return result;
}

NodeKey ElementShape::key(const std::array<int, 2>& edge)
{
    NodeKey result;
    result.nodes[0] = std::min(edge[0], edge[1]);
    result.nodes[1] = std::max(edge[0], edge[1]);
    return result;
}

double ElementShape::volume(const ImportedMesh& mesh, const ImportedElement& element)
{
    const Vector origin = mesh.point(element, 0);
    double sum = 0;
    for (const auto& local : faces(element.nodeCount)) {
        const ImportedElement side = face(element, local);
        std::array<Vector, 4> p;
        Vector middle;
        for (int i = 0; i < side.nodeCount; ++i) {
            p[static_cast<std::size_t>(i)] = mesh.point(side, i) - origin;
            middle += p[static_cast<std::size_t>(i)];
        }
        if (side.nodeCount == 3) {
            sum += sixVolumes(p[0], p[1], p[2]);
            continue;
        }
        middle *= 0.25;
        for (std::size_t i = 0; i < 4; ++i)
            sum += sixVolumes(p[i], p[(i + 1) % 4], middle);
    }
    return sum / 6.0;
}

void ElementShape::flip(ImportedElement& element, int dimension)
{
    auto& n = element.nodes;
    if (dimension == 1)
        std::swap(n[0], n[1]);
    else if (dimension == 2)
        std::swap(n[1], n[static_cast<std::size_t>(element.nodeCount) - 1]);
    else if (element.nodeCount == 4 || element.nodeCount == 6)
        std::swap(n[1], n[2]);
    else
        std::swap(n[1], n[3]);
    if (dimension == 3 && element.nodeCount == 6)
        std::swap(n[4], n[5]);
    if (dimension == 3 && element.nodeCount == 8)
        std::swap(n[5], n[7]);
}

} // namespace Ovra::GeoTool
