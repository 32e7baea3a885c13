#include "TestMesh.h"

#include <QTest>

#include <cmath>

using namespace Ovra::Geo;

namespace
{

bool isClose(const Vector& a, const Vector& b)
{
    return a.isAlmostEqualTo(b, 0.0, 1e-15);
}

} // namespace

class TestElementGeometry : public QObject
{
    Q_OBJECT

private slots:
    void vertex()
    {
        MeshVertex vertex;
        QVERIFY(vertex.point() == Vector(0, 0, 0));
        vertex.setPoint(Vector(1, 2, 3));
        QVERIFY(vertex.point() == Vector(1, 2, 3));
        QVERIFY(vertex.centroid() == Vector(1, 2, 3));
        QVERIFY(vertex.boundingBox() == Box(Vector(1, 2, 3), Vector(1, 2, 3)));
        QVERIFY(vertex.normal() == Vector());
        QCOMPARE(vertex.boundaryArea(), 0.0);
    }

    void edge_data()
    {
        QTest::addColumn<Vector>("a");
        QTest::addColumn<Vector>("b");
        QTest::addColumn<Vector>("normal");
        QTest::addColumn<double>("length");
        QTest::newRow("along x") << Vector(0, 0, 0) << Vector(1, 0, 0) << Vector(0, -1, 0) << 1.0;
        QTest::newRow("against x") << Vector(1, 0, 0) << Vector(0, 0, 0) << Vector(0, 1, 0) << 1.0;
        QTest::newRow("along y") << Vector(0, 0, 0) << Vector(0, 2, 0) << Vector(1, 0, 0) << 2.0;
        QTest::newRow("along z") << Vector(0, 0, 0) << Vector(0, 0, 1) << Vector(0, 0, 0) << 1.0;
        QTest::newRow("z plays no part")
            << Vector(1, 1, 0) << Vector(4, 5, 12) << Vector(0.8, -0.6, 0) << 13.0;
        QTest::newRow("a point") << Vector(3, 3, 3) << Vector(3, 3, 3) << Vector(0, 0, 0) << 0.0;
    }

    void edge()
    {
        QFETCH(Vector, a);
        QFETCH(Vector, b);
        QFETCH(Vector, normal);
        QFETCH(double, length);
        TestMesh test;
        auto* edge = test.addElement(1, vertices(test, {a, b}));
        QVERIFY(isClose(edge->normal(), normal));
        QCOMPARE(edge->boundaryArea(), length);
        QVERIFY(isClose(edge->centroid(), (a + b) * 0.5));
        Box box(a, a);
        box += b;
        QVERIFY(edge->boundingBox() == box);
    }

    void anEdgeEndsAtItsSecondVertex()
    {
        TestMesh test;
        const Vector a(0, 0, 0);
        const Vector b(1, 0, 0);
        auto* edge = test.addElement(1, vertices(test, {a, b, Vector(7, 8, 9)}));
        QVERIFY(edge->boundingBox() == Box(a, b));
        QVERIFY(isClose(edge->centroid(), Vector(0.5, 0, 0)));
        QCOMPARE(edge->boundaryArea(), 1.0);
    }

    void face_data()
    {
        QTest::addColumn<QList<Vector>>("points");
        QTest::addColumn<Vector>("normal");
        QTest::addColumn<double>("area");
        QTest::addColumn<Vector>("centroid");
        using Points = QList<Vector>;
        const double third = 1.0 / 3.0;
        QTest::newRow("triangle") << Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}} << Vector(0, 0, 1)
                                  << 0.5 << Vector(third, third, 0);
        QTest::newRow("turned triangle") << Points{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}
                                         << Vector(0, 0, -1) << 0.5 << Vector(third, third, 0);
        QTest::newRow("degenerate triangle")
            << Points{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}} << Vector(0, 0, 0) << 0.0 << Vector(1, 0, 0);
        QTest::newRow("square") << Points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}
                                << Vector(0, 0, 1) << 1.0 << Vector(0.5, 0.5, 0);
        QTest::newRow("fourth vertex out of plane")
            << Points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 2}} << Vector(0, 0, 1)
            << 0.5 + 0.5 * std::sqrt(9.0) << Vector(0.5, 0.5, 0.5);
        QTest::newRow("fan that folds over itself")
            << Points{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0.5, 0, 0}} << Vector(0, 0, 1) << 0.75
            << Vector(0.375, 0.25, 0);
        // Three terms of the sum, divided by five.
        QTest::newRow("five vertices")
            << Points{{0, 0, 0}, {5, 0, 0}, {5, 5, 0}, {2, 6, 0}, {0, 5, 0}} << Vector(0, 0, 1)
            << 12.5 + 10.0 + 5.0 << Vector(2, 1, 0);
    }

    void face()
    {
        QFETCH(QList<Vector>, points);
        QFETCH(Vector, normal);
        QFETCH(double, area);
        QFETCH(Vector, centroid);
        TestMesh test;
        auto* face = test.addElement(2, vertices(test, points));
        QVERIFY(isClose(face->normal(), normal));
        QCOMPARE(face->boundaryArea(), area);
        QVERIFY(isClose(face->centroid(), centroid));
        Box box;
        for (const Vector& point : points) {
            box += point;
        }
        QVERIFY(face->boundingBox() == box);
    }

    void aFaceOfTwoVerticesHasNoArea()
    {
        TestMesh test;
        auto* face = test.addElement(2, vertices(test, {{0, 0, 0}, {1, 0, 0}}));
        QCOMPARE(face->boundaryArea(), 0.0);
    }

    void region_data()
    {
        QTest::addColumn<int>("vertexCount");
        QTest::addColumn<Vector>("centroid");
        QTest::newRow("tetrahedron") << 4 << Vector(0.25, 0.25, 0.25);
        QTest::newRow("pyramid") << 5 << Vector(0.5, 0.5, 0.2);
        QTest::newRow("wedge") << 6 << Vector(1.0 / 3.0, 1.0 / 3.0, 0.5);
        QTest::newRow("hexahedron") << 8 << Vector(0.5, 0.5, 0.5);
    }

    void region()
    {
        QFETCH(int, vertexCount);
        QFETCH(Vector, centroid);
        TestMesh test;
        auto* cell = test.addUnitCell(vertexCount);
        test.mesh().setUpwardAdjacencies();
        QVERIFY(isClose(cell->centroid(), centroid));
        QVERIFY(cell->boundingBox() == Box(Vector(0, 0, 0), Vector(1, 1, 1)));
        QVERIFY(cell->normal() == Vector());
        QCOMPARE(cell->boundaryArea(), 0.0);
    }

    void aRegionAddsUpTheFacesOfItsOwnList()
    {
        TestMesh test;
        auto* cell = test.addUnitCell(4);
        cell->addAdjacency(test.mesh().entity(2, 2));
        QCOMPARE(cell->boundaryArea(), 0.5);
        cell->addAdjacency(test.mesh().entity(2, 3));
        QCOMPARE(cell->boundaryArea(), 1.0);
    }

    void aRegionWithoutVerticesHasNoCentroid()
    {
        const MeshRegion region;
        QVERIFY(std::isnan(region.centroid().x()));
        QVERIFY(region.boundingBox() == Box());
    }

    void secondCallsDoubleTheUpwardLists()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        auto* edge = test.mesh().entity(1, 1);
        auto* face = test.mesh().entity(2, 1);
        const QList<int> facesOnce = neighbourIds(edge, 2);
        edge->setUpwardAdjacencies();
        face->setUpwardAdjacencies();
        QCOMPARE(facesOnce.size(), 2);
        QCOMPARE(edge->adjacencyCount(2), 4);
        QCOMPARE(face->adjacencyCount(3), 2);
        edge->clearUpwardAdjacencies();
        face->clearUpwardAdjacencies();
        QCOMPARE(edge->adjacencyCount(2), 0);
        QCOMPARE(face->adjacencyCount(3), 0);
        QCOMPARE(edge->adjacencyCount(0), 2);
        QCOMPARE(face->adjacencyCount(0), 3);
    }

    void duplicatesInTheVerticesListsCollapse()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(test.mesh().entity(0, 1)->adjacencyCount(2), 6);
        // Two faces at each edge, entered by either call once.
        QCOMPARE(test.mesh().entity(1, 1)->adjacencyCount(2), 4);
        QCOMPARE(test.mesh().entity(2, 1)->adjacencyCount(3), 2);
    }

    void verticesAndRegionsHaveNothingToSet()
    {
        TestMesh test;
        auto* cell = test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        auto* vertex = test.mesh().entity(0, 1);
        vertex->setUpwardAdjacencies();
        cell->setUpwardAdjacencies();
        cell->clearUpwardAdjacencies();
        QCOMPARE(vertex->adjacencyCount(1), 3);
        QCOMPARE(cell->adjacencyCount(0), 4);
        QCOMPARE(cell->adjacencyCount(3), 0);
        vertex->clearUpwardAdjacencies();
        for (int d = 1; d <= 3; ++d) {
            QCOMPARE(vertex->adjacencyCount(d), 0);
        }
    }

    void anEdgeLeavesItsVertices()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        auto* edge = test.mesh().entity(1, 1);
        auto* vertex = edge->adjacencyAt(0, 0);
        edge->removeFromAdjacencies();
        QVERIFY(!vertex->isAdjacentTo(edge));
        QCOMPARE(vertex->adjacencyCount(1), 2);
        QCOMPARE(edge->adjacencyCount(0), 2);
        QCOMPARE(edge->adjacencyCount(2), 2);
    }

    void aFaceLeavesItsVerticesAndEdges()
    {
        TestMesh test;
        test.addUnitCell(8);
        test.mesh().setUpwardAdjacencies();
        auto* face = test.mesh().entity(2, 1);
        const QList<int> corners = neighbourIds(face, 0);
        face->removeFromAdjacencies();
        QCOMPARE(neighbourIds(face, 0), corners);
        QCOMPARE(listingCount(test, 0, face), 0);
        QCOMPARE(listingCount(test, 1, face), 0);
        QCOMPARE(listingCount(test, 1, test.mesh().entity(2, 2)), 4);
        QCOMPARE(face->adjacencyCount(3), 1);
    }

    void aRegionLeavesItsVerticesAndFaces()
    {
        TestMesh test;
        auto* cell = test.addUnitCell(6);
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(listingCount(test, 0, cell), 6);
        QCOMPARE(listingCount(test, 2, cell), 5);
        cell->removeFromAdjacencies();
        QCOMPARE(listingCount(test, 0, cell), 0);
        QCOMPARE(listingCount(test, 2, cell), 0);
        QCOMPARE(cell->adjacencyCount(0), 6);
    }

    void aVertexLeavesNothing()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        auto* vertex = test.mesh().entity(0, 1);
        vertex->removeFromAdjacencies();
        QCOMPARE(listingCount(test, 1, vertex), 3);
        QCOMPARE(listingCount(test, 2, vertex), 3);
        QCOMPARE(listingCount(test, 3, vertex), 1);
    }

private:
    static TestMesh::Vertices vertices(TestMesh& test, const QList<Vector>& points)
    {
        TestMesh::Vertices result;
        for (const Vector& point : points) {
            result.append(test.addVertex(point));
        }
        return result;
    }

    static int listingCount(TestMesh& test, int dimension, MeshEntity* entity)
    {
        int count = 0;
        for (auto i = test.mesh().iterator(dimension); i.hasNext();) {
            count += i.next().value()->isAdjacentTo(entity) ? 1 : 0;
        }
        return count;
    }
};

QTEST_APPLESS_MAIN(TestElementGeometry)
#include "tst_ElementGeometry.moc"
