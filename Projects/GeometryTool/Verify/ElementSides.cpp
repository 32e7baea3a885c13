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

// Each takes two walks over all elements.
constexpr std::size_t PartsOfMany = 4;

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
    : view_(view)
    , elements_(view.meshEntities(view.elementDimension()))
{
    regions_.reserve(elements_.size());
    for (const MeshEntity* element : elements_) {
        regions_.push_back(element->parent());
    }
}

std::vector<ElementSides::Range> ElementSides::parts(std::size_t many) const
{
    std::vector<int> counts(view_.meshEntities(0).size(), 0);
    std::size_t total = 0;
    forEachSide([&](int smallest, const auto&) {
        ++counts[static_cast<std::size_t>(smallest)];
        ++total;
    });
    const std::size_t most = total > many ? total / PartsOfMany : total;
    std::vector<Range> parts = {Range()};
    std::size_t inPart = 0;
    for (const int count : counts) {
        if (inPart > most) {
            parts.push_back({parts.back().end, parts.back().end});
            inPart = 0;
        }
        inPart += static_cast<std::size_t>(count);
        ++parts.back().end;
    }
    return parts;
}

void ElementSides::collect(const Range& part)
{
    part_ = part;
    sides_ = {}; // or the memory of two parts would be in use at a time
    sides_ = Buckets<Side>(static_cast<std::size_t>(part.end - part.begin), [&](auto add) {
        forEachSide([&](int smallest, const auto& makeSide) {
            if (part.contains(smallest)) {
                add(static_cast<std::size_t>(smallest - part.begin), makeSide);
            }
        });
    });
    for (std::size_t vertex = 0; vertex < sides_.count(); ++vertex) {
        std::sort(sides_[vertex].begin(), sides_[vertex].end());
    }
}

template <typename Action>
void ElementSides::forEachSide(Action action) const
{
    const int dimension = view_.elementDimension();
    const VertexLists& lists = view_.vertexLists(dimension);
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
            action(*std::min_element(side.begin(), side.end()), [&] {
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
    const Run sides = sidesAt(vertex);
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
