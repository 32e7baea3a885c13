#include "AttributeMap.h"
#include "AttributeSerializer.h"
#include "Box.h"
#include "GermanLocale.h"
#include "Matrix.h"
#include "RefinementRegion.h"
#include "StreamTesting.h"
#include "Vector.h"
#include "Version.h"

#include <QTest>

using namespace Ovra::Geo;
using namespace StreamTesting;

namespace
{

AttributeMap mapOf(const AttributeType& type, const QVariant& value)
{
    AttributeMap attributes;
    attributes.insert(type, value);
    return attributes;
}

QByteArray written(const AttributeMap& attributes)
{
    return binary([&](QDataStream& stream) { AttributeSerializer::write(attributes, stream); });
}

QString printed(const AttributeMap& attributes)
{
    return text([&](QTextStream& stream) { AttributeSerializer::write(attributes, stream); });
}

QDataStream::Status readInto(AttributeMap& attributes, const QByteArray& bytes)
{
    return readFrom(bytes,
                    [&](QDataStream& stream) { AttributeSerializer::read(attributes, stream); });
}

QString block(const QString& lines)
{
    return "--- Begin Attributes ---\n" + lines + "--- End Attributes ---\n";
}

// The record of one attribute "side" with the given value.
QByteArray sideRecord(const char* value)
{
    return hex("00000001 00000004 73696465") + hex(value);
}

Matrix rows(const Vector& a, const Vector& b, const Vector& c)
{
    Matrix matrix;
    matrix.setRow(0, a);
    matrix.setRow(1, b);
    matrix.setRow(2, c);
    return matrix;
}

} // namespace

class TestAttributeSerializer : public QObject
{
    Q_OBJECT

private slots:
    void writesAnEmptyMap()
    {
        QCOMPARE(written(AttributeMap()).toHex(' '), hex("00000000").toHex(' '));
        QCOMPARE(printed(AttributeMap()), block(""));
    }

    void writesTagAndValue()
    {
        QCOMPARE(written(mapOf(AttributeType::MaterialId, 5)).toHex(),
                 hex("00000001"
                     "0000000B 6D6174657269616C5F6964"
                     "00000002 00 00000005")
                     .toHex());
    }

    void hasTheBytesOfEveryKindOfValue_data()
    {
        RefinementRegion region;
        region.setType("b");
        region.setFilled(true);
        region.setLength(1);
        region.addPoint(Vector(1, 0, 2));
        region.setLambdas({2});

        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("int") << QVariant(-2) << sideRecord("00000002 00 FFFFFFFE");
        QTest::newRow("bool") << QVariant(true) << sideRecord("00000001 00 01");
        QTest::newRow("double") << QVariant(1.0) << sideRecord("00000006 00 3FF0000000000000");
        QTest::newRow("QString") << QVariant("ab") << sideRecord("0000000A 00 00000004 00610062");
        QTest::newRow("null QString") << QVariant(QString()) << sideRecord("0000000A 00 FFFFFFFF");
        QTest::newRow("null int") << QVariant(QMetaType::fromType<int>())
                                  << sideRecord("00000002 01 00000000");
        QTest::newRow("invalid") << QVariant() << sideRecord("00000000 01 FFFFFFFF");
        QTest::newRow("QVariantList") << QVariant(QVariantList{1, 2.0})
                                      << sideRecord("00000009 00 00000002"
                                                    "00000002 00 00000001"
                                                    "00000006 00 4000000000000000");
        QTest::newRow("nested QVariantList") << QVariant(QVariantList{QVariant(QVariantList{1})})
                                             << sideRecord("00000009 00 00000001"
                                                           "00000009 00 00000001"
                                                           "00000002 00 00000001");
        QTest::newRow("Vector") << QVariant(Vector(1, 2, 0))
                                << sideRecord("0000007F 00 0000000C 67656F3A3A566563746F7200"
                                              "3FF0000000000000 4000000000000000 0000000000000000");
        QTest::newRow("Matrix") << QVariant(rows({1, 0, 0}, {0, 2, 0}, {0, 0, 0.5}))
                                << sideRecord("0000007F 00 0000000C 67656F3A3A4D617472697800"
                                              "3FF0000000000000 0000000000000000 0000000000000000"
                                              "0000000000000000 4000000000000000 0000000000000000"
                                              "0000000000000000 0000000000000000 3FE0000000000000");
        QTest::newRow("Box") << QVariant(Box(Vector(0, 1, 0), Vector(2, 2, 1)))
                             << sideRecord("0000007F 00 00000009 67656F3A3A426F7800"
                                           "0000000000000000 3FF0000000000000 0000000000000000"
                                           "4000000000000000 4000000000000000 3FF0000000000000");
        QTest::newRow("Version") << QVariant(Version(13, 0, 5))
                                 << sideRecord("0000007F 00 0000000D 67656F3A3A56657273696F6E00"
                                               "0000000D 00000000 00000005");
        QTest::newRow("RefinementRegion")
            << QVariant(QMetaType::fromName("geo::RefinementRegion"), &region)
            << sideRecord("0000007F 00"
                          "00000016 67656F3A3A526566696E656D656E74526567696F6E00"
                          "00000002 0062 01"
                          "3FF0000000000000 0000000000000000 0000000000000000") +
                   QByteArray(4 * 24, '\0') +
                   hex("00000001 3FF0000000000000 0000000000000000 4000000000000000"
                       "00000000 00000000 00000000 00"
                       "00000001 4000000000000000") +
                   QByteArray(6 * 24, '\0');
    }

    void hasTheBytesOfEveryKindOfValue()
    {
        QFETCH(QVariant, value);
        QFETCH(QByteArray, bytes);
        QCOMPARE(written(mapOf(AttributeType::Side, value)).toHex(), bytes.toHex());

        AttributeMap read;
        QCOMPARE(readInto(read, bytes), QDataStream::Ok);
        const QVariant back = read.value(AttributeType::Side, QVariant("none"));
        QCOMPARE(back.metaType(), value.metaType());
        QCOMPARE(back.isNull(), value.isNull());
        QCOMPARE(written(read).toHex(), bytes.toHex());
    }

    void writesByAscendingId()
    {
        AttributeMap attributes;
        attributes.insert(AttributeType::Side, 1);
        attributes.insert(AttributeType::ExType, 2);
        attributes.insert(AttributeType::ExtrudedEntityId, 3);
        QCOMPARE(printed(attributes),
                 block("extruded_entity_id int 3\nex_type int 2\nside int 1\n"));
        QVERIFY(written(attributes).startsWith(hex("00000003 00000012 6578747275646564")));
    }

    void readsAliasesAndWritesTags()
    {
        AttributeMap attributes;
        QCOMPARE(readInto(attributes, hex("00000001"
                                          "0000000A 6D6174657269616C4964"
                                          "00000002 00 00000005")),
                 QDataStream::Ok);
        QCOMPARE(attributes.types(), QList<AttributeType>{AttributeType::MaterialId});
        QCOMPARE(written(attributes).toHex(), written(mapOf(AttributeType::MaterialId, 5)).toHex());
    }

    void readsTheTagUpToItsFirstNul()
    {
        AttributeMap attributes;
        QCOMPARE(readInto(attributes, hex("00000001"
                                          "00000006 736964650041"
                                          "00000002 00 00000005")),
                 QDataStream::Ok);
        QCOMPARE(attributes.value(AttributeType::Side, QVariant()).toInt(), 5);
    }

    void replacesWhatWasThere_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("empty record") << hex("00000000");
        QTest::newRow("negative count") << hex("FFFFFFFF");
    }

    void replacesWhatWasThere()
    {
        QFETCH(QByteArray, bytes);
        AttributeMap attributes = mapOf(AttributeType::Side, 1);
        QCOMPARE(readInto(attributes, bytes), QDataStream::Ok);
        QVERIFY(attributes.isEmpty());
    }

    void keepsTheLastOfTheUnknownTags()
    {
        AttributeMap attributes;
        QCOMPARE(readInto(attributes, hex("00000002"
                                          "00000001 78 00000002 00 00000005"
                                          "00000001 79 00000002 00 00000006")),
                 QDataStream::Ok);
        QCOMPARE(attributes.count(), 1);
        QCOMPARE(attributes.value(AttributeType(), QVariant()).toInt(), 6);
        // The tag of the invalid type is a null text, whose QByteArray form is a length of -1.
        QCOMPARE(written(attributes).toHex(),
                 hex("00000001 FFFFFFFF 00000002 00 00000006").toHex());
    }

    void printsOneLineForAScalar_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("line");
        QTest::newRow("int") << QVariant(-5) << "side int -5\n";
        QTest::newRow("large int") << QVariant(1234567) << "side int 1234567\n";
        QTest::newRow("bool") << QVariant(true) << "side bool true\n";
        QTest::newRow("double") << QVariant(1234.5) << "side double 1234.5\n";
        QTest::newRow("QString") << QVariant("a b") << "side QString a b\n";
        QTest::newRow("Vector") << QVariant(Vector(1, 2.5, -3))
                                << "side Ovra::Geo::Vector (1, 2.5, -3)\n";
        QTest::newRow("Matrix") << QVariant(rows({1, 2, 3}, {4, 5, 6}, {7, 8, 9.5}))
                                << "side Ovra::Geo::Matrix ( {1, 2, 3} {4, 5, 6} {7, 8, 9.5} )\n";
        QTest::newRow("Box") << QVariant(Box()) << "side Ovra::Geo::Box \n";
        QTest::newRow("Version") << QVariant(Version(1, 2, 3)) << "side Ovra::Geo::Version \n";
        QTest::newRow("QStringList") << QVariant(QStringList{"a", "b"}) << "side QStringList \n";
        QTest::newRow("invalid") << QVariant() << "side  \n";
    }

    void printsOneLineForAScalar()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, line);
        QCOMPARE(printed(mapOf(AttributeType::Side, value)), block(line));
    }

    void printsOneLineForEachItemOfAList_data()
    {
        QTest::addColumn<QVariantList>("value");
        QTest::addColumn<QString>("lines");
        QTest::newRow("doubles") << QVariantList{0.5, 0.25} << "0.5\n0.25\n";
        QTest::newRow("ids") << QVariantList{7, 8} << "7\n8\n";
        QTest::newRow("vectors") << QVariantList{Vector(1, 2, 3), "end"} << "(1, 2, 3)\nend\n";
        QTest::newRow("no text") << QVariantList{QVariant(Box()), 1} << "1\n";
        QTest::newRow("empty") << QVariantList() << "";
    }

    void printsOneLineForEachItemOfAList()
    {
        QFETCH(QVariantList, value);
        QFETCH(QString, lines);
        QCOMPARE(printed(mapOf(AttributeType::PeriodicWeights, QVariant(value))),
                 block("periodic_weights QVariantList\n" + lines));
    }

    void printsNumbersTheSameInEveryLocale()
    {
        AttributeMap attributes = mapOf(AttributeType::MaterialId, 1234567);
        attributes.insert(AttributeType::Side, 1234.5);
        attributes.insert(AttributeType::PeriodicOrigin, Vector(1234.5, 0, 0));
        attributes.insert(AttributeType::PeriodicWeights, QVariantList{1234.5});
        const QString expected = printed(attributes);
        const GermanLocale german;
        QCOMPARE(printed(attributes), expected);
        QCOMPARE(expected, block("material_id int 1234567\n"
                                 "periodic_origin Ovra::Geo::Vector (1234.5, 0, 0)\n"
                                 "periodic_weights QVariantList\n1234.5\n"
                                 "side double 1234.5\n"));
    }

    void keepsWhatCameBeforeTheBreak()
    {
        AttributeMap attributes;
        AttributeMap both = mapOf(AttributeType::MaterialId, 5);
        both.insert(AttributeType::Side, 6);
        QCOMPARE(readInto(attributes, written(both).chopped(1)), QDataStream::ReadPastEnd);
        QCOMPARE(attributes.types(), QList<AttributeType>{AttributeType::MaterialId});
    }

    void believesNoCount()
    {
        AttributeMap attributes;
        QCOMPARE(readInto(attributes, hex("7FFFFFFF 00000001 78 00000002 00 00000005")),
                 QDataStream::ReadPastEnd);
        QCOMPARE(attributes.count(), 1);
    }

    void clearsTheMapAlsoIfTheCountBreaksOff()
    {
        AttributeMap attributes = mapOf(AttributeType::MaterialId, 5);
        QCOMPARE(readInto(attributes, hex("000000")), QDataStream::ReadPastEnd);
        QVERIFY(attributes.isEmpty());
    }

    void refusesUnknownTypesSilently()
    {
        Messages messages;
        AttributeMap attributes;
        QCOMPARE(readInto(attributes, sideRecord("0000007F 00 00000004 61626300")),
                 QDataStream::ReadCorruptData);
        QVERIFY(attributes.isEmpty());
        QVERIFY2(Messages::isEmpty(), qPrintable(Messages::join()));
    }

    void clearsTheMapAlsoIfTheStreamHasFailedBefore()
    {
        AttributeMap attributes = mapOf(AttributeType::MaterialId, 5);
        QDataStream stream(hex("00000000"));
        stream.setStatus(QDataStream::ReadCorruptData);
        AttributeSerializer::read(attributes, stream);
        QVERIFY(attributes.isEmpty());
        QCOMPARE(stream.device()->pos(), 0);
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
    }
};

QTEST_APPLESS_MAIN(TestAttributeSerializer)
#include "tst_AttributeSerializer.moc"
