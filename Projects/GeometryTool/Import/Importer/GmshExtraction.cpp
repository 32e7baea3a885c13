#include "GmshExtraction.h"

#include "Counted.h"
#include "ElementKind.h"
#include "ElementLists.h"
#include "ElementShape.h"
#include "EqualSets.h"
#include "InputFileCheck.h"
#include "Progress.h"
#include "SideTable.h"
#include "ToolError.h"
#include "UnknownKinds.h"

#include <algorithm>
#include <gmsh.h>
#include <limits>
#include <map>
#include <set>
#include <span>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

/// By all types, since Gmsh gives no elements of a kind without nodes when asked for that alone.
qint64 elementCount(int gmshType, int dimension, int entity)
{
    std::vector<int> types;
    std::vector<std::vector<std::size_t>> elements;
    std::vector<std::vector<std::size_t>> nodes;
    gmsh::model::mesh::getElements(types, elements, nodes, dimension, entity);
    const auto place = std::find(types.begin(), types.end(), gmshType) - types.begin();
    return static_cast<qint64>(elements.at(static_cast<std::size_t>(place)).size());
}

bool isDiscrete(int dimension, int tag)
{
    std::string type;
    gmsh::model::getType(dimension, tag, type);
    return type.rfind("Discrete", 0) == 0;
}

bool anyShapeFromCad(const ImportedMesh& mesh)
{
    for (int d = 1; d <= 3; ++d) {
        for (const ImportedEntity& entity : mesh.entitiesOf(d)) {
            if (entity.fromCad) {
                return true;
            }
        }
    }
    return false;
}

/// \brief Twice the signed area of a face as seen from +z.
double turnInPlane(const ImportedMesh& mesh, const ImportedElement& face)
{
    Vector sum;
    for (int i = 1; i + 1 < face.nodeCount; ++i) {
        sum += (mesh.point(face, i) - mesh.point(face, 0)) ^
               (mesh.point(face, i + 1) - mesh.point(face, 0));
    }
    return sum.z();
}

bool isVtk(const QString& input)
{
    return InputFileCheck::suffix(input) == QLatin1String("vtk");
}

bool isInXyPlane(const ImportedMesh& mesh)
{
    Geo::Box box;
    for (const ImportedNode& node : mesh.nodes) {
        box += node.point;
    }
    return !mesh.nodes.empty() && box.extent().z() == 0.0;
}

/// \brief Whether two sides with the same nodes go through them in the same sense.
bool isTurnedLike(const ImportedElement& side, const ImportedElement& other)
{
    if (side.nodeCount == 2) {
        return side.nodes[0] == other.nodes[0];
    }
    const auto begin = other.nodes.begin();
    const auto end = begin + other.nodeCount;
    const auto found = std::find(begin, end, side.nodes[0]);
    return (found + 1 == end ? *begin : *(found + 1)) == side.nodes[1];
}

/// \brief For each element whether one before it has the same nodes and lies on the same entity.
std::vector<bool> repeatedIn(const ImportedMesh& mesh, int dimension)
{
    const auto& elements = mesh.elementsOf(dimension);
    std::vector<bool> repeated(elements.size(), false);
    const std::vector<EqualSets::Group> groups =
        EqualSets::find(mesh.nodes.size(), elements.size(), [&elements](std::size_t i) {
            return std::span(elements[i].nodes)
                .first(static_cast<std::size_t>(elements[i].nodeCount));
        });
    for (const EqualSets::Group& group : groups) {
        std::set<int> entities;
        for (const int position : group) {
            const auto element = static_cast<std::size_t>(position);
            repeated[element] = !entities.insert(elements[element].entity).second;
        }
    }
    return repeated;
}

/// \brief Room for \p count more, without more than there need be for the last and largest.
void reserveMore(std::vector<ImportedElement>& elements, std::size_t count)
{
    const std::size_t size = elements.size() + count;
    if (size > elements.capacity()) {
        elements.reserve(count > elements.size() ? size : std::max(size, 2 * elements.capacity()));
    }
}

/// \brief The type and nodes of an element, by Gmsh's function for that: later releases than 4.8 also
/// tell where it stands.
template <typename GetElement>
int getElement(GetElement gmshsFunction, std::size_t tag, std::vector<std::size_t>& nodes)
{
    int type = 0;
    if constexpr (std::is_invocable_v<GetElement, std::size_t, int&, std::vector<std::size_t>&>) {
        gmshsFunction(tag, type, nodes);
    } else {
        int dimension = 0;
        int entity = 0;
        gmshsFunction(tag, type, nodes, dimension, entity);
    }
    return type;
}

} // namespace

GmshExtraction::GmshExtraction(const QString& input, Progress& progress)
    : input_(input)
    , progress_(progress)
{
}

ImportedMesh GmshExtraction::extract(int dimension)
{
    progress_.phase(QStringLiteral("taking over the mesh"));
    mesh_.elementDimension = dimension;
    requireKnownKinds(dimension);
    for (int d = 0; d <= dimension; ++d) {
        addEntities(d);
    }
    const bool cad = anyShapeFromCad(mesh_);
    for (ImportedEntity& vertex : mesh_.entitiesOf(0)) {
        vertex.fromCad = cad;
    }
    for (int d = 1; d <= dimension; ++d) {
        addBoundaries(d);
    }
    addNodes();
    for (int d = 0; d <= dimension; ++d) {
        addElements(d);
        removeDuplicates(d);
    }
    warn(higherOrder_, QStringLiteral("element of higher order becomes linear"),
         QStringLiteral("elements of higher order become linear"));
    for (int d = 0; d <= dimension; ++d) {
        classifyNodes(d);
    }
    turnVolumes();
    if (dimension == 2 && isInXyPlane(mesh_)) {
        turnPlanarFaces();
    }
    if (dimension == 3 || isInXyPlane(mesh_)) {
        turnOuterSides();
    }
    dropUnusedNodes();
    return std::move(mesh_);
}

void GmshExtraction::warn(long long count, const QString& singular, const QString& plural)
{
    if (count > 0) {
        progress_.warning(QStringLiteral("%1: %2").arg(input_, counted(count, singular, plural)));
    }
}

void GmshExtraction::addEntities(int dimension)
{
    gmsh::vectorpair entities;
    gmsh::model::getEntities(entities, dimension);
    std::sort(entities.begin(), entities.end());
    // A file that gives no number is given 0 by Gmsh; what is so rebuilt is above all others.
    if (!entities.empty() && entities.front().second == 0) {
        std::rotate(entities.begin(), entities.begin() + 1, entities.end());
    }
    for (const auto& [d, tag] : entities) {
        if (tag < 0) {
            throw ToolError(ExitCode::Unsuitable,
                            QStringLiteral("%1: entity %2 of dimension %3 has no positive number")
                                .arg(input_, QString::number(tag), QString::number(d)));
        }
        ImportedEntity entity;
        const auto& before = mesh_.entitiesOf(d);
        entity.id = tag > 0 ? tag : (before.empty() ? 0 : before.back().id) + 1;
        entity.gmshTag = tag;
        entity.fromCad = !isDiscrete(d, tag);
        std::string label;
        gmsh::model::getEntityName(d, tag, label);
        entity.label = QString::fromStdString(label).simplified();
        addGroups(entity, d);
        mesh_.entitiesOf(d).push_back(entity);
    }
}

void GmshExtraction::addGroups(ImportedEntity& entity, int dimension) const
{
    std::vector<int> groups;
    gmsh::model::getPhysicalGroupsForEntity(dimension, entity.gmshTag, groups);
    for (int& group : groups) {
        group = std::abs(group); // the sign tells the sense of the entity in the group
    }
    std::sort(groups.begin(), groups.end());
    groups.erase(std::unique(groups.begin(), groups.end()), groups.end());
    for (const int group : groups) {
        std::string name;
        gmsh::model::getPhysicalName(dimension, group, name);
        entity.inGroup = entity.inGroup || group > 0;
        if (!name.empty()) {
            entity.groups.append(QString::fromStdString(name));
        }
    }
}

void GmshExtraction::addBoundaries(int dimension)
{
    std::unordered_map<int, int> positions;
    const auto& lower = mesh_.entitiesOf(dimension - 1);
    for (std::size_t i = 0; i < lower.size(); ++i) {
        positions.emplace(lower[i].gmshTag, static_cast<int>(i));
    }
    const int count = static_cast<int>(mesh_.entitiesOf(dimension).size());
    for (int i = 0; i < count; ++i) {
        std::vector<int> upward;
        std::vector<int> downward;
        gmsh::model::getAdjacencies(dimension, mesh_.entity(dimension, i).gmshTag, upward,
                                    downward);
        for (const int tag : downward) {
            const auto found = positions.find(std::abs(tag));
            if (found != positions.end()) {
                mesh_.link(dimension, i, dimension - 1, found->second);
            }
        }
    }
}

void GmshExtraction::requireKnownKinds(int dimension) const
{
    UnknownKinds unknown;
    gmsh::vectorpair entities;
    gmsh::model::getEntities(entities);
    for (const auto& [d, tag] : entities) {
        std::vector<int> types;
        if (d <= dimension) {
            gmsh::model::mesh::getElementTypes(types, d, tag);
        }
        for (const int type : types) {
            const auto kind = ElementKind::of(type);
            if (!kind.isKnown()) {
                unknown.add(kind.name, elementCount(type, d, tag));
            }
        }
    }
    unknown.requireNone(input_);
}

void GmshExtraction::addNodes()
{
    std::vector<std::size_t> tags;
    std::vector<double> coordinates;
    std::vector<double> parameters;
    gmsh::model::mesh::getNodes(tags, coordinates, parameters);
    if (tags.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
        throw ToolError(ExitCode::Unsuitable, QStringLiteral("%1: too many nodes").arg(input_));
    }
    mesh_.nodes.resize(tags.size());
    for (std::size_t i = 0; i < tags.size(); ++i) {
        mesh_.nodes[i].gmshTag = tags[i];
        mesh_.nodes[i].point =
            Vector(coordinates[3 * i], coordinates[3 * i + 1], coordinates[3 * i + 2]);
    }
    std::sort(mesh_.nodes.begin(), mesh_.nodes.end(),
              [](const ImportedNode& a, const ImportedNode& b) { return a.gmshTag < b.gmshTag; });
    std::vector<std::int64_t> ascending;
    ascending.reserve(mesh_.nodes.size());
    for (const ImportedNode& node : mesh_.nodes) {
        ascending.push_back(static_cast<std::int64_t>(node.gmshTag));
    }
    nodePositions_ = IdPositions(std::move(ascending));
    between_.assign(mesh_.nodes.size(), false);
}

/// \brief Throws std::out_of_range for a node that Gmsh did not list.
std::size_t GmshExtraction::positionOfNode(std::size_t tag) const
{
    const int position = nodePositions_.find(static_cast<std::int64_t>(tag));
    if (position < 0) {
        throw std::out_of_range("an element names a node that is not there");
    }
    return static_cast<std::size_t>(position);
}

void GmshExtraction::classifyNodes(int dimension)
{
    const int count = static_cast<int>(mesh_.entitiesOf(dimension).size());
    for (int i = 0; i < count; ++i) {
        std::vector<std::size_t> tags;
        std::vector<double> coordinates;
        std::vector<double> parameters;
        gmsh::model::mesh::getNodes(tags, coordinates, parameters, dimension,
                                    mesh_.entity(dimension, i).gmshTag);
        for (const std::size_t tag : tags) {
            ImportedNode& node = mesh_.nodes[positionOfNode(tag)];
            node.dimension = dimension;
            node.entity = i;
        }
    }
}

void GmshExtraction::addElements(int dimension)
{
    const int count = static_cast<int>(mesh_.entitiesOf(dimension).size());
    for (int i = 0; i < count; ++i) {
        addElementsOf(dimension, i);
    }
}

void GmshExtraction::addElementsOf(int dimension, int position)
{
    const int entity = mesh_.entity(dimension, position).gmshTag;
    std::vector<int> types;
    std::vector<std::vector<std::size_t>> elements;
    std::vector<std::vector<std::size_t>> nodes;
    gmsh::model::mesh::getElements(types, elements, nodes, dimension, entity);
    for (std::size_t t = 0; t < types.size(); ++t) {
        reserveMore(mesh_.elementsOf(dimension), elements[t].size());
        if (ElementLists::count(types[t], entity) != elements[t].size()) {
            addElementsOfAllOrders(types[t], position);
            continue;
        }
        const auto kind = ElementKind::of(types[t]);
        for (std::size_t e = 0; e < elements[t].size(); ++e) {
            addElement(kind, position, nodes[t].data() + e * static_cast<std::size_t>(kind.nodes));
        }
    }
}

/// \brief Adds elements one by one, as Gmsh lists those of one order alone.
void GmshExtraction::addElementsOfAllOrders(int gmshType, int position)
{
    const int dimension = ElementKind::of(gmshType).dimension;
    UnknownKinds unknown;
    std::map<int, ElementKind> kinds;
    std::vector<std::size_t> nodes;
    for (const std::size_t tag :
         ElementLists::tags(gmshType, mesh_.entity(dimension, position).gmshTag)) {
        const int type = getElement(&gmsh::model::mesh::getElement, tag, nodes);
        const auto [kind, isNew] = kinds.try_emplace(type);
        if (isNew) {
            kind->second = ElementKind::of(type);
        }
        if (kind->second.isKnown()) {
            addElement(kind->second, position, nodes.data());
        } else {
            unknown.add(kind->second.name);
        }
    }
    unknown.requireNone(input_);
}

void GmshExtraction::addElement(const ElementKind& kind, int position, const std::size_t* nodes)
{
    higherOrder_ += kind.order > 1 ? 1 : 0;
    ImportedElement element;
    element.entity = position;
    element.nodeCount = kind.corners;
    for (int n = 0; n < kind.nodes; ++n) {
        const std::size_t node = positionOfNode(nodes[n]);
        if (n < kind.corners) {
            element.nodes[static_cast<std::size_t>(n)] = static_cast<int>(node);
        } else {
            between_[node] = true;
        }
    }
    mesh_.elementsOf(kind.dimension).push_back(element);
}

void GmshExtraction::removeDuplicates(int dimension)
{
    auto& elements = mesh_.elementsOf(dimension);
    const std::vector<bool> repeated = repeatedIn(mesh_, dimension);
    std::size_t next = 0;
    const auto kept = std::remove_if(elements.begin(), elements.end(),
                                     [&](const ImportedElement&) { return repeated[next++]; });
    const auto removed = elements.end() - kept;
    elements.erase(kept, elements.end());
    warn(removed,
         QStringLiteral("element of dimension %1 is there twice and taken once").arg(dimension),
         QStringLiteral("elements of dimension %1 are there twice and taken once").arg(dimension));
}

void GmshExtraction::turnVolumes()
{
    long long turned = 0;
    long long turnedWedges = 0;
    long long wedges = 0;
    long long flat = 0;
    constexpr int nodesOfWedge = 6;
    for (ImportedElement& element : mesh_.elementsOf(3)) {
        const double volume = ElementShape::volume(mesh_, element);
        const bool isWedge = element.nodeCount == nodesOfWedge;
        wedges += isWedge ? 1 : 0;
        flat += volume == 0.0 ? 1 : 0;
        if (!(volume < 0)) { // nor is what is too large to be told
            continue;
        }
        ElementShape::flip(element, 3);
        turnedWedges += isWedge ? 1 : 0;
        ++turned;
    }
    // Both senses of a wedge are met in VTK files, but one file keeps to one.
    const bool isOrder = isVtk(input_) && turnedWedges == wedges;
    warn(isOrder ? turned - turnedWedges : turned,
         QStringLiteral("element with a negative volume is turned the right way round"),
         QStringLiteral("elements with a negative volume are turned the right way round"));
    warn(flat, QStringLiteral("element has no volume"), QStringLiteral("elements have no volume"));
}

void GmshExtraction::turnPlanarFaces()
{
    for (ImportedElement& face : mesh_.elementsOf(2)) {
        if (turnInPlane(mesh_, face) < 0) {
            ElementShape::flip(face, 2);
        }
    }
}

void GmshExtraction::turnOuterSides()
{
    const int dimension = mesh_.elementDimension;
    const auto& elements = mesh_.elementsOf(dimension);
    const SideTable sides = SideTable::onElementsBelow(mesh_, dimension);
    for (ImportedElement& element : mesh_.elementsOf(dimension - 1)) {
        const NodeKey key = ElementShape::key(element);
        const SideTable::Run above = sides.find(key);
        if (above.size() == 1 &&
            !isTurnedLike(element,
                          ElementShape::side(elements[above.front().element()], dimension, key))) {
            ElementShape::flip(element, dimension - 1);
        }
    }
}

/// \brief Whether a node stands on a point of the geometry, to which nothing need be attached: a
/// centre of an arc, for instance.
bool GmshExtraction::isOnPoint(const ImportedNode& node) const
{
    return node.dimension == 0 && mesh_.entity(0, node.entity).fromCad;
}

void GmshExtraction::dropUnusedNodes()
{
    std::vector<bool> expected = between_;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        expected[i] = expected[i] || isOnPoint(mesh_.nodes[i]);
    }
    const std::vector<bool> unused = mesh_.removeUnusedNodes();
    long long count = 0;
    for (std::size_t i = 0; i < unused.size(); ++i) {
        count += unused[i] && !expected[i] ? 1 : 0;
    }
    warn(count, QStringLiteral("node that belongs to no element is left out"),
         QStringLiteral("nodes that belong to no element are left out"));
}

} // namespace Ovra::GeoTool
