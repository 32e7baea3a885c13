#include "ElementSides.h"

#include "AscendingKey.h"
#include "CaseView.h"
#include "ElementCheck.h"
#include "ElementTopology.h"
#include "MeshEntity.h"

#include <algorithm>
#include <numeric>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

// Each takes a walk over all elements.
constexpr std::size_t PartsOfMany = 8;

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
    , counts_(view.meshEntities(0).size(), 0)
{
    regionOfElement_.reserve(elements_.size());
    for (const MeshEntity* element : elements_) {
        if (regions_.empty() || regions_.back() != element->parent()) {
            regions_.push_back(element->parent());
        }
        regionOfElement_.push_back(static_cast<int>(regions_.size()) - 1);
    }
    forEachSide(
        [this](int smallest, const auto&) { ++counts_[static_cast<std::size_t>(smallest)]; });
}

std::vector<ElementSides::Range> ElementSides::parts(std::size_t many) const
{
    const auto total = std::accumulate(counts_.begin(), counts_.end(), std::size_t(0));
    const std::size_t most = total > many ? total / PartsOfMany + 1 : total;
    std::vector<Range> parts = {Range()};
    std::size_t inParts = 0;
    for (const int count : counts_) {
        if (inParts > parts.size() * most) {
            parts.push_back({parts.back().end, parts.back().end});
        }
        inParts += static_cast<std::size_t>(count);
        ++parts.back().end;
    }
    return parts;
}

void ElementSides::collect(const Range& part)
{
    sides_ = {}; // or the memory of two parts would be in use at a time
    const auto counts = std::span<const int>(counts_).subspan(
        static_cast<std::size_t>(part.begin), static_cast<std::size_t>(part.end - part.begin));
    sides_ = SidesByVertex(part.begin, counts, [&](auto add) {
        forEachSide([&](int smallest, const auto& makeSide) {
            if (part.contains(smallest)) {
                add(smallest, makeSide);
            }
        });
    });
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
            action(*std::min_element(side.begin(), side.end()),
                   [&] { return Side(keyOf(side), i, isRising(side)); });
        }
    }
}

ElementSides::Key ElementSides::keyOf(std::span<const int> vertices)
{
    return ascendingKey(vertices.first(std::min<std::size_t>(vertices.size(), 4)), -1);
}

} // namespace Ovra::GeoTool
