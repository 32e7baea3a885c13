#pragma once

#include <QtGlobal>

namespace Ovra::Geo
{

/// \brief Qt's type id for the type number that heads a QVariant in a QDataStream.
///
/// The numbers changed with Qt 4, 5 and 6.
/// \param number  as read
/// \param version of the stream
/// \return QMetaType::User for a type that the stream names by text, QMetaType::UnknownType for the
///         invalid value; the id need not be registered
int typeIdFromStream(quint32 number, int version);

} // namespace Ovra::Geo
