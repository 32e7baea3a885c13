#pragma once

#include <QMetaObject>
#include <QMetaType>

namespace Ovra::Geo
{

/// \file
/// \brief Second names of meta types. Not for hosts.

/// \brief Makes \p alias, a name that values were stored under long ago, another name of \p Type's
///        meta type. Doing so again changes nothing.
/// \return true, for the initialiser of a static flag
template <typename Type>
bool registerMetaTypeAlias(const char* alias)
{
    qRegisterNormalizedMetaType<Type>(QMetaObject::normalizedType(alias));
    return true;
}

} // namespace Ovra::Geo
