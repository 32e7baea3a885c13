#pragma once

#include "IdGenerator.h"
#include "IdTable.h"

#include <limits>

/// \file
/// \brief What the tables of Model and Mesh, id to entity of one dimension, have in common.

namespace Ovra::Geo
{

/// \brief An id for a new entity of \p table: the next of \p ids; or, where they have come to the
///        highest number there is, as one outlying id is enough for, one that no entity has.
template <typename Entity>
int unusedId(IdTable<Entity>& table, IdGenerator& ids)
{
    return ids.maxId() < std::numeric_limits<int>::max() ? ids.getId() : table.freeId();
}

/// \brief Stores \p entity under its id, in place of an entity of that id; one without id gets
///        one, and \p ids otherwise follow the id upwards.
template <typename Entity>
void addToTable(Entity* entity, IdTable<Entity>& table, IdGenerator& ids)
{
    if (entity->id() == 0) {
        entity->setId(unusedId(table, ids));
    } else if (entity->id() > ids.maxId()) {
        ids.setMaxId(entity->id());
    }
    table.insert(entity->id(), entity);
}

/// \brief Deletes the entities of \p table, leaves it as it was made and starts \p ids again.
template <typename Entity>
void clearTable(IdTable<Entity>& table, IdGenerator& ids)
{
    for (IdTableWalk<Entity> walk(table); walk.hasNext();) {
        delete walk.next().value();
    }
    table = {};
    ids.reset();
}

} // namespace Ovra::Geo
