#include "ElementCheck.h"

#include "CaseView.h"
#include "Counted.h"
#include "ElementTopology.h"
#include "EqualSets.h"
#include "FindingSink.h"
#include "InParallel.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshQuality.h"
#include "Model.h"
#include "Progress.h"

#include <QSet>

#include <algorithm>
#include <array>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// It takes a millisecond to look at these.
constexpr std::size_t fewElements = 65536;

bool isFinite(const Vector& point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y()) && std::isfinite(point.z());
}

bool hasPoints(const MeshEntity& entity)
{
    for (int i = 0; i < entity.adjacencyCount(0); ++i) {
        if (!isFinite(entity.adjacencyAt(0, i)->centroid())) {
            return false;
        }
    }
    return true;
}

/// For elements of no known kind, which may have any number of vertices.
const MeshEntity* repeatedVertexOfMany(const MeshEntity& entity)
{
    QSet<const MeshEntity*> seen;
    for (int i = 0; i < entity.adjacencyCount(0); ++i) {
        const MeshEntity* const vertex = entity.adjacencyAt(0, i);
        if (seen.contains(vertex)) {
            return vertex;
        }
        seen.insert(vertex);
    }
    return nullptr;
}

/// The first vertex that stands in the list again, or null.
const MeshEntity* repeatedVertex(const MeshEntity& entity)
{
    if (entity.adjacencyCount(0) > static_cast<int>(EqualSets::MostVertices)) {
        return repeatedVertexOfMany(entity);
    }
    for (int i = 1; i < entity.adjacencyCount(0); ++i) {
        for (int j = 0; j < i; ++j) {
            if (entity.adjacencyAt(0, i) == entity.adjacencyAt(0, j)) {
                return entity.adjacencyAt(0, i);
            }
        }
    }
    return nullptr;
}

const ElementTopology* topologyOf(const MeshEntity& entity)
{
    return ElementTopology::find(entity.dimension(), entity.adjacencyCount(0));
}

QString vertexCountsOf(int dimension)
{
    static const std::array<const char*, 4> counts = {"", "an edge has 2", "a face has 3 or 4",
                                                      "a region has 4, 5, 6 or 8"};
    return QLatin1String(counts.at(static_cast<std::size_t>(dimension)));
}

QString measureText(const MeshEntity& entity)
{
    static const std::array<const char*, 4> names = {"", "length", "area", "volume"};
    return QStringLiteral("%1 of %2")
        .arg(QLatin1String(names.at(static_cast<std::size_t>(entity.dimension()))))
        .arg(ElementQuality::measureOf(entity), 0, 'g', 6);
}

/// \brief Of each vertex, whether a mesh edge, face or region has it.
std::vector<bool> usedVertices(const CaseView& view)
{
    std::vector<bool> used(view.meshEntities(0).size(), false);
    for (int dimension = 1; dimension < 4; ++dimension) {
        view.vertexLists(dimension).mark(used);
    }
    return used;
}

} // namespace

ElementCheck::ElementCheck(const CaseView& view, FindingSink& sink)
    : view_(view)
    , sink_(sink)
{
}

bool ElementCheck::isWellFormed(const MeshEntity& entity)
{
    return topologyOf(entity) && !repeatedVertex(entity);
}

bool ElementCheck::isWellFormed(int dimension, std::span<const int> vertices)
{
    return ElementTopology::find(dimension, static_cast<int>(vertices.size())) &&
           !hasRepeatedVertex(vertices);
}

void ElementCheck::run(Progress& progress)
{
    checkPresence();
    checkVertices();
    for (int dimension = 1; dimension < 4; ++dimension) {
        checkVertexLists(dimension);
        checkShapes(dimension, progress);
        checkDuplicates(dimension);
    }
}

/// A region may lack elements, and even all regions may; but of a model that has any the mesh is not
/// empty.
void ElementCheck::checkPresence()
{
    const int dimension = view_.elementDimension();
    if (view_.modelEntities(dimension).empty()) {
        return;
    }
    for (int i = 0; i < 4; ++i) {
        if (!view_.meshEntities(i).empty()) {
            return;
        }
    }
    const QString name = dimension == 3 ? QStringLiteral("regions") : QStringLiteral("faces");
    sink_.add(FindingKind::NoElements, EntityName(EntityName::Owner::Mesh, EntityName::Whole, 0),
              std::nullopt, [&name] {
                  return QStringLiteral("has no entities, though there are model %1").arg(name);
              });
}

void ElementCheck::checkVertices()
{
    const std::vector<bool> used = usedVertices(view_);
    for (std::size_t i = 0; i < used.size(); ++i) {
        const MeshEntity& vertex = *view_.meshEntities(0)[i];
        if (!isFinite(view_.points()[i])) {
            sink_.add(FindingKind::BadPoint, vertex,
                      [] { return QStringLiteral("has a coordinate that is no finite number"); });
        }
        if (!used[i]) {
            sink_.add(FindingKind::UnusedVertex, vertex,
                      [] { return QStringLiteral("is used by no mesh edge, face or region"); });
        }
    }
}

void ElementCheck::checkVertexCount(const MeshEntity& entity, FindingSink& sink)
{
    if (!topologyOf(entity)) {
        sink.add(FindingKind::VertexCount, entity, [&entity] {
            return QStringLiteral("has %1; %2")
                .arg(counted(entity.adjacencyCount(0), QStringLiteral("vertex")),
                     vertexCountsOf(entity.dimension()));
        });
    }
}

/// The lists tell which are worth a look, which takes longer.
void ElementCheck::checkVertexLists(int dimension)
{
    const VertexLists& lists = view_.vertexLists(dimension);
    const UpwardPositions* const faces =
        dimension < view_.faceDimension() ? &view_.upward(dimension) : nullptr;
    const auto lacksFace = [faces](std::size_t edge) { return faces && faces->of(edge).empty(); };
    const std::vector<std::size_t> suspects =
        placesInParallel(lists.size(), fewElements, [&](std::size_t element) {
            return lacksFace(element) || !isWellFormed(dimension, lists.of(element));
        });
    for (const std::size_t element : suspects) {
        const MeshEntity& entity = *view_.meshEntities(dimension)[element];
        checkVertexList(entity);
        if (lacksFace(element)) {
            sink_.add(FindingKind::EdgeWithoutFace, entity,
                      [] { return QStringLiteral("is a side of no mesh face"); });
        }
    }
}

void ElementCheck::checkVertexList(const MeshEntity& entity)
{
    checkVertexCount(entity, sink_);
    if (const MeshEntity* const vertex = repeatedVertex(entity)) {
        sink_.add(FindingKind::RepeatedVertex, entity, [vertex] {
            return QStringLiteral("names mesh vertex %1 twice; the vertices of an element must be "
                                  "different")
                .arg(vertex->id());
        });
    }
}

void ElementCheck::checkShapes(int dimension, Progress& progress)
{
    const MeshQuality& quality = view_.quality(dimension, progress);
    using Report = void (ElementCheck::*)(MeshEntity&);
    const std::array<std::pair<const std::vector<int>*, Report>, 3> reports = {
        {{&quality.degenerate(), &ElementCheck::reportFlat},
         {&quality.inverted(), &ElementCheck::reportInverted},
         {&quality.twisted(), &ElementCheck::reportTwisted}}};
    for (const auto& [ids, report] : reports) {
        for (const int id : *ids) {
            MeshEntity& entity = *view_.mesh().entity(dimension, id);
            if (hasPoints(entity) && !repeatedVertex(entity)) { // these are told already
                (this->*report)(entity);
            }
        }
    }
}

void ElementCheck::reportFlat(MeshEntity& entity)
{
    sink_.add(FindingKind::DegenerateElement, entity, [&entity] {
        static const std::array<const char*, 4> powers = {"", "", " squared", " cubed"};
        return QStringLiteral("is flat: its %1 is at most 1e-12 of its longest edge%2")
            .arg(measureText(entity),
                 QLatin1String(powers.at(static_cast<std::size_t>(entity.dimension()))));
    });
}

void ElementCheck::reportInverted(MeshEntity& entity)
{
    sink_.add(FindingKind::InvertedElement, entity, [&entity] {
        return QStringLiteral("is inside out: its %1 is negative; the order of a %2's vertices "
                              "must make it positive")
            .arg(measureText(entity), QLatin1String(topologyOf(entity)->name));
    });
}

void ElementCheck::reportTwisted(MeshEntity& entity)
{
    sink_.add(FindingKind::TwistedElement, entity, [&entity] {
        return entity.dimension() == 2
                   ? QStringLiteral("is twisted: its sides cross")
                   : QStringLiteral("is twisted: its %1 is positive, but the edges at one of its "
                                    "corners span none")
                         .arg(measureText(entity));
    });
}

void ElementCheck::checkDuplicates(int dimension)
{
    const VertexLists& lists = view_.vertexLists(dimension);
    const std::vector<EqualSets::Group> groups = EqualSets::find(
        view_.meshEntities(0).size(), lists.size(), [dimension, &lists](std::size_t element) {
            const std::span<const int> vertices = lists.of(element);
            return isWellFormed(dimension, vertices) ? vertices : std::span<const int>();
        });
    const auto elementAt = [&](int position) -> const MeshEntity& {
        return *view_.meshEntities(dimension)[static_cast<std::size_t>(position)];
    };
    for (const EqualSets::Group& group : groups) {
        for (std::size_t i = 1; i < group.size(); ++i) {
            sink_.add(FindingKind::DuplicateElement, elementAt(group[i]),
                      [other = EntityName(elementAt(group[i - 1]))] {
                          return QStringLiteral("has the same vertices as %1").arg(other.text());
                      });
        }
    }
}

} // namespace Ovra::GeoTool
