#include "GridCases.h"
#include "LogCapture.h"
#include "Solver.h"

#include <QTest>
#include <QVariant>

using namespace Ovra::Geo;
using namespace GridCases;

namespace
{

template <typename Entity>
int idAt(Entity* entity, const AttributeType& type)
{
    return entity->attributes().value(type, QVariant(0)).toInt();
}

ModelEntity* statorOf(GridMesh& grid, ModelEntity* face)
{
    return grid.model()->entity(grid.faceDimension(), idAt(face, AttributeType::StatorFace));
}

MeshEntity* statorOf(GridMesh& grid, MeshEntity* vertex)
{
    return grid.mesh()->entity(0, idAt(vertex, AttributeType::StatorVertex));
}

} // namespace

class TestSolverPeripheral : public QObject
{
    Q_OBJECT

private slots:
    void doublesTheModelFace()
    {
        GridMesh grid(row({"rotating_device", "fluid"}));
        ModelEntity* face = grid.face(1, 2);
        const int faces = grid.model()->count(2);
        Solver(grid.database()).addPeripheralFaces();

        QCOMPARE(grid.model()->count(2), faces + 1);
        ModelEntity* stator = grid.model()->entity(2, faces + 1);
        QCOMPARE(face->attributes().value(AttributeType::StatorFace, QVariant()),
                 QVariant(stator->id()));
        QCOMPARE(face->attributes().count(), 1);
        QCOMPARE(stator->attributes().value(AttributeType::RotorFace, QVariant()),
                 QVariant(face->id()));
        QCOMPARE(stator->attributes().count(), 1);
        QCOMPARE(face->adjacencyCount(3), 1);
        QCOMPARE(face->adjacencyAt(3, 0), grid.region(1));
        QCOMPARE(stator->adjacencyCount(3), 1);
        QCOMPARE(stator->adjacencyAt(3, 0), grid.region(2));
        QVERIFY(grid.region(1)->isAdjacentTo(face));
        QVERIFY(grid.region(2)->isAdjacentTo(stator));
        QVERIFY(!grid.region(2)->isAdjacentTo(face));
    }

    // replaceAdjacency() puts entities of any dimension into a list.
    void theNewFaceIsAFaceWhateverTheListHolds()
    {
        GridMesh grid(row({"rotating_device", "fluid"}));
        ModelEntity* device = grid.region(1);
        ModelEntity* edge = ModelEntity::create(1);
        grid.model()->add(edge);
        ModelEntity* spare = ModelEntity::create(2);
        grid.model()->add(spare);
        device->addAdjacency(spare);
        device->replaceAdjacency(spare, edge);
        edge->addAdjacency(grid.region(2));
        edge->addAdjacency(spare);
        const int edges = grid.model()->count(1);
        Solver(grid.database()).addPeripheralFaces();
        QCOMPARE(grid.model()->count(1), edges);
        const int stator = idAt(edge, AttributeType::StatorFace);
        QCOMPARE(idAt(grid.model()->entity(2, stator), AttributeType::RotorFace), edge->id());
    }

    void theAttributesAreIntegers()
    {
        GridMesh grid(row({"rotating_device", "fluid"}));
        ModelEntity* face = grid.face(1, 2);
        MeshEntity* vertex = grid.vertexAt(1, 0, 0);
        Solver(grid.database()).addPeripheralFaces();
        for (const QVariant& link :
             {face->attributes().value(AttributeType::StatorFace, QVariant()),
              statorOf(grid, face)->attributes().value(AttributeType::RotorFace, QVariant()),
              vertex->attributes().value(AttributeType::StatorVertex, QVariant()),
              statorOf(grid, vertex)->attributes().value(AttributeType::RotorVertex, QVariant())}) {
            QCOMPARE(link.typeId(), static_cast<int>(QMetaType::Int));
        }
    }

    void theFluidTakesTheNewVertices()
    {
        GridMesh grid(row({"rotating_device", "fluid"}));
        ModelEntity* face = grid.face(1, 2);
        MeshEntity* rotor = onlyChild(face);
        const QList<MeshEntity*> old = MeshChecks::neighbours(rotor, 0);
        MeshEntity* device = onlyChild(grid.region(1));
        MeshEntity* fluid = onlyChild(grid.region(2));
        Solver(grid.database()).addPeripheralFaces();

        QCOMPARE(grid.mesh()->count(0), 16);
        MeshEntity* stator = onlyChild(statorOf(grid, face));
        QCOMPARE(MeshChecks::neighbours(rotor, 0), old);
        QCOMPARE(MeshChecks::vertexIds(stator), QList<int>({13, 14, 15, 16}));
        for (int i = 0; i < 4; ++i) {
            MeshEntity* copy = stator->adjacencyAt(0, i);
            QCOMPARE(copy->centroid(), old.at(i)->centroid());
            QCOMPARE(copy->parent(), nullptr);
            QCOMPARE(old.at(i)->attributes().value(AttributeType::StatorVertex, QVariant()),
                     QVariant(copy->id()));
            QCOMPARE(old.at(i)->attributes().count(), 1);
            QCOMPARE(copy->attributes().value(AttributeType::RotorVertex, QVariant()),
                     QVariant(old.at(i)->id()));
            QCOMPARE(copy->attributes().count(), 1);
            QVERIFY(device->isAdjacentTo(old.at(i)) && !device->isAdjacentTo(copy));
            QVERIFY(fluid->isAdjacentTo(copy) && !fluid->isAdjacentTo(old.at(i)));
        }
        QCOMPARE(MeshChecks::neighbours(rotor, 3), QList<MeshEntity*>({device}));
        QCOMPARE(MeshChecks::neighbours(stator, 3), QList<MeshEntity*>({fluid}));
        QVERIFY(!MeshChecks::verticesOn(grid.face(0, 2)).intersects({old.begin(), old.end()}));
        QVERIFY(MeshChecks::verticesOn(grid.face(0, 1)).contains({old.begin(), old.end()}));
    }

    void isSilent()
    {
        GridMesh grid(row({"rotating_device", "fluid"}));
        LogCapture log;
        Solver(grid.database()).addPeripheralFaces();
        QCOMPARE(log.messages(), QStringList());
    }

    void leavesOtherFacesSingle_data()
    {
        QTest::addColumn<QStringList>("materials");
        QTest::addColumn<int>("unmeshed");
        QTest::newRow("no device") << QStringList({"fluid", "fluid"}) << 0;
        QTest::newRow("a fan, which does not rotate here")
            << QStringList({"internal_fan", "fluid"}) << 0;
        QTest::newRow("device and solid") << QStringList({"rotating_device", "solid"}) << 0;
        QTest::newRow("device and unmeshed fluid")
            << QStringList({"rotating_device", "fluid"}) << 2;
        QTest::newRow("device alone") << QStringList({"rotating_device"}) << 0;
    }

    void leavesOtherFacesSingle()
    {
        QFETCH(QStringList, materials);
        QFETCH(int, unmeshed);
        GridSpec spec = row(materials);
        spec.unmeshed = {unmeshed};
        GridMesh grid(spec);
        const QList<int> before = counts(grid);
        Solver(grid.database()).addPeripheralFaces();
        QCOMPARE(counts(grid), before);
    }

    void countsAllMaterialsThatFlow_data()
    {
        QTest::addColumn<QString>("material");
        for (const char* kind : {"fluid", "resistance", "internal_fan", "check_valve",
                                 "centrifugal_fan", "heat_exchanger", "heat_sink"}) {
            QTest::newRow(kind) << kind;
        }
    }

    void countsAllMaterialsThatFlow()
    {
        QFETCH(QString, material);
        GridMesh grid(row({"rotating_device", material}));
        ModelEntity* face = grid.face(1, 2);
        const QSet<MeshEntity*> old = MeshChecks::verticesOn(face);
        Solver(grid.database()).addPeripheralFaces();
        QVERIFY(statorOf(grid, face));
        QVERIFY(!MeshChecks::verticesOn(grid.region(2)).intersects(old));
    }

    void twoFluidsShareTheCopiesOnTheirBorder()
    {
        // The device lies below two fluid regions.
        GridSpec spec;
        spec.cells = {2, 1, 2};
        spec.regionOf = [](int x, int, int z) { return z == 0 ? 1 : 2 + x; };
        spec.materials = {{1, "rotating_device"}, {2, "fluid"}, {3, "fluid"}};
        GridMesh grid(spec);
        Solver(grid.database()).addPeripheralFaces();
        QVERIFY(statorOf(grid, grid.face(1, 2)) && statorOf(grid, grid.face(1, 3)));
        QCOMPARE(grid.mesh()->count(0), 18 + 6);
        const QSet<MeshEntity*> border = MeshChecks::verticesOn(statorOf(grid, grid.face(1, 2))) &
                                         MeshChecks::verticesOn(statorOf(grid, grid.face(1, 3)));
        QCOMPARE(border.size(), 2);
        QVERIFY(MeshChecks::verticesOn(grid.face(2, 3)).contains(border));
        QCOMPARE(MeshChecks::findStaleUpwardList(grid.database()), QString());
    }

    void solidsStayOnTheRotor()
    {
        // Device and solid side by side, the fluid above both.
        GridSpec spec;
        spec.cells = {2, 1, 2};
        spec.regionOf = [](int x, int, int z) { return z == 1 ? 1 : 2 + x; };
        spec.materials = {{1, "fluid"}, {2, "rotating_device"}, {3, "solid"}};
        GridMesh grid(spec);
        MeshEntity* rim = grid.vertexAt(1, 0, 1);
        MeshEntity* solid = onlyChild(grid.region(3));
        const QList<MeshEntity*> nodes = MeshChecks::neighbours(solid, 0);
        Solver(grid.database()).addPeripheralFaces();

        QCOMPARE(MeshChecks::neighbours(solid, 0), nodes);
        MeshEntity* copy = statorOf(grid, rim);
        QVERIFY(onlyChild(grid.region(2))->isAdjacentTo(rim));
        for (const MeshEntity* fluid : MeshChecks::sorted(grid.region(1)->childIterator())) {
            QVERIFY(!fluid->isAdjacentTo(rim));
            QVERIFY(fluid->isAdjacentTo(copy));
        }
        // The face between fluid and solid touches the fluid, that between device and solid
        // doesn't.
        QVERIFY(MeshChecks::verticesOn(grid.face(1, 3)).contains(copy));
        QVERIFY(!MeshChecks::verticesOn(grid.face(1, 3)).contains(rim));
        QVERIFY(MeshChecks::verticesOn(grid.face(2, 3)).contains(rim));
        QVERIFY(!grid.face(1, 3)->attributes().contains(AttributeType::StatorFace));
        QVERIFY(!grid.face(2, 3)->attributes().contains(AttributeType::StatorFace));
    }

    void aFaceOfAnUnmeshedFluidStaysOnTheRotor()
    {
        // The fluid above the device has a mesh, the one beside it has none.
        GridSpec spec;
        spec.cells = {2, 1, 2};
        spec.regionOf = [](int x, int, int z) { return z == 0 ? 2 + x : 1 - x; };
        spec.materials = {{1, "fluid"}, {2, "rotating_device"}, {3, "fluid"}};
        spec.unmeshed = {3};
        GridMesh grid(spec);
        const QSet<MeshEntity*> before = MeshChecks::verticesOn(grid.face(2, 3));
        QVERIFY(before.contains(grid.vertexAt(1, 0, 1)));
        Solver(grid.database()).addPeripheralFaces();
        QVERIFY(statorOf(grid, grid.face(1, 2)));
        QVERIFY(!statorOf(grid, grid.face(2, 3)));
        QCOMPARE(MeshChecks::verticesOn(grid.face(2, 3)), before);
    }

    void aFluidTouchingAtOneVertexTakesTheCopy()
    {
        GridSpec spec;
        spec.cells = {2, 2, 2};
        spec.regionOf = [](int x, int y, int z) {
            const int cell = 100 * x + 10 * y + z;
            return cell == 0 ? 1 : cell == 100 ? 2 : cell == 111 ? 3 : 0;
        };
        spec.materials = {{1, "rotating_device"}, {2, "fluid"}, {3, "fluid"}};
        GridMesh grid(spec);
        MeshEntity* shared = grid.vertexAt(1, 1, 1);
        Solver(grid.database()).addPeripheralFaces();
        QVERIFY(onlyChild(grid.region(3))->isAdjacentTo(statorOf(grid, shared)));
        QVERIFY(!onlyChild(grid.region(3))->isAdjacentTo(shared));
        QVERIFY(onlyChild(grid.region(1))->isAdjacentTo(shared));
    }

    void facesFollowTheDevicesList()
    {
        GridMesh grid(row({"fluid", "rotating_device", "fluid"}));
        QList<ModelEntity*> faces;
        for (int i = 0; i < grid.region(2)->adjacencyCount(2); ++i) {
            if (grid.region(2)->adjacencyAt(2, i) != grid.face(0, 2)) {
                faces.append(grid.region(2)->adjacencyAt(2, i));
            }
        }
        QCOMPARE(faces.size(), 2);
        Solver(grid.database()).addPeripheralFaces();
        QCOMPARE(statorOf(grid, faces.at(1))->id(), statorOf(grid, faces.at(0))->id() + 1);
    }

    void aFaceThatTheDeviceListsTwiceIsPeripheralOnce()
    {
        GridMesh grid(row({"rotating_device", "fluid"}));
        ModelEntity* face = grid.face(1, 2);
        const int faces = grid.model()->count(2);
        grid.region(1)->addAdjacency(face);
        Solver(grid.database()).addPeripheralFaces();
        QCOMPARE(grid.model()->count(2), faces + 1);
        QCOMPARE(statorOf(grid, face)->adjacencyAt(3, 0), grid.region(2));
    }

    void theFaceBetweenTwoDevicesIsPeripheralOnce()
    {
        GridMesh grid(row({"rotating_device", "rotating_device"}));
        ModelEntity* face = grid.face(1, 2);
        const int faces = grid.model()->count(2);
        MeshEntity* second = onlyChild(grid.region(2));
        const QList<MeshEntity*> nodes = MeshChecks::neighbours(second, 0);
        Solver(grid.database()).addPeripheralFaces();
        QCOMPARE(grid.model()->count(2), faces + 1);
        QCOMPARE(face->adjacencyAt(3, 0), grid.region(1));
        QCOMPARE(statorOf(grid, face)->adjacencyAt(3, 0), grid.region(2));
        // Its mesh moves over, while the elements of a device never leave their vertices.
        QCOMPARE(MeshChecks::neighbours(onlyChild(statorOf(grid, face)), 3),
                 QList<MeshEntity*>({second}));
        QCOMPARE(MeshChecks::neighbours(second, 0), nodes);
    }

    void devicesApartHaveTheirOwnCopies()
    {
        GridMesh grid(row({"rotating_device", "fluid", "rotating_device"}));
        Solver(grid.database()).addPeripheralFaces();
        QVERIFY(statorOf(grid, grid.face(1, 2)) && statorOf(grid, grid.face(2, 3)));
        QCOMPARE(grid.mesh()->count(0), 16 + 8);
        for (const int id : {1, 3}) {
            QVERIFY(!MeshChecks::verticesOn(grid.region(2))
                         .intersects(MeshChecks::verticesOn(grid.region(id))));
        }
        QCOMPARE(MeshChecks::findStaleUpwardList(grid.database()), QString());
    }

    void aVertexOfTwoDevicesNamesTheLaterCopy()
    {
        // Three devices around an edge: the first splits from both others, then these two from each
        // other, and each time the vertices of the edge are copied.
        GridSpec spec;
        spec.cells = {2, 2, 1};
        spec.regionOf = [](int x, int y, int) { return y == 0 ? 1 : 2 + x; };
        spec.materials = {{1, "rotating_device"}, {2, "rotating_device"}, {3, "rotating_device"}};
        GridMesh grid(spec);
        MeshEntity* shared = grid.vertexAt(1, 1, 0);
        Solver(grid.database()).addPeripheralFaces();

        QList<int> copies;
        for (MeshEntity* vertex : MeshChecks::sorted(grid.mesh()->iterator(0))) {
            if (idAt(vertex, AttributeType::RotorVertex) == shared->id()) {
                copies.append(vertex->id());
            }
        }
        QCOMPARE(copies.size(), 2);
        QCOMPARE(statorOf(grid, shared)->id(), copies.last());
        QCOMPARE(statorOf(grid, shared)->centroid(), shared->centroid());
        QVERIFY(MeshChecks::verticesOn(statorOf(grid, grid.face(1, 2)))
                    .contains(grid.mesh()->entity(0, copies.first())));
        QVERIFY(MeshChecks::verticesOn(statorOf(grid, grid.face(2, 3)))
                    .contains(grid.mesh()->entity(0, copies.last())));
    }

    void devicesTouchingInAFluidCopyTheCopy()
    {
        // The later device's mesh face touches the fluid, so the earlier device moves it to its
        // copy, and the later device finds and doubles that one.
        GridSpec spec;
        spec.cells = {2, 2, 1};
        spec.regionOf = [](int x, int y, int) {
            return x == 0 && y == 0 ? 1 : x == 1 && y == 1 ? 2 : 3;
        };
        spec.materials = {{1, "rotating_device"}, {2, "rotating_device"}, {3, "fluid"}};
        GridMesh grid(spec);
        MeshEntity* shared = grid.vertexAt(1, 1, 0);
        Solver(grid.database()).addPeripheralFaces();

        MeshEntity* first = statorOf(grid, shared);
        MeshEntity* second = statorOf(grid, first);
        QVERIFY(first && second);
        QCOMPARE(idAt(first, AttributeType::RotorVertex), shared->id());
        QCOMPARE(idAt(second, AttributeType::RotorVertex), first->id());
        for (const int id : {1, 2}) {
            QVERIFY(onlyChild(grid.region(id))->isAdjacentTo(shared));
        }
        for (const MeshEntity* fluid : MeshChecks::sorted(grid.region(3)->childIterator())) {
            QVERIFY(fluid->isAdjacentTo(second));
        }
        QCOMPARE(MeshChecks::findDeadPointer(grid.database()), QString());
    }

    void ofSeveralElementsBeyondTheLastMovesOver()
    {
        GridMesh grid(row({"rotating_device", "fluid"}));
        ModelEntity* face = grid.face(1, 2);
        MeshEntity* rotor = onlyChild(face);
        MeshEntity* fluid = onlyChild(grid.region(2));
        MeshEntity* last = addElementOver(grid, rotor, grid.region(2));
        Solver(grid.database()).addPeripheralFaces();
        MeshEntity* stator = onlyChild(statorOf(grid, face));
        QCOMPARE(MeshChecks::neighbours(stator, 3), QList<MeshEntity*>({last}));
        QCOMPARE(MeshChecks::neighbours(rotor, 3),
                 QList<MeshEntity*>({onlyChild(grid.region(1)), fluid}));
        QVERIFY(!MeshChecks::verticesOn(grid.region(2)).intersects(MeshChecks::verticesOn(face)));
    }

    void leavesMeshEdgesAlone()
    {
        GridMesh grid(row({"rotating_device", "fluid"}));
        const MeshEntity* edge = addMeshEdge(grid, grid.vertexAt(1, 0, 0), grid.vertexAt(2, 0, 0));
        const QList<MeshEntity*> ends = MeshChecks::neighbours(edge, 0);
        Solver(grid.database()).addPeripheralFaces();
        QCOMPARE(grid.mesh()->count(1), 1);
        QCOMPARE(MeshChecks::neighbours(edge, 0), ends);
        QCOMPARE(ends.first()->adjacencyAt(1, 0), edge);
    }

    void aSecondCallAddsNothing()
    {
        GridMesh grid(row({"fluid", "rotating_device", "fluid"}));
        Solver solver(grid.database());
        solver.addPeripheralFaces();
        const QList<int> before = counts(grid);
        solver.addPeripheralFaces();
        QCOMPARE(counts(grid), before);
    }

    void oneSolverMaySplitBothWays()
    {
        // The copies of one operation are no concern of the next.
        GridMesh grid(row({"solid", "fluid", "rotating_device"}));
        Solver solver(grid.database());
        solver.splitFluidSolidFaces();
        solver.addPeripheralFaces();
        QCOMPARE(grid.mesh()->count(0), 16 + 8);
        for (const auto& regions : {std::pair(1, 2), std::pair(2, 3), std::pair(1, 3)}) {
            QVERIFY(!MeshChecks::verticesOn(grid.region(regions.first))
                         .intersects(MeshChecks::verticesOn(grid.region(regions.second))));
        }
        QCOMPARE(MeshChecks::findStaleUpwardList(grid.database()), QString());
    }

    void holdsOnBigMeshes_data() { addBigGridRows(); }

    void holdsOnBigMeshes()
    {
        // Two devices apart from each other in two fluids, and a heat sink.
        GridSpec spec = bigGrid();
        spec.regionOf = [](int x, int y, int) {
            if (y < 2 || y > 3) {
                return x < 4 ? 1 : 2;
            }
            return x == 0 ? 5 : x < 3 ? 3 : x == 4 || x == 5 ? 4 : 2;
        };
        spec.materials = {{1, "fluid"},
                          {2, "fluid"},
                          {3, "rotating_device"},
                          {4, "rotating_device"},
                          {5, "heat_sink"}};
        GridMesh grid(spec);
        const RegionRecords before(grid, 5);
        Solver(grid.database()).addPeripheralFaces();

        QCOMPARE(before.findDamage(), QString());
        QSet<MeshEntity*> fluid;
        for (const int id : {1, 2, 5}) {
            fluid |= MeshChecks::verticesOn(grid.region(id));
        }
        for (const int id : {3, 4}) {
            QCOMPARE(MeshChecks::verticesOn(grid.region(id)), before.vertices(id));
            QVERIFY(!fluid.intersects(before.vertices(id)));
        }
        for (const auto& regions : {std::pair(1, 3), std::pair(2, 3), std::pair(3, 5),
                                    std::pair(1, 4), std::pair(2, 4)}) {
            ModelEntity* face = grid.face(regions.first, regions.second);
            if (!face) {
                continue;
            }
            ModelEntity* stator = statorOf(grid, face);
            QVERIFY(stator);
            QCOMPARE(idAt(stator, AttributeType::RotorFace), face->id());
            QCOMPARE(stator->childCount(), face->childCount());
            QVERIFY(fluid.contains(MeshChecks::verticesOn(stator)));
            QVERIFY(!fluid.intersects(MeshChecks::verticesOn(face)));
            for (MeshEntity* vertex : MeshChecks::verticesOn(face)) {
                MeshEntity* copy = statorOf(grid, vertex);
                QCOMPARE(copy->centroid(), vertex->centroid());
                QCOMPARE(idAt(copy, AttributeType::RotorVertex), vertex->id());
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestSolverPeripheral)
#include "tst_SolverPeripheral.moc"
