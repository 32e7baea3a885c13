#include "AttributeSerializer.h"

#include "AttributeMap.h"
#include "Matrix.h"
#include "StreamReading.h"
#include "VariantReader.h"
#include "Vector.h"

#include <QByteArray>
#include <QDataStream>
#include <QTextStream>
#include <QVariant>

namespace Ovra::Geo
{

namespace
{

QDataStream& streamOf(QDataStream& stream)
{
    return stream;
}

QDataStream& streamOf(InputBlock& block)
{
    return block.stream();
}

void readAttribute(AttributeMap& attributes, QDataStream& stream)
{
    const AttributeType type = AttributeType::fromString(AttributeSerializer::readTag(stream));
    QVariant value;
    if (VariantReader(stream).read(value)) {
        attributes.insert(type, value);
    }
}

// A count of 0, which most records are, leaves a block as it is.
template <typename Stream>
void readRecord(AttributeMap& attributes, Stream& stream)
{
    attributes.clear();
    const qint32 count = readCount(stream);
    for (qint32 i = 0; i < count && isOk(stream); ++i) {
        readAttribute(attributes, streamOf(stream));
    }
}

void writeItem(const QVariant& item, QTextStream& stream)
{
    if (item.canConvert<QString>()) {
        stream << item.toString() << "\n";
    } else if (item.canConvert<Vector>()) {
        stream << item.value<Vector>() << "\n";
    }
}

void writeList(const QVariantList& items, QTextStream& stream)
{
    stream << "\n";
    for (const QVariant& item : items) {
        writeItem(item, stream);
    }
}

void writeScalar(const QVariant& value, QTextStream& stream)
{
    stream << " ";
    if (value.canConvert<Vector>()) {
        stream << value.value<Vector>();
    } else if (value.canConvert<Matrix>()) {
        stream << value.value<Matrix>();
    } else {
        stream << value.toString();
    }
    stream << "\n";
}

void writeEntry(const QString& tag, const QVariant& value, QTextStream& stream)
{
    stream << tag << " " << QString::fromLatin1(value.typeName());
    if (value.typeId() == QMetaType::QVariantList) {
        writeList(value.toList(), stream);
    } else {
        writeScalar(value, stream);
    }
}

} // namespace

void AttributeSerializer::read(AttributeMap& attributes, QDataStream& stream)
{
    readRecord(attributes, stream);
}

void AttributeSerializer::read(AttributeMap& attributes, InputBlock& block)
{
    readRecord(attributes, block);
}

void AttributeSerializer::write(const AttributeMap& attributes, QDataStream& stream)
{
    const QList<AttributeType> types = attributes.types();
    stream << static_cast<qint32>(types.size());
    for (const AttributeType& type : types) {
        writeTag(type.toString(), stream);
        stream << attributes.value(type, QVariant());
    }
}

void AttributeSerializer::write(const AttributeMap& attributes, QTextStream& stream)
{
    stream << "--- Begin Attributes ---\n";
    const QList<AttributeType> types = attributes.types();
    for (const AttributeType& type : types) {
        writeEntry(type.toString(), attributes.value(type, QVariant()), stream);
    }
    stream << "--- End Attributes ---\n";
}

QString AttributeSerializer::readTag(QDataStream& stream)
{
    return QString::fromLatin1(readValue<QByteArray>(stream).constData());
}

void AttributeSerializer::writeTag(const QString& tag, QDataStream& stream)
{
    stream << tag.toLatin1();
}

} // namespace Ovra::Geo
