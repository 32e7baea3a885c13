#include "Mesh.h"

#include "AttributeType.h"
#include "EntityTable.h"
#include "MeshEntity.h"
#include "UpwardLists.h"
#include "VertexListFiller.h"

#include <QVariant>

#include <algorithm>
#include <cmath>

namespace Ovra::Geo
{

namespace
{

// What lists a stream justifies. In a sound mesh an element of k vertices has no more sides than
// pairs of vertices, and stands in the list of each once; the vertices of finite elements are 27 at
// most. To find them takes steps by the power of 3/2 in meshes whose elements all stand on two
// lines, which have the most for their size.
UpwardLists::Limits limitsOf(const Mesh& mesh, int dimension, qint64 vertexCount)
{
    constexpr qint64 mostPairs = 27 * 26 / 2;
    UpwardLists::Limits limits;
    limits.entries = 0;
    for (auto elements = mesh.iterator(dimension); elements.hasNext();) {
        const qint64 vertices = elements.next().value()->adjacencyCount(0);
        limits.entries += std::min(vertices * (vertices - 1) / 2, mostPairs + vertices);
    }
    const auto size = static_cast<double>(vertexCount);
    limits.steps = static_cast<qint64>(size * (64 + std::sqrt(size) / 4));
    return limits;
}

// Gives the number of vertices that the elements list.
qint64 addElementsToVertices(const std::array<IdTable<MeshEntity>, 4>& entities)
{
    VertexListFiller lists(entities[0]);
    for (int d = 1; d <= 3; ++d) {
        lists.append(entities[static_cast<size_t>(d)], d);
    }
    return lists.count();
}

} // namespace

Mesh::Mesh(Model* model)
    : model_(model)
{
}

Mesh::~Mesh()
{
    clear();
}

void Mesh::add(MeshEntity* entity)
{
    const auto d = static_cast<size_t>(entity->dimension());
    addToTable(entity, entities_[d], idGenerators_[d]);
}

void Mesh::remove(MeshEntity* entity)
{
    entities_[static_cast<size_t>(entity->dimension())].remove(entity->id());
    entity->removeFromAdjacencies();
    delete entity;
}

void Mesh::clear(int dimension)
{
    const auto d = static_cast<size_t>(dimension);
    clearTable(entities_[d], idGenerators_[d]);
}

void Mesh::clear()
{
    for (int dimension = 3; dimension >= 0; --dimension) {
        clear(dimension);
    }
}

int Mesh::count(int dimension) const
{
    return static_cast<int>(entities_[static_cast<size_t>(dimension)].size());
}

bool Mesh::isEmpty() const
{
    return std::all_of(entities_.cbegin(), entities_.cend(),
                       [](const auto& table) { return table.isEmpty(); });
}

MeshEntity* Mesh::entity(int dimension, int id) const
{
    return entities_[static_cast<size_t>(dimension)].value(id);
}

HashIterator<int, MeshEntity*> Mesh::iterator(int dimension) const
{
    return HashIterator<int, MeshEntity*>(entities_[static_cast<size_t>(dimension)]);
}

OrderedHashIterator<int, MeshEntity*> Mesh::orderedIterator(int dimension) const
{
    return OrderedHashIterator<int, MeshEntity*>(&entities_[static_cast<size_t>(dimension)]);
}

void Mesh::setUpwardAdjacencies()
{
    setUpwardAdjacencies(Limit::None);
}

bool Mesh::setUpwardAdjacencies(Limit limit)
{
    const qint64 vertexCount = addElementsToVertices(entities_);
    bool isComplete = true;
    for (int d = 1; d <= 2; ++d) {
        const UpwardLists lists(d + 1, limit == Limit::None ? UpwardLists::Limits()
                                                            : limitsOf(*this, d + 1, vertexCount));
        for (auto entities = iterator(d); entities.hasNext();) {
            entities.next().value()->setUpwardAdjacencies();
        }
        isComplete = isComplete && lists.isComplete();
    }
    return isComplete;
}

void Mesh::clearUpwardAdjacencies()
{
    for (int d = 0; d <= 2; ++d) {
        for (auto entities = iterator(d); entities.hasNext();) {
            entities.next().value()->clearUpwardAdjacencies();
        }
    }
}

void Mesh::renumber(int dimension)
{
    const auto d = static_cast<size_t>(dimension);
    if (count(dimension) == idGenerators_[d].maxId()) {
        return;
    }
    IdTable<MeshEntity> renumbered;
    renumbered.reserve(count(dimension));
    QMap<int, int> idMap;
    int newId = 0;
    for (auto entities = iterator(dimension); entities.hasNext();) {
        const auto entry = entities.next();
        entry.value()->setId(++newId);
        renumbered.insert(newId, entry.value());
        if (newId != entry.key() && dimension == 0) {
            idMap.insert(idMap.cend(), entry.key(), newId);
        }
    }
    entities_[d] = renumbered;
    replaceVertexAttributes(idMap);
    idGenerators_[d].reset();
    idGenerators_[d].setMaxId(newId);
}

void Mesh::replaceVertexAttributes(const QMap<int, int>& idMap)
{
    if (idMap.isEmpty()) {
        return;
    }
    for (auto vertices = iterator(0); vertices.hasNext();) {
        MeshEntity* vertex = vertices.next().value();
        if (vertex->attributes().isEmpty()) {
            continue;
        }
        for (const AttributeType& type :
             {AttributeType::ShellVertex, AttributeType::RotorVertex, AttributeType::StatorVertex,
              AttributeType::OriginalMotionVertex, AttributeType::NewMotionVertex}) {
            replaceAttribute(vertex, type, idMap);
        }
    }
}

void Mesh::replaceAttribute(MeshEntity* entity, const AttributeType& type,
                            const QMap<int, int>& idMap)
{
    const int value = entity->attributes().value(type, QVariant(0)).toInt();
    const auto found = idMap.constFind(value);
    if (value == 0 || found == idMap.cend() || *found == value) {
        return;
    }
    entity->attributes().insert(type, QVariant(*found));
}

} // namespace Ovra::Geo
