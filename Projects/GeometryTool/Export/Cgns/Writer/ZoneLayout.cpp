#include "ZoneLayout.h"

#include "Buckets.h"
#include "CaseView.h"
#include "ElementSides.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "Partition.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// \brief The region that an element stands on, or null.
const ModelEntity* ownParent(const MeshEntity& entity)
{
    const ModelEntity* const parent = entity.parent();
    return parent && parent->dimension() == entity.dimension() ? parent : nullptr;
}

/// \brief Sections of entities of one dimension, by owner, then by number of vertices.
std::vector<ZoneSection> sectionsOf(const CaseView& view, int dimension,
                                    std::span<const int> entities)
{
    const VertexLists& lists = view.vertexLists(dimension);
    std::map<std::pair<int, int>, ZoneSection> sections;
    ZoneSection* last = nullptr; // neighbours mostly are of the same
    for (const int position : entities) {
        const auto entity = static_cast<std::size_t>(position);
        const ModelEntity* const owner = ownParent(*view.meshEntities(dimension)[entity]);
        const int vertices = static_cast<int>(lists.of(entity).size());
        if (!last || last->owner != owner || last->vertexCount != vertices) {
            last = &sections[{owner ? owner->id() : 0, vertices}];
            last->owner = owner;
            last->dimension = dimension;
            last->vertexCount = vertices;
        }
        last->entities.push_back(position);
    }
    std::vector<ZoneSection> list;
    list.reserve(sections.size());
    for (auto& [key, section] : sections) {
        list.push_back(std::move(section));
    }
    return list;
}

/// \brief The id of the region of each element; 0 if it stands on none.
std::vector<int> regionIdsOf(const std::vector<MeshEntity*>& elements)
{
    std::vector<int> ids;
    ids.reserve(elements.size());
    for (const MeshEntity* element : elements) {
        const ModelEntity* const region = ownParent(*element);
        ids.push_back(region ? region->id() : 0);
    }
    return ids;
}

std::vector<int> verticesOf(const CaseView& view, const std::vector<ZoneSection>& sections)
{
    std::vector<bool> used(view.meshEntities(0).size(), false);
    std::size_t count = 0;
    for (const ZoneSection& section : sections) {
        for (const int entity : section.entities) {
            for (const int vertex :
                 view.vertexLists(section.dimension).of(static_cast<std::size_t>(entity))) {
                count += used[static_cast<std::size_t>(vertex)] ? 0U : 1U;
                used[static_cast<std::size_t>(vertex)] = true;
            }
        }
    }
    std::vector<int> vertices;
    vertices.reserve(count);
    for (std::size_t i = 0; i < used.size() && vertices.size() < count; ++i) {
        if (used[i]) {
            vertices.push_back(static_cast<int>(i));
        }
    }
    return vertices;
}

/// The same of a few, for which a table of all vertices would be too much.
std::vector<int> verticesOfFew(const CaseView& view, const std::vector<ZoneSection>& sections)
{
    std::vector<int> vertices;
    for (const ZoneSection& section : sections) {
        for (const int entity : section.entities) {
            const auto list =
                view.vertexLists(section.dimension).of(static_cast<std::size_t>(entity));
            vertices.insert(vertices.end(), list.begin(), list.end());
        }
    }
    std::sort(vertices.begin(), vertices.end());
    vertices.erase(std::unique(vertices.begin(), vertices.end()), vertices.end());
    return vertices;
}

/// \brief Of the mesh faces on model faces, ascending.
std::vector<ElementSides::Key> keysOfFaces(const CaseView& view)
{
    const VertexLists& lists = view.vertexLists(view.faceDimension());
    std::vector<ElementSides::Key> keys;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        if (ownParent(*view.meshEntities(view.faceDimension())[i])) {
            keys.push_back(ElementSides::keyOf(lists.of(i)));
        }
    }
    std::sort(keys.begin(), keys.end());
    return keys;
}

} // namespace

int Zone::localOf(int vertex) const
{
    return static_cast<int>(std::lower_bound(vertices.begin(), vertices.end(), vertex) -
                            vertices.begin());
}

std::size_t Zone::elementCount() const
{
    std::size_t count = 0;
    for (const ZoneSection& section : sections) {
        count += section.entities.size();
    }
    return count;
}

ZoneLayout ZoneLayout::byRegion(const CaseView& view)
{
    const int dimension = view.elementDimension();
    std::vector<int> zones = regionIdsOf(view.meshEntities(dimension));
    std::vector<int> ids; // those of the stray ones, under 0, come first
    std::unique_copy(zones.begin(), zones.end(), std::back_inserter(ids));
    std::sort(ids.begin(), ids.end());
    ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
    for (int& zone : zones) {
        zone = static_cast<int>(std::lower_bound(ids.begin(), ids.end(), zone) - ids.begin());
    }
    return {view, zones, static_cast<int>(ids.size())};
}

ZoneLayout ZoneLayout::asOne(const CaseView& view)
{
    const std::size_t count = view.meshEntities(view.elementDimension()).size();
    return {view, std::vector<int>(count, 0), count > 0 ? 1 : 0};
}

/// A cut into very few elements may leave a part without any.
ZoneLayout ZoneLayout::byPart(const CaseView& view, const Partition& partition)
{
    std::vector<int> zoneOfPart;
    std::vector<int> parts;
    for (int part = 0; part < partition.count(); ++part) {
        zoneOfPart.push_back(static_cast<int>(parts.size()));
        if (!partition.elementsOf(part).empty()) {
            parts.push_back(part);
        }
    }
    std::vector<int> zones;
    for (std::size_t i = 0; i < view.meshEntities(view.elementDimension()).size(); ++i) {
        zones.push_back(zoneOfPart[static_cast<std::size_t>(partition.partOf(i))]);
    }
    ZoneLayout layout(view, zones, static_cast<int>(parts.size()));
    layout.parts_ = parts;
    layout.addSidesBetween(view);
    return layout;
}

ZoneLayout::ZoneLayout(const CaseView& view, const std::vector<int>& zoneOfElement, int count)
    : zoneOfElement_(zoneOfElement)
{
    addElements(view, count);
    for (const ModelEntity* face : view.modelEntities(view.faceDimension())) {
        addPatches(view, *face);
    }
}

void ZoneLayout::addElements(const CaseView& view, int count)
{
    const Buckets<int> byZone(static_cast<std::size_t>(count), [this](auto add) {
        for (std::size_t i = 0; i < zoneOfElement_.size(); ++i) {
            add(static_cast<std::size_t>(zoneOfElement_[i]), static_cast<int>(i));
        }
    });
    for (std::size_t i = 0; i < byZone.count(); ++i) {
        Zone zone;
        zone.sections = sectionsOf(view, view.elementDimension(), byZone[i]);
        zone.vertices = verticesOf(view, zone.sections);
        const ModelEntity* const first = zone.sections.front().owner;
        const bool isOfOne =
            std::all_of(zone.sections.begin(), zone.sections.end(),
                        [first](const ZoneSection& section) { return section.owner == first; });
        zone.region = isOfOne ? first : nullptr;
        zones_.push_back(std::move(zone));
    }
}

/// \brief The zones that a mesh face lies in, each with what is behind it there; one, if both are
/// the same.
std::vector<ZoneLayout::PatchKey> ZoneLayout::keysOf(std::span<const int> elements) const
{
    if (elements.empty()) {
        return {};
    }
    const int first = zoneOfElement_[static_cast<std::size_t>(elements[0])];
    if (elements.size() == 1) {
        return {{first, Outside}};
    }
    const int second = zoneOfElement_[static_cast<std::size_t>(elements[1])];
    if (first == second) {
        return {{first, first}};
    }
    return {{first, second}, {second, first}};
}

void ZoneLayout::addPatches(const CaseView& view, const ModelEntity& face)
{
    const UpwardPositions& elements = view.upward(face.dimension());
    const IdPositions& positions = view.positions(face.dimension());
    std::map<PatchKey, std::vector<int>> faces;
    for (const MeshEntity* child : CaseView::childrenOf(face)) {
        if (child->dimension() != face.dimension()) {
            continue;
        }
        const int position = positions.find(child->id());
        const std::vector<PatchKey> keys = keysOf(elements.of(static_cast<std::size_t>(position)));
        looseFaces_ += keys.empty() ? 1 : 0;
        for (const PatchKey& key : keys) {
            faces[key].push_back(position);
        }
    }
    for (const auto& [key, members] : faces) {
        ZonePatch patch;
        patch.face = &face;
        patch.other = key.second;
        patch.sections = sectionsOf(view, face.dimension(), members);
        patch.vertices = verticesOfFew(view, patch.sections);
        zones_[static_cast<std::size_t>(key.first)].patches.push_back(std::move(patch));
    }
}

void ZoneLayout::addSidesBetween(const CaseView& view)
{
    const std::vector<ElementSides::Key> onFaces = keysOfFaces(view);
    std::map<PatchKey, std::vector<int>> vertices;
    ElementSides sides(view);
    sides.forEachRunOfAllParts([&](const ElementSides::Key& key, ElementSides::Run run) {
        if (run.size() != 2 || std::binary_search(onFaces.begin(), onFaces.end(), key)) {
            return;
        }
        const int first = zoneOfElement_[run[0].element()];
        const int second = zoneOfElement_[run[1].element()];
        if (first != second) {
            std::vector<int>& list = vertices[std::minmax(first, second)];
            list.insert(list.end(), key.begin(), std::find(key.begin(), key.end(), -1));
        }
    });
    for (auto& [zones, list] : vertices) {
        std::sort(list.begin(), list.end());
        list.erase(std::unique(list.begin(), list.end()), list.end());
        const auto& [first, second] = zones;
        zones_[static_cast<std::size_t>(first)].patches.push_back({nullptr, second, {}, list});
        zones_[static_cast<std::size_t>(second)].patches.push_back({nullptr, first, {}, list});
    }
}

} // namespace Ovra::GeoTool
