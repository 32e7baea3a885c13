#include "CaseSurface.h"

#include "BareSides.h"
#include "CaseView.h"
#include "ElementSides.h"
#include "ElementTopology.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

template <typename Part>
void sortByEntity(std::vector<Part>& parts)
{
    const auto rank = [](const Part& part) {
        return part.entity ? std::pair(part.entity->dimension(), part.entity->id())
                           : std::pair(-1, 0);
    };
    std::sort(parts.begin(), parts.end(),
              [&](const Part& a, const Part& b) { return rank(a) < rank(b); });
}

std::vector<ElementSides::Key> keysOf(const VertexLists& lists)
{
    std::vector<ElementSides::Key> keys;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const std::size_t count = lists.of(i).size();
        if (count == 3 || count == 4) {
            keys.push_back(ElementSides::keyOf(lists.of(i)));
        }
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

/// Neither infinite nor so far away that single precision, in which it is drawn, has no number.
bool isDrawable(const Vector& point)
{
    constexpr double farthest = 1e30;
    return std::abs(point.x()) < farthest && std::abs(point.y()) < farthest &&
           std::abs(point.z()) < farthest;
}

/// The vertices of the side of an element that has this key, in their order round it.
std::vector<int> ringOf(std::span<const int> element, const ElementSides::Key& key)
{
    const auto* const topology = ElementTopology::find(3, static_cast<int>(element.size()));
    for (const ElementTopology::Side& side : topology->sides) {
        std::vector<int> ring;
        for (const int local : side) {
            ring.push_back(element[static_cast<std::size_t>(local)]);
        }
        if (ElementSides::keyOf(ring) == key) {
            return ring;
        }
    }
    return {};
}

} // namespace

CaseSurface::CaseSurface(const CaseView& view)
    : view_(view)
{
    addFaces();
    if (view.elementDimension() == 3 && mayHaveBareSides(view)) {
        addBareSides();
    }
    addEdges();
    sortByEntity(patches_);
}

bool CaseSurface::isDrawable(std::span<const int> vertices) const
{
    return std::all_of(vertices.begin(), vertices.end(), [this](int vertex) {
        return GeoTool::isDrawable(view_.points()[static_cast<std::size_t>(vertex)]);
    });
}

CaseSurface::Patch& CaseSurface::patchOf(const ModelEntity* entity)
{
    const auto [place, isNew] = patchPositions_.emplace(entity, patches_.size());
    if (isNew) {
        patches_.push_back({entity, {}, {}});
    }
    return patches_[place->second];
}

void CaseSurface::addPolygon(const ModelEntity* entity, std::span<const int> vertices)
{
    if ((vertices.size() != 3 && vertices.size() != 4) || !isDrawable(vertices)) {
        return;
    }
    Patch& patch = patchOf(entity);
    std::vector<int>& polygons = vertices.size() == 3 ? patch.triangles : patch.quadrilaterals;
    polygons.insert(polygons.end(), vertices.begin(), vertices.end());
}

void CaseSurface::addFaces()
{
    const VertexLists& lists = view_.vertexLists(2);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const ModelEntity* const parent = view_.meshEntities(2)[i]->parent();
        const bool isWithin = parent && parent->dimension() == 3;
        if (!isWithin) {
            addPolygon(parent, lists.of(i));
        }
    }
}

void CaseSurface::addBareSides()
{
    ElementSides sides(view_);
    const std::vector<ElementSides::Key> covered = keysOf(view_.vertexLists(2));
    sides.forEachRunOfAllParts([&](const ElementSides::Key& key, ElementSides::Run run) {
        if (run.size() == 1 && !std::binary_search(covered.begin(), covered.end(), key)) {
            addPolygon(sides.regionOf(run.front()),
                       ringOf(view_.vertexLists(3).of(run.front().element()), key));
        }
    });
}

void CaseSurface::addEdges()
{
    std::map<const ModelEntity*, std::vector<int>> ends;
    const VertexLists& lists = view_.vertexLists(1);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const ModelEntity* const parent = view_.meshEntities(1)[i]->parent();
        if (parent && parent->dimension() == 1 && lists.of(i).size() == 2 &&
            isDrawable(lists.of(i))) {
            const std::span<const int> pair = lists.of(i);
            ends[parent].insert(ends[parent].end(), pair.begin(), pair.end());
        }
    }
    for (auto& [entity, pairs] : ends) {
        lines_.push_back({entity, std::move(pairs)});
    }
    sortByEntity(lines_);
}

} // namespace Ovra::GeoTool
