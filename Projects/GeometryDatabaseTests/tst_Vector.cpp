#include "ValueForms.h"
#include "Vector.h"

#include <QHash>

#include <limits>
#include <type_traits>

using namespace Ovra::Geo;
using namespace ValueForms;

static_assert(sizeof(Vector) == 3 * sizeof(double));
static_assert(std::is_trivially_copyable_v<Vector>);
static_assert(std::is_same_v<decltype(Vector() * Vector()), double>);

class TestVector : public QObject
{
    Q_OBJECT

private slots:
    void isZeroByDefault()
    {
        const Vector v;
        QCOMPARE(v.x(), 0.0);
        QCOMPARE(v.y(), 0.0);
        QCOMPARE(v.z(), 0.0);
        QVERIFY(v.isZero());
    }

    void keepsComponentsInOrder()
    {
        const Vector v(1, 2, 3);
        QCOMPARE(v.x(), 1.0);
        QCOMPARE(v.y(), 2.0);
        QCOMPARE(v.z(), 3.0);
    }

    void setsAndResets()
    {
        Vector v;
        v.set(4, 5, 6);
        QCOMPARE(v, Vector(4, 5, 6));
        v.reset();
        QCOMPARE(v, Vector());
    }

    void survivesAssignmentToItself()
    {
        Vector v(1, 2, 3);
        const Vector& same = v;
        v = same;
        QCOMPARE(v, Vector(1, 2, 3));
    }

    void fallsBackToXForOtherIndices_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<double>("component");
        QTest::addColumn<Vector>("after");
        QTest::newRow("x") << 0 << 1.0 << Vector(9, 2, 3);
        QTest::newRow("y") << 1 << 2.0 << Vector(1, 9, 3);
        QTest::newRow("z") << 2 << 3.0 << Vector(1, 2, 9);
        QTest::newRow("just above") << 3 << 1.0 << Vector(9, 2, 3);
        QTest::newRow("far above") << 5 << 1.0 << Vector(9, 2, 3);
        QTest::newRow("negative") << -1 << 1.0 << Vector(9, 2, 3);
        QTest::newRow("lowest") << std::numeric_limits<int>::min() << 1.0 << Vector(9, 2, 3);
    }

    void fallsBackToXForOtherIndices()
    {
        QFETCH(int, index);
        Vector v(1, 2, 3);
        QTEST(std::as_const(v)[index], "component");
        v[index] = 9;
        QTEST(v, "after");
    }

    void comparesExactly()
    {
        const double next = std::nextafter(3.0, 4.0);
        QVERIFY(Vector(1, 2, 3) == Vector(1, 2, 3));
        QVERIFY(!(Vector(1, 2, 3) == Vector(1, 2, next)));
        QVERIFY(Vector(1, 2, 3) != Vector(1, 2, next));
        QVERIFY(Vector(1, 2, 3) != Vector(1, next, 3));
        QVERIFY(Vector(1, 2, 3) != Vector(next, 2, 3));
        QVERIFY(!(Vector(1, 2, 3) != Vector(1, 2, 3)));
        QVERIFY(Vector(qQNaN(), 0, 0) != Vector(qQNaN(), 0, 0));
    }

    void countsNegativeZeroAsZero()
    {
        QVERIFY(Vector(-0.0, -0.0, -0.0).isZero());
        QVERIFY(!Vector(0, 0, std::numeric_limits<double>::denorm_min()).isZero());
    }

    void comparesWithTolerance_data()
    {
        QTest::addColumn<Vector>("a");
        QTest::addColumn<Vector>("b");
        QTest::addColumn<double>("relative");
        QTest::addColumn<double>("absolute");
        QTest::addColumn<bool>("equal");
        QTest::newRow("zeros") << Vector() << Vector() << 0.0 << 0.0 << true;
        QTest::newRow("at the limit") << Vector() << Vector(3, 4, 0) << 0.0 << 5.0 << true;
        QTest::newRow("beyond the limit") << Vector() << Vector(3, 4, 0) << 0.0 << 4.875 << false;
        // The mean of 3 and 5 is 4, half of it 2, which is the distance.
        QTest::newRow("share of the mean")
            << Vector(3, 0, 0) << Vector(5, 0, 0) << 0.5 << 0.0 << true;
        QTest::newRow("less than that share")
            << Vector(3, 0, 0) << Vector(5, 0, 0) << 0.375 << 0.0 << false;
        QTest::newRow("both tolerances add up")
            << Vector(3, 0, 0) << Vector(5, 0, 0) << 0.375 << 0.5 << true;
        // The mean of opposite vectors is zero, so that no relative tolerance is enough.
        QTest::newRow("opposite") << Vector(1, 0, 0) << Vector(-1, 0, 0) << 1e9 << 0.0 << false;
        QTest::newRow("not a number") << Vector(qQNaN(), 0, 0) << Vector() << 1.0 << 1.0 << false;
    }

    void comparesWithTolerance()
    {
        QFETCH(Vector, a);
        QFETCH(Vector, b);
        QFETCH(double, relative);
        QFETCH(double, absolute);
        QTEST(a.isAlmostEqualTo(b, relative, absolute), "equal");
    }

    void hasEuclideanLength() { QCOMPARE(Vector(2, -3, 6).length(), 7.0); }

    void normalizes()
    {
        Vector v(0, 3, -4);
        v.normalize();
        QCOMPARE(v, Vector(0, 3.0 / 5, -4.0 / 5));
    }

    void leavesTheZeroVectorWhenNormalizing()
    {
        Vector v;
        v.normalize();
        QCOMPARE(v, Vector());
    }

    void findsTheLargestComponent_data()
    {
        QTest::addColumn<Vector>("vector");
        QTest::addColumn<double>("magnitude");
        QTest::addColumn<int>("position");
        QTest::newRow("tie of x and y") << Vector(-3, 3, 0) << 3.0 << 0;
        QTest::newRow("tie of y and z") << Vector(1, -2, 2) << 2.0 << 1;
        QTest::newRow("tie of x and z") << Vector(2, 1, -2) << 2.0 << 0;
        QTest::newRow("zero") << Vector() << 0.0 << 0;
        QTest::newRow("y") << Vector(1, -7, 2) << 7.0 << 1;
        QTest::newRow("z") << Vector(1, 2, -3) << 3.0 << 2;
    }

    void findsTheLargestComponent()
    {
        QFETCH(Vector, vector);
        int position = -1;
        QTEST(vector.maxComponent(&position), "magnitude");
        QTEST(position, "position");
        QTEST(vector.maxComponent(nullptr), "magnitude");
    }

    void orthonormalizes()
    {
        Vector a(2, 0, 5);
        Vector b(7, 3, 4);
        Vector c(0, 0, 1);
        Vector::orthonormalize(a, b, c);
        QCOMPARE(a, Vector(1, 0, 0));
        QCOMPARE(b, Vector(0, 1, 0));
        QCOMPARE(c, Vector(0, 0, 1));
    }

    void keepsTheSideOfTheSecondDirection()
    {
        Vector a(0, 4, 0);
        Vector b(-2, 1, 1);
        Vector c(0, 0, 1);
        Vector::orthonormalize(a, b, c);
        QCOMPARE(a, Vector(0, 1, 0));
        QCOMPARE(b, Vector(-1, 0, 0));
    }

    void leavesDirectionsThatVanishAtZero()
    {
        Vector a(0, 0, 4);
        Vector b(0, 0, -2);
        Vector c(0, 0, 1);
        Vector::orthonormalize(a, b, c);
        QCOMPARE(a, Vector());
        QCOMPARE(b, Vector());
    }

    void calculates()
    {
        const Vector a(1, 2, 3);
        const Vector b(4, -5, 6);
        QCOMPARE(a + b, Vector(5, -3, 9));
        QCOMPARE(a - b, Vector(-3, 7, -3));
        QCOMPARE(a * 2.0, Vector(2, 4, 6));
        QCOMPARE(2.0 * a, Vector(2, 4, 6));
        QCOMPARE(a / 2.0, Vector(0.5, 1, 1.5));
        QCOMPARE(a * b, 12.0);
        QCOMPARE(-a, Vector(-1, -2, -3));
    }

    void negatesZeroToNegativeZero() { QVERIFY(std::signbit((-Vector()).x())); }

    void dividesByTheScalarOnTheLeftToo() { QCOMPARE(2.0 / Vector(2, 4, 8), Vector(1, 2, 4)); }

    // Where a compiler fuses a multiplication with an addition, it does not.
    void crossesToZeroWithItself()
    {
        for (int i = 1; i <= 1000; ++i) {
            const Vector vector(0.1 * i, 0.7 / i, 1.3 + i);
            QCOMPARE(vector ^ vector, Vector());
        }
    }

    void crossesByTheRightHand()
    {
        QCOMPARE(Vector(1, 0, 0) ^ Vector(0, 1, 0), Vector(0, 0, 1));
        QCOMPARE(Vector(1, 2, 3) ^ Vector(4, 5, 7), Vector(-1, 5, -3));
    }

    void changesInPlaceAndReturnsItself()
    {
        Vector v(1, 2, 3);
        QCOMPARE(&(v *= 2.0), &v);
        QCOMPARE(v, Vector(2, 4, 6));
        QCOMPARE(&(v += Vector(1, 1, 1)), &v);
        QCOMPARE(v, Vector(3, 5, 7));
        QCOMPARE(&(v -= Vector(3, 1, -1)), &v);
        QCOMPARE(v, Vector(0, 4, 8));
        QCOMPARE(&(v /= 4.0), &v);
        QCOMPARE(v, Vector(0, 1, 2));
        QCOMPARE(v += v, Vector(0, 2, 4));
    }

    void dividesByZeroAsIeeeSays()
    {
        const Vector v = Vector(1, -1, 0) / 0.0;
        QCOMPARE(v.x(), qInf());
        QCOMPARE(v.y(), -qInf());
        QVERIFY(qIsNaN(v.z()));
    }

    void printsSixDigits_data()
    {
        QTest::addColumn<Vector>("vector");
        QTest::addColumn<QString>("expected");
        QTest::newRow("zero") << Vector() << "(0, 0, 0)";
        QTest::newRow("fractions") << Vector(1.5, -2.25, 0.1) << "(1.5, -2.25, 0.1)";
        QTest::newRow("rounded") << Vector(1.0 / 3, 1234567, 999999.5)
                                 << "(0.333333, 1.23457e+06, 1e+06)";
        QTest::newRow("exponents") << Vector(1e10, 1e-5, 123456) << "(1e+10, 1e-05, 123456)";
        QTest::newRow("negative zero") << Vector(-0.0, 0, 0) << "(0, 0, 0)";
        QTest::newRow("not finite") << Vector(qInf(), -qInf(), qQNaN()) << "(inf, -inf, nan)";
    }

    void printsSixDigits()
    {
        QFETCH(Vector, vector);
        QTEST(vector.toString(), "expected");
        QTEST(text(vector), "expected");
    }

    void printsAlikeInAnyLocale()
    {
        const GermanLocale german;
        QCOMPARE(Vector(1.5, 12345.5, 0).toString(), "(1.5, 12345.5, 0)");
        QCOMPARE(text(Vector(1.5, 12345.5, 0)), "(1.5, 12345.5, 0)");
    }

    void printsWithoutTheStreamsNumberSettings()
    {
        QString result;
        QTextStream stream(&result);
        stream.setRealNumberNotation(QTextStream::ScientificNotation);
        stream.setRealNumberPrecision(2);
        stream << Vector(1.0 / 3, 2, 3);
        QCOMPARE(result, "(0.333333, 2, 3)");
    }

    void hashesByText()
    {
        const Vector v(1.0 / 3, 2, 3);
        QCOMPARE(qHash(v), qHash(QString("(0.333333, 2, 3)"), 0));
        QCOMPARE(qHash(v), qHash(Vector(0.3333333, 2, 3)));
        QCOMPARE(qHash(Vector(0, -0.0, 0)), qHash(Vector()));
        QHash<Vector, int> table;
        table.insert(v, 7);
        QCOMPARE(table.value(v), 7);
        QVERIFY(!table.contains(Vector(0.3333333, 2, 3)));
    }

    void streamsThreeDoubles()
    {
        const QByteArray bytes =
            QByteArray::fromHex("3ff0000000000000 c000000000000000 3fb999999999999a");
        QCOMPARE(binary(Vector(1, -2, 0.1)), bytes);
        Vector v;
        QCOMPARE(readBinary(bytes, v), QDataStream::Ok);
        QCOMPARE(v, Vector(1, -2, 0.1));
    }

    void isNamedInFullByNewerStreams()
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_6_0);
        stream << QVariant(Vector(1, 2, 3));
        QVERIFY(bytes.contains(countedString("Ovra::Geo::Vector")));
    }

    void followsTheStreamsByteOrder()
    {
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setByteOrder(QDataStream::LittleEndian);
        stream << Vector(1, 0, 0);
        QCOMPARE(bytes, QByteArray::fromHex("000000000000f03f") + QByteArray(16, '\0'));
    }

    void tellsOfAShortStream()
    {
        Vector v(7, 8, 9);
        QCOMPARE(readBinary(binary(Vector(1, 2, 3)).left(20), v), QDataStream::ReadPastEnd);
        QCOMPARE(v, Vector(1, 2, 0));
    }

    void hasOneMetaTypeUnderTwoNames()
    {
        compareMetaType<Vector>("Ovra::Geo::Vector", "geo::Vector",
                                {.equality = true, .lessThan = false});
    }

    void travelsInAVariant()
    {
        const QVariant variant = Vector(1, 2, 3);
        QCOMPARE(variant.metaType(), QMetaType::fromType<Vector>());
        QCOMPARE(variant.value<Vector>(), Vector(1, 2, 3));
        QCOMPARE(variant, QVariant(Vector(1, 2, 3)));
        QVERIFY(variant != QVariant(Vector(1, 2, 4)));
        compareVariantForms(Vector(1, 2, 3), "Ovra::Geo::Vector", "geo::Vector");
    }
};

QTEST_APPLESS_MAIN(TestVector)
#include "tst_Vector.moc"
