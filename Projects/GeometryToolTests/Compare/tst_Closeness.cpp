#include "Box.h"
#include "Closeness.h"
#include "Matrix.h"
#include "RefinementRegion.h"
#include "ValueText.h"

#include <QDateTime>
#include <QPointF>
#include <QTest>

#include <limits>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

QVariant matrix(double corner)
{
    Matrix matrix;
    matrix.setIdentity();
    matrix(2, 0) = corner;
    return matrix;
}

QVariant nested(int depth, const QVariant& innermost)
{
    QVariant value = innermost;
    for (int i = 0; i < depth; ++i) {
        value = QVariantList{value};
    }
    return value;
}

QVariant refinement(double length)
{
    RefinementRegion region;
    region.setLength(length);
    return QVariant::fromValue(region);
}

} // namespace

/// \brief Values of attributes, equal and not, and how those that are not are shown.
class TestCloseness : public QObject
{
    Q_OBJECT

private slots:
    void tellsValuesApart_data()
    {
        QTest::addColumn<QVariant>("a");
        QTest::addColumn<QVariant>("b");
        QTest::addColumn<bool>("exactly");
        QTest::addColumn<bool>("within"); // 0.25
        addScalars();
        addGeometry();
        addContainers();
        addOthers();
    }

    void tellsValuesApart()
    {
        QFETCH(QVariant, a);
        QFETCH(QVariant, b);
        QTEST(Closeness(0).areClose(a, b), "exactly");
        QTEST(Closeness(0.25).areClose(a, b), "within");
        QTEST(Closeness(0.25).areClose(b, a), "within");
    }

    void showsValues_data()
    {
        QTest::addColumn<QVariant>("a");
        QTest::addColumn<QVariant>("b");
        QTest::addColumn<QString>("inA");
        QTest::addColumn<QString>("inB");
        const QString longText(100, 'x');
        QVariantList weights(30, 0.5);
        QVariantList others = weights;
        others[20] = 0.25;
        QTest::newRow("numbers") << QVariant(0.1) << QVariant(0.1 + 1e-16) << "0.1"
                                 << "0.1000000000000001";
        QTest::newRow("type") << QVariant(3) << QVariant(3.0) << "3 (int)"
                              << "3 (double)";
        QTest::newRow("text") << QVariant("a") << QVariant("b") << "\"a\""
                              << "\"b\"";
        QTest::newRow("vector") << QVariant(Vector(1, 2, 3)) << QVariant(Vector(1, 2, 3.5))
                                << "(1, 2, 3)"
                                << "(1, 2, 3.5)";
        QTest::newRow("matrix") << matrix(0) << matrix(2) << "((1, 0, 0), (0, 1, 0), (0, 0, 1))"
                                << "((1, 0, 0), (0, 1, 0), (2, 0, 1))";
        QTest::newRow("list") << QVariant(QVariantList{1, "a", QVariantList{2.5}})
                              << QVariant(QVariantList()) << "(1, \"a\", (2.5))"
                              << "()";
        QTest::newRow("end of a long text")
            << QVariant(longText + "a") << QVariant(longText + "b") << "...xxxxxxxxxxxxxxxxa\""
            << "...xxxxxxxxxxxxxxxxb\"";
        QTest::newRow("item of a long list")
            << QVariant(weights) << QVariant(others)
            << "....5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5)"
            << "....5, 0.5, 0.5, 0.25, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5)";
        QTest::newRow("too deep to show") << nested(5, 1) << nested(5, 2) << "...00000020000000001"
                                          << "...00000020000000002";
    }

    void showsValues()
    {
        QFETCH(QVariant, a);
        QFETCH(QVariant, b);
        const auto [inA, inB] = ValueText::ofBoth(a, b);
        QTEST(inA, "inA");
        QTEST(inB, "inB");
    }

    void showsAsManyIdsAsCanBeRead()
    {
        QCOMPARE(ValueText::ofIds({}), "none");
        QCOMPARE(ValueText::ofIds({4, 7}), "4, 7");
        QCOMPARE(ValueText::ofIds({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}),
                 "1, 2, 3, 4, 5, 6, 7, 8, 9, 10, ...");
    }

private:
    static void addScalars()
    {
        QTest::newRow("integers") << QVariant(3) << QVariant(3) << true << true;
        QTest::newRow("other integers") << QVariant(3) << QVariant(4) << false << false;
        QTest::newRow("integer and number") << QVariant(3) << QVariant(3.0) << false << false;
        QTest::newRow("numbers") << QVariant(3.0) << QVariant(3.25) << false << true;
        QTest::newRow("numbers too far") << QVariant(3.0) << QVariant(3.26) << false << false;
        QTest::newRow("zeros") << QVariant(0.0) << QVariant(-0.0) << true << true;
        QTest::newRow("no numbers") << QVariant(notANumber) << QVariant(notANumber) << true << true;
        QTest::newRow("number and none") << QVariant(notANumber) << QVariant(0.0) << false << false;
        QTest::newRow("infinite") << QVariant(infinity) << QVariant(infinity) << true << true;
        QTest::newRow("infinities") << QVariant(infinity) << QVariant(-infinity) << false << false;
        QTest::newRow("single precision") << QVariant(1.0F) << QVariant(1.25F) << false << true;
        QTest::newRow("texts") << QVariant("a") << QVariant("A") << false << false;
        QTest::newRow("nothing") << QVariant() << QVariant() << true << true;
        QTest::newRow("nothing and 0") << QVariant() << QVariant(0) << false << false;
        QTest::newRow("null") << QVariant(QMetaType::fromType<int>()) << QVariant(0) << false
                              << false;
    }

    static void addGeometry()
    {
        QTest::newRow("vectors") << QVariant(Vector(1, 2, 3)) << QVariant(Vector(1, 2, 2.75))
                                 << false << true;
        QTest::newRow("boxes") << QVariant(Box()) << QVariant(Box()) << true << true;
        QTest::newRow("other boxes")
            << QVariant(Box(Vector(), Vector(1, 1, 1)))
            << QVariant(Box(Vector(), Vector(1, 1, 1.25))) << false << true;
        QTest::newRow("matrices") << matrix(1) << matrix(1) << true << true;
        QTest::newRow("other matrices") << matrix(1) << matrix(1.25) << false << true;
        QTest::newRow("matrices too far") << matrix(1) << matrix(1.5) << false << false;
    }

    static void addContainers()
    {
        QTest::newRow("lists") << QVariant(QVariantList{1, 2.5}) << QVariant(QVariantList{1, 2.75})
                               << false << true;
        QTest::newRow("lists of another length")
            << QVariant(QVariantList{1}) << QVariant(QVariantList{1, 1}) << false << false;
        QTest::newRow("maps") << QVariant(QVariantMap{{"a", 1.0}})
                              << QVariant(QVariantMap{{"a", 1.25}}) << false << true;
        QTest::newRow("maps of other keys")
            << QVariant(QVariantMap{{"a", 1}}) << QVariant(QVariantMap{{"b", 1}}) << false << false;
        QTest::newRow("maps of more keys")
            << QVariant(QVariantMap{{"a", 1}}) << QVariant(QVariantMap{{"a", 1}, {"b", 1}}) << false
            << false;
        QTest::newRow("hashes") << QVariant(QVariantHash{{"a", 1.0}, {"b", 2}})
                                << QVariant(QVariantHash{{"b", 2}, {"a", 1.25}}) << false << true;
        QTest::newRow("deep") << nested(20000, 1.0) << nested(20000, 1.0) << true << true;
        QTest::newRow("different in the deep")
            << nested(20000, 1.0) << nested(20000, 1.25) << false << true;
        QTest::newRow("of another depth")
            << nested(20000, 1.0) << nested(19999, 1.0) << false << false;
    }

    static void addOthers()
    {
        QTest::newRow("types of Qt's")
            << QVariant(QPointF(1, 2)) << QVariant(QPointF(1, 2.25)) << false << false;
        QTest::newRow("the same of Qt's")
            << QVariant(QPointF(1, 2)) << QVariant(QPointF(1, 2)) << true << true;
        QTest::newRow("no comparison") << refinement(1) << refinement(1) << true << true;
        QTest::newRow("no comparison, other") << refinement(1) << refinement(2) << false << false;
    }
};

QTEST_GUILESS_MAIN(TestCloseness)
#include "tst_Closeness.moc"
