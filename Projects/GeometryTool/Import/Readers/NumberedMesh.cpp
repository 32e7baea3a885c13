#include "NumberedMesh.h"

#include "UnknownNode.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Ovra::GeoTool
{

bool NumberedMesh::addNode(qint64 number, const std::array<double, 3>& point)
{
    const auto [found, isNew] = nodes_.emplace(number, point);
    return isNew || found->second == point;
}

void NumberedMesh::addElement(qint64 number, int line, const Kind& kind, int reference,
                              std::span<const qint64> nodes)
{
    elements_.push_back({number, line, kind, reference, elementNodes_.size(), nodes.size()});
    elementNodes_.insert(elementNodes_.end(), nodes.begin(), nodes.end());
}

void NumberedMesh::addToGroup(const QString& name, qint64 element)
{
    const auto [found, isNew] = groupByName_.emplace(name, static_cast<int>(names_.size()));
    if (isNew) {
        names_.append(name);
    }
    Groups& groups = groupsOf_[element];
    const auto place = std::lower_bound(groups.begin(), groups.end(), found->second);
    if (place == groups.end() || *place != found->second) {
        groups.insert(place, found->second);
    }
}

QString NumberedMesh::unknownNode() const
{
    for (const Element& element : elements_) {
        for (std::size_t i = 0; i < element.nodeCount; ++i) {
            const qint64 node = elementNodes_[element.firstNode + i];
            if (nodes_.count(node) == 0) {
                return QStringLiteral("line %1: ").arg(element.line) +
                       UnknownNode::text(QStringLiteral("element %1").arg(element.number), node);
            }
        }
    }
    return QString();
}

QStringList NumberedMesh::load() const
{
    DiscreteMesh mesh;
    for (const auto& [number, point] : nodes_) {
        mesh.addNode(static_cast<std::size_t>(number), point);
    }
    const std::map<EntityKey, int> entities = numberedEntities();
    for (const Element& element : elements_) {
        const auto* first = elementNodes_.data() + element.firstNode;
        const std::vector<std::size_t> nodes(first, first + element.nodeCount);
        mesh.addElement(element.kind.dimension, entities.at(keyOf(element)), element.kind.gmshType,
                        nodes);
    }
    mesh.load();
    return loadGroups(entities);
}

NumberedMesh::EntityKey NumberedMesh::keyOf(const Element& element) const
{
    const auto found = groupsOf_.find(element.number);
    return {element.kind.dimension, element.reference,
            found == groupsOf_.end() ? Groups() : found->second};
}

/// \brief Numbers of the entities; 0 where neither a reference nor a group is given.
std::map<NumberedMesh::EntityKey, int> NumberedMesh::numberedEntities() const
{
    int next = 1;
    for (const Element& element : elements_) {
        next = std::max(next, element.reference + 1);
    }
    std::set<std::pair<int, int>> taken; // dimension and number
    std::map<EntityKey, int> entities;
    for (const Element& element : elements_) {
        const auto [place, isNew] = entities.emplace(keyOf(element), element.reference);
        const bool hasNumber = element.reference > 0 || place->first.groups.empty();
        if (isNew &&
            (!hasNumber || !taken.emplace(element.kind.dimension, element.reference).second)) {
            place->second = next++;
        }
    }
    return entities;
}

QStringList NumberedMesh::loadGroups(const std::map<EntityKey, int>& entities) const
{
    std::map<std::pair<int, int>, std::vector<int>> members; // by dimension and group
    std::set<int> present;
    for (const auto& [key, number] : entities) {
        for (const int group : key.groups) {
            members[{key.dimension, group}].push_back(number);
            present.insert(group);
        }
    }
    for (const auto& [key, numbers] : members) {
        DiscreteMesh::loadGroup(key.first, numbers, names_.at(key.second));
    }
    QStringList empty;
    for (int group = 0; group < static_cast<int>(names_.size()); ++group) {
        if (present.count(group) == 0) {
            empty.append(names_.at(group));
        }
    }
    return empty;
}

} // namespace Ovra::GeoTool
