#include "RefinementRegion.h"
#include "ValueForms.h"

#include <limits>

using namespace Ovra::Geo;
using namespace ValueForms;

namespace
{

// Every field with a value of its own.
RefinementRegion sample()
{
    RefinementRegion region;
    region.setType("box");
    region.setFilled(true);
    region.setLength(1);
    region.setRadius(2);
    region.setLambda(0.5);
    region.setCentroid(Vector(1, 2, 3));
    region.setVector(1, Vector(4, 0, 0));
    region.setVector(2, Vector(0, 5, 0));
    region.setVector(3, Vector(0, 0, 6));
    region.addPoint(Vector(7, 8, 9));
    region.addPoint(Vector(-7, -8, -9));
    region.setBackgroundGridDimensions(10, -11, 12);
    region.setUniform(true);
    region.setLambdas({0.25, 0.75, 1});
    region.setExtent(Vector(13, 0, 0));
    region.setMinimum(Vector(14, 0, 0));
    region.setMaximum(Vector(15, 0, 0));
    region.setTransMat(1, Vector(16, 0, 0));
    region.setTransMat(2, Vector(17, 0, 0));
    region.setTransMat(3, Vector(18, 0, 0));
    return region;
}

QByteArray vector(const char* x, const char* y = "", const char* z = "")
{
    const auto number = [](const char* hex) {
        return QByteArray::fromHex(hex).leftJustified(8, '\0');
    };
    return number(x) + number(y) + number(z);
}

// The binary form of sample(), in three pieces around the counts of its lists.
QByteArray beforePoints()
{
    return QByteArray::fromHex("00000006 0062 006f 0078 01") +
           QByteArray::fromHex("3ff0000000000000 4000000000000000 3fe0000000000000") +
           vector("3ff0", "4000", "4008") + vector("4010") + vector("", "4014") +
           vector("", "", "4018");
}

QByteArray points()
{
    return vector("401c", "4020", "4022") + vector("c01c", "c020", "c022");
}

QByteArray betweenLists()
{
    return QByteArray::fromHex("0000000a fffffff5 0000000c 01");
}

QByteArray lambdas()
{
    return QByteArray::fromHex("3fd0000000000000 3fe8000000000000 3ff0000000000000");
}

QByteArray afterLambdas()
{
    return vector("402a") + vector("402c") + vector("402e") + vector("4030") + vector("4031") +
           vector("4032");
}

QByteArray count(const char* hex)
{
    return QByteArray::fromHex(hex);
}

QByteArray sampleBytes()
{
    return beforePoints() + count("00000002") + points() + betweenLists() + count("00000003") +
           lambdas() + afterLambdas();
}

struct Grid
{
    explicit Grid(const RefinementRegion& region)
    {
        region.getBackgroundGridDimensions(first, second, third);
    }
    int first = -1;
    int second = -1;
    int third = -1;
};

} // namespace

class TestRefinementRegion : public QObject
{
    Q_OBJECT

private slots:
    void isEmptyByDefault()
    {
        const RefinementRegion region;
        QVERIFY(region.type().isNull());
        QVERIFY(!region.isFilled());
        QVERIFY(!region.isUniform());
        QCOMPARE(region.length(), 0.0);
        QCOMPARE(region.radius(), 0.0);
        QCOMPARE(region.lambda(), 0.0);
        QCOMPARE(region.centroid(), Vector());
        QCOMPARE(region.extent(), Vector());
        QCOMPARE(region.minimum(), Vector());
        QCOMPARE(region.maximum(), Vector());
        QCOMPARE(region.pointCount(), 0);
        QVERIFY(region.lambdas().isEmpty());
        const Grid grid(region);
        QCOMPARE(grid.first, 0);
        QCOMPARE(grid.second, 0);
        QCOMPARE(grid.third, 0);
        for (int i = 1; i <= 3; ++i) {
            QCOMPARE(region.vector(i), Vector());
            QCOMPARE(region.transMat(i), Vector());
        }
    }

    void startsAlikeWithAVersion()
    {
        QCOMPARE(binary(RefinementRegion(Version(14, 0, 0))), binary(RefinementRegion()));
    }

    void keepsItsFields()
    {
        const RefinementRegion region = sample();
        QCOMPARE(region.type(), "box");
        QVERIFY(region.isFilled());
        QVERIFY(region.isUniform());
        QCOMPARE(region.length(), 1.0);
        QCOMPARE(region.radius(), 2.0);
        QCOMPARE(region.lambda(), 0.5);
        QCOMPARE(region.centroid(), Vector(1, 2, 3));
        QCOMPARE(region.pointCount(), 2);
        QCOMPARE(region.point(0), Vector(7, 8, 9));
        QCOMPARE(region.point(1), Vector(-7, -8, -9));
        const Grid grid(region);
        QCOMPARE(grid.first, 10);
        QCOMPARE(grid.second, -11);
        QCOMPARE(grid.third, 12);
        QCOMPARE(region.lambdas(), QList<double>({0.25, 0.75, 1}));
        QCOMPARE(region.extent(), Vector(13, 0, 0));
        QCOMPARE(region.minimum(), Vector(14, 0, 0));
        QCOMPARE(region.maximum(), Vector(15, 0, 0));
    }

    void pointsCanBeChanged()
    {
        RefinementRegion region = sample();
        const RefinementRegion copy = region;
        region.point(1) = Vector(1, 1, 1);
        QCOMPARE(region.point(1), Vector(1, 1, 1));
        QCOMPARE(copy.point(1), Vector(-7, -8, -9));
    }

    void selectsByIndexFromOne_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("selected");
        QTest::newRow("first") << 1 << 1;
        QTest::newRow("second") << 2 << 2;
        QTest::newRow("third") << 3 << 3;
        QTest::newRow("zero") << 0 << 1;
        QTest::newRow("four") << 4 << 1;
        QTest::newRow("seven") << 7 << 1;
        QTest::newRow("negative") << -1 << 1;
        QTest::newRow("lowest") << std::numeric_limits<int>::min() << 1;
        QTest::newRow("highest") << std::numeric_limits<int>::max() << 1;
    }

    void selectsByIndexFromOne()
    {
        QFETCH(int, index);
        QFETCH(int, selected);
        RefinementRegion region = sample();
        QCOMPARE(region.vector(index), region.vector(selected));
        QCOMPARE(region.transMat(index), region.transMat(selected));
        region.setVector(index, Vector(1, 1, 1));
        region.setTransMat(index, Vector(2, 2, 2));
        for (int i = 1; i <= 3; ++i) {
            QCOMPARE(region.vector(i) == Vector(1, 1, 1), i == selected);
            QCOMPARE(region.transMat(i) == Vector(2, 2, 2), i == selected);
        }
    }

    void streamsItsFieldsInOrder() { QCOMPARE(binary(sample()), sampleBytes()); }

    void streamsTheDefault()
    {
        const QByteArray bytes = count("ffffffff") + QByteArray(1 + 3 * 8 + 4 * 24, '\0') +
                                 count("00000000") + QByteArray(12 + 1, '\0') + count("00000000") +
                                 QByteArray(6 * 24, '\0');
        QCOMPARE(binary(RefinementRegion()), bytes);
        RefinementRegion region = sample();
        QCOMPARE(readBinary(bytes, region), QDataStream::Ok);
        QVERIFY(region.type().isNull());
        QCOMPARE(binary(region), bytes);
    }

    void comesBackFromAStream()
    {
        RefinementRegion region(Version(1, 2, 3));
        region.addPoint(Vector(99, 99, 99));
        region.setLambdas({99, 99, 99, 99, 99});
        QCOMPARE(readBinary(sampleBytes(), region), QDataStream::Ok);
        QCOMPARE(region.type(), "box");
        QCOMPARE(region.pointCount(), 2);
        QCOMPARE(region.lambdas(), QList<double>({0.25, 0.75, 1}));
        QCOMPARE(region.transMat(3), Vector(18, 0, 0));
        QCOMPARE(binary(region), sampleBytes());
    }

    void leavesWhatFollowsOnTheStream()
    {
        QDataStream stream(sampleBytes() + "next");
        RefinementRegion region;
        stream >> region;
        QCOMPARE(stream.device()->readAll(), QByteArray("next"));
    }

    void tellsOfAStreamThatEnds_data()
    {
        QTest::addColumn<int>("size");
        for (int size = 0; size < sampleBytes().size(); ++size) {
            QTest::addRow("%d bytes", size) << size;
        }
    }

    void tellsOfAStreamThatEnds()
    {
        QFETCH(int, size);
        RefinementRegion region = sample();
        QCOMPARE(readBinary(sampleBytes().left(size), region), QDataStream::ReadPastEnd);
        const qsizetype pointsEnd = (beforePoints() + count("00000002") + points()).size();
        const qsizetype lambdasEnd =
            pointsEnd + (betweenLists() + count("00000003") + lambdas()).size();
        QCOMPARE(region.pointCount(), size < pointsEnd ? 0 : 2);
        QCOMPARE(region.lambdas().size(), size < lambdasEnd ? 0 : 3);
    }

    void mistrustsCounts_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QDataStream::Status>("status");
        QTest::addColumn<int>("points");
        const QByteArray upToLambdas =
            beforePoints() + count("00000002") + points() + betweenLists();
        const auto add = [&upToLambdas](const char* name, const char* hex,
                                        QDataStream::Status status) {
            QTest::addRow("points, %s", name)
                << beforePoints() + count(hex) + points() + betweenLists() << status << 0;
            QTest::addRow("lambdas, %s", name)
                << upToLambdas + count(hex) + lambdas() + afterLambdas() << status << 2;
        };
        add("all bits", "ffffffff", QDataStream::ReadCorruptData);
        add("all bits but one", "fffffffe", QDataStream::ReadCorruptData);
        add("top bit", "80000000", QDataStream::ReadCorruptData);
        add("gigabytes", "7fffffff", QDataStream::ReadPastEnd);
        add("megabytes", "00100000", QDataStream::ReadPastEnd);
    }

    void mistrustsCounts()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, points);
        RefinementRegion region = sample();
        QTEST(readBinary(bytes, region), "status");
        QCOMPARE(region.pointCount(), points);
        QVERIFY(region.lambdas().isEmpty());
    }

    void keepsAFailureThatCameBefore()
    {
        QDataStream stream(sampleBytes());
        stream.setStatus(QDataStream::ReadCorruptData);
        RefinementRegion region = sample();
        stream >> region;
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
        QCOMPARE(region.pointCount(), 2);
        QCOMPARE(region.lambdas(), sample().lambdas());
        QVERIFY(stream.atEnd());
    }

    void writesText()
    {
        QCOMPARE(text(sample()), "box 1\n"
                                 "1 2 0.5\n"
                                 "(1, 2, 3) (4, 0, 0) (0, 5, 0) (0, 0, 6)\n"
                                 "2\n"
                                 "(7, 8, 9)\n"
                                 "(-7, -8, -9)\n"
                                 "10 -11 12\n"
                                 "1\n"
                                 "3\n"
                                 "0.25\n"
                                 "0.75\n"
                                 "1\n"
                                 "(13, 0, 0) (14, 0, 0) (15, 0, 0) "
                                 "(16, 0, 0) (17, 0, 0) (18, 0, 0)\n");
    }

    void writesTextOfTheDefault()
    {
        QCOMPARE(text(RefinementRegion()), " 0\n"
                                           "0 0 0\n"
                                           "(0, 0, 0) (0, 0, 0) (0, 0, 0) (0, 0, 0)\n"
                                           "0\n"
                                           "0 0 0\n"
                                           "0\n"
                                           "0\n"
                                           "(0, 0, 0) (0, 0, 0) (0, 0, 0) "
                                           "(0, 0, 0) (0, 0, 0) (0, 0, 0)\n");
    }

    void writesTextAlikeInAnyLocale()
    {
        const QString expected = text(sample());
        const GermanLocale german;
        QCOMPARE(text(sample()), expected);
    }

    void hasOneMetaTypeUnderTwoNames()
    {
        compareMetaType<RefinementRegion>("Ovra::Geo::RefinementRegion", "geo::RefinementRegion",
                                          {.equality = false, .lessThan = false});
    }

    void travelsInAVariant()
    {
        compareVariantForms(sample(), "Ovra::Geo::RefinementRegion", "geo::RefinementRegion");
    }

    void isStreamedByFreeFunctions()
    {
        QDataStream& (*const write)(QDataStream&, const RefinementRegion&) = &Ovra::Geo::operator<<;
        QDataStream& (*const read)(QDataStream&, RefinementRegion&) = &Ovra::Geo::operator>>;
        QTextStream& (*const print)(QTextStream&, const RefinementRegion&) = &Ovra::Geo::operator<<;
        RefinementRegion region = Version(1, 2, 3);
        region.setType("box");
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        write(out, region);
        QDataStream in(bytes);
        RefinementRegion copy;
        read(in, copy);
        QCOMPARE(copy.type(), QString("box"));
        QString text;
        QTextStream stream(&text);
        print(stream, copy);
        stream.flush();
        QVERIFY(text.startsWith("box 0\n"));
    }
};

QTEST_APPLESS_MAIN(TestRefinementRegion)
#include "tst_RefinementRegion.moc"
