#pragma once

#include <QList>

namespace Ovra::Geo
{

/// \file
/// \brief What QList lacks for the lists of neighbours of model entities. Not for hosts.

/// \brief Puts \p newEntity in the place of the first occurrence of \p oldEntity.
/// \return false, with nothing changed, if \p list does not hold \p oldEntity
template <typename Entity>
bool replaceFirst(QList<Entity*>& list, Entity* oldEntity, Entity* newEntity)
{
    const qsizetype index = list.indexOf(oldEntity);
    if (index < 0) {
        return false;
    }
    list[index] = newEntity;
    return true;
}

} // namespace Ovra::Geo
