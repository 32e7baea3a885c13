#include "CaseView.h"
#include "Database.h"
#include "ElementTopology.h"
#include "Mesh.h"
#include "MeshQuality.h"
#include "MeshVertex.h"
#include "Progress.h"

#include <QTest>

#include <cmath>
#include <set>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

using Points = std::vector<Vector>;

const Points unitHex = {Vector(0, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0), Vector(0, 1, 0),
                        Vector(0, 0, 1), Vector(1, 0, 1), Vector(1, 1, 1), Vector(0, 1, 1)};

const double height = std::sqrt(3.0) / 2.0; // of an equilateral triangle

const Points regularTriangle = {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0.5, height, 0)};
const Points regularTet = {regularTriangle[0], regularTriangle[1], regularTriangle[2],
                           Vector(0.5, height / 3.0, std::sqrt(2.0 / 3.0))};
const Points regularPyramid = {unitHex[0], unitHex[1], unitHex[2], unitHex[3],
                               Vector(0.5, 0.5, std::sqrt(0.5))};
const Points regularWedge = {regularTriangle[0],
                             regularTriangle[1],
                             regularTriangle[2],
                             regularTriangle[0] + Vector(0, 0, 1),
                             regularTriangle[1] + Vector(0, 0, 1),
                             regularTriangle[2] + Vector(0, 0, 1)};
const Points unitSquare = {unitHex[0], unitHex[1], unitHex[2], unitHex[3]};

Points permuted(const Points& points, std::initializer_list<std::size_t> order)
{
    Points result;
    for (const std::size_t index : order) {
        result.push_back(points[index]);
    }
    return result;
}

void addElement(Mesh& mesh, int dimension, const Points& points)
{
    MeshEntity* const element = MeshEntity::create(dimension);
    for (const Vector& point : points) {
        auto* const vertex = new MeshVertex;
        vertex->setPoint(point);
        mesh.add(vertex);
        element->addAdjacency(vertex);
    }
    mesh.add(element);
}

MeshQuality qualityOf(int dimension, const Points& points)
{
    Database database;
    Progress progress;
    addElement(*database.mesh(), dimension, points);
    return MeshQuality(CaseView(database), dimension, progress);
}

} // namespace

Q_DECLARE_METATYPE(Points)

class TestMeshQuality : public QObject
{
    Q_OBJECT

private slots:
    void regularElementsHaveAspectOne_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<Points>("points");
        QTest::addColumn<double>("measure");
        QTest::newRow("triangle") << 2 << regularTriangle << height / 2.0;
        QTest::newRow("quadrilateral") << 2 << unitSquare << 1.0;
        QTest::newRow("tetrahedron") << 3 << regularTet << std::sqrt(2.0) / 12.0;
        QTest::newRow("pyramid") << 3 << regularPyramid << std::sqrt(2.0) / 6.0;
        QTest::newRow("wedge") << 3 << regularWedge << height / 2.0;
        QTest::newRow("hexahedron") << 3 << unitHex << 1.0;
    }

    void regularElementsHaveAspectOne()
    {
        QFETCH(int, dimension);
        QFETCH(Points, points);
        QFETCH(double, measure);
        const MeshQuality quality = qualityOf(dimension, points);
        QVERIFY(qFuzzyCompare(quality.measure().smallest, measure));
        QVERIFY(qFuzzyCompare(quality.aspect().largest, 1.0));
        QVERIFY(quality.inverted().empty());
        QVERIFY(quality.twisted().empty());
        QVERIFY(quality.degenerate().empty());
        QVERIFY(quality.unknown().empty());
    }

    void mirroredSolidsAreInverted_data()
    {
        QTest::addColumn<Points>("points");
        QTest::newRow("tetrahedron") << regularTet;
        QTest::newRow("pyramid") << regularPyramid;
        QTest::newRow("wedge") << regularWedge;
        QTest::newRow("hexahedron") << unitHex;
    }

    void mirroredSolidsAreInverted()
    {
        QFETCH(Points, points);
        const double volume = qualityOf(3, points).total();
        for (Vector& point : points) {
            point.set(point.x(), point.y(), -point.z());
        }
        const MeshQuality quality = qualityOf(3, points);
        QVERIFY(qFuzzyCompare(quality.total(), -volume));
        QCOMPARE(quality.inverted(), std::vector<int>{1});
        QVERIFY(quality.twisted().empty());
        QVERIFY(quality.aspect().isEmpty());
    }

    void theVolumeDoesNotHangOnTheFirstVertex()
    {
        // A hexahedron with a warped top, numbered from each of its bottom corners in turn.
        Points points = unitHex;
        points[6] = Vector(1.2, 1.1, 1.5);
        const double volume = qualityOf(3, points).total();
        const MeshQuality turned = qualityOf(3, permuted(points, {1, 2, 3, 0, 5, 6, 7, 4}));
        QVERIFY(qFuzzyCompare(turned.total(), volume));
    }

    void twistedAndInvertedAreTwoThings()
    {
        // A top that is pushed below the bottom at one corner keeps a positive volume.
        Points points = unitHex;
        points[6] = Vector(1, 1, -0.5);
        const MeshQuality quality = qualityOf(3, points);
        QVERIFY(quality.total() > 0.0);
        QVERIFY(quality.inverted().empty());
        QCOMPARE(quality.twisted(), std::vector<int>{1});
    }

    void quadrilateralsWithCrossingSidesAreTwisted()
    {
        const Points bowTie = permuted(unitSquare, {0, 1, 3, 2});
        QCOMPARE(qualityOf(2, bowTie).twisted(), std::vector<int>{1});
        Points arrowHead = unitSquare;
        arrowHead[2] = Vector(0.25, 0.25, 0);
        QVERIFY(qualityOf(2, arrowHead).twisted().empty());
    }

    void flatAndRepeatedAreDegenerate_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<Points>("points");
        QTest::newRow("line") << 1 << Points{unitHex[0], unitHex[0]};
        QTest::newRow("triangle on a line")
            << 2 << Points{Vector(0, 0, 0), Vector(1, 0, 0), Vector(3, 0, 0)};
        QTest::newRow("flat tetrahedron") << 3 << unitSquare;
        QTest::newRow("nearly flat tetrahedron")
            << 3
            << Points{Vector(0, 0, 0), Vector(1000, 0, 0), Vector(0, 1000, 0), Vector(1, 1, 1e-10)};
        QTest::newRow("a point") << 3 << Points{unitHex[0], unitHex[0], unitHex[0], unitHex[0]};
        QTest::newRow("not a number")
            << 3 << Points{unitHex[0], unitHex[1], unitHex[2], Vector(0, 0, std::nan(""))};
    }

    void flatAndRepeatedAreDegenerate()
    {
        QFETCH(int, dimension);
        QFETCH(Points, points);
        const MeshQuality quality = qualityOf(dimension, points);
        QCOMPARE(quality.degenerate(), std::vector<int>{1});
        QVERIFY(quality.inverted().empty());
        QVERIFY(quality.aspect().isEmpty());
    }

    void aThinSmallElementIsNotDegenerate()
    {
        Points points = regularTet;
        for (Vector& point : points) {
            point *= 1e-7;
        }
        const MeshQuality quality = qualityOf(3, points);
        QVERIFY(quality.degenerate().empty());
        QVERIFY(std::abs(quality.aspect().largest - 1.0) < 1e-9);
    }

    void extremesNameTheLowestOfEqualIds()
    {
        Database database;
        Progress progress;
        for (int i = 0; i < 3; ++i) {
            addElement(*database.mesh(), 3, unitHex);
        }
        addElement(*database.mesh(), 3, regularWedge);
        const MeshQuality quality(CaseView(database), 3, progress);
        QCOMPARE(quality.measure().largestId, 1);
        QCOMPARE(quality.measure().smallestId, 4);
    }

    /// More than are judged at a time, by several cores: each is as it is alone.
    void manyAreLikeEachAlone()
    {
        constexpr int count = 150000;
        Database database;
        double volume = 0.0;
        std::vector<int> inverted;
        for (int i = 1; i <= count; ++i) {
            Points points = i % 3 == 0 ? regularPyramid : regularTet;
            if (i % 3 != 0 && i % 1000 == 0) {
                std::swap(points[0], points[1]);
                inverted.push_back(i);
            }
            for (Vector& point : points) {
                point *= 1.0 + i % 7;
            }
            addElement(*database.mesh(), 3, points);
            volume += ElementQuality::measureOf(*database.mesh()->entity(3, i));
        }
        Progress progress([](const QString&) {});
        const CaseView view(database);
        const MeshQuality quality(view, 3, progress);
        QCOMPARE(inverted.size(), std::size_t{100});
        QCOMPARE(quality.inverted(), inverted);
        QCOMPARE(quality.total(), volume); // to the last bit: they are summed up in their order
        QVERIFY(std::abs(quality.aspect().largest - 1.0) < 1e-12);
        const auto some = ElementQuality::ofMany(view, 3, 2, [](std::size_t i) { return 998 + i; });
        QCOMPARE(some[0].state, ElementQuality::State::Sound);
        QCOMPARE(some[1].state, ElementQuality::State::Inverted);
    }

    void everyTableIsClosed()
    {
        // The sides of a closed solid use each edge twice, in opposite directions.
        for (const ElementTopology& topology : ElementTopology::all()) {
            if (topology.dimension != 3) {
                continue;
            }
            std::set<std::pair<int, int>> edges;
            for (const ElementTopology::Side& side : topology.sides) {
                for (std::size_t i = 0; i < side.size(); ++i) {
                    QVERIFY(edges.emplace(side[i], side[(i + 1) % side.size()]).second);
                }
            }
            for (const auto& [from, to] : edges) {
                QVERIFY(edges.contains({to, from}));
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestMeshQuality)
#include "tst_MeshQuality.moc"
