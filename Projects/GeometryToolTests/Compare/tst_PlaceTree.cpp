#include "PlaceTree.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

using Points = std::vector<Vector>;

double distanceOf(const Vector& a, const Vector& b)
{
    const Vector apart = a - b;
    return std::max({std::abs(apart.x()), std::abs(apart.y()), std::abs(apart.z())});
}

/// The nearest by looking at all.
int nearestOfAll(const Points& points, const Vector& place, double reach)
{
    int found = -1;
    for (int i = 0; i < static_cast<int>(points.size()); ++i) {
        const double distance = distanceOf(points[static_cast<std::size_t>(i)], place);
        const double least =
            found < 0 ? reach : distanceOf(points[static_cast<std::size_t>(found)], place);
        if (found < 0 ? distance <= least : distance < least) {
            found = i;
        }
    }
    return found;
}

Points randomPoints(int count, unsigned seed, bool onGrid)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> coordinate(0, 8);
    const auto next = [&] {
        const double value = coordinate(random);
        return onGrid ? std::floor(value) : value;
    };
    Points points;
    for (int i = 0; i < count; ++i) {
        const double x = next();
        const double y = next();
        points.emplace_back(x, y, next());
    }
    return points;
}

} // namespace

class TestPlaceTree : public QObject
{
    Q_OBJECT

private slots:
    void findsWhatLookingAtAllFinds_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<bool>("onGrid");
        QTest::addColumn<double>("reach");
        QTest::newRow("no point") << 0 << false << 10.0;
        QTest::newRow("one point") << 1 << false << 10.0;
        QTest::newRow("scattered, far reach") << 500 << false << 10.0;
        QTest::newRow("scattered, near reach") << 500 << false << 0.5;
        QTest::newRow("on a grid, several at a place") << 700 << true << 10.0;
        QTest::newRow("on a grid, as far as the reach") << 700 << true << 0.5;
    }

    void findsWhatLookingAtAllFinds()
    {
        QFETCH(int, count);
        QFETCH(bool, onGrid);
        QFETCH(double, reach);
        const Points points = randomPoints(count, 1, onGrid);
        const PlaceTree tree(points);
        for (Vector place : randomPoints(300, 2, onGrid)) {
            place += onGrid ? Vector(0.5, 0.25, 0) : Vector();
            QCOMPARE(tree.nearest(place, reach), nearestOfAll(points, place, reach));
        }
    }

    void thereIsNothingNearNoNumber()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        const PlaceTree tree({Vector(nan, 0, 0), Vector(0, 1, 0), Vector(0, 0, nan)});
        QCOMPARE(tree.nearest(Vector(0, 1.5, 0), 1), 1);
        QCOMPARE(tree.nearest(Vector(nan, 1, 0), 1e9), -1);
    }
};

QTEST_GUILESS_MAIN(TestPlaceTree)
#include "tst_PlaceTree.moc"
