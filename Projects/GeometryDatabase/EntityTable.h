#pragma once

#include "IdGenerator.h"

#include <QHash>
#include <QList>

#include <algorithm>
#include <utility>

/// \file
/// \brief What the tables of Model and Mesh, id to entity of one dimension, have in common.

namespace Ovra::Geo
{

/// \brief An id and the entity that stands under it.
template <typename Entity>
using TableEntry = std::pair<int, Entity*>;

/// \brief Stores \p entity under its id, in place of an entity of that id; one without id gets the
/// next
///        of \p ids, which otherwise follow the id upwards.
template <typename Entity>
void addToTable(Entity* entity, QHash<int, Entity*>& table, IdGenerator& ids)
{
    if (entity->id() == 0) {
        entity->setId(ids.getId());
    } else if (entity->id() > ids.maxId()) {
        ids.setMaxId(entity->id());
    }
    table.insert(entity->id(), entity);
}

/// \brief The entries of \p table by ascending id.
///
/// Entities are usually allocated in the order of their ids, so that this walk goes through memory
/// in order, where one in hash order misses the cache at every step; and what it does comes out
/// alike under every hash seed.
template <typename Entity>
QList<TableEntry<Entity>> entriesInIdOrder(const QHash<int, Entity*>& table)
{
    QList<TableEntry<Entity>> entries;
    entries.reserve(table.size());
    for (auto i = table.cbegin(); i != table.cend(); ++i) {
        entries.append({i.key(), i.value()});
    }
    std::sort(entries.begin(), entries.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });
    return entries;
}

/// \brief Deletes the entities of \p table, leaves it as it was made and starts \p ids again.
template <typename Entity>
void clearTable(QHash<int, Entity*>& table, IdGenerator& ids)
{
    for (const auto& entry : entriesInIdOrder(table)) {
        delete entry.second;
    }
    table = {};
    ids.reset();
}

} // namespace Ovra::Geo
