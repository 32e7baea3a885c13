#pragma once

#include <QDataStream>
#include <QList>

#include <limits>

namespace Ovra::Geo
{

/// \file
/// \brief Reading of lists from streams that may be damaged. Not for hosts.
///
/// Qt's own list operators reserve the count that they read, unchecked, so that four bytes can ask
/// for gigabytes. These take no more memory than the stream has items for.

/// \brief Reads the 32-bit count that precedes a list.
/// \return 0 if the stream has failed before or fails here; a count that no list can have sets the
///         status QDataStream::ReadCorruptData
inline quint32 readListCount(QDataStream& stream)
{
    if (stream.status() != QDataStream::Ok) {
        return 0;
    }
    quint32 count = 0;
    stream >> count;
    if (count > quint32(std::numeric_limits<qint32>::max())) {
        stream.setStatus(QDataStream::ReadCorruptData);
    }
    return stream.status() == QDataStream::Ok ? count : 0;
}

/// \brief Reads a list in the form of Qt's list operators: a 32-bit count, then that many items.
/// \param stream   a failure from before is set aside while the list is read, and stands again
///                 behind it, as with Qt's operators
/// \param list     cleared first, and left empty if the stream fails on the way
/// \param readItem called as readItem(stream, item) for a default-constructed item
/// \pre an item takes at least one byte of the stream
template <typename Item, typename ReadItem>
void readBoundedList(QDataStream& stream, QList<Item>& list, ReadItem readItem)
{
    const QDataStream::Status before = stream.status();
    stream.resetStatus();
    list.clear();
    const quint32 count = readListCount(stream);
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        Item item{};
        readItem(stream, item);
        list.append(item);
    }
    if (stream.status() != QDataStream::Ok) {
        list.clear();
    }
    if (before != QDataStream::Ok) {
        stream.resetStatus();
        stream.setStatus(before);
    }
}

/// \brief Reads a list of items that have a stream operator.
template <typename Item>
void readBoundedList(QDataStream& stream, QList<Item>& list)
{
    readBoundedList(stream, list, [](QDataStream& from, Item& item) { from >> item; });
}

} // namespace Ovra::Geo
