#include "ElementShape.h"

#include "AscendingKey.h"
#include "ElementTopology.h"

#include <algorithm>
#include <span>
#include <utility>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

using Edges = std::vector<ElementTopology::Side>;

/// \brief The edges of the faces, each once and as a face of two nodes.
Edges edgesOfFaces(const ElementTopology::Sides& faces)
{
    Edges edges;
    for (const auto& face : faces) {
        for (std::size_t i = 0; i < face.size(); ++i) {
            const auto [low, high] = std::minmax(face[i], face[(i + 1) % face.size()]);
            edges.push_back({low, high});
        }
    }
    std::sort(edges.begin(), edges.end());
    edges.erase(std::unique(edges.begin(), edges.end()), edges.end());
    return edges;
}

std::span<const ElementTopology::Side> localEdges(int nodeCount, int dimension)
{
    if (dimension == 2) {
        return ElementTopology::find(2, nodeCount)->sides;
    }
    static const Edges tetrahedron = edgesOfFaces(ElementShape::faces(4));
    static const Edges pyramid = edgesOfFaces(ElementShape::faces(5));
    static const Edges wedge = edgesOfFaces(ElementShape::faces(6));
    static const Edges hexahedron = edgesOfFaces(ElementShape::faces(8));
    switch (nodeCount) {
    case 4:
        return tetrahedron;
    case 5:
        return pyramid;
    case 6:
        return wedge;
    default:
        return hexahedron;
    }
}

double sixVolumes(const Vector& a, const Vector& b, const Vector& c)
{
    return (a ^ b) * c;
}

} // namespace

const ElementTopology::Sides& ElementShape::faces(int nodeCount)
{
    return ElementTopology::find(3, nodeCount)->sides;
}

ImportedElement ElementShape::side(const ImportedElement& element, int dimension,
                                   const NodeKey& key)
{
    const ElementTopology::Sides& sides =
        ElementTopology::find(dimension, element.nodeCount)->sides;
    const ElementTopology::Side& local =
        *std::find_if(sides.begin(), sides.end(), [&](const ElementTopology::Side& candidate) {
            return sideKey(element, candidate) == key;
        });
    ImportedElement result;
    result.nodeCount = static_cast<int>(local.size());
    for (std::size_t i = 0; i < local.size(); ++i) {
        result.nodes[i] = element.nodes[static_cast<std::size_t>(local[i])];
    }
    return result;
}

void ElementShape::edges(const ImportedElement& element, int dimension,
                         std::vector<std::array<int, 2>>& result)
{
    result.clear();
    for (const auto& edge : localEdges(element.nodeCount, dimension)) {
        result.push_back({element.nodes[static_cast<std::size_t>(edge[0])],
                          element.nodes[static_cast<std::size_t>(edge[1])]});
    }
}

NodeKey ElementShape::key(const ImportedElement& element)
{
    const auto count = static_cast<std::size_t>(std::min(element.nodeCount, 4));
    return {ascendingKey(std::span(element.nodes).first(count), NodeKey::NoNode)};
}

NodeKey ElementShape::sideKey(const ImportedElement& element, const ElementTopology::Side& local)
{
    std::array<int, 4> nodes;
    const auto end =
        std::transform(local.begin(), local.end(), nodes.begin(), [&element](int node) {
            return element.nodes[static_cast<std::size_t>(node)];
        });
    return {ascendingKey({nodes.begin(), end}, NodeKey::NoNode)};
}

NodeKey ElementShape::key(const std::array<int, 2>& edge)
{
    return {ascendingKey(edge, NodeKey::NoNode)};
}

double ElementShape::volume(const ImportedMesh& mesh, const ImportedElement& element)
{
    std::array<Vector, 8> corners; // seen from the first, however far out the element lies
    for (int n = 1; n < element.nodeCount; ++n) {
        corners[static_cast<std::size_t>(n)] = mesh.point(element, n) - mesh.point(element, 0);
    }
    double sum = 0;
    for (const auto& local : faces(element.nodeCount)) {
        const auto corner = [&](std::size_t i) -> const Vector& {
            return corners[static_cast<std::size_t>(local[i])];
        };
        if (local.size() == 3) {
            sum += sixVolumes(corner(0), corner(1), corner(2));
            continue;
        }
        const Vector middle = 0.25 * (corner(0) + corner(1) + corner(2) + corner(3));
        for (std::size_t i = 0; i < 4; ++i) {
            sum += sixVolumes(corner(i), corner((i + 1) % 4), middle);
        }
    }
    return sum / 6.0;
}

void ElementShape::flip(ImportedElement& element, int dimension)
{
    auto& n = element.nodes;
    if (dimension == 1) {
        std::swap(n[0], n[1]);
    } else if (dimension == 2) {
        std::swap(n[1], n[static_cast<std::size_t>(element.nodeCount) - 1]);
    } else if (element.nodeCount == 4 || element.nodeCount == 6) {
        std::swap(n[1], n[2]);
    } else {
        std::swap(n[1], n[3]);
    }
    if (dimension == 3 && element.nodeCount == 6) {
        std::swap(n[4], n[5]);
    }
    if (dimension == 3 && element.nodeCount == 8) {
        std::swap(n[5], n[7]);
    }
}

} // namespace Ovra::GeoTool
