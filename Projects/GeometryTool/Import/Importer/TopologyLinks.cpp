#include "TopologyLinks.h"

#include "ElementShape.h"
#include "NodeMarks.h"

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

/// \brief Entities of one dimension by the nodes of their elements.
class KeyIndex
{
public:
    KeyIndex(const ImportedMesh& mesh, int dimension)
    {
        for (const ImportedElement& element : mesh.elementsOf(dimension)) {
            entries_.emplace_back(ElementShape::key(element), element.entity);
        }
        std::sort(entries_.begin(), entries_.end());
    }

    template <typename Action>
    void forEach(const NodeKey& key, Action action) const
    {
        auto entry = std::lower_bound(entries_.begin(), entries_.end(), std::pair(key, -1));
        for (; entry != entries_.end() && entry->first == key; ++entry) {
            action(entry->second);
        }
    }

    bool isEmpty() const { return entries_.empty(); }

private:
    std::vector<std::pair<NodeKey, int>> entries_;
};

void linkThrough(ImportedMesh& mesh, int low, int middle, int high)
{
    const int count = static_cast<int>(mesh.entitiesOf(middle).size());
    for (int i = 0; i < count; ++i) {
        const auto lower = mesh.entity(middle, i).adjacent[static_cast<std::size_t>(low)];
        const auto higher = mesh.entity(middle, i).adjacent[static_cast<std::size_t>(high)];
        for (const int l : lower) {
            for (const int h : higher) {
                mesh.link(low, l, high, h);
            }
        }
    }
}

void linkVertices(ImportedMesh& mesh)
{
    std::vector<std::vector<int>> verticesAt(mesh.nodes.size());
    for (const ImportedElement& point : mesh.elementsOf(0)) {
        verticesAt[static_cast<std::size_t>(point.nodes[0])].push_back(point.entity);
    }
    const NodeMarks onVertex(mesh, 0);
    for (int d = 1; d <= 3; ++d) {
        for (const ImportedElement& element : mesh.elementsOf(d)) {
            if (onVertex.countOn(element) == 0) {
                continue;
            }
            for (int n = 0; n < element.nodeCount; ++n) {
                for (const int vertex : verticesAt[static_cast<std::size_t>(
                         element.nodes[static_cast<std::size_t>(n)])]) {
                    mesh.link(0, vertex, d, element.entity);
                }
            }
        }
    }
}

void linkEdges(ImportedMesh& mesh)
{
    const KeyIndex index(mesh, 1);
    if (index.isEmpty()) {
        return;
    }
    const NodeMarks onEdge(mesh, 1);
    std::vector<std::array<int, 2>> edges;
    for (int d = 2; d <= 3; ++d) {
        for (const ImportedElement& element : mesh.elementsOf(d)) {
            if (onEdge.countOn(element) < 2) {
                continue;
            }
            ElementShape::edges(element, d, edges);
            for (const auto& edge : edges) {
                if (onEdge.has(edge[0]) && onEdge.has(edge[1])) {
                    index.forEach(ElementShape::key(edge),
                                  [&](int entity) { mesh.link(1, entity, d, element.entity); });
                }
            }
        }
    }
}

void linkFaces(ImportedMesh& mesh)
{
    const KeyIndex index(mesh, 2);
    if (index.isEmpty()) {
        return;
    }
    const NodeMarks onFace(mesh, 2);
    for (const ImportedElement& element : mesh.elementsOf(3)) {
        if (onFace.countOn(element) < 3) {
            continue;
        }
        for (const auto& local : ElementShape::faces(element.nodeCount)) {
            index.forEach(ElementShape::sideKey(element, local),
                          [&](int entity) { mesh.link(2, entity, 3, element.entity); });
        }
    }
}

/// \brief Whether a node goes to entity \p candidate rather than to \p present of the same
/// dimension: Gmsh's own choice first, then the lower position.
bool isBetter(int candidate, int present, int gmshChoice)
{
    if ((candidate == gmshChoice) != (present == gmshChoice)) {
        return candidate == gmshChoice;
    }
    return candidate < present;
}

} // namespace

void TopologyLinks::close(ImportedMesh& mesh)
{
    linkThrough(mesh, 0, 1, 2);
    linkThrough(mesh, 1, 2, 3);
    linkThrough(mesh, 0, 2, 3);
}

void TopologyLinks::addTouching(ImportedMesh& mesh)
{
    linkVertices(mesh);
    linkEdges(mesh);
    linkFaces(mesh);
}

void TopologyLinks::classifyNodes(ImportedMesh& mesh)
{
    const std::vector<ImportedNode> byGmsh = mesh.nodes;
    for (ImportedNode& node : mesh.nodes) {
        node.dimension = 4;
    }
    for (int d = 0; d <= 3; ++d) {
        for (const ImportedElement& element : mesh.elementsOf(d)) {
            for (int n = 0; n < element.nodeCount; ++n) {
                const auto position =
                    static_cast<std::size_t>(element.nodes[static_cast<std::size_t>(n)]);
                ImportedNode& node = mesh.nodes[position];
                const ImportedNode& gmsh = byGmsh[position];
                const int gmshChoice = gmsh.dimension == d ? gmsh.entity : -1;
                if (node.dimension < d ||
                    (node.dimension == d && !isBetter(element.entity, node.entity, gmshChoice))) {
                    continue;
                }
                node.dimension = d;
                node.entity = element.entity;
            }
        }
    }
}

int TopologyLinks::discardEmpty(ImportedMesh& mesh)
{
    int count = 0;
    for (int d = 0; d <= 3; ++d) {
        auto& entities = mesh.entitiesOf(d);
        std::vector<bool> used(entities.size(), false);
        for (const ImportedElement& element : mesh.elementsOf(d)) {
            used[static_cast<std::size_t>(element.entity)] = true;
        }
        for (std::size_t i = 0; i < entities.size(); ++i) {
            if (used[i] || entities[i].fromCad || entities[i].kept) {
                continue;
            }
            entities[i].discarded = true;
            mesh.unlink(d, static_cast<int>(i));
            ++count;
        }
    }
    return count;
}

} // namespace Ovra::GeoTool
