#pragma once

#include "GermanLocale.h"

#include <QDataStream>
#include <QIODevice>
#include <QMetaType>
#include <QTest>
#include <QTextStream>
#include <QVariant>

// The forms that values take on streams and in variants, for the tests of the value classes.
namespace ValueForms
{

// The version and byte order of the library's own files.
constexpr int streamVersion = 12;

template <typename Value>
QByteArray binary(const Value& value)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(streamVersion);
    stream << value;
    return bytes;
}

template <typename Value>
QDataStream::Status readBinary(const QByteArray& bytes, Value& value)
{
    QDataStream stream(bytes);
    stream.setVersion(streamVersion);
    stream >> value;
    return stream.status();
}

template <typename Value>
QString text(const Value& value)
{
    QString result;
    QTextStream stream(&result);
    stream << value;
    stream.flush();
    return result;
}

// A counted string as QDataStream writes a const char*, terminating zero included.
inline QByteArray countedString(const char* name)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << name;
    return bytes;
}

// A variant of a custom type at version 12: the type number 127, the null flag, the name, the
// value.
inline QByteArray variantBytes(const char* typeName, const QByteArray& value)
{
    return QByteArray::fromHex("0000007f 00") + countedString(typeName) + value;
}

struct MetaTypeTraits
{
    bool equality;
    bool lessThan;
};

// One meta type under both names, with these comparisons and with stream operators.
template <typename Value>
void compareMetaType(const char* name, const char* alias, MetaTypeTraits expected)
{
    const QMetaType type = QMetaType::fromType<Value>();
    QCOMPARE(type.name(), name);
    QCOMPARE(QMetaType::fromName(name), type);
    QCOMPARE(QMetaType::fromName(alias), type);
    QCOMPARE(QMetaType::fromName(alias).name(), name);
    QCOMPARE(type.isEqualityComparable(), expected.equality);
    QCOMPARE(type.isOrdered(), expected.lessThan);
    QVERIFY(type.hasRegisteredDataStreamOperators());
}

// A value makes exactly these bytes as a variant, and comes back from either name. Streams of a
// version before 6.0 name a type by its alias, where it has one: that is Qt's rule.
template <typename Value>
void compareVariantForms(const Value& value, const char* name, const char* alias)
{
    const QByteArray bytes = binary(value);
    QCOMPARE(binary(QVariant::fromValue(value)), variantBytes(alias, bytes));
    for (const char* storedName : {name, alias}) {
        QVariant variant;
        QCOMPARE(readBinary(variantBytes(storedName, bytes), variant), QDataStream::Ok);
        QCOMPARE(variant.metaType(), QMetaType::fromType<Value>());
        QCOMPARE(binary(variant.value<Value>()), bytes);
    }
}

} // namespace ValueForms
