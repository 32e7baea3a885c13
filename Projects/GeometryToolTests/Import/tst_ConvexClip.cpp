#include "BoxTree.h"
#include "ConvexClip.h"

#include <QTest>

#include <random>
#include <set>

using namespace Ovra::GeoTool;
using ConvexClip::Polygon;
using Ovra::Geo::Box;
using Ovra::Geo::Vector;

Q_DECLARE_METATYPE(Polygon)

/// What convex shapes have in common, and which boxes meet.
class TestConvexClip : public QObject
{
    Q_OBJECT

private slots:
    void clipsPolygons_data()
    {
        QTest::addColumn<Polygon>("polygon");
        QTest::addColumn<Polygon>("other");
        QTest::addColumn<double>("size");
        const Polygon square = {{0, 0, 0}, {2, 0, 0}, {2, 2, 0}, {0, 2, 0}};
        const Polygon triangle = {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}};
        QTest::newRow("itself") << square << square << 4.0;
        QTest::newRow("a triangle in a square") << square << triangle << 2.0;
        QTest::newRow("a square in a triangle") << triangle << square << 2.0;
        QTest::newRow("shifted") << square << moved(square, {1, 1, 0}) << 1.0;
        QTest::newRow("above") << square << moved(square, {1, 1, 7}) << 1.0;
        QTest::newRow("side by side") << square << moved(square, {2, 0, 0}) << 0.0;
        QTest::newRow("apart") << square << moved(square, {3, 3, 0}) << 0.0;
        QTest::newRow("the other way round")
            << square << Polygon{{0, 2, 0}, {1, 2, 0}, {1, 0, 0}, {0, 0, 0}} << 2.0;
        QTest::newRow("eight corners")
            << square << Polygon{{1, -0.5, 0}, {2.5, 1, 0}, {1, 2.5, 0}, {-0.5, 1, 0}} << 3.5;
    }

    void clipsPolygons()
    {
        QFETCH(Polygon, polygon);
        QFETCH(Polygon, other);
        QFETCH(double, size);
        const Polygon common = ConvexClip::clipped(polygon, ConvexClip::column(other));
        QVERIFY(qAbs(ConvexClip::size(common, 2) - size) < 1e-12);
    }

    void clipsSegments_data()
    {
        QTest::addColumn<double>("from");
        QTest::addColumn<double>("to");
        QTest::addColumn<double>("length");
        QTest::newRow("within") << 1.0 << 2.0 << 1.0;
        QTest::newRow("around") << -1.0 << 5.0 << 4.0;
        QTest::newRow("over the end") << 3.0 << 5.0 << 1.0;
        QTest::newRow("backwards") << 5.0 << 3.0 << 1.0;
        QTest::newRow("behind") << 5.0 << 6.0 << 0.0;
        QTest::newRow("end to end") << 4.0 << 6.0 << 0.0;
    }

    void clipsSegments()
    {
        QFETCH(double, from);
        QFETCH(double, to);
        QFETCH(double, length);
        const Polygon segment = {{from, 1, 0}, {to, 1, 0}};
        const Polygon other = {{0, 0, 0}, {4, 0, 0}};
        const Polygon common = ConvexClip::clipped(segment, ConvexClip::column(other));
        QVERIFY(qAbs(ConvexClip::size(common, 1) - length) < 1e-12);
    }

    void cutsTetrahedra_data()
    {
        QTest::addColumn<Vector>("normal");
        QTest::addColumn<double>("offset");
        QTest::addColumn<double>("share"); // of the volume
        const Vector x(1, 0, 0);
        QTest::newRow("nothing") << x << 1.0 << 0.0;
        QTest::newRow("all") << x << 0.0 << 1.0;
        QTest::newRow("one corner") << x << 0.5 << 0.125;
        QTest::newRow("three corners") << -x << -0.5 << 0.875;
        QTest::newRow("two corners") << Vector(1, 1, 0) / std::sqrt(2.0) << std::sqrt(0.125) << 0.5;
    }

    void cutsTetrahedra()
    {
        QFETCH(Vector, normal);
        QFETCH(double, offset);
        QFETCH(double, share);
        const ConvexClip::Tetrahedron corner = {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0),
                                                Vector(0, 0, 1)};
        const double volume = ConvexClip::volume(corner, {{offset * normal, normal}});
        QVERIFY2(qAbs(6 * volume - share) < 1e-12, qPrintable(QString::number(6 * volume)));
    }

    // Whatever the tetrahedra, what two have in common and what is left of one make one up.
    void partsOfTetrahedraAddUp()
    {
        std::mt19937 random(1);
        for (int i = 0; i < 200; ++i) {
            const ConvexClip::Tetrahedron a = tetrahedron(random);
            const std::vector<HalfSpace> sides = ConvexClip::sides(tetrahedron(random));
            double sum = ConvexClip::volume(a, sides);
            std::vector<HalfSpace> passed;
            for (const HalfSpace& side : sides) { // outside this one, inside those before
                passed.push_back({side.point, -side.normal});
                sum += ConvexClip::volume(a, passed);
                passed.back() = side;
            }
            QVERIFY(qAbs(sum - ConvexClip::volume(a)) < 1e-12);
        }
    }

    void findsTheBoxesThatMeet_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {0, 1, 8, 9, 100, 3000}) {
            QTest::addRow("%d", count) << count;
        }
    }

    void findsTheBoxesThatMeet()
    {
        QFETCH(int, count);
        std::mt19937 random(2);
        std::vector<Box> boxes;
        for (int i = 0; i < count; ++i) {
            boxes.push_back(box(random, i % 10 == 0 ? 3 : 0.3));
        }
        const BoxTree tree(boxes);
        for (int i = 0; i < 50; ++i) {
            const Box wanted = box(random, 1);
            std::multiset<std::size_t> expected;
            for (std::size_t j = 0; j < boxes.size(); ++j) {
                if (boxes[j].intersects(wanted)) {
                    expected.insert(j);
                }
            }
            std::multiset<std::size_t> found;
            tree.forEachMeeting(wanted, [&found](std::size_t j) { found.insert(j); });
            QCOMPARE(found, expected);
        }
    }

    void takesBoxesInOnePlace()
    {
        const BoxTree tree(std::vector<Box>(1000, Box(Vector(0, 0, 0), Vector(1, 1, 1))));
        int found = 0;
        tree.forEachMeeting(Box(Vector(1, 1, 1), Vector(2, 2, 2)),
                            [&found](std::size_t) { ++found; });
        QCOMPARE(found, 1000);
    }

private:
    static Polygon moved(Polygon polygon, const Vector& by)
    {
        for (Vector& corner : polygon) {
            corner += by;
        }
        return polygon;
    }

    static Vector point(std::mt19937& random)
    {
        std::uniform_real_distribution<double> places(0, 10);
        const double x = places(random);
        const double y = places(random);
        return {x, y, places(random)};
    }

    static ConvexClip::Tetrahedron tetrahedron(std::mt19937& random)
    {
        ConvexClip::Tetrahedron corners;
        for (Vector& corner : corners) {
            corner = 0.1 * point(random);
        }
        return corners;
    }

    static Box box(std::mt19937& random, double size)
    {
        const Vector low = point(random);
        return {low, low + 0.1 * size * point(random)};
    }
};

QTEST_APPLESS_MAIN(TestConvexClip)
#include "tst_ConvexClip.moc"
