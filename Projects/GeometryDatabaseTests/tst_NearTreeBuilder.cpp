#include "NearTree.h"
#include "NearTreeBuilder.h"

#include <QList>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>

using namespace Ovra::Geo;

namespace
{

constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();

std::unique_ptr<NearTree> inserted(const QList<Vector>& points)
{
    auto root = std::make_unique<NearTree>();
    for (int i = 0; i < points.size(); ++i) {
        auto* node = i == 0 ? root.get() : new NearTree;
        node->set(i + 1, points[i], 0.0);
        if (i > 0) {
            root->insert(node);
        }
    }
    return root;
}

std::unique_ptr<NearTree> built(const QList<Vector>& points)
{
    NearTreeBuilder builder;
    for (int i = 0; i < points.size(); ++i) {
        builder.append(i + 1, points[i]);
    }
    return std::unique_ptr<NearTree>(builder.build());
}

QList<Vector> randomPoints(int count)
{
    std::mt19937 engine(7);
    std::uniform_real_distribution<double> coordinate(0.0, 5.0);
    QList<Vector> points;
    for (int i = 0; i < count; ++i) {
        const double x = coordinate(engine);
        const double y = coordinate(engine);
        points.append(Vector(x, y, coordinate(engine)));
    }
    return points;
}

/// Many a point between these has several nearest.
QList<Vector> shuffledGrid()
{
    QList<Vector> points;
    for (int i = 0; i < 6 * 6 * 6; ++i) {
        points.append(Vector(i % 6, i / 6 % 6, i / 36));
    }
    std::shuffle(points.begin(), points.end(), std::mt19937(3));
    return points;
}

/// All places of the grid and all middles between two of them, some places beyond, and some that are
/// no number.
QList<Vector> queries()
{
    QList<Vector> result = {Vector(NoNumber, 0.0, 0.0), Vector(Infinite, 0.0, 0.0),
                            Vector(1e13, 0.0, 0.0)};
    for (int i = 0; i < 14 * 14 * 14; ++i) {
        result.append(0.5 * Vector(i % 14 - 1, i / 14 % 14 - 1, i / 196 - 1));
    }
    return result;
}

} // namespace

class TestNearTreeBuilder : public QObject
{
    Q_OBJECT

private slots:
    void answersAsTheTreeOfInsertions_data();
    void answersAsTheTreeOfInsertions();
    void takesFurtherPoints();
    void makesATreeOfNoPoint();
    void isEmptyAfterwards();
};

void TestNearTreeBuilder::answersAsTheTreeOfInsertions_data()
{
    QTest::addColumn<QList<Vector>>("points");
    QTest::newRow("one") << QList<Vector>{Vector(1, 2, 3)};
    QTest::newRow("two") << QList<Vector>{Vector(1, 2, 3), Vector(2, 2, 3)};
    QTest::newRow("three") << QList<Vector>{Vector(1, 2, 3), Vector(2, 2, 3), Vector(4, 2, 3)};
    QTest::newRow("random") << randomPoints(1000);
    QTest::newRow("grid") << shuffledGrid();
    QTest::newRow("each place twice") << shuffledGrid() + shuffledGrid();
    QTest::newRow("all at one place") << QList<Vector>(300, Vector(1, 2, 3));
    QTest::newRow("some that are no number")
        << QList<Vector>{Vector(NoNumber, 0, 0), Vector(1, 1, 1)} + shuffledGrid() +
               QList<Vector>{Vector(0, NoNumber, 0), Vector(2, 2, 2), Vector(0, 0, Infinite)};
    QTest::newRow("one without end after the first")
        << QList<Vector>{Vector(1, 1, 1), Vector(-Infinite, 1, 1)} + randomPoints(200);
}

void TestNearTreeBuilder::answersAsTheTreeOfInsertions()
{
    QFETCH(QList<Vector>, points);
    const auto expected = inserted(points);
    const auto tree = built(points);
    const QList<Vector> asked = queries();
    for (const Vector& point : asked) {
        NearTree query;
        query.set(0, point, 1.25);
        QCOMPARE(tree->nearest(&query), expected->nearest(&query));
        QCOMPARE(tree->within(&query), expected->within(&query));
    }
}

void TestNearTreeBuilder::takesFurtherPoints()
{
    const QList<Vector> points = shuffledGrid();
    const auto expected = inserted(points);
    const auto tree = built(points.first(100));
    for (int i = 100; i < points.size(); ++i) {
        auto* node = new NearTree;
        node->set(i + 1, points[i], 0.0);
        tree->insert(node);
    }
    const QList<Vector> asked = queries();
    for (const Vector& point : asked) {
        NearTree query;
        query.set(0, point, 0.0);
        QCOMPARE(tree->nearest(&query), expected->nearest(&query));
    }
}

void TestNearTreeBuilder::makesATreeOfNoPoint()
{
    const auto tree = built({});
    NearTree query;
    query.set(5, Vector(1, 1, 1), 0.0);
    QCOMPARE(tree->nearest(&query), 0);
    QCOMPARE(tree->point(), Vector());
}

void TestNearTreeBuilder::isEmptyAfterwards()
{
    NearTreeBuilder builder;
    builder.append(1, Vector(1, 1, 1));
    const std::unique_ptr<NearTree> first(builder.build());
    builder.append(2, Vector(9, 9, 9));
    const std::unique_ptr<NearTree> second(builder.build());
    NearTree query;
    query.set(0, Vector(1, 1, 1), 0.0);
    QCOMPARE(first->nearest(&query), 1);
    QCOMPARE(second->nearest(&query), 2);
}

QTEST_APPLESS_MAIN(TestNearTreeBuilder)
#include "tst_NearTreeBuilder.moc"
