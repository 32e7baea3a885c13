#include "NearTree.h"
#include "PointTree.h"

#include <QTest>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>
#include <vector>

using namespace Ovra::Geo;

namespace
{

using Points = std::vector<Vector>;

constexpr double Infinite = std::numeric_limits<double>::infinity();
constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();

std::unique_ptr<NearTree> plainTree(const Points& points)
{
    auto root = std::make_unique<NearTree>();
    for (std::size_t i = 0; i < points.size(); ++i) {
        auto* node = i == 0 ? root.get() : new NearTree;
        node->set(static_cast<int>(i) + 1, points[i], 0.0);
        if (i > 0) {
            root->insert(node);
        }
    }
    return root;
}

double coordinate(std::mt19937& engine)
{
    return 5.0 * (static_cast<double>(engine()) / 4294967296.0);
}

Points randomPoints(int count, unsigned seed)
{
    std::mt19937 engine(seed);
    Points points;
    for (int i = 0; i < count; ++i) {
        const double x = coordinate(engine);
        const double y = coordinate(engine);
        points.emplace_back(x, y, coordinate(engine));
    }
    return points;
}

/// The places of a flat grid, \p step apart, shuffled.
Points grid(int side, double step)
{
    Points points;
    for (int i = 0; i < side * side; ++i) {
        points.push_back(step * Vector(i % side, i / side, 0.0));
    }
    std::shuffle(points.begin(), points.end(), std::mt19937(3));
    return points;
}

Points scaled(Points points, double factor, const Vector& shift)
{
    for (Vector& point : points) {
        point = point * factor + shift;
    }
    return points;
}

Points together(Points a, const Points& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

} // namespace

class TestPointTree : public QObject
{
    Q_OBJECT

private slots:
    void findsWhatANearTreeFinds_data();
    void findsWhatANearTreeFinds();
    void decidesWhereOneIsNearest();
    void leavesEqualsToTheNearTree();
    void leavesToTheNearTreeWhatIsNoDistance_data();
    void leavesToTheNearTreeWhatIsNoDistance();
};

void TestPointTree::findsWhatANearTreeFinds_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<Points>("queries");
    const Points places = grid(30, 1.0);
    const Points between = grid(60, 0.5);
    QTest::newRow("one point") << Points{Vector(1, 2, 3)} << randomPoints(50, 5);
    QTest::newRow("random in space") << randomPoints(3000, 7) << randomPoints(3000, 8);
    QTest::newRow("its own points") << randomPoints(3000, 7) << randomPoints(3000, 7);
    QTest::newRow("grid and the middles of its cells") << places << between;
    QTest::newRow("grid beside grid") << places << scaled(places, 1.0, Vector(0.3, 0.4, 0.0));
    QTest::newRow("above a grid") << places << scaled(between, 1.0, Vector(0.0, 0.0, 7.0));
    QTest::newRow("far off a grid") << places << scaled(between, 1.0, Vector(1e7, 3e7, 0.0));
    QTest::newRow("all but equals") << places << scaled(between, 1.0 + 1e-15, Vector());
    QTest::newRow("each place twice") << together(places, places) << between;
    QTest::newRow("all at one place") << Points(300, Vector(1, 2, 3)) << randomPoints(50, 5);
    QTest::newRow("along a line") << scaled(grid(1, 1.0), 1.0, Vector()) << randomPoints(50, 5);
    for (const double factor : {1e-300, 1e-162, 1e-30, 1e10, 1e11, 1e150, 1e300}) {
        QTest::addRow("scaled by %g", factor)
            << scaled(places, factor, Vector()) << scaled(between, factor, Vector());
    }
    QTest::newRow("at the limit of a NearTree")
        << Points{Vector(), Vector(2e12, 0, 0)}
        << Points{Vector(1e12, 0, 0), Vector(1e12 - 1, 0, 0), Vector(3e12, 0, 0),
                  Vector(4e12, 0, 0)};
}

void TestPointTree::findsWhatANearTreeFinds()
{
    QFETCH(Points, points);
    QFETCH(Points, queries);
    const PointTree tree(points);
    const auto plain = plainTree(points);
    for (const Vector& point : queries) {
        NearTree query;
        query.set(0, point, 0.0);
        const int found = tree.nearest(point);
        if (found != PointTree::Undecided) {
            QCOMPARE(found + 1, plain->nearest(&query));
        }
    }
}

void TestPointTree::decidesWhereOneIsNearest()
{
    const Points points = grid(40, 0.25);
    const PointTree tree(points);
    for (std::size_t i = 0; i < points.size(); ++i) {
        QCOMPARE(tree.nearest(points[i]), static_cast<int>(i));
        QCOMPARE(tree.nearest(points[i] + Vector(0.1, -0.12, 3.0)), static_cast<int>(i));
    }
}

void TestPointTree::leavesEqualsToTheNearTree()
{
    const PointTree tree(grid(40, 0.25));
    QCOMPARE(tree.nearest(Vector(1.125, 1.0, 0.0)), PointTree::Undecided);
    QCOMPARE(tree.nearest(Vector(1.125, 1.125, 2.0)), PointTree::Undecided);
    QCOMPARE(tree.nearest(Vector(1.125 + 1e-15, 1.0, 0.0)), PointTree::Undecided);
    QVERIFY(tree.nearest(Vector(1.125 + 1e-9, 1.0, 0.0)) != PointTree::Undecided);
}

void TestPointTree::leavesToTheNearTreeWhatIsNoDistance_data()
{
    QTest::addColumn<Points>("points");
    QTest::addColumn<Vector>("query");
    QTest::newRow("no points") << Points() << Vector();
    QTest::newRow("farther than all") << Points{Vector()} << Vector(2e12, 0, 0);
    QTest::newRow("query that is no number") << grid(5, 1.0) << Vector(NoNumber, 0, 0);
    QTest::newRow("query without end") << grid(5, 1.0) << Vector(0, -Infinite, 0);
    QTest::newRow("point that is no number")
        << together(grid(5, 1.0), {Vector(0, NoNumber, 0)}) << Vector();
    QTest::newRow("point without end")
        << together({Vector(Infinite, 0, 0)}, grid(5, 1.0)) << Vector();
}

void TestPointTree::leavesToTheNearTreeWhatIsNoDistance()
{
    QFETCH(Points, points);
    QFETCH(Vector, query);
    QCOMPARE(PointTree(points).nearest(query), PointTree::Undecided);
}

QTEST_APPLESS_MAIN(TestPointTree)
#include "tst_PointTree.moc"
