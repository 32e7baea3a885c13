#include "TopologyCompletion.h"

#include "Counted.h"
#include "ToolError.h"
#include "UnionFind.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace Ovra::GeoTool
{

namespace
{

std::vector<NodeKey> sortedKeys(const std::vector<ImportedElement>& elements)
{
    std::vector<NodeKey> keys;
    keys.reserve(elements.size());
    for (const ImportedElement& element : elements) {
        keys.push_back(ElementShape::key(element));
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

bool contains(const std::vector<NodeKey>& sorted, const NodeKey& key)
{
    return std::binary_search(sorted.begin(), sorted.end(), key);
}

/// \brief The entities of the elements of a run, ascending.
std::vector<int> entitiesOf(const std::vector<int>& entities, SideTable::Run run)
{
    std::vector<int> above;
    for (const auto& side : run) {
        above.push_back(entities[side.element()]);
    }
    std::sort(above.begin(), above.end());
    return above;
}

/// \brief Whether the side is inside one entity: two elements of the same entity share it.
bool isInside(const std::vector<int>& entities, SideTable::Run run)
{
    return run.size() == 2 && entities[run.front().element()] == entities[run.back().element()];
}

} // namespace

TopologyCompletion::TopologyCompletion(ImportedMesh& mesh, const SideTable& volumeSides,
                                       const QString& input)
    : mesh_(mesh)
    , volumeSides_(volumeSides)
    , input_(input)
{
}

void TopologyCompletion::complete()
{
    completeFaces();
    completeEdges();
    completeVertices();
}

void TopologyCompletion::requireTwoSided(const NodeKey& key, SideTable::Run run) const
{
    if (run.size() <= 2) {
        return;
    }
    QStringList nodes;
    for (const int node : key.nodes) {
        if (node >= 0) {
            nodes.append(QString::number(mesh_.nodes[static_cast<std::size_t>(node)].gmshTag));
        }
    }
    throw ToolError(
        ExitCode::InputDamaged,
        QStringLiteral("%1: %2 the face of nodes %3; elements overlap")
            .arg(input_,
                 counted(static_cast<qint64>(run.size()), QStringLiteral("volume element shares"),
                         QStringLiteral("volume elements share")),
                 nodes.join(QLatin1Char(' '))));
}

void TopologyCompletion::completeFaces()
{
    const auto& elements = mesh_.elementsOf(3);
    const std::vector<int> regions = mesh_.entitiesOfElements(3);
    const std::vector<NodeKey> present = sortedKeys(mesh_.elementsOf(2));
    Missing missing;
    Owners owners;
    volumeSides_.forEachRun([&](const NodeKey& key, SideTable::Run run) {
        requireTwoSided(key, run);
        if (isInside(regions, run) || contains(present, key)) {
            return;
        }
        missing.push_back(ElementShape::side(elements[run.front().element()], 3, key));
        owners.push_back(entitiesOf(regions, run));
    });
    placeOnEmptyEntities(2, missing, owners);
    addPatches(missing, owners);
}

void TopologyCompletion::completeEdges()
{
    const std::vector<int> faces = mesh_.entitiesOfElements(2);
    const std::vector<NodeKey> present = sortedKeys(mesh_.elementsOf(1));
    Missing missing;
    Owners owners;
    SideTable(mesh_, 2).forEachRun([&](const NodeKey& key, SideTable::Run run) {
        if (isInside(faces, run) || contains(present, key)) {
            return;
        }
        ImportedElement edge;
        edge.nodeCount = 2;
        edge.nodes[0] = key.nodes[0];
        edge.nodes[1] = key.nodes[1];
        missing.push_back(edge);
        owners.push_back(entitiesOf(faces, run));
    });
    placeOnEmptyEntities(1, missing, owners);
    addChains(missing, owners);
}

void TopologyCompletion::placeOnEmptyEntities(int dimension, Missing& missing, Owners& owners)
{
    std::vector<bool> empty(mesh_.entitiesOf(dimension).size(), true);
    for (const ImportedElement& element : mesh_.elementsOf(dimension)) {
        empty[static_cast<std::size_t>(element.entity)] = false;
    }
    Missing left;
    Owners leftOwners;
    for (std::size_t i = 0; i < missing.size(); ++i) {
        const int entity = emptyEntityUnder(dimension, missing[i], empty);
        if (entity < 0) {
            left.push_back(missing[i]);
            leftOwners.push_back(owners[i]);
            continue;
        }
        missing[i].entity = entity;
        mesh_.elementsOf(dimension).push_back(missing[i]);
    }
    missing = std::move(left);
    owners = std::move(leftOwners);
}

int TopologyCompletion::emptyEntityUnder(int dimension, const ImportedElement& element,
                                         const std::vector<bool>& empty) const
{
    std::vector<int> common;
    for (int n = 0; n < element.nodeCount; ++n) {
        const ImportedNode& node =
            mesh_.nodes[static_cast<std::size_t>(element.nodes[static_cast<std::size_t>(n)])];
        if (node.dimension > dimension) {
            return -1;
        }
        std::vector<int> above{node.entity};
        if (node.dimension < dimension) {
            const auto& set = mesh_.entity(node.dimension, node.entity)
                                  .adjacent[static_cast<std::size_t>(dimension)];
            above.assign(set.begin(), set.end());
        }
        std::vector<int> both;
        std::set_intersection(common.begin(), common.end(), above.begin(), above.end(),
                              std::back_inserter(both));
        common = n == 0 ? above : both;
    }
    std::erase_if(common,
                  [&empty](int entity) { return !empty[static_cast<std::size_t>(entity)]; });
    return common.size() == 1 ? common.front() : -1;
}

void TopologyCompletion::addPatches(const Missing& faces, const Owners& owners)
{
    std::vector<std::pair<NodeKey, std::size_t>> atEdge;
    std::vector<std::array<int, 2>> edges;
    for (std::size_t i = 0; i < faces.size(); ++i) {
        ElementShape::edges(faces[i], 2, edges);
        for (const auto& edge : edges) {
            atEdge.emplace_back(ElementShape::key(edge), i);
        }
    }
    std::sort(atEdge.begin(), atEdge.end());
    std::map<std::vector<int>, std::size_t> lastOf; // of the faces between the same regions
    UnionFind patches(faces.size());
    for (std::size_t i = 0; i < atEdge.size(); ++i) {
        if (i > 0 && atEdge[i].first != atEdge[i - 1].first) {
            lastOf.clear();
        }
        const std::size_t face = atEdge[i].second;
        patches.join(lastOf.emplace(owners[face], face).first->second, face);
    }
    std::vector<std::size_t> labels;
    for (std::size_t i = 0; i < faces.size(); ++i) {
        labels.push_back(patches.find(i));
    }
    addParts(2, faces, labels);
}

void TopologyCompletion::addChains(const Missing& edges, const Owners& owners)
{
    std::vector<int> degree(mesh_.nodes.size(), 0);
    const auto count = [&degree](const std::vector<ImportedElement>& lines) {
        for (const ImportedElement& line : lines) {
            ++degree[static_cast<std::size_t>(line.nodes[0])];
            ++degree[static_cast<std::size_t>(line.nodes[1])];
        }
    };
    count(mesh_.elementsOf(1));
    count(edges);
    std::map<std::pair<int, std::vector<int>>, std::size_t> atNode;
    UnionFind chains(edges.size());
    for (std::size_t i = 0; i < edges.size(); ++i) {
        for (std::size_t n = 0; n < 2; ++n) {
            const int node = edges[i].nodes[n];
            if (degree[static_cast<std::size_t>(node)] == 2) {
                chains.join(atNode.emplace(std::pair(node, owners[i]), i).first->second, i);
            }
        }
    }
    std::vector<std::size_t> labels;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        labels.push_back(chains.find(i));
    }
    addParts(1, edges, labels);
}

void TopologyCompletion::addParts(int dimension, const Missing& missing,
                                  const std::vector<std::size_t>& labels)
{
    std::map<std::size_t, int> entities;
    for (std::size_t i = 0; i < missing.size(); ++i) {
        auto found = entities.find(labels[i]);
        if (found == entities.end()) {
            found = entities.emplace(labels[i], mesh_.addEntity(dimension, ImportedEntity())).first;
        }
        mesh_.elementsOf(dimension).push_back(missing[i]);
        mesh_.elementsOf(dimension).back().entity = found->second;
    }
}

bool TopologyCompletion::isEnd(const std::vector<int>& edgesAtNode) const
{
    return !edgesAtNode.empty() && (edgesAtNode.size() != 2 || edgesAtNode[0] != edgesAtNode[1]);
}

void TopologyCompletion::completeVertices()
{
    std::vector<bool> present(mesh_.nodes.size(), false);
    for (const ImportedElement& point : mesh_.elementsOf(0)) {
        present[static_cast<std::size_t>(point.nodes[0])] = true;
    }
    std::vector<std::vector<int>> edgesAt(mesh_.nodes.size());
    for (const ImportedElement& line : mesh_.elementsOf(1)) {
        edgesAt[static_cast<std::size_t>(line.nodes[0])].push_back(line.entity);
        edgesAt[static_cast<std::size_t>(line.nodes[1])].push_back(line.entity);
    }
    for (std::size_t i = 0; i < mesh_.nodes.size(); ++i) {
        const bool classified = mesh_.nodes[i].dimension == 0;
        if (present[i] || !(classified || isEnd(edgesAt[i]))) {
            continue;
        }
        ImportedElement point;
        point.nodeCount = 1;
        point.nodes[0] = static_cast<int>(i);
        point.entity = classified ? mesh_.nodes[i].entity : mesh_.addEntity(0, ImportedEntity());
        mesh_.elementsOf(0).push_back(point);
    }
}

} // namespace Ovra::GeoTool
