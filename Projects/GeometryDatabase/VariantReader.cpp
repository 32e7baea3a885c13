#include "VariantReader.h"

#include "BoundedList.h"
#include "StreamReading.h"
#include "VariantTypeNumber.h"

#include <QByteArray>
#include <QDataStream>
#include <QIODevice>
#include <QString>

namespace Ovra::Geo
{

namespace
{

// Marks a QDateTime with a time zone in streams before Qt 5.2, which do not say which one.
constexpr int OldTimeZone = 4;

// A type that is registered under its number, checked first since QMetaType(int) warns otherwise.
QMetaType builtInType(int id)
{
    const bool known = id < QMetaType::User && QMetaType::isRegistered(id);
    return known ? QMetaType(id) : QMetaType();
}

} // namespace

bool VariantReader::read(QVariant& value)
{
    value = QVariant();
    if (depth_ >= MaximumDepth) {
        refuse();
    }
    if (!isOk(stream_)) {
        return false;
    }
    ++depth_;
    readTypeAndContent(value);
    --depth_;
    if (!isOk(stream_)) {
        value = QVariant();
    }
    return isOk(stream_);
}

void VariantReader::refuse()
{
    stream_.setStatus(QDataStream::ReadCorruptData);
}

void VariantReader::readTypeAndContent(QVariant& value)
{
    quint32 number = 0;
    qint8 null = 0;
    stream_ >> number;
    if (stream_.version() >= QDataStream::Qt_4_2) {
        stream_ >> null;
    }
    const QMetaType type = isOk(stream_) ? typeOf(number) : QMetaType();
    if (!isOk(stream_)) {
        return;
    }
    if (type.sizeOf() == 0) {
        readInvalid();
        return;
    }
    value = QVariant(type);
    // data() would mark the value as not null, which constData() does not; nobody else has it yet.
    readContent(type, null != 0 ? const_cast<void*>(value.constData()) : value.data());
}

QMetaType VariantReader::typeOf(quint32 number)
{
    const int id = typeIdFromStream(number, stream_.version());
    if (id == QMetaType::UnknownType) {
        return QMetaType();
    }
    const QMetaType type = id == QMetaType::User ? readNamedType() : builtInType(id);
    if (!type.isValid()) {
        refuse();
    }
    return type;
}

QMetaType VariantReader::readNamedType()
{
    const auto name = readValue<QByteArray>(stream_);
    return isOk(stream_) ? QMetaType::fromName(name) : QMetaType();
}

void VariantReader::readInvalid()
{
    // Qt up to version 4 wrote a text where a value was expected.
    if (stream_.version() < QDataStream::Qt_5_0) {
        readValue<QString>(stream_);
    }
}

void VariantReader::readContent(QMetaType type, void* content)
{
    switch (type.id()) {
    case QMetaType::QVariant:
        read(*static_cast<QVariant*>(content));
        break;
    case QMetaType::QVariantPair:
        readPair(*static_cast<QVariantPair*>(content));
        break;
    case QMetaType::QVariantList:
        readList(*static_cast<QVariantList*>(content));
        break;
    case QMetaType::QStringList:
        readList(*static_cast<QStringList*>(content));
        break;
    case QMetaType::QByteArrayList:
        readList(*static_cast<QByteArrayList*>(content));
        break;
    case QMetaType::QVariantMap:
        readMap(*static_cast<QVariantMap*>(content));
        break;
    case QMetaType::QVariantHash:
        readMap(*static_cast<QVariantHash*>(content));
        break;
    default:
        readPlain(type, content);
    }
}

void VariantReader::readPair(QVariantPair& pair)
{
    read(pair.first);
    read(pair.second);
}

template <typename Item>
void VariantReader::readList(QList<Item>& items)
{
    readBoundedList(stream_, items, [this](QDataStream&, Item& item) { readItem(item); });
}

void VariantReader::readItem(QVariant& item)
{
    read(item);
}

template <typename Item>
void VariantReader::readItem(Item& item)
{
    stream_ >> item;
}

template <typename Map>
void VariantReader::readMap(Map& map)
{
    const quint32 count = readListCount(stream_);
    for (quint32 i = 0; i < count && isOk(stream_); ++i) {
        const auto key = readValue<QString>(stream_);
        QVariant value;
        if (read(value)) {
            map.insert(key, value);
        }
    }
}

void VariantReader::readPlain(QMetaType type, void* content)
{
    const bool readable = type.hasRegisteredDataStreamOperators() && isReadSilently(type);
    if (!readable || !type.load(stream_, content)) {
        refuse();
    }
}

bool VariantReader::isReadSilently(QMetaType type) const
{
    switch (type.id()) {
    case QMetaType::QEasingCurve:
        return false;
    case QMetaType::QDateTime: // warns of a zone that its old forms lack, and tests no number
        return hasKnownTimeSpec();
    default:
        return true;
    }
}

bool VariantReader::hasKnownTimeSpec() const
{
    const int version = stream_.version();
    if (version < QDataStream::Qt_4_0) {
        return true;
    }
    const qint64 dateSize = version < QDataStream::Qt_5_0 ? 4 : 8;
    const qint64 timeSize = 4;
    const QByteArray bytes = stream_.device()->peek(dateSize + timeSize + 1);
    if (bytes.size() <= dateSize + timeSize) {
        return true; // broken off, which Qt's operator will find
    }
    const auto timeSpec = static_cast<qint8>(bytes.back());
    if (version == QDataStream::Qt_5_0) {
        return timeSpec >= Qt::LocalTime && timeSpec <= Qt::OffsetFromUTC;
    }
    if (version < QDataStream::Qt_5_2) {
        return timeSpec != OldTimeZone;
    }
    return timeSpec >= Qt::LocalTime && timeSpec <= Qt::TimeZone;
}

} // namespace Ovra::Geo
