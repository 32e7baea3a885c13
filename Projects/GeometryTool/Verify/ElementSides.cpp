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

bool isBefore(const ElementSides::Side& a, const ElementSides::Side& b)
{
    if (a.key != b.key) {
        return a.key < b.key;
    }
    return a.element->id() < b.element->id();
}

/// From the smallest id on, a ring runs towards the smaller of its two neighbours or away from it;
/// an edge runs up or down.
bool isRising(const std::vector<int>& ring)
{
    const auto size = ring.size();
    if (size == 2) {
        return ring[0] < ring[1];
    }
    const auto start =
        static_cast<std::size_t>(std::min_element(ring.begin(), ring.end()) - ring.begin());
    return ring[(start + 1) % size] < ring[(start + size - 1) % size];
}

ElementSides::Key keyOfRing(const std::vector<int>& ring)
{
    return ascendingKey(ring, 0);
}

} // namespace

ElementSides::ElementSides(const CaseView& view)
{
    for (const MeshEntity* element : view.meshEntities(view.elementDimension())) {
        if (ElementCheck::isWellFormed(*element)) {
            addSides(*element);
        }
    }
    std::sort(sides_.begin(), sides_.end(), isBefore);
}

void ElementSides::addSides(const MeshEntity& element)
{
    const auto& topology = *ElementTopology::find(element.dimension(), element.adjacencyCount(0));
    std::vector<int> ring;
    for (const std::vector<int>& local : topology.sides) {
        ring.clear();
        for (const int index : local) {
            ring.push_back(element.adjacencyAt(0, index)->id());
        }
        sides_.push_back({keyOfRing(ring), &element, isRising(ring)});
    }
}

ElementSides::Run ElementSides::find(const Key& key) const
{
    const auto before = [](const Side& side, const Key& value) { return side.key < value; };
    const auto begin = std::lower_bound(sides_.begin(), sides_.end(), key, before);
    auto end = begin;
    while (end != sides_.end() && end->key == key) {
        ++end;
    }
    return {begin, end};
}

ElementSides::Key ElementSides::keyOf(const MeshEntity& face)
{
    std::vector<int> ring;
    for (int i = 0; i < face.adjacencyCount(0) && i < 4; ++i) {
        ring.push_back(face.adjacencyAt(0, i)->id());
    }
    return keyOfRing(ring);
}

} // namespace Ovra::GeoTool
