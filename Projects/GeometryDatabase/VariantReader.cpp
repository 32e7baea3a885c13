#include "VariantReader.h"

#include "BoundedList.h"
#include "DateTimeReading.h"
#include "EasingCurveReading.h"
#include "StreamReading.h"
#include "VariantTypeNumber.h"

#include <QByteArray>
#include <QDataStream>
#include <QDateTime>
#include <QEasingCurve>

#include <utility>

namespace Ovra::Geo
{

namespace
{

// A type that is registered under its number, checked first since QMetaType(int) warns otherwise.
QMetaType builtInType(int id)
{
    const bool known = id < QMetaType::User && QMetaType::isRegistered(id);
    return known ? QMetaType(id) : QMetaType();
}

// data() would mark the value as not null, which constData() does not; nobody else has it yet.
void* contentOf(QVariant& value)
{
    return const_cast<void*>(value.constData());
}

template <typename Content>
Content& contentAs(QVariant& value)
{
    return *static_cast<Content*>(contentOf(value));
}

// Puts \p item where the next one of \p missing belongs in \p container.
void put(QVariant& container, const QString& key, quint32 missing, QVariant& item)
{
    switch (container.typeId()) {
    case QMetaType::QVariantList:
        contentAs<QVariantList>(container).append(std::move(item));
        break;
    case QMetaType::QVariantMap:
        contentAs<QVariantMap>(container).insert(key, item);
        break;
    case QMetaType::QVariantHash:
        contentAs<QVariantHash>(container).insert(key, item);
        break;
    case QMetaType::QVariantPair: {
        QVariantPair& pair = contentAs<QVariantPair>(container);
        (missing == 2 ? pair.first : pair.second) = std::move(item);
        break;
    }
    default:
        contentAs<QVariant>(container) = std::move(item);
    }
}

} // namespace

bool VariantReader::read(QVariant& value)
{
    value = QVariant();
    Containers open;
    while (isOk(stream_)) {
        if (open.size() >= MaximumDepth) {
            refuse();
            break;
        }
        Container next = readHead();
        if (next.missing > 0) {
            readKey(next);
            open.append(std::move(next));
            continue;
        }
        value = std::move(next.value);
        putInto(open, value);
        if (open.isEmpty()) {
            break;
        }
    }
    if (!isOk(stream_)) {
        value = QVariant();
    }
    return isOk(stream_);
}

void VariantReader::refuse()
{
    stream_.setStatus(QDataStream::ReadCorruptData);
}

VariantReader::Container VariantReader::readHead()
{
    Container result;
    quint32 number = 0;
    qint8 null = 0;
    stream_ >> number;
    if (stream_.version() >= QDataStream::Qt_4_2) {
        stream_ >> null;
    }
    const QMetaType type = isOk(stream_) ? typeOf(number) : QMetaType();
    if (!isOk(stream_)) {
        return result;
    }
    if (type.sizeOf() == 0) {
        readInvalid();
        return result;
    }
    result.value = QVariant(type);
    if (null == 0) {
        static_cast<void>(result.value.data());
    }
    result.missing = readContent(type, contentOf(result.value));
    return result;
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

quint32 VariantReader::readContent(QMetaType type, void* content)
{
    switch (type.id()) {
    case QMetaType::QVariant:
        return 1;
    case QMetaType::QVariantPair:
        return 2;
    case QMetaType::QVariantList:
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return readListCount(stream_);
    case QMetaType::QStringList:
        readBoundedList(stream_, *static_cast<QStringList*>(content));
        return 0;
    case QMetaType::QByteArrayList:
        readBoundedList(stream_, *static_cast<QByteArrayList*>(content));
        return 0;
    default:
        readPlain(type, content);
        return 0;
    }
}

void VariantReader::readPlain(QMetaType type, void* content)
{
    if (type.id() == QMetaType::QEasingCurve) {
        readEasingCurve(*static_cast<QEasingCurve*>(content), stream_);
    } else if (type.id() == QMetaType::QDateTime) {
        readDateTime(*static_cast<QDateTime*>(content), stream_);
    } else if (!type.hasRegisteredDataStreamOperators() || !type.load(stream_, content)) {
        refuse();
    }
}

void VariantReader::readKey(Container& container)
{
    const int type = container.value.typeId();
    if (type == QMetaType::QVariantMap || type == QMetaType::QVariantHash) {
        container.key = readValue<QString>(stream_);
    }
}

// A value that completes the one that it stands in is followed by that one.
void VariantReader::putInto(Containers& open, QVariant& value)
{
    while (!open.isEmpty()) {
        Container& outer = open.last();
        put(outer.value, outer.key, outer.missing, value);
        --outer.missing;
        if (outer.missing > 0) {
            readKey(outer);
            return;
        }
        value = std::move(outer.value);
        open.removeLast();
    }
}

} // namespace Ovra::Geo
