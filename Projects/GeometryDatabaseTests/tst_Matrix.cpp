#include "Matrix.h"
#include "ValueForms.h"

#include <array>
#include <type_traits>

using namespace Ovra::Geo;
using namespace ValueForms;

static_assert(sizeof(Matrix) == 9 * sizeof(double));
static_assert(std::is_trivially_copyable_v<Matrix>);

namespace
{

Matrix matrix(const std::array<double, 9>& elements)
{
    Matrix result;
    for (int i = 0; i < 9; ++i) {
        result(i / 3, i % 3) = elements[static_cast<size_t>(i)];
    }
    return result;
}

Matrix oneToNine()
{
    return matrix({1, 2, 3, 4, 5, 6, 7, 8, 9});
}

} // namespace

class TestMatrix : public QObject
{
    Q_OBJECT

private slots:
    void isZeroByDefault() { QCOMPARE(Matrix().toString(), "( {0, 0, 0} {0, 0, 0} {0, 0, 0} )"); }

    void addressesByRowAndColumn()
    {
        Matrix m;
        m(1, 2) = 5;
        QCOMPARE(std::as_const(m)(1, 2), 5.0);
        QCOMPARE(m.toString(), "( {0, 0, 0} {0, 0, 5} {0, 0, 0} )");
    }

    void becomesTheIdentity()
    {
        Matrix m = oneToNine();
        m.setIdentity();
        QCOMPARE(m.toString(), "( {1, 0, 0} {0, 1, 0} {0, 0, 1} )");
    }

    void takesRowsAndColumns()
    {
        Matrix m;
        m.setRow(1, Vector(1, 2, 3));
        QCOMPARE(m.toString(), "( {0, 0, 0} {1, 2, 3} {0, 0, 0} )");
        m.setColumn(2, Vector(7, 8, 9));
        QCOMPARE(m.toString(), "( {0, 0, 7} {1, 2, 8} {0, 0, 9} )");
    }

    void transposesInPlace()
    {
        Matrix m = oneToNine();
        m.transpose();
        QCOMPARE(m.toString(), "( {1, 4, 7} {2, 5, 8} {3, 6, 9} )");
    }

    void multiplies()
    {
        const Matrix other = matrix({1, 0, 2, 0, 1, 0, 3, 0, 1});
        QCOMPARE((oneToNine() * other).toString(), "( {10, 2, 5} {22, 5, 14} {34, 8, 23} )");
        QCOMPARE((other * oneToNine()).toString(), "( {15, 18, 21} {4, 5, 6} {10, 14, 18} )");
    }

    void multipliesAVectorFromTheLeft()
    {
        QCOMPARE(oneToNine() * Vector(1, 0, -1), Vector(-2, -2, -2));
        QCOMPARE(oneToNine() * Vector(1, 10, 100), Vector(321, 654, 987));
    }

    void calculatesElementByElement()
    {
        const Matrix m = oneToNine();
        QCOMPARE((m * 2.0).toString(), "( {2, 4, 6} {8, 10, 12} {14, 16, 18} )");
        QCOMPARE((2.0 * m).toString(), "( {2, 4, 6} {8, 10, 12} {14, 16, 18} )");
        QCOMPARE((m / 2.0).toString(), "( {0.5, 1, 1.5} {2, 2.5, 3} {3.5, 4, 4.5} )");
        QCOMPARE((m + m).toString(), "( {2, 4, 6} {8, 10, 12} {14, 16, 18} )");
        QCOMPARE((2.0 * m - m).toString(), m.toString());
    }

    void dividesByTheScalarOnTheLeftToo()
    {
        QCOMPARE((2.0 / oneToNine()).toString(), "( {0.5, 1, 1.5} {2, 2.5, 3} {3.5, 4, 4.5} )");
    }

    void changesInPlaceAndReturnsItself()
    {
        Matrix m = oneToNine();
        QCOMPARE(&(m *= 2.0), &m);
        QCOMPARE(m.toString(), "( {2, 4, 6} {8, 10, 12} {14, 16, 18} )");
        QCOMPARE(&(m /= 4.0), &m);
        QCOMPARE(m.toString(), "( {0.5, 1, 1.5} {2, 2.5, 3} {3.5, 4, 4.5} )");
        QCOMPARE(&(m += oneToNine()), &m);
        QCOMPARE(m.toString(), "( {1.5, 3, 4.5} {6, 7.5, 9} {10.5, 12, 13.5} )");
        QCOMPARE(&(m -= oneToNine()), &m);
        QCOMPARE(m.toString(), "( {0.5, 1, 1.5} {2, 2.5, 3} {3.5, 4, 4.5} )");
    }

    void dividesByZeroAsIeeeSays()
    {
        const Matrix m = matrix({1, -1, 0, 0, 0, 0, 0, 0, 0}) / 0.0;
        QCOMPARE(m(0, 0), qInf());
        QCOMPARE(m(0, 1), -qInf());
        QVERIFY(qIsNaN(m(0, 2)));
    }

    void copiesAreIndependent()
    {
        const Matrix m = oneToNine();
        Matrix copy = m;
        copy(0, 0) = 100;
        QCOMPARE(m(0, 0), 1.0);
    }

    void printsSixDigits()
    {
        QCOMPARE(matrix({1.0 / 3, 1234567, 1e-5, -2.5, 0, 1, 2, 3, 1e10}).toString(),
                 "( {0.333333, 1.23457e+06, 1e-05} {-2.5, 0, 1} {2, 3, 1e+10} )");
    }

    void writesTextByTheStreamsSettings()
    {
        const Matrix m = matrix({0.5, 2, 3, 4, 5, 6, 7, 8, 1.0 / 3});
        QCOMPARE(text(m), "( {0.5, 2, 3} {4, 5, 6} {7, 8, 0.333333} )");
        QString result;
        QTextStream stream(&result);
        stream.setRealNumberNotation(QTextStream::FixedNotation);
        stream.setRealNumberPrecision(2);
        stream << m;
        QCOMPARE(result, "( {0.50, 2.00, 3.00} {4.00, 5.00, 6.00} {7.00, 8.00, 0.33} )");
        QCOMPARE(m.toString(), "( {0.5, 2, 3} {4, 5, 6} {7, 8, 0.333333} )");
    }

    void printsAlikeInAnyLocale()
    {
        const GermanLocale german;
        const Matrix m = matrix({0.5, 12345, 3, 4, 5, 6, 7, 8, 9});
        QCOMPARE(m.toString(), "( {0.5, 12345, 3} {4, 5, 6} {7, 8, 9} )");
        QCOMPARE(text(m), "( {0.5, 12345, 3} {4, 5, 6} {7, 8, 9} )");
    }

    void streamsNineDoublesRowAfterRow()
    {
        const QByteArray bytes =
            QByteArray::fromHex("3ff0000000000000 4000000000000000 4008000000000000"
                                "4010000000000000 4014000000000000 4018000000000000"
                                "401c000000000000 4020000000000000 4022000000000000");
        QCOMPARE(binary(oneToNine()), bytes);
        Matrix m;
        QCOMPARE(readBinary(bytes, m), QDataStream::Ok);
        QCOMPARE(m.toString(), oneToNine().toString());
    }

    void tellsOfAShortStream()
    {
        Matrix m;
        QCOMPARE(readBinary(QByteArray(71, '\0'), m), QDataStream::ReadPastEnd);
    }

    void hasOneMetaTypeUnderTwoNames()
    {
        compareMetaType<Matrix>("Ovra::Geo::Matrix", "geo::Matrix",
                                {.equality = false, .lessThan = false});
    }

    void travelsInAVariant()
    {
        const QVariant variant = oneToNine();
        QCOMPARE(variant.metaType(), QMetaType::fromType<Matrix>());
        QCOMPARE(variant.value<Matrix>().toString(), oneToNine().toString());
        compareVariantForms(oneToNine(), "Ovra::Geo::Matrix", "geo::Matrix");
    }
};

QTEST_APPLESS_MAIN(TestMatrix)
#include "tst_Matrix.moc"
