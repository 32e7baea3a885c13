#include "NearTree.h"

#include <QList>
#include <QSet>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <random>

using namespace Ovra::Geo;

namespace
{

NearTree* makeNode(int id, const Vector& point, double radius = 0.0)
{
    auto* node = new NearTree;
    node->set(id, point, radius);
    return node;
}

/// Ids count from 1 in the order of the list, which is the order of insertion.
std::unique_ptr<NearTree> makeTree(const QList<Vector>& points)
{
    std::unique_ptr<NearTree> root(makeNode(1, points.first()));
    for (int i = 1; i < points.size(); ++i) {
        root->insert(makeNode(i + 1, points[i]));
    }
    return root;
}

int nearestId(const NearTree& tree, const Vector& point)
{
    NearTree query;
    query.set(0, point, 0.0);
    return tree.nearest(&query);
}

double leastDistance(const QList<Vector>& points, const Vector& query)
{
    double least = std::numeric_limits<double>::infinity();
    for (const Vector& point : points) {
        least = std::min(least, (point - query).length());
    }
    return least;
}

QList<Vector> randomPoints(int count, unsigned seed)
{
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
    QList<Vector> points;
    for (int i = 0; i < count; ++i) {
        const double x = coordinate(engine);
        const double y = coordinate(engine);
        points.append(Vector(x, y, coordinate(engine)));
    }
    return points;
}

QList<Vector> gridPoints(int nx, int ny, int nz)
{
    QList<Vector> points;
    for (int k = 0; k < nz; ++k) {
        for (int j = 0; j < ny; ++j) {
            for (int i = 0; i < nx; ++i) {
                points.append(Vector(i, j, k));
            }
        }
    }
    return points;
}

QList<Vector> shuffled(QList<Vector> points, unsigned seed)
{
    std::shuffle(points.begin(), points.end(), std::mt19937(seed));
    return points;
}

QList<Vector> sortedByX(QList<Vector> points)
{
    std::sort(points.begin(), points.end(),
              [](const Vector& a, const Vector& b) { return a.x() < b.x(); });
    return points;
}

QList<Vector> clusteredPoints(int clusters, int perCluster, unsigned seed)
{
    QList<Vector> points;
    const QList<Vector> centres = randomPoints(clusters, seed);
    for (const Vector& offset : randomPoints(perCluster, seed + 1)) {
        for (const Vector& centre : centres) {
            points.append(centre + 1e-6 * offset);
        }
    }
    return points;
}

/// On the points, between them and around them.
QList<Vector> queriesAbout(const QList<Vector>& points, int count, unsigned seed)
{
    std::mt19937 engine(seed);
    std::uniform_int_distribution<qsizetype> index(0, points.size() - 1);
    QList<Vector> queries;
    for (int i = 0; i < count; ++i) {
        const Vector a = points[index(engine)];
        const Vector b = points[index(engine)];
        queries.append(a);
        queries.append(0.5 * (a + b));
        queries.append(2.0 * a - b);
        queries.append(a + Vector(0.5, 0.5, 0.5));
    }
    return queries;
}

/// Insertion and search in their plainest form: every subtree is searched that its reach does not
/// rule out, the left one first, and only a smaller distance replaces what was found.
class PlainTree
{
public:
    PlainTree(int id, const Vector& point)
        : id_(id)
        , point_(point)
    {
    }

    void insert(int id, const Vector& point, double radius)
    {
        const double reach = (point_ - point).length() + radius;
        const bool left = !left_ || (right_ && right_->distance(point) > left_->distance(point));
        std::unique_ptr<PlainTree>& side = left ? left_ : right_;
        double& max = left ? maxLeft_ : maxRight_;
        if (!side) {
            side = std::make_unique<PlainTree>(id, point);
            max = reach;
            return;
        }
        side->insert(id, point, radius);
        max = std::max(max, reach);
    }

    int nearest(const Vector& query) const
    {
        double best = 1e12;
        int bestId = 0;
        search(query, &best, &bestId);
        return bestId;
    }

private:
    double distance(const Vector& point) const { return (point_ - point).length(); }

    void search(const Vector& query, double* best, int* bestId) const
    {
        const double d = distance(query);
        if (*best > d) {
            *best = d;
            *bestId = id_;
        }
        if (left_ && *best >= d - maxLeft_) {
            left_->search(query, best, bestId);
        }
        if (right_ && *best >= d - maxRight_) {
            right_->search(query, best, bestId);
        }
    }

    int id_;
    Vector point_;
    double maxLeft_ = 0.0;
    double maxRight_ = 0.0;
    std::unique_ptr<PlainTree> left_;
    std::unique_ptr<PlainTree> right_;
};

QList<Vector> withSomeNotFinite(QList<Vector> points)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (int i = 0; i + 40 < points.size(); i += 40) {
        points[i + 3].set(std::nan(""), 0, 0);
        points[i + 9].set(0, infinity, 0);
        points[i + 24].set(1e200, -1e200, 0);
    }
    return points;
}

/// Points on a circle, all as far from the origin as rounding lets them be.
QList<Vector> circlePoints(int count)
{
    QList<Vector> points;
    for (int i = 0; i < count; ++i) {
        points.append(Vector(std::cos(0.1 * i), std::sin(0.1 * i), 0.0));
    }
    return points;
}

/// A tree of \a count nodes, each of them the right child of the one before, without the walk from
/// the root that insertion there would take. Ids and x coordinates count from 0; beside each node
/// stands a left child with id -1 at y = 1e6.
struct Chain
{
    std::unique_ptr<NearTree> root;
    NearTree* last;
};

Chain makeChain(int count)
{
    Chain chain{std::unique_ptr<NearTree>(makeNode(0, Vector())), nullptr};
    chain.last = chain.root.get();
    for (int i = 1; i < count; ++i) {
        chain.last->insert(makeNode(-1, Vector(i, 1e6, 0.0)));
        NearTree* next = makeNode(i, Vector(i, 0.0, 0.0));
        chain.last->insert(next);
        chain.last = next;
    }
    return chain;
}

constexpr int DeepCount = 1000000;

} // namespace

class TestNearTree : public QObject
{
    Q_OBJECT

private slots:
    void defaultTreeAnswersZero()
    {
        NearTree tree;
        QCOMPARE(tree.point(), Vector());
        QCOMPARE(nearestId(tree, Vector(1, 2, 3)), 0);
    }

    void oneNodeAnswersItsIdToEveryQuery()
    {
        NearTree tree;
        tree.set(7, Vector(1, 2, 3), 0.0);
        QCOMPARE(tree.point(), Vector(1, 2, 3));
        QCOMPARE(nearestId(tree, Vector(1, 2, 3)), 7);
        QCOMPARE(nearestId(tree, Vector(-1e11, 1e11, 0)), 7);
    }

    void noQueryAnswersZero()
    {
        NearTree tree;
        tree.set(7, Vector(1, 2, 3), 0.0);
        QCOMPARE(tree.nearest(nullptr), 0);
    }

    void queryFartherThanReachAnswersZero()
    {
        const auto tree = makeTree({Vector(0, 0, 0), Vector(1, 0, 0), Vector(2, 0, 0)});
        QCOMPARE(nearestId(*tree, Vector(2e12, 0, 0)), 0);
        QCOMPARE(nearestId(*tree, Vector(0, 0, 9e11)), 1);
    }

    void reachIsExclusive()
    {
        NearTree tree;
        tree.set(7, Vector(), 0.0);
        QCOMPARE(nearestId(tree, Vector(1e12, 0, 0)), 0);
        QCOMPARE(nearestId(tree, Vector(std::nextafter(1e12, 0.0), 0, 0)), 7);
    }

    void queryIdAndRadiusPlayNoPart()
    {
        const auto tree = makeTree({Vector(0, 0, 0), Vector(4, 0, 0), Vector(8, 0, 0)});
        NearTree query;
        query.set(3, Vector(3, 0, 0), 100.0);
        QCOMPARE(tree->nearest(&query), 2);
    }

    void distanceIsThatOfThePoints()
    {
        NearTree a;
        NearTree b;
        a.set(1, Vector(1, 1, 1), 5.0);
        b.set(2, Vector(1, 4, 5), 7.0);
        QCOMPARE(a.distance(&b), 5.0);
        QCOMPARE(b.distance(&a), 5.0);
        QCOMPARE(a.distance(&a), 0.0);
    }

    void nodeBeatsItsSubtreesOnATie()
    {
        const auto tree = makeTree({Vector(1, 0, 0), Vector(-1, 0, 0), Vector(0, 1, 0)});
        QCOMPARE(nearestId(*tree, Vector(0, 0, 0)), 1);
    }

    void leftBeatsRightOnATie()
    {
        const auto tree = makeTree({Vector(0, 9, 0), Vector(-1, 0, 0), Vector(1, 0, 0)});
        QCOMPARE(nearestId(*tree, Vector(0, 0, 0)), 2);
    }

    void firstChildGoesLeft()
    {
        // Were the first child the right one, the second would be searched first and win.
        const auto tree = makeTree({Vector(0, 9, 0), Vector(1, 0, 0), Vector(-1, 0, 0)});
        QCOMPARE(nearestId(*tree, Vector(0, 0, 0)), 2);
    }

    void pointAsFarFromBothChildrenGoesRight()
    {
        // 5 goes left for certain and is searched first; on the left, 4 would stand before it.
        const auto tree = makeTree({Vector(0, 0, 0), Vector(-1, 0, 0), Vector(1, 0, 0),
                                    Vector(0, 5, 0), Vector(-2, 5, 0)});
        QCOMPARE(nearestId(*tree, Vector(-1, 5, 0)), 5);
    }

    void pointGoesToTheNearerChild()
    {
        // 4 goes left and 5 right, so that 4 is searched first although 3 comes before 5.
        const auto tree = makeTree({Vector(0, 0, 0), Vector(-1, 0, 0), Vector(1, 0, 0),
                                    Vector(-0.5, 5, 0), Vector(0.5, 5, 0)});
        QCOMPARE(nearestId(*tree, Vector(0, 5, 0)), 4);
        const auto swapped = makeTree({Vector(0, 0, 0), Vector(-1, 0, 0), Vector(1, 0, 0),
                                       Vector(0.5, 5, 0), Vector(-0.5, 5, 0)});
        QCOMPARE(nearestId(*swapped, Vector(0, 5, 0)), 5);
    }

    void setMakesATreeOfOneNodeAgain()
    {
        const auto tree = makeTree({Vector(0, 0, 0), Vector(1, 0, 0), Vector(2, 0, 0)});
        tree->set(9, Vector(5, 5, 5), 0.0);
        QCOMPARE(nearestId(*tree, Vector(1, 0, 0)), 9);
        tree->insert(makeNode(10, Vector(1, 0, 0)));
        QCOMPARE(nearestId(*tree, Vector(1, 0, 0)), 10);
    }

    void everyNodeIsATree()
    {
        const auto tree = makeTree({Vector(0, 0, 0)});
        NearTree* left = makeNode(2, Vector(10, 0, 0));
        tree->insert(left);
        tree->insert(makeNode(3, Vector(-10, 0, 0)));
        tree->insert(makeNode(4, Vector(11, 0, 0)));
        QCOMPARE(nearestId(*left, Vector(-10, 0, 0)), 2);
        QCOMPARE(nearestId(*left, Vector(12, 0, 0)), 4);
    }

    void nearestAgreesWithExhaustiveSearch_data()
    {
        QTest::addColumn<QList<Vector>>("points");
        QTest::newRow("random") << randomPoints(2000, 11);
        QTest::newRow("two points") << QList<Vector>{Vector(0, 0, 0), Vector(1, 0, 0)};
        QTest::newRow("grid in rows") << gridPoints(13, 11, 7);
        QTest::newRow("grid shuffled") << shuffled(gridPoints(13, 11, 7), 5);
        QTest::newRow("planar grid") << gridPoints(40, 30, 1);
        QTest::newRow("collinear sorted") << gridPoints(8000, 1, 1);
        QTest::newRow("collinear shuffled") << shuffled(gridPoints(1500, 1, 1), 5);
        QTest::newRow("identical") << QList<Vector>(800, Vector(1, 2, 3));
        QTest::newRow("each twice") << gridPoints(10, 10, 3) + gridPoints(10, 10, 3);
        QTest::newRow("clusters") << clusteredPoints(20, 60, 3);
    }

    void nearestAgreesWithExhaustiveSearch()
    {
        QFETCH(QList<Vector>, points);
        const auto tree = makeTree(points);
        for (const Vector& query : queriesAbout(points, 200, 17)) {
            const int id = nearestId(*tree, query);
            QVERIFY(id >= 1 && id <= points.size());
            QCOMPARE((points[id - 1] - query).length(), leastDistance(points, query));
        }
    }

    void nearestAgreesWithThePlainSearch_data()
    {
        QTest::addColumn<QList<Vector>>("points");
        QTest::addColumn<double>("radius");
        QTest::newRow("random") << randomPoints(2000, 41) << 0.0;
        QTest::newRow("grid in rows") << gridPoints(13, 11, 7) << 0.0;
        QTest::newRow("grid shuffled") << shuffled(gridPoints(13, 11, 7), 6) << 0.0;
        QTest::newRow("planar grid") << gridPoints(40, 30, 1) << 0.0;
        QTest::newRow("planar grid shuffled") << shuffled(gridPoints(40, 30, 1), 6) << 0.0;
        QTest::newRow("line shuffled") << shuffled(gridPoints(500, 1, 1), 6) << 0.0;
        QTest::newRow("each twice") << gridPoints(10, 10, 3) + gridPoints(10, 10, 3) << 0.0;
        QTest::newRow("identical") << QList<Vector>(200, Vector(1, 2, 3)) << 0.0;
        QTest::newRow("circle") << shuffled(circlePoints(1000), 6) << 0.0;
        QTest::newRow("clusters") << shuffled(clusteredPoints(20, 60, 3), 6) << 0.0;
        QTest::newRow("spheres") << shuffled(gridPoints(13, 11, 7), 6) << 0.7;
        QTest::newRow("not finite") << withSomeNotFinite(randomPoints(2000, 41)) << 0.0;
    }

    // Half of the queries lie as far from two points, from four or from eight, so that the id tells
    // the order of the search as well.
    void nearestAgreesWithThePlainSearch()
    {
        QFETCH(QList<Vector>, points);
        QFETCH(double, radius);
        NearTree tree;
        tree.set(1, points[0], radius);
        PlainTree plain(1, points[0]);
        for (int i = 1; i < points.size(); ++i) {
            tree.insert(makeNode(i + 1, points[i], radius));
            plain.insert(i + 1, points[i], radius);
        }
        for (const Vector& query : queriesAbout(points, 500, 43) + QList<Vector>{Vector()}) {
            QCOMPARE(nearestId(tree, query), plain.nearest(query));
        }
    }

    // With reaches that fall short the plain search misses points, and which ones hangs on all that
    // it has met before.
    void nearestAgreesWithThePlainSearchForEveryRadius_data()
    {
        QTest::addColumn<double>("least");
        QTest::addColumn<double>("most");
        QTest::newRow("negative") << -0.5 << -0.1;
        QTest::newRow("very negative") << -20.0 << -10.0;
        QTest::newRow("of both signs") << -0.3 << 0.3;
        QTest::newRow("positive") << 0.0 << 0.5;
    }

    void nearestAgreesWithThePlainSearchForEveryRadius()
    {
        QFETCH(double, least);
        QFETCH(double, most);
        std::mt19937 engine(7);
        std::uniform_real_distribution<double> radius(least, most);
        const QList<Vector> points = randomPoints(1000, 47);
        NearTree tree;
        tree.set(1, points[0], 0.0);
        PlainTree plain(1, points[0]);
        for (int i = 1; i < points.size(); ++i) {
            const double r = i % 5 == 0 ? std::nan("") : radius(engine);
            tree.insert(makeNode(i + 1, points[i], r));
            plain.insert(i + 1, points[i], r);
        }
        for (const Vector& query : queriesAbout(points, 500, 53)) {
            QCOMPARE(nearestId(tree, query), plain.nearest(query));
        }
    }

    void nearestAgreesWithThePlainSearchAtEveryScale_data()
    {
        QTest::addColumn<double>("scale");
        for (const double scale :
             {1e-140, 1e-150, 1e-155, 1e-160, 1e-161, 1e-162, 1e-165, 1e-310}) {
            QTest::addRow("%g", scale) << scale;
        }
    }

    // Distances whose squares underflow come out wrong, or as 0.
    void nearestAgreesWithThePlainSearchAtEveryScale()
    {
        QFETCH(double, scale);
        QList<Vector> points;
        for (const Vector& point : randomPoints(1000, 59)) {
            points.append(scale * point);
            points.append(3e-162 * point);
        }
        NearTree tree;
        tree.set(1, points[0], 0.0);
        PlainTree plain(1, points[0]);
        for (int i = 1; i < points.size(); ++i) {
            tree.insert(makeNode(i + 1, points[i]));
            plain.insert(i + 1, points[i], 0.0);
        }
        QList<Vector> queries = queriesAbout(points, 300, 61);
        for (const Vector& point : randomPoints(300, 67)) {
            queries.append(scale * point);
            queries.append(1e-161 * point);
        }
        for (const Vector& query : std::as_const(queries)) {
            QCOMPARE(nearestId(tree, query), plain.nearest(query));
        }
    }

    // The point lies on the other child's side, where it had never come from the root.
    void pointInsertedBelowAChildIsFound()
    {
        const auto tree = makeTree({Vector(0, 0, 0)});
        NearTree* left = makeNode(2, Vector(10, 0, 0));
        tree->insert(left);
        tree->insert(makeNode(3, Vector(-10, 0, 0)));
        left->insert(makeNode(4, Vector(-9, 0, 0)));
        QCOMPARE(nearestId(*tree, Vector(-9, 0, 0)), 4);
    }

    void childThatIsSetAgainIsFoundAtItsNewPlace()
    {
        const auto tree = makeTree({Vector(0, 0, 0)});
        NearTree* left = makeNode(2, Vector(10, 0, 0));
        tree->insert(left);
        tree->insert(makeNode(3, Vector(-10, 0, 0)));
        tree->insert(makeNode(4, Vector(-1, 5, 0)));
        left->set(9, Vector(-2, 5, 0), 0.0);
        QCOMPARE(nearestId(*tree, Vector(-1.1, 5, 0)), 4);
        QCOMPARE(nearestId(*tree, Vector(-2, 5, 0)), 9);
    }

    void identicalPointsAnswerTheFirst()
    {
        const auto tree = makeTree(QList<Vector>(300, Vector(1, 2, 3)));
        QCOMPARE(nearestId(*tree, Vector(1, 2, 3)), 1);
        QCOMPARE(nearestId(*tree, Vector(4, 5, 6)), 1);
    }

    void sortedInsertionAgreesWithExhaustiveSearch_data()
    {
        QTest::addColumn<QList<Vector>>("points");
        QTest::newRow("plane in rows") << gridPoints(400, 250, 1);
        QTest::newRow("volume in rows") << gridPoints(50, 50, 40);
        QTest::newRow("random by x") << sortedByX(randomPoints(100000, 23));
        QTest::newRow("random") << randomPoints(100000, 23);
    }

    void sortedInsertionAgreesWithExhaustiveSearch()
    {
        QFETCH(QList<Vector>, points);
        QCOMPARE(points.size(), 100000);
        const auto tree = makeTree(points);
        for (const Vector& query : queriesAbout(points, 10, 29)) {
            const int id = nearestId(*tree, query);
            QCOMPARE((points[id - 1] - query).length(), leastDistance(points, query));
        }
    }

    void withinTakesOverlappingSpheresOnly()
    {
        NearTree tree;
        tree.set(1, Vector(0, 0, 0), 1.0);
        tree.insert(makeNode(2, Vector(4, 0, 0), 1.0));
        tree.insert(makeNode(3, Vector(8, 0, 0), 0.0));
        NearTree query;
        query.set(0, Vector(2, 0, 0), 1.0);
        QCOMPARE(tree.within(&query), QSet<int>());
        query.set(0, Vector(2, 0, 0), 1.25);
        QCOMPARE(tree.within(&query), QSet<int>({1, 2}));
        query.set(0, Vector(6, 0, 0), 2.0);
        QCOMPARE(tree.within(&query), QSet<int>({2}));
        query.set(0, Vector(7, 0, 0), 1.5);
        QCOMPARE(tree.within(&query), QSet<int>({3}));
    }

    void withinLeavesOutCoincidingPointsWithoutRadius()
    {
        const auto tree = makeTree({Vector(1, 1, 1), Vector(1, 1, 1)});
        NearTree query;
        query.set(0, Vector(1, 1, 1), 0.0);
        QCOMPARE(tree->within(&query), QSet<int>());
        query.set(0, Vector(1, 1, 1), 0.5);
        QCOMPARE(tree->within(&query), QSet<int>({1, 2}));
    }

    void withinAgreesWithExhaustiveSearch()
    {
        const QList<Vector> points = randomPoints(1500, 31);
        const auto radius = [](qsizetype i) { return 0.01 * static_cast<double>(i % 12); };
        NearTree tree;
        tree.set(1, points[0], radius(0));
        for (int i = 1; i < points.size(); ++i) {
            tree.insert(makeNode(i + 1, points[i], radius(i)));
        }
        int found = 0;
        for (const Vector& centre : queriesAbout(points, 40, 37)) {
            NearTree query;
            query.set(0, centre, 0.15);
            QSet<int> expected;
            for (int i = 0; i < points.size(); ++i) {
                if (radius(i) > (points[i] - centre).length() - 0.15) {
                    expected.insert(i + 1);
                }
            }
            QCOMPARE(tree.within(&query), expected);
            found += static_cast<int>(expected.size());
        }
        QVERIFY(found > 100);
    }

    void deepTreeIsDeletedWithoutRecursion()
    {
        Chain chain = makeChain(DeepCount);
        QCOMPARE(chain.last->point(), Vector(DeepCount - 1, 0, 0));
        chain.root.reset();
        chain = makeChain(DeepCount);
        chain.root->set(5, Vector(1, 1, 1), 0.0);
        QCOMPARE(nearestId(*chain.root, Vector()), 5);
    }

    void deepLeftTreeIsDeletedWithoutRecursion()
    {
        NearTree root;
        NearTree* last = &root;
        for (int i = 1; i <= DeepCount; ++i) {
            NearTree* next = makeNode(i, Vector(i, 0, 0));
            last->insert(next);
            last = next;
        }
        QCOMPARE(nearestId(root, Vector(DeepCount, 0, 0)), DeepCount);
    }

    void deepTreeIsSearchedWithoutRecursion()
    {
        const Chain chain = makeChain(DeepCount);
        QCOMPARE(nearestId(*chain.root, Vector(DeepCount, 0, 0)), DeepCount - 1);
        NearTree query;
        query.set(0, Vector(DeepCount, 0, 0), 0.5);
        QCOMPARE(chain.root->within(&query), QSet<int>());
    }

    void deepTreeIsInsertedIntoWithoutRecursion()
    {
        const Chain chain = makeChain(DeepCount);
        chain.root->insert(makeNode(-7, Vector(DeepCount, 0, 0)));
        QCOMPARE(nearestId(*chain.last, Vector(DeepCount + 1, 0, 0)), -7);
        QCOMPARE(nearestId(*chain.root, Vector(DeepCount + 1, 0, 0)), -7);
    }
};

QTEST_APPLESS_MAIN(TestNearTree)
#include "tst_NearTree.moc"
