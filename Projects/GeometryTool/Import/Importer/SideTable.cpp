#include "SideTable.h"

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

std::size_t bucketOf(const NodeKey& key)
{
    return static_cast<std::size_t>(key.nodes.front());
}

bool areAllIn(const std::vector<bool>& nodes, const NodeKey& key)
{
    return std::all_of(key.nodes.begin(), key.nodes.end(), [&nodes](int node) {
        return node == NodeKey::NoNode || nodes[static_cast<std::size_t>(node)];
    });
}

} // namespace

SideTable::SideTable(const ImportedMesh& mesh, int dimension)
    : SideTable(mesh, dimension, Nodes(mesh.nodes.size(), true))
{
}

SideTable SideTable::onElementsBelow(const ImportedMesh& mesh, int dimension)
{
    Nodes nodes(mesh.nodes.size(), false);
    for (const ImportedElement& element : mesh.elementsOf(dimension - 1)) {
        for (std::size_t n = 0; n < static_cast<std::size_t>(element.nodeCount); ++n) {
            nodes[static_cast<std::size_t>(element.nodes[n])] = true;
        }
    }
    return {mesh, dimension, nodes};
}

SideTable::SideTable(const ImportedMesh& mesh, int dimension, const Nodes& nodes)
    : sides_(mesh.nodes.size(), [&](auto add) {
        forEachSide(mesh, dimension, [&](const Side& side) {
            if (areAllIn(nodes, side.key)) {
                add(bucketOf(side.key), side);
            }
        });
    })
{
    for (std::size_t node = 0; node < sides_.count(); ++node) {
        std::sort(sides_[node].begin(), sides_[node].end());
    }
}

template <typename Action>
void SideTable::forEachSide(const ImportedMesh& mesh, int dimension, Action action)
{
    std::vector<std::array<int, 2>> edges;
    const auto& elements = mesh.elementsOf(dimension);
    for (std::size_t e = 0; e < elements.size(); ++e) {
        int local = 0;
        if (dimension == 3) {
            for (const auto& face : ElementShape::faces(elements[e].nodeCount)) {
                action({ElementShape::faceKey(elements[e], face), static_cast<int>(e), local++});
            }
            continue;
        }
        ElementShape::edges(elements[e], dimension, edges);
        for (const auto& edge : edges) {
            action({ElementShape::key(edge), static_cast<int>(e), local++});
        }
    }
}

std::span<const SideTable::Side> SideTable::find(const NodeKey& key) const
{
    const std::span<const Side> bucket = sides_[bucketOf(key)];
    const auto [begin, end] =
        std::equal_range(bucket.begin(), bucket.end(), Side{key, 0, 0},
                         [](const Side& a, const Side& b) { return a.key < b.key; });
    return {begin, end};
}

} // namespace Ovra::GeoTool
