#include "AbaqusEntities.h"

#include <algorithm>
#include <gmsh.h>

namespace Ovra::GeoTool
{

namespace
{

/// Kinds of sets, in the order of their groups.
enum Rank
{
    OfSection,
    Listed,
    OfElements,
    Hidden
};

template <class Numbers>
std::size_t highest(const Numbers& numbers)
{
    const auto found = std::max_element(numbers.begin(), numbers.end());
    return found == numbers.end() ? 0 : static_cast<std::size_t>(*found);
}

AbaqusLabel fullName(const AbaqusPart& body, const AbaqusSets::Set& set)
{
    if (body.name.key.isEmpty()) {
        return set.name;
    }
    return {body.name.text + '.' + set.name.text, body.name.key + '.' + set.name.key};
}

} // namespace

AbaqusEntities::AbaqusEntities(const std::vector<AbaqusPart>& bodies, const AbaqusSetGraph& sets)
    : bodies_(bodies)
    , sets_(sets)
{
    numberOn();
}

void AbaqusEntities::make()
{
    findSectionSets();
    for (const int rank : {OfSection, Listed, OfElements}) {
        addSets(rank);
    }
    addInstances();
    addMaterials();
    const std::vector<Entity> entities = collect();
    std::vector<int> tags;
    for (const auto& [key, members] : entities) {
        tags.push_back(gmsh::model::addDiscreteEntity(key.first));
        if (tags.size() == 1) {
            addNodes(key.first, tags.back());
        }
        addElements(tags.back(), members);
    }
    gmsh::model::mesh::reclassifyNodes();
    addPhysicalGroups(entities, tags);
}

void AbaqusEntities::numberOn()
{
    std::size_t count = 0;
    std::size_t nodes = 0;
    std::size_t elements = 0;
    for (const AbaqusPart& body : bodies_) {
        firstElement_.push_back(count);
        nodeOffset_.push_back(nodes);
        elementOffset_.push_back(elements);
        count += body.elements.size();
        nodes += highest(body.nodeNumbers);
        std::size_t highestElement = 0;
        for (const AbaqusPart::Element& element : body.elements) {
            highestElement = std::max(highestElement, static_cast<std::size_t>(element.number));
        }
        elements += highestElement;
    }
    signatureOf_.assign(count, -1);
}

void AbaqusEntities::findSectionSets()
{
    for (int body = 0; body < static_cast<int>(bodies_.size()); ++body) {
        for (const AbaqusPart::Section& section :
             bodies_[static_cast<std::size_t>(body)].sections) {
            sectionSets_.emplace(body, sets_.sectionSet(body, section.set));
        }
    }
}

int AbaqusEntities::rankOf(int body, int set) const
{
    const AbaqusSets::Set& present =
        bodies_[static_cast<std::size_t>(body)].elementSets.all()[static_cast<std::size_t>(set)];
    if (present.isInternal) {
        return Hidden;
    }
    if (sectionSets_.count({body, set}) > 0) {
        return OfSection;
    }
    return present.isListed ? Listed : OfElements;
}

void AbaqusEntities::addSets(int rank)
{
    for (int body = 0; body < static_cast<int>(bodies_.size()); ++body) {
        const AbaqusPart& owner = bodies_[static_cast<std::size_t>(body)];
        const std::vector<AbaqusSets::Set>& sets = owner.elementSets.all();
        for (int i = 0; i < static_cast<int>(sets.size()); ++i) {
            if (rankOf(body, i) == rank) {
                enterSet(addGroup(fullName(owner, sets[static_cast<std::size_t>(i)])), body, i);
            }
        }
    }
}

void AbaqusEntities::addInstances()
{
    for (std::size_t body = 0; body < bodies_.size(); ++body) {
        const AbaqusLabel& name = bodies_[body].name;
        if (name.key.isEmpty() || groupByKey_.contains(name.key)) {
            continue;
        }
        const int group = addGroup(name);
        for (std::size_t i = 0; i < bodies_[body].elements.size(); ++i) {
            enter(group, firstElement_[body] + i);
        }
    }
}

void AbaqusEntities::addMaterials()
{
    const int others = static_cast<int>(groupNames_.size());
    for (std::size_t body = 0; body < bodies_.size(); ++body) {
        for (const AbaqusPart::Section& section : bodies_[body].sections) {
            const int group = addGroup(section.material);
            if (group >= others) {
                const int number = static_cast<int>(body);
                enterSet(group, number, sets_.sectionSet(number, section.set));
            }
        }
    }
}

/// \brief The group with a name, old or new.
int AbaqusEntities::addGroup(const AbaqusLabel& name)
{
    const auto found = groupByKey_.constFind(name.key);
    if (found != groupByKey_.constEnd()) {
        return found.value();
    }
    const int group = static_cast<int>(groupNames_.size());
    groupByKey_.insert(name.key, group);
    groupNames_.push_back(name.text);
    return group;
}

void AbaqusEntities::enterSet(int group, int body, int set)
{
    sets_.visit(body, set, [this, group](int owner, const AbaqusSets::Range& range) {
        enter(group, owner, range);
    });
}

/// \brief Notes the elements of a range; sets may name others that another analysis adds.
void AbaqusEntities::enter(int group, int body, const AbaqusSets::Range& range)
{
    const AbaqusPart& owner = bodies_[static_cast<std::size_t>(body)];
    const std::size_t first = firstElement_[static_cast<std::size_t>(body)];
    const auto count = static_cast<std::size_t>((range.last - range.first) / range.step);
    if (count < owner.elements.size()) {
        for (long long number = range.first; number <= range.last; number += range.step) {
            const int position = owner.positionOf(static_cast<int>(number));
            if (position >= 0) {
                enter(group, first + static_cast<std::size_t>(position));
            }
        }
        return;
    }
    for (std::size_t i = 0; i < owner.elements.size(); ++i) {
        const int number = owner.elements[i].number;
        if (number >= range.first && number <= range.last &&
            (number - range.first) % range.step == 0) {
            enter(group, first + i);
        }
    }
}

void AbaqusEntities::enter(int group, std::size_t element)
{
    int& signature = signatureOf_[element];
    if (signature >= 0 && signatures_[static_cast<std::size_t>(signature)].group == group) {
        return;
    }
    const auto [found, isNew] =
        refined_.emplace(std::pair(signature, group), static_cast<int>(signatures_.size()));
    if (isNew) {
        signatures_.push_back({signature, group});
    }
    signature = found->second;
}

/// \brief The entities in the order in which their first elements come.
std::vector<AbaqusEntities::Entity> AbaqusEntities::collect() const
{
    std::vector<Entity> entities;
    std::map<Key, std::size_t> positions;
    for (std::size_t body = 0; body < bodies_.size(); ++body) {
        const std::vector<AbaqusPart::Element>& elements = bodies_[body].elements;
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const Key key{elements[i].type.dimension, signatureOf_[firstElement_[body] + i]};
            const auto [found, isNew] = positions.emplace(key, entities.size());
            if (isNew) {
                entities.push_back({key, {}});
            }
            entities[found->second].second.push_back({body, i});
        }
    }
    return entities;
}

void AbaqusEntities::addNodes(int dimension, int entity) const
{
    std::vector<std::size_t> numbers;
    std::vector<double> coordinates;
    for (std::size_t body = 0; body < bodies_.size(); ++body) {
        for (const int number : bodies_[body].nodeNumbers) {
            numbers.push_back(nodeOffset_[body] + static_cast<std::size_t>(number));
        }
        for (const Geo::Vector& point : bodies_[body].points) {
            coordinates.insert(coordinates.end(), {point.x(), point.y(), point.z()});
        }
    }
    gmsh::model::mesh::addNodes(dimension, entity, numbers, coordinates);
}

void AbaqusEntities::addElements(int entity, const std::vector<Member>& members) const
{
    constexpr int quadraticLine = 8;
    std::map<int, std::pair<std::vector<std::size_t>, std::vector<std::size_t>>> byType;
    for (const Member& member : members) {
        const AbaqusPart& body = bodies_[member.body];
        const AbaqusPart::Element& element = body.elements[member.position];
        auto& [numbers, nodes] = byType[element.type.gmshType];
        numbers.push_back(elementOffset_[member.body] + static_cast<std::size_t>(element.number));
        for (std::size_t i = 0; i < static_cast<std::size_t>(element.type.nodeCount); ++i) {
            nodes.push_back(nodeOffset_[member.body] +
                            static_cast<std::size_t>(body.elementNodes[element.firstNode + i]));
        }
        if (element.type.gmshType == quadraticLine) { // along the line there, ends first here
            std::swap(nodes[nodes.size() - 1], nodes[nodes.size() - 2]);
        }
    }
    for (const auto& [type, lists] : byType) {
        gmsh::model::mesh::addElementsByType(entity, type, lists.first, lists.second);
    }
}

void AbaqusEntities::addPhysicalGroups(const std::vector<Entity>& entities,
                                       const std::vector<int>& tags) const
{
    std::map<std::pair<int, int>, std::vector<int>> tagsOf; // by dimension and group
    for (std::size_t i = 0; i < entities.size(); ++i) {
        const auto& [dimension, signature] = entities[i].first;
        for (const int group : groupsOf(signature)) {
            tagsOf[{dimension, group}].push_back(tags[i]);
        }
    }
    for (const auto& [key, members] : tagsOf) {
        const int tag = gmsh::model::addPhysicalGroup(key.first, members);
        gmsh::model::setPhysicalName(
            key.first, tag, groupNames_[static_cast<std::size_t>(key.second)].toStdString());
    }
}

std::vector<int> AbaqusEntities::groupsOf(int signature) const
{
    std::vector<int> groups;
    while (signature >= 0) {
        const Signature& present = signatures_[static_cast<std::size_t>(signature)];
        groups.push_back(present.group);
        signature = present.others;
    }
    return groups;
}

} // namespace Ovra::GeoTool
