#pragma once

#include "HashIterator.h"

#include <QList>
#include <QSet>

#include <algorithm>
#include <utility>

namespace Ovra::Geo
{

/// \brief The entities of a walk by ascending id, so that what is made on the way gets the same ids
///        in every run. O(n log n).
/// \param walk a walk over the entities of a container or the children of a model entity
template <typename Entity>
QList<Entity*> inIdOrder(HashIterator<int, Entity*> walk)
{
    QList<Entity*> entities;
    while (walk.hasNext()) {
        walk.next();
        entities.append(walk.value());
    }
    // As the tables are walked by the ids under which the entities stand, which are theirs if none
    // of them was renumbered since.
    if (!std::is_sorted(entities.cbegin(), entities.cend(), Entity::lessThan)) {
        std::sort(entities.begin(), entities.end(), Entity::lessThan);
    }
    return entities;
}

/// \brief The entities of a set by ascending id. O(n log n).
template <typename Entity>
QList<Entity*> inIdOrder(const QSet<Entity*>& set)
{
    QList<std::pair<int, Entity*>> keys; // as each comparison would go for the ids all over memory
    keys.reserve(set.size());
    for (Entity* entity : set) {
        keys.emplaceBack(entity->id(), entity);
    }
    std::sort(keys.begin(), keys.end());
    QList<Entity*> entities;
    entities.reserve(keys.size());
    for (const auto& [id, entity] : std::as_const(keys)) {
        entities.append(entity);
    }
    return entities;
}

} // namespace Ovra::Geo
