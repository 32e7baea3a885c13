#include "Box.h"
#include "ValueForms.h"

#include <type_traits>

using namespace Ovra::Geo;
using namespace ValueForms;

static_assert(sizeof(Box) == 2 * sizeof(Vector));
static_assert(std::is_trivially_copyable_v<Box>);

namespace
{

constexpr double largest = 1.7976931348623157e308;

const Box unit(Vector(0, 0, 0), Vector(1, 1, 1));

} // namespace

class TestBox : public QObject
{
    Q_OBJECT

private slots:
    void isInvertedByDefault()
    {
        const Box box;
        QCOMPARE(box.minimum(), Vector(largest, largest, largest));
        QCOMPARE(box.maximum(), Vector(-largest, -largest, -largest));
        QVERIFY(box.isValid());
        QCOMPARE(box.center(), Vector());
        QCOMPARE(box.extent(), Vector(-qInf(), -qInf(), -qInf()));
        QCOMPARE(box.radius(), qInf());
    }

    void keepsCornersAsGiven()
    {
        const Box box(Vector(3, 1, 2), Vector(1, 2, 3));
        QCOMPARE(box.minimum(), Vector(3, 1, 2));
        QCOMPARE(box.maximum(), Vector(1, 2, 3));
    }

    void measures()
    {
        const Box box(Vector(1, 2, 3), Vector(3, 5, 9));
        QCOMPARE(box.center(), Vector(2, 3.5, 6));
        QCOMPARE(box.extent(), Vector(2, 3, 6));
        QCOMPARE(box.radius(), 3.5);
    }

    void answersValidOnlyWhenInverted_data()
    {
        QTest::addColumn<Box>("box");
        QTest::addColumn<bool>("valid");
        QTest::newRow("default") << Box() << true;
        QTest::newRow("proper") << unit << false;
        QTest::newRow("a point") << Box(Vector(1, 2, 3), Vector(1, 2, 3)) << false;
        QTest::newRow("flat") << Box(Vector(0, 0, 0), Vector(1, 1, 0)) << false;
        QTest::newRow("inverted on x") << Box(Vector(2, 0, 0), Vector(1, 1, 1)) << true;
        QTest::newRow("inverted on y") << Box(Vector(0, 2, 0), Vector(1, 1, 1)) << true;
        QTest::newRow("inverted on z") << Box(Vector(0, 0, 2), Vector(1, 1, 1)) << true;
    }

    void answersValidOnlyWhenInverted()
    {
        QFETCH(Box, box);
        QTEST(box.isValid(), "valid");
    }

    void contains_data()
    {
        QTest::addColumn<Box>("outer");
        QTest::addColumn<Box>("inner");
        QTest::addColumn<bool>("contained");
        const Box point(Vector(5, 5, 5), Vector(5, 5, 5));
        QTest::newRow("itself") << unit << unit << true;
        QTest::newRow("a point itself") << point << point << true;
        QTest::newRow("inside") << Box(Vector(-1, -1, -1), Vector(2, 2, 2)) << unit << true;
        QTest::newRow("outside") << unit << Box(Vector(-1, -1, -1), Vector(2, 2, 2)) << false;
        for (int axis = 0; axis < 3; ++axis) {
            Vector low;
            low[axis] = -0.5;
            QTest::addRow("below on axis %d", axis) << unit << Box(low, Vector(1, 1, 1)) << false;
            Vector high(1, 1, 1);
            high[axis] = 1.5;
            QTest::addRow("above on axis %d", axis) << unit << Box(Vector(), high) << false;
        }
        QTest::newRow("default in finite") << unit << Box() << true;
        QTest::newRow("finite in default") << Box() << unit << false;
    }

    void contains()
    {
        QFETCH(Box, outer);
        QFETCH(Box, inner);
        QTEST(outer.contains(inner), "contained");
    }

    void intersects_data()
    {
        QTest::addColumn<Box>("a");
        QTest::addColumn<Box>("b");
        QTest::addColumn<bool>("intersecting");
        const Box point(Vector(5, 5, 5), Vector(5, 5, 5));
        QTest::newRow("itself") << unit << unit << true;
        QTest::newRow("a point itself") << point << point << true;
        QTest::newRow("crossing") << unit << Box(Vector(0.5, 0.5, 0.5), Vector(2, 2, 2)) << true;
        QTest::newRow("inside") << Box(Vector(-1, -1, -1), Vector(2, 2, 2)) << unit << true;
        QTest::newRow("sharing a corner") << unit << Box(Vector(1, 1, 1), Vector(2, 2, 2)) << true;
        for (int axis = 0; axis < 3; ++axis) {
            Vector offset;
            offset[axis] = 1.25;
            QTest::addRow("apart on axis %d", axis)
                << unit << Box(offset, offset + Vector(1, 1, 1)) << false;
        }
        QTest::newRow("default") << unit << Box() << false;
    }

    void intersects()
    {
        QFETCH(Box, a);
        QFETCH(Box, b);
        QTEST(a.intersects(b), "intersecting");
        QTEST(b.intersects(a), "intersecting");
    }

    void matches_data()
    {
        QTest::addColumn<Box>("other");
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<bool>("matching");
        // The box itself spans (0, 0, 0) to (3, 4, 12): its diagonal is 13.
        const Vector high(3, 4, 12);
        QTest::newRow("itself") << Box(Vector(), high) << 0.0 << true;
        QTest::newRow("low corner at the limit") << Box(Vector(3, 4, 12), high) << 1.0 << true;
        QTest::newRow("low corner beyond") << Box(Vector(3, 4, 12), high) << 0.5 << false;
        QTest::newRow("high corner at the limit") << Box(Vector(), Vector()) << 1.0 << true;
        QTest::newRow("high corner beyond") << Box(Vector(), Vector()) << 0.5 << false;
        // Twice the size: the larger diagonal, 26, counts, and half of it is the distance.
        QTest::newRow("larger diagonal of the other") << Box(Vector(), 2.0 * high) << 0.5 << true;
        QTest::newRow("by distance, not by axis")
            << Box(Vector(3, 4, 0), high + Vector(0, 0, 1)) << 0.25 << false;
    }

    void matches()
    {
        QFETCH(Box, other);
        QFETCH(double, tolerance);
        QTEST(Box(Vector(), Vector(3, 4, 12)).matches(other, tolerance), "matching");
        QTEST(other.matches(Box(Vector(), Vector(3, 4, 12)), tolerance), "matching");
    }

    void becomesZero()
    {
        Box box(Vector(1, 2, 3), Vector(4, 5, 6));
        box.setToZero();
        QCOMPARE(box, Box(Vector(), Vector()));
    }

    void growsFromNothing()
    {
        Box box;
        QCOMPARE(&(box += Vector(1, -2, 3)), &box);
        QCOMPARE(box, Box(Vector(1, -2, 3), Vector(1, -2, 3)));
        box += Vector(0, 5, 3);
        QCOMPARE(box, Box(Vector(0, -2, 3), Vector(1, 5, 3)));
    }

    void growsByABox()
    {
        Box box = unit;
        QCOMPARE(&(box += Box(Vector(-1, 0.5, 0), Vector(0, 0.75, 2))), &box);
        QCOMPARE(box, Box(Vector(-1, 0, 0), Vector(1, 1, 2)));
    }

    void unites()
    {
        const Box other(Vector(2, 2, 2), Vector(3, 3, 3));
        QCOMPARE(unit + other, Box(Vector(0, 0, 0), Vector(3, 3, 3)));
        QCOMPARE(unit + Box(), unit);
        QCOMPARE(Box() + unit, unit);
        QCOMPARE(Box() + Box(), Box());
    }

    void comparesExactly()
    {
        QVERIFY(unit == Box(Vector(0, 0, 0), Vector(1, 1, 1)));
        QVERIFY(unit != Box(Vector(0, 0, 0), Vector(1, 1, std::nextafter(1.0, 2.0))));
        QVERIFY(unit != Box(Vector(0, 1e-300, 0), Vector(1, 1, 1)));
        QVERIFY(!(unit != unit));
    }

    void prints()
    {
        const Box box(Vector(0.5, -1, 0), Vector(1e10, 2, 1.0 / 3));
        QCOMPARE(box.toString(), "[(0.5, -1, 0), (1e+10, 2, 0.333333)]");
        QCOMPARE(text(box), box.toString());
        QCOMPARE(Box().toString(), "[(1.79769e+308, 1.79769e+308, 1.79769e+308), "
                                   "(-1.79769e+308, -1.79769e+308, -1.79769e+308)]");
    }

    void printsAlikeInAnyLocale()
    {
        const GermanLocale german;
        QCOMPARE(text(Box(Vector(0.5, 0, 0), Vector(12345, 1, 1))), "[(0.5, 0, 0), (12345, 1, 1)]");
    }

    void streamsBothCorners()
    {
        const QByteArray bytes =
            QByteArray::fromHex("3ff0000000000000 4000000000000000 4008000000000000"
                                "4010000000000000 4014000000000000 4018000000000000");
        QCOMPARE(binary(Box(Vector(1, 2, 3), Vector(4, 5, 6))), bytes);
        Box box;
        QCOMPARE(readBinary(bytes, box), QDataStream::Ok);
        QCOMPARE(box, Box(Vector(1, 2, 3), Vector(4, 5, 6)));
    }

    void streamsTheDefaultBox()
    {
        QCOMPARE(binary(Box()), QByteArray::fromHex("7fefffffffffffff").repeated(3) +
                                    QByteArray::fromHex("ffefffffffffffff").repeated(3));
        Box box = unit;
        QCOMPARE(readBinary(binary(Box()), box), QDataStream::Ok);
        QCOMPARE(box, Box());
    }

    void tellsOfAShortStream()
    {
        Box box;
        QCOMPARE(readBinary(QByteArray(47, '\0'), box), QDataStream::ReadPastEnd);
    }

    void hasOneMetaTypeUnderTwoNames()
    {
        compareMetaType<Box>("Ovra::Geo::Box", "geo::Box", {.equality = true, .lessThan = false});
    }

    void travelsInAVariant()
    {
        const QVariant variant = unit;
        QCOMPARE(variant.metaType(), QMetaType::fromType<Box>());
        QCOMPARE(variant.value<Box>(), unit);
        QCOMPARE(variant, QVariant(unit));
        QVERIFY(variant != QVariant(Box()));
        compareVariantForms(unit, "Ovra::Geo::Box", "geo::Box");
    }
};

QTEST_APPLESS_MAIN(TestBox)
#include "tst_Box.moc"
