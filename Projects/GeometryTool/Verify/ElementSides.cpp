#include "ElementSides.h"

#include "AscendingKey.h"
#include "CaseView.h"
#include "ElementCheck.h"
#include "ElementTopology.h"
#include "MeshEntity.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// From the smallest vertex on, a ring runs towards the smaller of its two neighbours or away from
/// it; an edge runs up or down.
bool isRising(std::span<const int> ring)
{
    const auto size = ring.size();
    if (size == 2) {
        return ring[0] < ring[1];
    }
    const auto start =
        static_cast<std::size_t>(std::min_element(ring.begin(), ring.end()) - ring.begin());
    return ring[(start + 1) % size] < ring[(start + size - 1) % size];
}

} // namespace

ElementSides::ElementSides(const CaseView& view)
    : sides_(view.meshEntities(0).size(), [&view](auto add) { forEachSide(view, add); })
    , elements_(view.meshEntities(view.elementDimension()))
{
    for (std::size_t vertex = 0; vertex < sides_.count(); ++vertex) {
        std::sort(sides_[vertex].begin(), sides_[vertex].end());
    }
    regions_.reserve(elements_.size());
    for (const MeshEntity* element : elements_) {
        regions_.push_back(element->parent());
    }
}

template <typename Action>
void ElementSides::forEachSide(const CaseView& view, Action action)
{
    const int dimension = view.elementDimension();
    const VertexLists& lists = view.vertexLists(dimension);
    std::array<int, 4> ring;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const std::span<const int> vertices = lists.of(i);
        if (!ElementCheck::isWellFormed(dimension, vertices)) {
            continue;
        }
        for (const std::vector<int>& local :
             ElementTopology::find(dimension, static_cast<int>(vertices.size()))->sides) {
            std::transform(local.begin(), local.end(), ring.begin(), [vertices](int corner) {
                return vertices[static_cast<std::size_t>(corner)];
            });
            const std::span<const int> side = std::span(ring).first(local.size());
            action(static_cast<std::size_t>(*std::min_element(side.begin(), side.end())), [&] {
                const Key key = keyOf(side);
                return Side({key[1], key[2], key[3]}, i, isRising(side));
            });
        }
    }
}

ElementSides::Run ElementSides::find(const Key& key) const
{
    const auto& [vertex, a, b, c] = key;
    const std::array<int, 3> others = {a, b, c};
    const Run sides = sides_[static_cast<std::size_t>(vertex)];
    const auto begin = std::lower_bound(
        sides.begin(), sides.end(), others,
        [](const Side& side, const std::array<int, 3>& value) { return side.others() < value; });
    const auto end = std::find_if(begin, sides.end(),
                                  [&others](const Side& side) { return side.others() != others; });
    return {begin, end};
}

ElementSides::Key ElementSides::keyOf(std::span<const int> vertices)
{
    return ascendingKey(vertices.first(std::min<std::size_t>(vertices.size(), 4)), -1);
}

} // namespace Ovra::GeoTool
