#include "AssertionCapture.h"
#include "GridMesh.h"
#include "LogCapture.h"
#include "MeshChecks.h"
#include "Solver.h"
#include "TestMesh.h"
#include "WedgeIndirection.h"

#include <QTest>

#include <numeric>

using namespace Ovra::Geo;
using Shape = GridSpec::Shape;

namespace
{

using Ids = QList<int>;

/// One wedge on a region of its own, with vertices of the given ids in node order.
class OneWedge : public TestMesh
{
public:
    explicit OneWedge(const Ids& ids)
        : region(addModelRegion())
    {
        const auto points = unitCellPoints(6);
        for (int i = 0; i < 6; ++i) {
            vertices.append(addVertex(points.at(i), ids.at(i)));
        }
        wedge = addElement(3, vertices, region);
        mesh().setUpwardAdjacencies();
    }

    QList<Ids> tetrahedra() const
    {
        QList<Ids> result;
        for (const MeshEntity* element : MeshChecks::sorted(region->childIterator())) {
            result.append(MeshChecks::vertexIds(element));
        }
        return result;
    }

    ModelRegion* region;
    Vertices vertices;
    MeshEntity* wedge = nullptr;
};

/// A pair of ids, the smaller first.
std::pair<int, int> diagonal(int a, int b)
{
    return std::minmax(a, b);
}

QSet<std::pair<int, int>> edgesOf(const QList<MeshEntity*>& elements)
{
    QSet<std::pair<int, int>> edges;
    for (const MeshEntity* element : elements) {
        const Ids ids = MeshChecks::vertexIds(element);
        for (const int a : ids) {
            for (const int b : ids) {
                if (a < b) {
                    edges.insert({a, b});
                }
            }
        }
    }
    return edges;
}

/// The quadrilaterals of a wedge, along their boundaries.
QList<Ids> quadrilateralsOf(const MeshEntity* wedge)
{
    QList<Ids> result;
    const Ids ids = MeshChecks::vertexIds(wedge);
    for (const Ids& row : TestMesh::cellFaces(6)) {
        Ids corners;
        for (const int position : row) {
            corners.append(ids.at(position));
        }
        if (corners.size() == 4) {
            result.append(corners);
        }
    }
    return result;
}

double volumeOf(const MeshEntity* tetrahedron)
{
    const auto at = [&](int i) { return tetrahedron->adjacencyAt(0, i)->centroid(); };
    return MeshChecks::tetrahedronVolume(at(0), at(1), at(2), at(3));
}

QMap<Ids, int> trianglesOf(const QList<MeshEntity*>& tetrahedra)
{
    QMap<Ids, int> uses;
    for (const MeshEntity* tetrahedron : tetrahedra) {
        for (int left = 0; left < 4; ++left) {
            Ids triangle = MeshChecks::vertexIds(tetrahedron);
            triangle.removeAt(left);
            std::sort(triangle.begin(), triangle.end());
            ++uses[triangle];
        }
    }
    return uses;
}

} // namespace

class TestSolverWedges : public QObject
{
    Q_OBJECT

private slots:
    void turnsTheWedge_data()
    {
        QTest::addColumn<Ids>("row");
        QTest::newRow("0") << Ids({0, 1, 2, 3, 4, 5});
        QTest::newRow("1") << Ids({1, 2, 0, 4, 5, 3});
        QTest::newRow("2") << Ids({2, 0, 1, 5, 3, 4});
        QTest::newRow("3") << Ids({3, 5, 4, 0, 2, 1});
        QTest::newRow("4") << Ids({4, 3, 5, 1, 0, 2});
        QTest::newRow("5") << Ids({5, 4, 3, 2, 1, 0});
    }

    void turnsTheWedge()
    {
        QFETCH(Ids, row);
        WedgeIndirection indirection;
        indirection.setIndex(QByteArray(QTest::currentDataTag()).toInt());
        for (int i = 0; i < 6; ++i) {
            QCOMPARE(indirection.at(i), row.at(i));
        }
    }

    void stopsTheProcessBeyondItsTable_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("below") << -1;
        QTest::newRow("above") << 6;
    }

    void stopsTheProcessBeyondItsTable()
    {
        QFETCH(int, index);
        const QString place = " in file Projects/GeometryDatabase/Solver, line ";
        WedgeIndirection indirection;
        const QString row = stopMessage([&] { indirection.setIndex(index); });
        QVERIFY2(row.startsWith("ASSERT: \"i >= 0 && i < 6\"" + place), qPrintable(row));
        const QString position = stopMessage([&] { indirection.at(index); });
        QVERIFY2(position.startsWith("ASSERT: \"indirectIndex >= 0 && indirectIndex < 6\"" + place),
                 qPrintable(position));
    }

    void cutsByTheSmallestIds_data()
    {
        QTest::addColumn<Ids>("ids");
        QTest::addColumn<QList<Ids>>("tetrahedra");
        // V of a wedge w0..w5 is w3 w5 w4 w0 w2 w1.
        QTest::newRow("ids in node order, row 3")
            << Ids({1, 2, 3, 4, 5, 6}) << QList<Ids>({{3, 2, 1, 6}, {6, 2, 1, 5}, {6, 4, 5, 1}});
        QTest::newRow("row 0, first diagonal")
            << Ids({4, 6, 5, 1, 3, 2}) << QList<Ids>({{3, 2, 1, 6}, {6, 2, 1, 5}, {6, 4, 5, 1}});
        QTest::newRow("row 0, second diagonal")
            << Ids({4, 6, 5, 1, 2, 3}) << QList<Ids>({{2, 3, 1, 5}, {1, 2, 5, 6}, {1, 5, 4, 6}});
        QTest::newRow("row 1") << Ids({4, 6, 5, 3, 2, 1})
                               << QList<Ids>({{3, 2, 1, 4}, {4, 2, 1, 6}, {4, 5, 6, 1}});
        QTest::newRow("row 2") << Ids({4, 6, 5, 2, 1, 3})
                               << QList<Ids>({{3, 2, 1, 5}, {5, 2, 1, 4}, {5, 6, 4, 1}});
        QTest::newRow("row 3, second diagonal")
            << Ids({1, 3, 2, 4, 5, 6}) << QList<Ids>({{2, 3, 1, 5}, {1, 2, 5, 6}, {1, 5, 4, 6}});
        QTest::newRow("row 4") << Ids({3, 2, 1, 4, 6, 5})
                               << QList<Ids>({{2, 3, 1, 4}, {1, 2, 4, 6}, {1, 4, 5, 6}});
        QTest::newRow("row 5") << Ids({2, 1, 3, 4, 6, 5})
                               << QList<Ids>({{2, 3, 1, 5}, {1, 2, 5, 4}, {1, 5, 6, 4}});
    }

    void cutsByTheSmallestIds()
    {
        QFETCH(Ids, ids);
        QFETCH(QList<Ids>, tetrahedra);
        OneWedge model(ids);
        Solver(&model.database).decomposeWedgesToTets();
        QCOMPARE(model.tetrahedra(), tetrahedra);
    }

    void ofEqualIdsTheEarliestCountsAsTheSmallest()
    {
        // w4 and w0 stand third and fourth in V, so that row 2 applies.
        OneWedge model({1, 2, 3, 4, 5, 6});
        const auto& w = model.vertices;
        w.at(4)->setId(1);
        Solver(&model.database).decomposeWedgesToTets();
        const auto tetrahedra = MeshChecks::sorted(model.region->childIterator());
        QCOMPARE(tetrahedra.size(), 3);
        using Corners = QList<MeshEntity*>;
        QCOMPARE(MeshChecks::neighbours(tetrahedra.at(0), 0), Corners({w[5], w[3], w[4], w[0]}));
        QCOMPARE(MeshChecks::neighbours(tetrahedra.at(1), 0), Corners({w[4], w[5], w[0], w[2]}));
        QCOMPARE(MeshChecks::neighbours(tetrahedra.at(2), 0), Corners({w[4], w[0], w[1], w[2]}));
    }

    void everyAssignmentOfIdsFillsTheWedge()
    {
        Ids ids(6);
        std::iota(ids.begin(), ids.end(), 1);
        do {
            OneWedge model(ids);
            const QList<Ids> sides = quadrilateralsOf(model.wedge);
            Solver(&model.database).decomposeWedgesToTets();
            const auto tetrahedra = MeshChecks::sorted(model.region->childIterator());
            QCOMPARE(tetrahedra.size(), 3);
            double sum = 0.0;
            for (const MeshEntity* tetrahedron : tetrahedra) {
                QVERIFY(volumeOf(tetrahedron) < 0.0);
                sum -= volumeOf(tetrahedron);
            }
            QCOMPARE(sum, 0.5);
            const auto edges = edgesOf(tetrahedra);
            for (const Ids& side : sides) {
                const auto first = diagonal(side.at(0), side.at(2));
                const auto second = diagonal(side.at(1), side.at(3));
                QCOMPARE(edges.contains(first), first < second);
                QCOMPARE(edges.contains(second), second < first);
            }
        } while (std::next_permutation(ids.begin(), ids.end()));
    }

    void theTetrahedraBelongToTheWedgesRegion()
    {
        OneWedge model({1, 2, 3, 4, 5, 6});
        model.wedge->attributes().insert(AttributeType::MeshSize, 1.0);
        Solver(&model.database).decomposeWedgesToTets();
        QCOMPARE(model.mesh().count(3), 3);
        QCOMPARE(model.region->childCount(), 3);
        for (MeshEntity* tetrahedron : MeshChecks::sorted(model.region->childIterator())) {
            QCOMPARE(tetrahedron->parent(), model.region);
            QVERIFY(tetrahedron->attributes().isEmpty());
            QCOMPARE(model.mesh().entity(3, tetrahedron->id()), tetrahedron);
        }
        QCOMPARE(MeshChecks::findDeadPointer(&model.database), QString());
    }

    void theUpwardListsAreTheCallers()
    {
        TestMesh model;
        ModelRegion* region = model.addModelRegion();
        model.addUnitCell(6, region, model.addModelFace());
        model.mesh().setUpwardAdjacencies();
        const int meshFaces = model.mesh().count(2);
        Solver(&model.database).decomposeWedgesToTets();

        for (const MeshEntity* vertex : MeshChecks::sorted(model.mesh().iterator(0))) {
            QCOMPARE(vertex->adjacencyCount(3), 0);
        }
        QCOMPARE(model.mesh().count(2), meshFaces);
        int quadrilaterals = 0;
        for (const MeshEntity* meshFace : MeshChecks::sorted(model.mesh().iterator(2))) {
            QCOMPARE(meshFace->adjacencyCount(3), 0);
            quadrilaterals += meshFace->adjacencyCount(0) == 4 ? 1 : 0;
        }
        QCOMPARE(quadrilaterals, 3);

        model.mesh().clearUpwardAdjacencies();
        model.mesh().setUpwardAdjacencies();
        QCOMPARE(MeshChecks::findStaleUpwardList(&model.database), QString());
        for (const MeshEntity* meshFace : MeshChecks::sorted(model.mesh().iterator(2))) {
            QCOMPARE(meshFace->adjacencyCount(3), meshFace->adjacencyCount(0) == 3 ? 1 : 0);
        }
    }

    void leavesOtherElementsAlone_data()
    {
        QTest::addColumn<int>("vertices");
        QTest::newRow("tetrahedron") << 4;
        QTest::newRow("pyramid") << 5;
        QTest::newRow("hexahedron") << 8;
    }

    void leavesOtherElementsAlone()
    {
        QFETCH(int, vertices);
        TestMesh model;
        ModelRegion* region = model.addModelRegion();
        MeshEntity* other = model.addUnitCell(vertices, region);
        model.mesh().setUpwardAdjacencies();
        const Ids nodes = MeshChecks::vertexIds(other);
        Solver(&model.database).decomposeWedgesToTets();
        QCOMPARE(model.mesh().count(3), 1);
        QCOMPARE(MeshChecks::vertexIds(other), nodes);
        QCOMPARE(MeshChecks::findStaleUpwardList(&model.database), QString());
    }

    void withoutWedgesTheGapsStay()
    {
        TestMesh model;
        ModelRegion* region = model.addModelRegion();
        MeshEntity* removed = model.addUnitCell(4, region);
        MeshEntity* kept = model.addUnitCell(4, region);
        model.mesh().remove(removed);
        Solver(&model.database).decomposeWedgesToTets();
        QCOMPARE(kept->id(), 2);
        QCOMPARE(model.mesh().entity(3, 2), kept);
    }

    void numbersElementsWithoutGaps()
    {
        // Wedges 1 and 3 in two regions, a tetrahedron and a hexahedron between them.
        TestMesh model;
        ModelRegion* first = model.addModelRegion();
        ModelRegion* second = model.addModelRegion();
        model.addUnitCell(6, first);
        MeshEntity* tetrahedron = model.addUnitCell(4, second);
        model.addUnitCell(6, second);
        MeshEntity* hexahedron = model.addUnitCell(8, second);
        model.mesh().setUpwardAdjacencies();
        Solver(&model.database).decomposeWedgesToTets();

        QCOMPARE(model.mesh().count(3), 8);
        for (int id = 1; id <= 8; ++id) {
            QVERIFY(model.mesh().entity(3, id));
        }
        QCOMPARE(tetrahedron->id(), 1);
        QCOMPARE(hexahedron->id(), 2);
        for (int id = 3; id <= 8; ++id) {
            QCOMPARE(model.mesh().entity(3, id)->parent(), id < 6 ? first : second);
        }
        QCOMPARE(first->childCount(), 3);
        QCOMPARE(second->childCount(), 5);
        QCOMPARE(model.addUnitCell(4, first)->id(), 9);
    }

    void isSilentAndDoesItOnce()
    {
        OneWedge model({1, 2, 3, 4, 5, 6});
        LogCapture log;
        Solver solver(&model.database);
        solver.decomposeWedgesToTets();
        const QList<Ids> tetrahedra = model.tetrahedra();
        solver.decomposeWedgesToTets();
        QCOMPARE(model.tetrahedra(), tetrahedra);
        QCOMPARE(log.messages(), QStringList());
    }

    void aPlanarModelHasNoWedges()
    {
        GridSpec spec;
        spec.cells = {2, 2, 1};
        spec.planar = true;
        spec.regionOf = [](int, int, int) { return 1; };
        GridMesh grid(spec);
        Solver(grid.database()).decomposeWedgesToTets();
        QCOMPARE(grid.mesh()->count(2), 4);
        QCOMPARE(grid.mesh()->count(3), 0);
    }

    void neighboursAgree_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (const unsigned seed : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
            QTest::addRow("ids of seed %u", seed) << seed;
        }
    }

    void neighboursAgree()
    {
        QFETCH(unsigned, seed);
        GridSpec spec;
        spec.cells = {5, 4, 4};
        spec.shape = Shape::Wedge;
        spec.idSeed = seed;
        spec.regionOf = [](int x, int y, int z) { return 1 + x % 2 + 2 * (y / 2) + z / 3; };
        GridMesh grid(spec);
        QMap<int, int> wedges;
        QMap<int, double> measures;
        for (int id = 1; id <= 5; ++id) {
            wedges[id] = grid.region(id)->childCount();
            measures[id] = MeshChecks::meshMeasure(grid.region(id));
        }
        QList<Ids> sides;
        for (const MeshEntity* wedge : MeshChecks::sorted(grid.mesh()->iterator(3))) {
            sides += quadrilateralsOf(wedge);
        }
        Solver(grid.database()).decomposeWedgesToTets();

        const auto tetrahedra = MeshChecks::sorted(grid.mesh()->iterator(3));
        QCOMPARE(tetrahedra.size(), 5 * 4 * 4 * 2 * 3);
        const auto edges = edgesOf(tetrahedra);
        for (const Ids& side : sides) {
            const auto first = diagonal(side.at(0), side.at(2));
            const auto second = diagonal(side.at(1), side.at(3));
            QCOMPARE(edges.contains(first), first < second);
            QCOMPARE(edges.contains(second), second < first);
        }
        for (const MeshEntity* tetrahedron : tetrahedra) {
            QVERIFY(volumeOf(tetrahedron) < 0.0);
        }
        for (int id = 1; id <= 5; ++id) {
            QCOMPARE(grid.region(id)->childCount(), 3 * wedges[id]);
            QCOMPARE(MeshChecks::meshMeasure(grid.region(id)), measures[id]);
        }
        // Conforming: every triangle has two tetrahedra, or one where it lies on the outside.
        int outside = 0;
        for (const int uses : trianglesOf(tetrahedra)) {
            QVERIFY(uses == 1 || uses == 2);
            outside += uses == 1 ? 1 : 0;
        }
        QCOMPARE(outside, 2 * 2 * (5 * 4 + 5 * 4 + 4 * 4));

        grid.mesh()->clearUpwardAdjacencies();
        grid.mesh()->setUpwardAdjacencies();
        QCOMPARE(MeshChecks::findDeadPointer(grid.database()), QString());
        QCOMPARE(MeshChecks::findStaleUpwardList(grid.database()), QString());
    }
};

QTEST_APPLESS_MAIN(TestSolverWedges)
#include "tst_SolverWedges.moc"
