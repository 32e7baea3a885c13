#include "ElementGraph.h"

#include "Buckets.h"
#include "CaseView.h"
#include "ElementSides.h"

#include <algorithm>

namespace Ovra::GeoTool
{

ElementGraph::ElementGraph(const CaseView& view)
    : elementCount_(view.meshEntities(view.elementDimension()).size())
{
    ElementSides sides(view);
    sides.forEachRunOfAllParts([this](const ElementSides::Key&, ElementSides::Run run) {
        for (std::size_t i = 1; i < run.size(); ++i) {
            links_.emplace_back(static_cast<int>(run[i - 1].element()),
                                static_cast<int>(run[i].element()));
        }
    });
}

CutGraph::CutGraph(const ElementGraph& elements, const std::vector<int>& nodeOf,
                   std::size_t nodeCount)
    : starts(1, 0)
    , nodeWeights(nodeCount, 0)
{
    for (const int node : nodeOf) {
        ++nodeWeights[static_cast<std::size_t>(node)];
    }
    Buckets<std::int32_t> ends(nodeCount, [&](auto add) {
        for (const auto& [a, b] : elements.links()) {
            const std::int32_t from = nodeOf[static_cast<std::size_t>(a)];
            const std::int32_t to = nodeOf[static_cast<std::size_t>(b)];
            if (from != to) {
                add(static_cast<std::size_t>(from), to);
                add(static_cast<std::size_t>(to), from);
            }
        }
    });
    for (std::size_t node = 0; node < nodeCount; ++node) {
        const std::span<std::int32_t> all = ends[node];
        std::sort(all.begin(), all.end());
        for (auto end = all.begin(); end != all.end();) {
            const auto next = std::upper_bound(end, all.end(), *end);
            neighbours.push_back(*end);
            linkWeights.push_back(static_cast<std::int32_t>(next - end));
            end = next;
        }
        starts.push_back(static_cast<std::int32_t>(neighbours.size()));
    }
}

} // namespace Ovra::GeoTool
