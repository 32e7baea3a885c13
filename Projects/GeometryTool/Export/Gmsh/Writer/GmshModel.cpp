#include "GmshModel.h"

#include "Buckets.h"
#include "CaseView.h"
#include "Counted.h"
#include "ElementTopology.h"
#include "EntityNames.h"
#include "GmshFormat.h"
#include "InParallel.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "ToolError.h"

#include <algorithm>
#include <gmsh.h>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Behind it there is room for the groups of materials and the elements of lower dimensions.
constexpr int highestId = 1000000000;

constexpr int gmshPoint = 15;

// Their nodes are listed in less than a millisecond.
constexpr std::size_t fewElements = 65536;

/// \brief Gmsh's number of a kind of element; its nodes stand in the order of ours.
int gmshType(int dimension, std::size_t vertices)
{
    static constexpr int types[4][9] = {{0, gmshPoint, 0, 0, 0, 0, 0, 0, 0},
                                        {0, 0, 1, 0, 0, 0, 0, 0, 0},
                                        {0, 0, 0, 2, 3, 0, 0, 0, 0},
                                        {0, 0, 0, 0, 4, 7, 6, 0, 5}};
    return types[dimension][vertices];
}

/// \param entities ascending
template <typename Entity>
void requireIds(const std::vector<Entity*>& entities, const GmshFormat& format)
{
    const int highest = std::min(highestId, format.highestNumber);
    const bool areLow = !entities.empty() && entities.front()->id() < 1;
    const auto wrong =
        areLow ? entities.begin()
               : std::partition_point(entities.begin(), entities.end(), [highest](Entity* entity) {
                     return entity->id() <= highest;
                 });
    if (wrong != entities.end()) {
        throw ToolError(
            ExitCode::Unsuitable,
            QStringLiteral("%1: %2 takes numbers from 1 to %3; renumber the case")
                .arg(nameOf(**wrong), highest < highestId ? format.title : QStringLiteral("Gmsh"))
                .arg(highest));
    }
}

/// \param count how many numbers are given behind the highest of \p entities
template <typename Entity>
void requireRoomBehind(const std::vector<Entity*>& entities, std::size_t count,
                       const GmshFormat& format)
{
    const auto highest = static_cast<std::size_t>(format.highestNumber);
    if (!entities.empty() && static_cast<std::size_t>(entities.back()->id()) + count > highest) {
        throw ToolError(
            ExitCode::Unsuitable,
            QStringLiteral("%1: %2 takes numbers up to %3, which leaves too few for what is "
                           "numbered behind it; renumber the case")
                .arg(nameOf(*entities.back()), format.title)
                .arg(format.highestNumber));
    }
}

/// \brief How many elements are numbered behind those of the highest dimension, or more.
std::size_t lowerElementCount(const CaseView& view)
{
    std::size_t count = view.modelEntities(0).size();
    for (int d = 1; d < view.elementDimension(); ++d) {
        count += view.meshEntities(d).size();
    }
    return count;
}

void requireKinds(const CaseView& view, int dimension)
{
    const VertexLists& lists = view.vertexLists(dimension);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        const auto vertices = static_cast<int>(lists.of(i).size());
        if (!ElementTopology::find(dimension, vertices)) {
            throw ToolError(ExitCode::Unsuitable,
                            QStringLiteral("%1 is no element: it has %2")
                                .arg(nameOf(*view.meshEntities(dimension)[i]))
                                .arg(counted(vertices, QStringLiteral("vertex"))));
        }
    }
}

std::vector<int> idsOf(const std::vector<ModelEntity*>& entities)
{
    std::vector<int> ids;
    ids.reserve(entities.size());
    for (const ModelEntity* entity : entities) {
        ids.push_back(entity->id());
    }
    return ids;
}

std::vector<int> boundaryOf(const ModelEntity& entity)
{
    std::vector<int> tags;
    const int lower = entity.dimension() - 1;
    for (int i = 0; lower >= 0 && i < entity.adjacencyCount(lower); ++i) {
        tags.push_back(entity.adjacencyAt(lower, i)->id());
    }
    std::sort(tags.begin(), tags.end());
    tags.erase(std::unique(tags.begin(), tags.end()), tags.end());
    return tags;
}

} // namespace

void GmshModel::requireFit(const CaseView& view, const GmshFormat& format)
{
    const int highest = view.elementDimension();
    for (int d = 0; d <= highest; ++d) {
        requireIds(view.modelEntities(d), format);
    }
    requireIds(view.meshEntities(0), format);
    requireIds(view.meshEntities(highest), format);
    for (int d = 1; d <= highest; ++d) {
        requireKinds(view, d);
    }
    requireRoomBehind(view.meshEntities(highest), lowerElementCount(view), format);
    // Groups of materials, and an entity for what stands on no region.
    const std::vector<ModelEntity*>& regions = view.modelEntities(highest);
    requireRoomBehind(regions, regions.size() + 1, format);
}

GmshModel::GmshModel(const CaseView& view, const GmshFormat& format, const GroupNames& names)
    : view_(view)
    , format_(format)
    , names_(names)
    , nodeTags_(view.ids(0).begin(), view.ids(0).end())
    , isAdded_(nodeTags_.size(), false)
{
    const int highest = view.elementDimension();
    for (int d = 0; d <= highest; ++d) {
        std::vector<int>& ids = entities_.at(static_cast<std::size_t>(d));
        ids = idsOf(view.modelEntities(d));
        positions_.at(static_cast<std::size_t>(d)) =
            IdPositions(std::vector<std::int64_t>(ids.begin(), ids.end()));
    }
    const std::vector<MeshEntity*>& elements = view.meshEntities(highest);
    nextTag_ = elements.empty() ? 1 : static_cast<std::size_t>(elements.back()->id()) + 1;
}

void GmshModel::make()
{
    const int highest = view_.elementDimension();
    for (int d = 0; d <= highest; ++d) {
        addEntities(d);
    }
    std::vector<int>& regions = entities_.at(static_cast<std::size_t>(highest));
    const std::vector<int> positions = positionsOf(highest);
    if (regions.empty() || std::find(positions.begin(), positions.end(), -1) != positions.end()) {
        strayEntity_ = gmsh::model::addDiscreteEntity(highest);
        regions.push_back(strayEntity_);
    }
    // Gmsh looks up all nodes anew for the elements of each entity, so that nodes come as late as can be.
    const Buckets<int> vertices = verticesByEntity();
    if (format_.lowestDimension == 0) {
        addNodes(vertices, onPoints(vertices));
        addPoints();
    }
    for (int d = 1; d < highest; ++d) {
        addNodes(vertices, verticesOf(d));
        addElements(d, positionsOf(d));
    }
    addNodes(vertices, std::vector<bool>(nodeTags_.size(), true));
    addElements(highest, positions);
    addGroups();
}

void GmshModel::addEntities(int dimension) const
{
    for (const ModelEntity* entity : view_.modelEntities(dimension)) {
        gmsh::model::addDiscreteEntity(dimension, entity->id(), boundaryOf(*entity));
    }
}

/// \brief Position in entities_ of the model entity that a mesh entity stands on; -1 if that is none
/// of the dimension.
int GmshModel::positionOf(const MeshEntity& entity, int dimension) const
{
    const ModelEntity* const parent = entity.parent();
    return parent && parent->dimension() == dimension
               ? positions_.at(static_cast<std::size_t>(dimension)).find(parent->id())
               : -1;
}

/// \brief The same of all mesh entities of the dimension.
std::vector<int> GmshModel::positionsOf(int dimension) const
{
    std::vector<int> positions;
    positions.reserve(view_.meshEntities(dimension).size());
    const ModelEntity* last = nullptr; // neighbours mostly stand on the same
    for (const MeshEntity* entity : view_.meshEntities(dimension)) {
        if (positions.empty() || entity->parent() != last) {
            last = entity->parent();
            positions.push_back(positionOf(*entity, dimension));
        } else {
            positions.push_back(positions.back());
        }
    }
    return positions;
}

/// \brief Positions of the vertices by that of their entity, counted through all dimensions.
Buckets<int> GmshModel::verticesByEntity() const
{
    const std::vector<MeshEntity*>& vertices = view_.meshEntities(0);
    std::array<std::size_t, 5> starts = {};
    for (std::size_t d = 0; d < 4; ++d) {
        starts.at(d + 1) = starts.at(d) + entities_.at(d).size();
    }
    const std::size_t last = starts[4] - 1;
    return Buckets<int>(starts[4], [&](auto add) {
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            const ModelEntity* const parent = vertices[i]->parent();
            const int d = parent ? parent->dimension() : 0;
            const int position = parent ? positionOf(*vertices[i], d) : -1;
            add(position < 0
                    ? last
                    : starts.at(static_cast<std::size_t>(d)) + static_cast<std::size_t>(position),
                static_cast<int>(i));
        }
    });
}

/// \brief Which vertices stand on model vertices.
std::vector<bool> GmshModel::onPoints(const Buckets<int>& byEntity) const
{
    std::vector<bool> marks(nodeTags_.size(), false);
    for (std::size_t point = 0; point < entities_[0].size(); ++point) {
        for (const int vertex : byEntity[point]) {
            marks[static_cast<std::size_t>(vertex)] = true;
        }
    }
    return marks;
}

/// \brief Which vertices the elements of a dimension have.
std::vector<bool> GmshModel::verticesOf(int dimension) const
{
    std::vector<bool> marks(nodeTags_.size(), false);
    view_.vertexLists(dimension).mark(marks);
    return marks;
}

/// \brief Adds the nodes of those vertices that have none yet.
void GmshModel::addNodes(const Buckets<int>& byEntity, const std::vector<bool>& wanted)
{
    std::size_t bucket = 0;
    for (int d = 0; d < 4; ++d) {
        for (const int entity : entities_.at(static_cast<std::size_t>(d))) {
            std::vector<int> vertices;
            for (const int vertex : byEntity[bucket++]) {
                const auto position = static_cast<std::size_t>(vertex);
                if (wanted[position] && !isAdded_[position]) {
                    vertices.push_back(vertex);
                    isAdded_[position] = true;
                }
            }
            addNodesOf(d, entity, vertices);
        }
    }
}

void GmshModel::addNodesOf(int dimension, int entity, std::span<const int> vertices) const
{
    std::vector<std::size_t> tags;
    std::vector<double> coordinates;
    tags.reserve(vertices.size());
    coordinates.reserve(3 * vertices.size());
    for (const int position : vertices) {
        const auto vertex = static_cast<std::size_t>(position);
        const Vector& point = view_.points()[vertex];
        tags.push_back(nodeTags_[vertex]);
        coordinates.insert(coordinates.end(), {point.x(), point.y(), point.z()});
    }
    if (!tags.empty()) {
        gmsh::model::mesh::addNodes(dimension, entity, tags, coordinates);
    }
}

/// In a case the mesh of a model vertex is a mesh vertex; for Gmsh it is an element too.
void GmshModel::addPoints()
{
    for (const ModelEntity* entity : view_.modelEntities(0)) {
        for (const MeshEntity* vertex : CaseView::childrenOf(*entity)) {
            if (vertex->dimension() == 0) {
                gmsh::model::mesh::addElementsByType(entity->id(), gmshPoint, {nextTag_++},
                                                     {static_cast<std::size_t>(vertex->id())});
            }
        }
    }
}

/// \param positions those of positionsOf(dimension)
void GmshModel::addElements(int dimension, const std::vector<int>& positions)
{
    const std::vector<int>& entities = entities_.at(static_cast<std::size_t>(dimension));
    const bool isHighest = dimension == view_.elementDimension();
    const Buckets<int> byEntity(entities.size(), [&](auto add) {
        for (std::size_t i = 0; i < positions.size(); ++i) {
            if (positions[i] >= 0 || isHighest) {
                add(positions[i] < 0 ? entities.size() - 1 : static_cast<std::size_t>(positions[i]),
                    static_cast<int>(i));
            }
        }
    });
    for (std::size_t i = 0; i < entities.size(); ++i) {
        addElementsOf(dimension, entities[i], byEntity[i]);
    }
}

void GmshModel::addElementsOf(int dimension, int entity, std::span<const int> elements)
{
    const VertexLists& lists = view_.vertexLists(dimension);
    const Buckets<int> byKind(9, [&](auto add) {
        for (const int element : elements) {
            add(lists.of(static_cast<std::size_t>(element)).size(), element);
        }
    });
    for (std::size_t kind = 0; kind < byKind.count(); ++kind) {
        if (byKind[kind].empty()) {
            continue;
        }
        gmsh::model::mesh::addElementsByType(entity, gmshType(dimension, kind),
                                             tagsOf(dimension, byKind[kind]),
                                             nodesOf(dimension, kind, byKind[kind]));
    }
}

/// \param elements all with \p corners vertices
std::vector<std::size_t> GmshModel::nodesOf(int dimension, std::size_t corners,
                                            std::span<const int> elements) const
{
    const VertexLists& lists = view_.vertexLists(dimension);
    std::vector<std::size_t> nodes(corners * elements.size());
    inParallel(elements.size(), fewElements, [&](std::size_t begin, std::size_t end) {
        std::size_t* place = nodes.data() + corners * begin;
        for (std::size_t i = begin; i < end; ++i) {
            for (const int vertex : lists.of(static_cast<std::size_t>(elements[i]))) {
                *place++ = nodeTags_[static_cast<std::size_t>(vertex)];
            }
        }
    });
    return nodes;
}

std::vector<std::size_t> GmshModel::tagsOf(int dimension, std::span<const int> elements)
{
    const bool isHighest = dimension == view_.elementDimension();
    std::vector<std::size_t> tags;
    tags.reserve(elements.size());
    for (const int element : elements) {
        const auto position = static_cast<std::size_t>(element);
        tags.push_back(isHighest ? static_cast<std::size_t>(view_.ids(dimension)[position])
                                 : nextTag_++);
    }
    return tags;
}

void GmshModel::addGroups() const
{
    for (const GroupNames::Group& group : names_.all()) {
        gmsh::model::addPhysicalGroup(group.dimension, group.entities, group.number);
        if (!group.name.isEmpty()) {
            gmsh::model::setPhysicalName(group.dimension, group.number, group.name.toStdString());
        }
    }
    if (strayEntity_ != 0) {
        gmsh::model::addPhysicalGroup(view_.elementDimension(), {strayEntity_});
    }
}

} // namespace Ovra::GeoTool
