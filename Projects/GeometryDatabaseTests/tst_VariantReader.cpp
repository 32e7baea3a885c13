#include "AllocationWatch.h"
#include "Box.h"
#include "Matrix.h"
#include "RefinementRegion.h"
#include "StreamTesting.h"
#include "VariantReader.h"
#include "Vector.h"
#include "Version.h"

#include <QBuffer>
#include <QDateTime>
#include <QEasingCurve>
#include <QJsonDocument>
#include <QJsonValue>
#include <QLocale>
#include <QRegularExpression>
#include <QTest>
#include <QTimeZone>
#include <QUrl>
#include <QUuid>

using namespace Ovra::Geo;
using namespace StreamTesting;

namespace
{

constexpr int NewestVersion = QDataStream::Qt_DefaultCompiledVersion;

struct Reading
{
    QVariant value;
    QDataStream::Status status = QDataStream::Ok;
    qint64 position = 0;
    bool silent = true;
};

template <typename Read>
Reading reading(const QByteArray& bytes, int version, Read read)
{
    Messages messages;
    Reading result;
    QDataStream stream(bytes);
    stream.setVersion(version);
    read(stream, result.value);
    result.status = stream.status();
    result.position = stream.device()->pos();
    result.silent = Messages::isEmpty();
    return result;
}

Reading ours(const QByteArray& bytes, int version = QDataStream::Qt_4_6)
{
    return reading(bytes, version,
                   [](QDataStream& stream, QVariant& value) { VariantReader(stream).read(value); });
}

Reading qts(const QByteArray& bytes, int version = QDataStream::Qt_4_6)
{
    return reading(bytes, version, [](QDataStream& stream, QVariant& value) { stream >> value; });
}

QByteArray streamed(const QVariant& value, int version)
{
    return binary([&](QDataStream& stream) { stream << value; }, version);
}

bool isSame(const QVariant& a, const QVariant& b)
{
    return a.metaType() == b.metaType() && a.isNull() == b.isNull() &&
           streamed(a, NewestVersion) == streamed(b, NewestVersion);
}

QEasingCurve elasticCurve()
{
    QEasingCurve curve(QEasingCurve::OutElastic);
    curve.setAmplitude(2.5);
    curve.setPeriod(0.75);
    return curve;
}

QEasingCurve splineCurve()
{
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0.1, 0.2}, {0.3, 0.4}, {0.5, 0.5});
    curve.addCubicBezierSegment({0.6, 0.7}, {0.8, 0.9}, {1, 1});
    return curve;
}

QEasingCurve unfinishedSplineCurve()
{
    QEasingCurve curve(QEasingCurve::TCBSpline);
    curve.addTCBSegment({0, 0}, 0, 0, 0);
    curve.addTCBSegment({0.25, 0.5}, 0.1, 0.2, 0.3);
    return curve;
}

// \p depth - 1 of the container and an int; not by way of a QVariant, which takes time and stack.
QByteArray nestedBytes(const char* container, int depth)
{
    return hex(container).repeated(depth - 1) + hex("00000002 00 00000005");
}

// Lists in lists, \p depth values deep, the innermost an int.
QVariant nested(int depth)
{
    QVariant value(7);
    for (int i = 1; i < depth; ++i) {
        value = QVariant::fromValue(QVariantList{value});
    }
    return value;
}

} // namespace

class TestVariantReader : public QObject
{
    Q_OBJECT

private slots:
    void equalsTheOperatorOfQt_data()
    {
        RefinementRegion region;
        region.setType("box");
        region.addPoint(Vector(1, 2, 3));
        region.setLambdas({0.5, 0.25});
        const QVariantMap map{{"one", 1}, {"list", QVariantList{1, "two"}}, {"", QVariant()}};
        QVariantHash hash;
        hash.insert("key", QVariantList{map});

        QTest::addColumn<QVariant>("value");
        QTest::newRow("invalid") << QVariant();
        QTest::newRow("bool") << QVariant(true);
        QTest::newRow("int") << QVariant(-5);
        QTest::newRow("unsigned") << QVariant(5u);
        QTest::newRow("long long") << QVariant(Q_INT64_C(-5000000000));
        QTest::newRow("unsigned long long") << QVariant(Q_UINT64_C(5000000000));
        QTest::newRow("long") << QVariant::fromValue(-5L);
        QTest::newRow("unsigned long") << QVariant::fromValue(5UL);
        QTest::newRow("short") << QVariant::fromValue(short(-5));
        QTest::newRow("char") << QVariant::fromValue('c');
        QTest::newRow("float") << QVariant(1.5f);
        QTest::newRow("double") << QVariant(0.1);
        QTest::newRow("char16_t") << QVariant::fromValue(u'c');
        QTest::newRow("nullptr") << QVariant::fromValue(nullptr);
        QTest::newRow("QString") << QVariant("text");
        QTest::newRow("null QString") << QVariant(QString());
        QTest::newRow("QChar") << QVariant(QChar('c'));
        QTest::newRow("QByteArray") << QVariant(QByteArray("bytes"));
        QTest::newRow("QBitArray") << QVariant(QBitArray(11, true));
        QTest::newRow("QStringList") << QVariant(QStringList{"one", QString(), "three"});
        QTest::newRow("QByteArrayList") << QVariant::fromValue(QByteArrayList{"one", "", "three"});
        QTest::newRow("QVariantList") << QVariant(QVariantList{1, 0.5, "text", QVariant()});
        QTest::newRow("empty QVariantList") << QVariant(QVariantList());
        QTest::newRow("QVariantMap") << QVariant(map);
        QTest::newRow("QVariantHash") << QVariant(hash);
        QTest::newRow("QVariantPair") << QVariant::fromValue(QVariantPair(1, "two"));
        QTest::newRow("QVariant") << QVariant(QMetaType::fromType<QVariant>());
        QTest::newRow("nested lists") << nested(1000);
        QTest::newRow("elastic curve") << QVariant(elasticCurve());
        QTest::newRow("spline") << QVariant(splineCurve());
        QTest::newRow("unfinished spline") << QVariant(unfinishedSplineCurve());
        QTest::newRow("QDate") << QVariant(QDate(2013, 2, 1));
        QTest::newRow("QTime") << QVariant(QTime(1, 2, 3));
        QTest::newRow("QDateTime") << QVariant(QDateTime(QDate(2013, 2, 1), QTime(1, 2, 3)));
        QTest::newRow("QDateTime UTC")
            << QVariant(QDateTime::fromString("2013-02-01T01:02:03Z", Qt::ISODate));
        QTest::newRow("QDateTime with offset")
            << QVariant(QDateTime::fromString("2013-02-01T01:02:03+01:00", Qt::ISODate));
        QTest::newRow("QUrl") << QVariant(QUrl("http://localhost/a"));
        QTest::newRow("QLocale") << QVariant(QLocale("de_DE"));
        QTest::newRow("QUuid") << QVariant(QUuid(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
        QTest::newRow("QRect") << QVariant(QRect(1, 2, 3, 4));
        QTest::newRow("QPointF") << QVariant(QPointF(1, 2));
        QTest::newRow("QRegularExpression") << QVariant(QRegularExpression("a*"));
        QTest::newRow("QJsonValue") << QVariant(QJsonValue(1.5));
        QTest::newRow("Vector") << QVariant(Vector(1, 2, 3));
        QTest::newRow("Matrix") << QVariant(Matrix());
        QTest::newRow("Box") << QVariant(Box(Vector(1, 2, 3), Vector(4, 5, 6)));
        QTest::newRow("Version") << QVariant(Version(13, 0, 5));
        QTest::newRow("RefinementRegion") << QVariant::fromValue(region);
        QTest::newRow("null int") << QVariant(QMetaType::fromType<int>());
        QTest::newRow("null list") << QVariant(QMetaType::fromType<QVariantList>());
        QTest::newRow("null Vector") << QVariant(QMetaType::fromType<Vector>());
        QTest::newRow("null Matrix") << QVariant(QMetaType::fromType<Matrix>());
    }

    void equalsTheOperatorOfQt()
    {
        QFETCH(QVariant, value);
        for (int version = 1; version <= NewestVersion; ++version) {
            const QByteArray bytes = streamed(value, version);
            const Reading expected = qts(bytes, version);
            const Reading actual = ours(bytes, version);
            QCOMPARE(actual.status, expected.status);
            QCOMPARE(actual.position, expected.position);
            QVERIFY(actual.silent);
            QVERIFY2(isSame(actual.value, expected.value), qPrintable(QString::number(version)));
        }
    }

    // What Qt reads without a word, it reads alike; what Qt comments on is refused.
    void equalsTheOperatorOfQtForEveryTypeNumber()
    {
        for (int version = 1; version <= NewestVersion; ++version) {
            for (quint32 number = 0; number < 300; ++number) {
                for (const qint8 null : {qint8(0), qint8(1)}) {
                    compareTypeNumber(number, null, version);
                    if (QTest::currentTestFailed()) {
                        qCritical("version %d, number %u, null %d", version, number, null);
                        return;
                    }
                }
            }
        }
    }

    void readsAndWritesAgainWhatIsNestedDeeply_data()
    {
        QTest::addColumn<QByteArray>("container");
        QTest::newRow("lists") << QByteArray("00000009 00 00000001");
        QTest::newRow("maps") << QByteArray("00000008 00 00000001 00000002 0041");
        QTest::newRow("hashes") << QByteArray("0000001C 00 00000001 00000002 0041");
        QTest::newRow("variants") << QByteArray("0000008A 00");
    }

    void readsAndWritesAgainWhatIsNestedDeeply()
    {
        QFETCH(QByteArray, container);
        const QByteArray bytes = nestedBytes(container.constData(), VariantReader::MaximumDepth);
        const Reading actual = ours(bytes);
        QCOMPARE(actual.status, QDataStream::Ok);
        QCOMPARE(actual.position, bytes.size());
        QVERIFY(streamed(actual.value, QDataStream::Qt_4_6) == bytes);
    }

    void readsTheOtherValuesBesideNestedOnes()
    {
        const QVariant deep = nested(100);
        const QVariantMap map{{"a", QVariantList{1, deep, QVariantList(), 2}},
                              {"b", QVariant::fromValue(QVariantPair(deep, QVariantList{3}))},
                              {"c", 4}};
        const Reading actual = ours(streamed(map, QDataStream::Qt_4_6));
        QCOMPARE(actual.status, QDataStream::Ok);
        QVERIFY(isSame(actual.value, map));
    }

    // The forms before Qt 5.2 do not tell the zone; Qt reads local time, with a warning.
    void readsATimeInATimeZone()
    {
        const QVariant value =
            QDateTime(QDate(2013, 2, 1), QTime(1, 2, 3), QTimeZone("Europe/Berlin"));
        for (int version = QDataStream::Qt_4_0; version <= NewestVersion; ++version) {
            const QByteArray bytes = streamed(value, version);
            const Reading expected = qts(bytes, version);
            const Reading actual = ours(bytes, version);
            QCOMPARE(actual.status, QDataStream::Ok);
            QCOMPARE(actual.position, bytes.size());
            QVERIFY(actual.silent);
            if (version == QDataStream::Qt_5_0) { // newer releases of Qt give the moment in UTC
                QCOMPARE(actual.value.toDateTime(), expected.value.toDateTime());
                QCOMPARE(actual.value.toDateTime().timeSpec(), Qt::LocalTime);
                continue;
            }
            QVERIFY2(isSame(actual.value, expected.value), qPrintable(QString::number(version)));
        }
    }

    // Only the curve's type is taken from the stream, not the address of its function.
    void takesNoFunctionFromTheStream()
    {
        const Reading quadratic = ours(hex("0000001D 00 01 00000000DEADBEEF 00"));
        QCOMPARE(quadratic.status, QDataStream::Ok);
        QCOMPARE(quadratic.value.toEasingCurve(), QEasingCurve(QEasingCurve::InQuad));
        QCOMPARE(quadratic.value.toEasingCurve().valueForProgress(0.5), 0.25);
        const Reading custom = ours(hex("0000001D 00 2F 00000000DEADBEEF 00"));
        QCOMPARE(custom.status, QDataStream::Ok);
        QVERIFY(custom.silent);
        QCOMPARE(custom.value.toEasingCurve().type(), QEasingCurve::Custom);
        QCOMPARE(custom.value.toEasingCurve().valueForProgress(0.5), 0.5);
    }

    void refusesSplinesOfOddPoints()
    {
        const QByteArray bytes = binary(
            [](QDataStream& stream) {
                stream << quint32(QMetaType::QEasingCurve) << qint8(0) << quint8(45) << quint64(0)
                       << true << 0.0 << 0.0 << 0.0 << quint32(1) << QPointF() << quint32(0);
            },
            NewestVersion);
        QCOMPARE(ours(bytes, NewestVersion).status, QDataStream::ReadCorruptData);
    }

    void keepsTheNullFlagOfAFilledValue()
    {
        const QByteArray bytes = hex("00000009 01 00000001 00000002 01 00000005");
        const Reading actual = ours(bytes);
        QVERIFY(actual.value.isNull());
        QCOMPARE(actual.value.toList().size(), 1);
        QVERIFY(actual.value.toList().first().isNull());
        QCOMPARE(actual.value.toList().first().toInt(), 5);
        QVERIFY(isSame(actual.value, qts(bytes).value));
    }

    void knowsOurTypesUnderBothNames_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("old") << QByteArray("geo::Vector\0", 12);
        QTest::newRow("new") << QByteArray("Ovra::Geo::Vector\0", 18);
        QTest::newRow("without NUL") << QByteArray("geo::Vector");
    }

    void knowsOurTypesUnderBothNames()
    {
        QFETCH(QByteArray, name);
        const QByteArray bytes = binary([&](QDataStream& stream) {
            stream << quint32(127) << qint8(0) << name << Vector(1, 2, 3);
        });
        const Reading actual = ours(bytes);
        QCOMPARE(actual.status, QDataStream::Ok);
        QCOMPARE(actual.value.metaType(), QMetaType::fromType<Vector>());
        QCOMPARE(actual.value.value<Vector>(), Vector(1, 2, 3));
    }

    void honoursTheByteOrder()
    {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setByteOrder(QDataStream::LittleEndian);
        out << QVariant(QVariantList{1, 0.5});
        QDataStream in(bytes);
        in.setByteOrder(QDataStream::LittleEndian);
        QVariant value;
        QVERIFY(VariantReader(in).read(value));
        QCOMPARE(value.toList(), (QVariantList{1, 0.5}));
    }

    void readsFromSequentialDevices()
    {
        const QVariantList list{1, QDateTime(QDate(2013, 2, 1), QTime(1, 2, 3)), "end"};
        SequentialDevice device(streamed(list, NewestVersion));
        QDataStream stream(&device);
        QVariant value;
        QVERIFY(VariantReader(stream).read(value));
        QCOMPARE(value.toList(), list);
        QVERIFY(device.atEnd());
    }

    void refusesSilently_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("number of no type") << hex("00000700 00 00000000");
        QTest::newRow("largest number") << hex("FFFFFFFF 00 00000000");
        QTest::newRow("number of a registered type") << hex("00010062 00 00000000 00000000");
        QTest::newRow("name of no type") << hex("0000007F 00 00000004 61626300");
        QTest::newRow("empty name") << hex("0000007F 00 00000000");
        QTest::newRow("null name") << hex("0000007F 00 FFFFFFFF");
        QTest::newRow("unbalanced name") << hex("0000007F 00 00000006 513C3C3E2800");
        QTest::newRow("pointer") << hex("00000080 00 0000000000000000");
        QTest::newRow("QObject*") << hex("00000088 00 0000000000000000");
        QTest::newRow("easing curve of no type") << hex("0000001D 00 30 0000000000000000 00");
        QTest::newRow("easing curve of the highest number")
            << hex("0000001D 00 FF 0000000000000000 01");
        QTest::newRow("type in a list") << hex("00000009 00 00000001 00000700 00");
        QTest::newRow("type in a map") << hex("00000008 00 00000001 00000000 00000700 00");
        QTest::newRow("string of odd length") << hex("0000000A 00 00000003 000000000000");
        QTest::newRow("list beyond all sizes") << hex("00000009 00 80000000 00000002 00 00000001");
        QTest::newRow("nested too deep")
            << nestedBytes("00000009 00 00000001", VariantReader::MaximumDepth + 1);
        QTest::newRow("nested without end") << hex("00000009 00 00000001").repeated(100000);
        QTest::newRow("variants without end") << hex("0000008A 00").repeated(100000);
        QTest::newRow("maps without end") << hex("00000008 00 00000001 FFFFFFFF").repeated(100000);
        QTest::newRow("hashes without end")
            << hex("0000001C 00 00000001 FFFFFFFF").repeated(100000);
    }

    void refusesSilently()
    {
        QFETCH(QByteArray, bytes);
        const Reading actual = ours(bytes);
        QCOMPARE(actual.status, QDataStream::ReadCorruptData);
        QVERIFY(actual.silent);
        QVERIFY(!actual.value.isValid());
    }

    // Only few bytes follow what the stream announces.
    void believesNoCount_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("QVariantList") << hex("00000009 00 7FFFFFFF 00000002 00 00000001");
        QTest::newRow("QStringList") << hex("0000000B 00 7FFFFFFF 00000000");
        QTest::newRow("QByteArrayList") << hex("00000092 00 7FFFFFFF 00000000");
        QTest::newRow("QVariantMap") << hex("00000008 00 7FFFFFFF 00000000 00000002 00 00000001");
        QTest::newRow("QVariantHash") << hex("0000001C 00 7FFFFFFF 00000000 00000002 00 00000001");
        QTest::newRow("QString") << hex("0000000A 00 7FFFFFFE 0041");
        QTest::newRow("QByteArray") << hex("0000000C 00 7FFFFFFF 41");
        QTest::newRow("type name") << hex("0000007F 00 7FFFFFFF 41");
    }

    void believesNoCount()
    {
        QFETCH(QByteArray, bytes);
        const Reading actual = ours(bytes);
        QCOMPARE(actual.status, QDataStream::ReadPastEnd);
        QVERIFY(actual.silent);
        QVERIFY(!actual.value.isValid());
        QVERIFY(!AllocationWatch::isExceeded());
    }

    void readsNothingFromAFailedStream()
    {
        QDataStream stream(hex("00000002 00 00000005"));
        stream.setStatus(QDataStream::ReadPastEnd);
        QVariant value(3);
        QVERIFY(!VariantReader(stream).read(value));
        QVERIFY(!value.isValid());
        QCOMPARE(stream.device()->pos(), 0);
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
    }

    void survivesAnyTypeName()
    {
        const QByteArray characters("<>(){}[]:,*& \0aQconst", 21);
        quint32 state = 1;
        for (int i = 0; i < 20000; ++i) {
            QByteArray name;
            for (int j = 0; j < 12; ++j) {
                state = state * 1664525u + 1013904223u;
                name.append(characters.at(static_cast<qsizetype>((state >> 8) % 21)));
            }
            const QByteArray bytes =
                binary([&](QDataStream& stream) { stream << quint32(127) << qint8(0) << name; });
            const Reading actual = ours(bytes);
            QVERIFY(actual.silent);
            QVERIFY(actual.status != QDataStream::Ok);
        }
    }

private:
    void compareTypeNumber(quint32 number, qint8 null, int version)
    {
        const QByteArray bytes = binary(
            [&](QDataStream& stream) {
                stream << number;
                if (version >= QDataStream::Qt_4_2) {
                    stream << null;
                }
                stream.writeRawData(QByteArray(64, '\0').constData(), 64);
            },
            version);
        const Reading expected = qts(bytes, version);
        const Reading actual = ours(bytes, version);
        QVERIFY(actual.silent);
        const bool unusedOldNumber = version < QDataStream::Qt_4_0 && number >= 36;
        if (unusedOldNumber || !expected.silent) {
            QCOMPARE(actual.status, QDataStream::ReadCorruptData);
            return;
        }
        QCOMPARE(actual.status, expected.status);
        if (expected.status == QDataStream::Ok) {
            QCOMPARE(actual.position, expected.position);
            // A curve without a function, as Qt would read it here, has no other way to be made.
            const bool easing = actual.value.metaType() == QMetaType::fromType<QEasingCurve>();
            QVERIFY(easing || isSame(actual.value, expected.value));
        }
    }
};

QTEST_APPLESS_MAIN(TestVariantReader)
#include "tst_VariantReader.moc"
