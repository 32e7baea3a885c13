#pragma once

#include "HashIterator.h"
#include "IdGenerator.h"

#include <QHash>
#include <QList>

#include <algorithm>
#include <limits>
#include <utility>

/// \file
/// \brief What the tables of Model and Mesh, id to entity of one dimension, have in common.

namespace Ovra::Geo
{

/// \brief An id and the entity that stands under it.
template <typename Entity>
using TableEntry = std::pair<int, Entity*>;

/// \brief An id for a new entity of \p table: the next of \p ids; or, where they have come to the
///        highest number there is, as one outlying id is enough for, one that no entity has.
template <typename Entity>
int unusedId(const QHash<int, Entity*>& table, IdGenerator& ids)
{
    if (ids.maxId() < std::numeric_limits<int>::max()) {
        return ids.getId();
    }
    // Free at once where the ids but for the outlying ones are dense.
    int id = static_cast<int>(table.size()) + 1;
    while (table.contains(id)) {
        ++id;
    }
    return id;
}

/// \brief Stores \p entity under its id, in place of an entity of that id; one without id gets
///        one, and \p ids otherwise follow the id upwards.
template <typename Entity>
void addToTable(Entity* entity, QHash<int, Entity*>& table, IdGenerator& ids)
{
    if (entity->id() == 0) {
        entity->setId(unusedId(table, ids));
    } else if (entity->id() > ids.maxId()) {
        ids.setMaxId(entity->id());
    }
    table.insert(entity->id(), entity);
}

/// \brief The ids and entities of a walk by ascending id.
///
/// Entities are usually allocated in the order of their ids, so that this order goes through memory
/// in step, where hash order misses the cache at every entity; and what is done in it comes out
/// alike under every hash seed. O(n) while at least a quarter of the ids in the range is in use,
/// O(n log n) otherwise.
/// \param walk stands at its beginning
/// \param count number of entities of the walk
template <typename Entity>
QList<TableEntry<Entity>> entriesInIdOrder(HashIterator<int, Entity*> walk, qsizetype count)
{
    using Entry = TableEntry<Entity>;
    QList<Entry> entries;
    entries.reserve(count);
    while (walk.hasNext()) {
        walk.next();
        entries.append({walk.key(), walk.value()});
    }
    const auto byId = [](const Entry& a, const Entry& b) { return a.first < b.first; };
    const auto [lowest, highest] = std::minmax_element(entries.cbegin(), entries.cend(), byId);
    if (entries.isEmpty() || qint64{highest->first} - lowest->first >= 4 * qint64{count}) {
        std::sort(entries.begin(), entries.end(), byId);
        return entries;
    }
    const int first = lowest->first;
    QList<Entry> places(highest->first - first + 1);
    for (const Entry& entry : std::as_const(entries)) {
        places[entry.first - first] = entry;
    }
    places.removeIf([](const Entry& entry) { return entry.second == nullptr; });
    return places;
}

/// \brief Deletes the entities of \p table, leaves it as it was made and starts \p ids again.
template <typename Entity>
void clearTable(QHash<int, Entity*>& table, IdGenerator& ids)
{
    for (const auto& entry : entriesInIdOrder(HashIterator<int, Entity*>(table), table.size())) {
        delete entry.second;
    }
    table = {};
    ids.reset();
}

} // namespace Ovra::Geo
