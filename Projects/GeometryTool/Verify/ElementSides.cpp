#include "ElementSides.h"

#include "AscendingKey.h"
#include "CaseView.h"
#include "ElementCheck.h"
#include "ElementTopology.h"
#include "InParallel.h"
#include "MeshEntity.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <mutex>
#include <numeric>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

// A bit of a mark for each.
constexpr std::size_t PartsOfMany = 16;

// Whose memory is in use at a time.
constexpr std::size_t PartsAtATime = 2;

// It takes a millisecond to find the sides of these.
constexpr std::size_t FewElements = 16384;

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

ElementSides::ElementSides(const CaseView& view, std::size_t many)
    : dimension_(view.elementDimension())
    , lists_(view.vertexLists(dimension_))
    , elements_(view.meshEntities(dimension_))
    , counts_(view.meshEntities(0).size(), 0)
{
    findRegions();
    countSides();
    makeParts(many);
    if (parts_.size() > 1) {
        markElements();
    }
}

void ElementSides::findRegions()
{
    regionOfElement_.reserve(elements_.size());
    for (const MeshEntity* element : elements_) {
        if (regions_.empty() || regions_.back() != element->parent()) {
            regions_.push_back(element->parent());
        }
        regionOfElement_.push_back(static_cast<int>(regions_.size()) - 1);
    }
}

void ElementSides::countSides()
{
    std::mutex mutex; // of counts_
    inParallel(elements_.size(), FewElements, [&](std::size_t begin, std::size_t end) {
        std::vector<int> counts(counts_.size(), 0);
        for (std::size_t element = begin; element < end; ++element) {
            forEachSideOf(element, [&counts](int smallest, const auto&) {
                ++counts[static_cast<std::size_t>(smallest)];
            });
        }
        const std::lock_guard lock(mutex);
        std::transform(counts.begin(), counts.end(), counts_.begin(), counts_.begin(),
                       std::plus<>());
    });
}

void ElementSides::makeParts(std::size_t many)
{
    const auto total = std::accumulate(counts_.begin(), counts_.end(), std::size_t(0));
    const std::size_t most = total > many ? (total + PartsOfMany - 1) / PartsOfMany : total;
    parts_ = {Part()};
    std::size_t inParts = 0;
    for (const int count : counts_) {
        if (inParts > parts_.size() * most) {
            const Part& last = parts_.back();
            parts_.push_back({last.end, last.end, static_cast<std::uint16_t>(2 * last.mark)});
        }
        inParts += static_cast<std::size_t>(count);
        ++parts_.back().end;
    }
}

void ElementSides::markElements()
{
    std::vector<std::uint16_t> marks(counts_.size());
    for (const Part& part : parts_) {
        std::fill(marks.begin() + part.begin, marks.begin() + part.end, part.mark);
    }
    marks_.assign(elements_.size(), 0);
    inParallel(elements_.size(), FewElements, [&](std::size_t begin, std::size_t end) {
        for (std::size_t element = begin; element < end; ++element) {
            forEachSideOf(element, [&](int smallest, const auto&) {
                marks_[element] |= marks[static_cast<std::size_t>(smallest)];
            });
        }
    });
}

std::size_t ElementSides::partOf(const Key& key) const
{
    const auto part =
        std::upper_bound(parts_.begin(), parts_.end(), key.front(),
                         [](int vertex, const Part& each) { return vertex < each.end; });
    return static_cast<std::size_t>(part - parts_.begin());
}

void ElementSides::collect(const Part& part)
{
    part_ = static_cast<std::size_t>(std::countr_zero(part.mark));
    if (firstPart_ <= part_ && part_ < firstPart_ + sides_.size()) {
        return;
    }
    firstPart_ = part_;
    sides_.clear(); // or the memory of more parts would be in use at a time
    sides_.resize(std::min(PartsAtATime, parts_.size() - part_));
    inParallel(sides_.size(), 1, [this](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            sides_[i] = collected(parts_[firstPart_ + i]);
        }
    });
}

SidesByVertex ElementSides::collected(const Part& part) const
{
    const auto counts = std::span<const int>(counts_).subspan(
        static_cast<std::size_t>(part.begin), static_cast<std::size_t>(part.end - part.begin));
    return SidesByVertex(part.begin, counts, [&](auto add) {
        for (std::size_t element = 0; element < elements_.size(); ++element) {
            if (!marks_.empty() && (marks_[element] & part.mark) == 0) {
                continue;
            }
            forEachSideOf(element, [&](int smallest, const auto& makeSide) {
                if (part.contains(smallest)) {
                    add(smallest, makeSide);
                }
            });
        }
    });
}

/// Calls \p action with the smallest vertex of each side and with what makes the side.
template <typename Action>
void ElementSides::forEachSideOf(std::size_t element, Action action) const
{
    const std::span<const int> vertices = lists_.of(element);
    const auto* const topology =
        ElementTopology::find(dimension_, static_cast<int>(vertices.size()));
    if (!topology || hasRepeatedVertex(vertices)) {
        return;
    }
    ElementTopology::with(*topology, [&](auto kind) {
        std::array<int, 4> ring;
        for (const ElementTopology::Side& local : kind().sides) {
            std::transform(local.begin(), local.end(), ring.begin(), [vertices](int corner) {
                return vertices[static_cast<std::size_t>(corner)];
            });
            const std::span<const int> side = std::span(ring).first(local.size());
            action(*std::min_element(side.begin(), side.end()),
                   [&] { return Side(keyOf(side), element, isRising(side)); });
        }
    });
}

ElementSides::Key ElementSides::keyOf(std::span<const int> vertices)
{
    return ascendingKey(vertices.first(std::min<std::size_t>(vertices.size(), 4)), -1);
}

} // namespace Ovra::GeoTool
