#include "EntitySplitting.h"

#include "UnionFind.h"

#include <algorithm>
#include <map>

namespace Ovra::GeoTool
{

namespace
{

using Set = std::vector<int>;

} // namespace

EntitySplitting::EntitySplitting(ImportedMesh& mesh, const SideTable& volumeSides)
    : mesh_(mesh)
    , volumeSides_(volumeSides)
{
}

/// \brief For each element of \p dimension, the entities one dimension up whose elements have it as
/// a side, ascending and with repetitions.
std::vector<Set> EntitySplitting::entitiesAbove(int dimension, const SideTable& sides) const
{
    std::vector<Set> result;
    for (const ImportedElement& element : mesh_.elementsOf(dimension)) {
        Set above;
        for (const auto& side : sides.find(ElementShape::key(element))) {
            above.push_back(mesh_.elementsOf(dimension + 1)[side.element()].entity);
        }
        std::sort(above.begin(), above.end());
        result.push_back(above);
    }
    return result;
}

void EntitySplitting::split()
{
    splitRegions();
    splitFaces();
    splitEdges();
    splitVertices();
}

bool EntitySplitting::staysWhole(int dimension, const ImportedElement& element) const
{
    return mesh_.entity(dimension, element.entity).fromCad;
}

void EntitySplitting::splitRegions()
{
    const auto& elements = mesh_.elementsOf(3);
    const std::vector<int> regions = mesh_.entitiesOfElements(3);
    UnionFind bodies(elements.size());
    volumeSides_.forEachRun([&](const NodeKey&, SideTable::Run run) {
        const std::size_t first = run.front().element();
        for (const auto& side : run.subspan(1)) {
            if (regions[first] == regions[side.element()]) {
                bodies.join(first, side.element());
            }
        }
    });
    std::vector<std::size_t> labels(elements.size(), 0);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const bool whole =
            staysWhole(3, elements[i]) || mesh_.entity(3, elements[i].entity).inGroup;
        labels[i] = whole ? 0 : bodies.find(i);
    }
    apply(3, labels);
}

void EntitySplitting::splitFaces()
{
    const auto& elements = mesh_.elementsOf(2);
    const std::vector<Set> regions = entitiesAbove(2, volumeSides_);
    UnionFind patches(elements.size());
    SideTable(mesh_, 2).forEachRun([&](const NodeKey&, SideTable::Run run) {
        for (std::size_t i = 0; i < run.size(); ++i) {
            for (std::size_t j = i + 1; j < run.size(); ++j) {
                const std::size_t a = run[i].element();
                const std::size_t b = run[j].element();
                if (elements[a].entity == elements[b].entity && regions[a] == regions[b]) {
                    patches.join(a, b);
                }
            }
        }
    });
    std::map<std::pair<int, Set>, std::size_t> grouped;
    std::vector<std::size_t> labels(elements.size(), 0);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (staysWhole(2, elements[i])) {
            continue;
        }
        labels[i] =
            mesh_.entity(2, elements[i].entity).inGroup
                ? grouped.emplace(std::pair(elements[i].entity, regions[i]), i).first->second
                : patches.find(i);
    }
    apply(2, labels);
}

void EntitySplitting::splitEdges()
{
    const auto& elements = mesh_.elementsOf(1);
    const std::vector<Set> faces = entitiesAbove(1, SideTable(mesh_, 2));
    std::vector<std::vector<std::size_t>> atNode(mesh_.nodes.size());
    for (std::size_t i = 0; i < elements.size(); ++i) {
        for (std::size_t n = 0; n < 2; ++n) {
            atNode[static_cast<std::size_t>(elements[i].nodes[n])].push_back(i);
        }
    }
    UnionFind chains(elements.size());
    for (const auto& lines : atNode) {
        if (lines.size() == 2 && elements[lines[0]].entity == elements[lines[1]].entity &&
            faces[lines[0]] == faces[lines[1]]) {
            chains.join(lines[0], lines[1]);
        }
    }
    std::vector<std::size_t> labels(elements.size(), 0);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const bool whole =
            staysWhole(1, elements[i]) || mesh_.entity(1, elements[i].entity).inGroup;
        labels[i] = whole ? 0 : chains.find(i);
    }
    apply(1, labels);
}

void EntitySplitting::splitVertices()
{
    std::vector<std::size_t> labels;
    for (const ImportedElement& element : mesh_.elementsOf(0)) {
        labels.push_back(staysWhole(0, element) ? 0 : static_cast<std::size_t>(element.nodes[0]));
    }
    apply(0, labels);
}

void EntitySplitting::apply(int dimension, const std::vector<std::size_t>& labels)
{
    auto& elements = mesh_.elementsOf(dimension);
    std::map<std::pair<int, std::size_t>, int> parts;
    std::vector<int> partCount(mesh_.entitiesOf(dimension).size(), 0);
    for (std::size_t i = 0; i < elements.size(); ++i) {
        const int whole = elements[i].entity;
        const auto [part, isNew] = parts.emplace(std::pair(whole, labels[i]), whole);
        if (isNew && ++partCount[static_cast<std::size_t>(whole)] > 1) {
            mesh_.unlink(dimension, whole);
            part->second =
                mesh_.addEntity(dimension, ImportedEntity(mesh_.entity(dimension, whole)));
        }
        elements[i].entity = part->second;
    }
}

} // namespace Ovra::GeoTool
