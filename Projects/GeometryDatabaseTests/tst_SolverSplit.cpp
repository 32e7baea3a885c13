#include "GridCases.h"
#include "LogCapture.h"
#include "Solver.h"

#include <QTest>
#include <QVariant>

using namespace Ovra::Geo;
using namespace GridCases;

namespace
{

ModelEntity* partner(GridMesh& grid, ModelEntity* face, const AttributeType& type)
{
    const int id = face->attributes().value(type, QVariant(0)).toInt();
    return grid.model()->entity(grid.faceDimension(), id);
}

} // namespace

class TestSolverSplit : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutError()
    {
        Database database;
        const Solver solver(&database);
        QVERIFY(solver.isOk());
        QCOMPARE(solver.error(), QString());
        QCOMPARE(solver.extrusionTolerance(), 0.01);
    }

    void recordsTheHostsError()
    {
        Database database;
        Solver solver(&database);
        solver.setError(QStringLiteral("no mesh"));
        QVERIFY(!solver.isOk());
        QCOMPARE(solver.error(), QStringLiteral("no mesh"));
        solver.setError(QString());
        QVERIFY(solver.isOk());
    }

    void takesAnyTolerance()
    {
        Database database;
        Solver solver(&database);
        solver.setExtrusionTolerance(-3.5);
        QCOMPARE(solver.extrusionTolerance(), -3.5);
    }

    void copiesGoOnTheirOwn()
    {
        Database database;
        Solver solver(&database);
        solver.setError(QStringLiteral("first"));
        solver.setExtrusionTolerance(0.5);
        Solver copy(solver);
        copy.setError(QStringLiteral("second"));
        QCOMPARE(solver.error(), QStringLiteral("first"));
        QCOMPARE(copy.extrusionTolerance(), 0.5);
        solver = copy;
        QCOMPARE(solver.error(), QStringLiteral("second"));
    }

    void copiesWorkOnTheSameDatabase()
    {
        GridMesh grid(row({"fluid", "solid"}));
        const Solver solver(grid.database());
        Solver copy(solver);
        copy.splitFluidSolidFaces();
        QVERIFY(grid.face(1, 2)->attributes().contains(AttributeType::SolidFace));
    }

    void doublesTheModelFace()
    {
        GridMesh grid(row({"fluid", "solid"}));
        ModelEntity* face = grid.face(1, 2);
        const int faces = grid.model()->count(2);
        const int place = grid.region(2)->adjacencyAt(2, 0) == face ? 0 : 1;
        Solver(grid.database()).splitFluidSolidFaces();

        QCOMPARE(grid.model()->count(2), faces + 1);
        ModelEntity* newFace = grid.model()->entity(2, faces + 1);
        QCOMPARE(face->attributes().count(), 1);
        QCOMPARE(face->attributes().value(AttributeType::SolidFace, QVariant()),
                 QVariant(newFace->id()));
        QCOMPARE(newFace->attributes().count(), 1);
        QCOMPARE(newFace->attributes().value(AttributeType::FluidFace, QVariant()),
                 QVariant(face->id()));

        QCOMPARE(face->adjacencyCount(3), 1);
        QCOMPARE(face->adjacencyAt(3, 0), grid.region(1));
        QCOMPARE(newFace->adjacencyCount(3), 1);
        QCOMPARE(newFace->adjacencyAt(3, 0), grid.region(2));
        for (int d = 0; d < 3; ++d) {
            QCOMPARE(newFace->adjacencyCount(d), 0);
        }
        QVERIFY(grid.region(1)->isAdjacentTo(face));
        QVERIFY(!grid.region(2)->isAdjacentTo(face));
        QCOMPARE(grid.region(2)->adjacencyAt(2, place), newFace);
    }

    void theAttributesAreIntegers()
    {
        GridMesh grid(row({"fluid", "solid"}));
        ModelEntity* face = grid.face(1, 2);
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(face->attributes().value(AttributeType::SolidFace, QVariant()).typeId(),
                 static_cast<int>(QMetaType::Int));
        QCOMPARE(partner(grid, face, AttributeType::SolidFace)
                     ->attributes()
                     .value(AttributeType::FluidFace, QVariant())
                     .typeId(),
                 static_cast<int>(QMetaType::Int));
    }

    void doublesTheMesh()
    {
        GridMesh grid(row({"fluid", "solid"}));
        ModelEntity* face = grid.face(1, 2);
        MeshEntity* meshFace = onlyChild(face);
        const QList<MeshEntity*> old = MeshChecks::neighbours(meshFace, 0);
        MeshEntity* fluid = onlyChild(grid.region(1));
        MeshEntity* solid = onlyChild(grid.region(2));
        QCOMPARE(grid.mesh()->count(0), 12);
        const int meshFaces = grid.mesh()->count(2);
        Solver(grid.database()).splitFluidSolidFaces();

        QCOMPARE(grid.mesh()->count(0), 16);
        QCOMPARE(grid.mesh()->count(2), meshFaces + 1);
        QCOMPARE(grid.mesh()->count(3), 2);
        ModelEntity* newFace = partner(grid, face, AttributeType::SolidFace);
        QCOMPARE(newFace->childCount(), 1);
        QCOMPARE(face->childCount(), 1);
        MeshEntity* newMeshFace = onlyChild(newFace);
        QCOMPARE(newMeshFace->id(), meshFaces + 1);

        QCOMPARE(MeshChecks::neighbours(meshFace, 0), old);
        QCOMPARE(MeshChecks::vertexIds(newMeshFace), QList<int>({13, 14, 15, 16}));
        for (int i = 0; i < 4; ++i) {
            MeshEntity* copy = newMeshFace->adjacencyAt(0, i);
            QCOMPARE(copy->centroid(), old.at(i)->centroid());
            QCOMPARE(copy->parent(), nullptr);
            QVERIFY(copy->attributes().isEmpty());
            QVERIFY(old.at(i)->attributes().isEmpty());
            QVERIFY(fluid->isAdjacentTo(old.at(i)));
            QVERIFY(!fluid->isAdjacentTo(copy));
            QVERIFY(solid->isAdjacentTo(copy));
            QVERIFY(!solid->isAdjacentTo(old.at(i)));
        }
        QCOMPARE(MeshChecks::neighbours(meshFace, 3), QList<MeshEntity*>({fluid}));
        QCOMPARE(MeshChecks::neighbours(newMeshFace, 3), QList<MeshEntity*>({solid}));
        for (int d = 1; d < 3; ++d) {
            QCOMPARE(newMeshFace->adjacencyCount(d), 0);
        }
    }

    void keepsTheNodeOrderOfElements()
    {
        GridMesh grid(row({"fluid", "solid"}));
        MeshEntity* solid = onlyChild(grid.region(2));
        QList<Vector> before;
        for (int i = 0; i < 8; ++i) {
            before.append(solid->adjacencyAt(0, i)->centroid());
        }
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(solid->adjacencyCount(0), 8);
        for (int i = 0; i < 8; ++i) {
            QCOMPARE(solid->adjacencyAt(0, i)->centroid(), before.at(i));
        }
    }

    void logsFacesAndDistinctVertices()
    {
        // The solid stands in a corner: its three faces towards the fluid share their vertices.
        GridSpec spec;
        spec.cells = {2, 2, 2};
        spec.regionOf = [](int x, int y, int z) { return x + y + z == 0 ? 2 : 1; };
        spec.materials = {{1, "fluid"}, {2, "solid"}};
        GridMesh grid(spec);
        const int id = grid.face(1, 2)->id();
        QCOMPARE(grid.face(1, 2)->childCount(), 3);
        LogCapture log;
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(log.messages(), QStringList({QStringLiteral("Split fluid-solid face %1").arg(id),
                                              QStringLiteral("Created 7 new vertices")}));
    }

    void countsVerticesOfSeveralFacesOnce()
    {
        // Two solids side by side on top of a fluid: six vertices, two of them on both faces.
        GridSpec spec;
        spec.cells = {2, 1, 2};
        spec.regionOf = [](int x, int, int z) { return z == 0 ? 1 : 2 + x; };
        spec.materials = {{1, "fluid"}, {2, "solid"}, {3, "solid"}};
        GridMesh grid(spec);
        LogCapture log;
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(log.messages().size(), 3);
        QCOMPARE(log.messages().last(), QStringLiteral("Created 6 new vertices"));
        QCOMPARE(grid.mesh()->count(0), 18 + 6);
    }

    void leavesOtherFacesSingle_data()
    {
        QTest::addColumn<QStringList>("materials");
        QTest::newRow("two fluids") << QStringList({"fluid", "fluid"});
        QTest::newRow("fluid and rotating device") << QStringList({"fluid", "rotating_device"});
        QTest::newRow("two devices with flow") << QStringList({"heat_sink", "internal_fan"});
        QTest::newRow("two solids") << QStringList({"solid", "solid"});
        QTest::newRow("solid and another that is not fluid") << QStringList({"solid", "Fluid"});
        QTest::newRow("one region") << QStringList({"fluid"});
    }

    void leavesOtherFacesSingle()
    {
        QFETCH(QStringList, materials);
        GridMesh grid(row(materials));
        const QList<int> before = counts(grid);
        LogCapture log;
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(log.messages(), QStringList({"Created 0 new vertices"}));
        QCOMPARE(counts(grid), before);
    }

    void splitsBetweenFluidKindsAndAllOthers_data()
    {
        QTest::addColumn<QString>("fluid");
        QTest::addColumn<QString>("other");
        for (const char* kind :
             {"fluid", "resistance", "internal_fan", "check_valve", "rotating_device",
              "centrifugal_fan", "heat_exchanger", "heat_sink"}) {
            QTest::newRow(kind) << kind << "solid";
        }
        for (const char* kind : {"solid", "pcb", "Fluid", "FLUID"}) {
            QTest::newRow((QByteArray("fluid and ") + kind).constData()) << "fluid" << kind;
        }
    }

    void splitsBetweenFluidKindsAndAllOthers()
    {
        QFETCH(QString, fluid);
        QFETCH(QString, other);
        GridMesh grid(row({other, fluid}));
        Solver(grid.database()).splitFluidSolidFaces();
        ModelEntity* face = grid.face(1, 2);
        QCOMPARE(face->adjacencyAt(3, 0), grid.region(2));
        ModelEntity* newFace = partner(grid, face, AttributeType::SolidFace);
        QVERIFY(newFace);
        QCOMPARE(newFace->adjacencyAt(3, 0), grid.region(1));
    }

    void aRegionWithoutMaterialIsNotFluid()
    {
        GridSpec spec = row({"fluid", "solid"});
        spec.materials.remove(2);
        GridMesh grid(spec);
        Solver(grid.database()).splitFluidSolidFaces();
        QVERIFY(grid.face(1, 2)->attributes().contains(AttributeType::SolidFace));
    }

    void aFaceOfThreeRegionsStaysSingle()
    {
        GridMesh grid(row({"fluid", "solid", "solid"}));
        grid.face(1, 2)->addAdjacency(grid.region(3));
        grid.region(3)->addAdjacency(grid.face(1, 2));
        const QList<int> before = counts(grid);
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(counts(grid), before);
    }

    void aFaceTowardsARegionWithoutMeshStaysSingle_data()
    {
        QTest::addColumn<int>("unmeshed");
        QTest::newRow("the fluid") << 1;
        QTest::newRow("the solid") << 2;
    }

    void aFaceTowardsARegionWithoutMeshStaysSingle()
    {
        QFETCH(int, unmeshed);
        GridSpec spec = row({"fluid", "solid"});
        spec.unmeshed = {unmeshed};
        GridMesh grid(spec);
        const QList<int> before = counts(grid);
        LogCapture log;
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(log.messages(), QStringList({"Created 0 new vertices"}));
        QCOMPARE(counts(grid), before);
    }

    void anUnmeshedDeviceGetsASurface_data()
    {
        QTest::addColumn<QString>("device");
        for (const char* kind : {"ecomp_2resist", "ecomp_tec", "led_device"}) {
            QTest::newRow(kind) << kind;
        }
    }

    void anUnmeshedDeviceGetsASurface()
    {
        QFETCH(QString, device);
        GridSpec spec;
        spec.cells = {3, 3, 3};
        spec.regionOf = [](int x, int y, int z) { return x == 1 && y == 1 && z == 1 ? 2 : 1; };
        spec.materials = {{1, "fluid"}, {2, device}};
        spec.unmeshed = {2};
        GridMesh grid(spec);
        ModelEntity* face = grid.face(1, 2);
        const QSet<MeshEntity*> old = MeshChecks::verticesOn(face);
        LogCapture log;
        Solver(grid.database()).splitFluidSolidFaces();

        QCOMPARE(log.messages().last(), QStringLiteral("Created 8 new vertices"));
        ModelEntity* newFace = partner(grid, face, AttributeType::SolidFace);
        QCOMPARE(newFace->childCount(), 6);
        QCOMPARE(face->childCount(), 6);
        for (const MeshEntity* meshFace : MeshChecks::sorted(newFace->childIterator())) {
            QCOMPARE(meshFace->adjacencyCount(3), 0);
        }
        for (const MeshEntity* meshFace : MeshChecks::sorted(face->childIterator())) {
            QCOMPARE(meshFace->adjacencyCount(3), 1);
        }
        QCOMPARE(MeshChecks::verticesOn(face), old);
        const QSet<MeshEntity*> copies = MeshChecks::verticesOn(newFace);
        QVERIFY(!copies.intersects(old));
        QVERIFY(MeshChecks::coincide(copies, old));
        for (const MeshEntity* vertex : copies) {
            QCOMPARE(vertex->adjacencyCount(3), 0);
        }
        QCOMPARE(MeshChecks::findStaleUpwardList(grid.database()), QString());
    }

    void aDevicesListsDecide_data()
    {
        QTest::addColumn<QVariant>("hot");
        QTest::addColumn<QVariant>("cold");
        QTest::addColumn<QVariant>("cases");
        QTest::addColumn<bool>("first");
        QTest::addColumn<bool>("second");
        // 1 and 2 stand for the ids of the two faces.
        const QVariant none;
        const QVariant empty = QVariantList();
        const auto list = [](std::initializer_list<int> ids) {
            QVariantList result;
            for (const int id : ids) {
                result.append(id);
            }
            return QVariant(result);
        };
        QTest::newRow("no lists") << none << none << none << true << true;
        QTest::newRow("empty lists") << empty << empty << empty << true << true;
        QTest::newRow("hot only") << list({1}) << empty << none << true << false;
        QTest::newRow("cold only") << none << list({2}) << none << false << true;
        QTest::newRow("case only") << none << none << list({1}) << true << false;
        QTest::newRow("both in hot") << list({1, 2}) << none << none << true << true;
        QTest::newRow("hot and cold apart") << list({1}) << list({2}) << none << false << false;
        QTest::newRow("hot and case apart") << list({2}) << none << list({1}) << false << false;
        QTest::newRow("the face in all lists")
            << list({1}) << list({2, 1}) << list({1}) << true << false;
        QTest::newRow("a face of elsewhere") << list({99}) << none << none << false << false;
        QTest::newRow("no list at all") << QVariant(7) << none << none << true << true;
    }

    void aDevicesListsDecide()
    {
        QFETCH(QVariant, hot);
        QFETCH(QVariant, cold);
        QFETCH(QVariant, cases);
        QFETCH(bool, first);
        QFETCH(bool, second);
        GridSpec spec = row({"fluid", "led_device", "fluid"});
        spec.unmeshed = {2};
        GridMesh grid(spec);
        const QMap<int, int> faceIds = {{1, grid.face(1, 2)->id()}, {2, grid.face(2, 3)->id()}};
        const auto store = [&](const AttributeType& type, const QVariant& value) {
            QVariantList list = value.toList();
            for (QVariant& id : list) {
                id = faceIds.value(id.toInt(), id.toInt());
            }
            const bool isList = value.typeId() == QMetaType::QVariantList;
            if (value.isValid()) {
                grid.region(2)->attributes().insert(type, isList ? QVariant(list) : value);
            }
        };
        store(AttributeType::HotFaces, hot);
        store(AttributeType::ColdFaces, cold);
        store(AttributeType::CaseFaces, cases);
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(grid.face(1, 2)->attributes().contains(AttributeType::SolidFace), first);
        QCOMPARE(grid.face(2, 3)->attributes().contains(AttributeType::SolidFace), second);
    }

    void aDeviceWithAMeshIsStillBoundToItsLists()
    {
        GridMesh grid(row({"fluid", "led_device"}));
        grid.region(2)->attributes().insert(AttributeType::HotFaces, QVariantList{QVariant(999)});
        Solver(grid.database()).splitFluidSolidFaces();
        QVERIFY(!grid.face(1, 2)->attributes().contains(AttributeType::SolidFace));
    }

    void theListsOfOtherRegionsDontCount()
    {
        GridMesh grid(row({"fluid", "solid"}));
        grid.region(2)->attributes().insert(AttributeType::HotFaces, QVariantList{QVariant(999)});
        Solver(grid.database()).splitFluidSolidFaces();
        QVERIFY(grid.face(1, 2)->attributes().contains(AttributeType::SolidFace));
    }

    void aSolidTouchingAtOneVertexTakesTheCopy()
    {
        // Fluid at one corner of the block, solid at its neighbour and at the opposite corner.
        GridSpec spec;
        spec.cells = {2, 2, 2};
        spec.regionOf = [](int x, int y, int z) {
            const int cell = 100 * x + 10 * y + z;
            return cell == 0 ? 1 : cell == 100 ? 2 : cell == 111 ? 3 : 0;
        };
        spec.materials = {{1, "fluid"}, {2, "solid"}, {3, "solid"}};
        GridMesh grid(spec);
        MeshEntity* shared = grid.vertexAt(1, 1, 1);
        MeshEntity* far = onlyChild(grid.region(3));
        QVERIFY(far->isAdjacentTo(shared));
        Solver(grid.database()).splitFluidSolidFaces();
        QVERIFY(!far->isAdjacentTo(shared));
        QVERIFY(onlyChild(grid.region(1))->isAdjacentTo(shared));
        const auto solidVertices =
            MeshChecks::verticesOn(grid.region(2)) & MeshChecks::verticesOn(grid.region(3));
        QVERIFY(!solidVertices.contains(shared));
        QCOMPARE(solidVertices.size(), 2);
        QCOMPARE(MeshChecks::findStaleUpwardList(grid.database()), QString());
    }

    void aFluidTouchingAtOneVertexKeepsTheOldOne()
    {
        GridSpec spec;
        spec.cells = {2, 2, 2};
        spec.regionOf = [](int x, int y, int z) {
            const int cell = 100 * x + 10 * y + z;
            return cell == 0 ? 2 : cell == 100 ? 1 : cell == 111 ? 3 : 0;
        };
        spec.materials = {{1, "fluid"}, {2, "solid"}, {3, "heat_sink"}};
        GridMesh grid(spec);
        MeshEntity* shared = grid.vertexAt(1, 1, 1);
        Solver(grid.database()).splitFluidSolidFaces();
        QVERIFY(onlyChild(grid.region(3))->isAdjacentTo(shared));
        QVERIFY(!onlyChild(grid.region(2))->isAdjacentTo(shared));
    }

    void whatIsNeitherFluidNorSolidKeepsItsVertices()
    {
        GridMesh grid(row({"fluid", "pcb"}));
        ModelEntity* face = grid.face(1, 2);
        const QSet<MeshEntity*> old = MeshChecks::verticesOn(face);
        MeshEntity* element = onlyChild(grid.region(2));
        const QList<MeshEntity*> nodes = MeshChecks::neighbours(element, 0);
        Solver(grid.database()).splitFluidSolidFaces();

        QCOMPARE(MeshChecks::neighbours(element, 0), nodes);
        ModelEntity* newFace = partner(grid, face, AttributeType::SolidFace);
        QVERIFY(!MeshChecks::verticesOn(newFace).intersects(old));
        QCOMPARE(MeshChecks::neighbours(onlyChild(newFace), 3), QList<MeshEntity*>({element}));
        QCOMPARE(MeshChecks::neighbours(onlyChild(face), 3),
                 QList<MeshEntity*>({onlyChild(grid.region(1))}));
    }

    void meshFacesAroundASolidTakeTheCopies()
    {
        // The solids touch each other on a face that stays single.
        GridSpec spec;
        spec.cells = {2, 1, 2};
        spec.regionOf = [](int x, int, int z) { return z == 0 ? 1 : 2 + x; };
        spec.materials = {{1, "fluid"}, {2, "solid"}, {3, "solid"}};
        GridMesh grid(spec);
        const QSet<MeshEntity*> interface =
            MeshChecks::verticesOn(grid.face(1, 2)) | MeshChecks::verticesOn(grid.face(1, 3));
        Solver(grid.database()).splitFluidSolidFaces();
        for (const auto& solids : {std::pair(2, 3), std::pair(0, 2), std::pair(0, 3)}) {
            const ModelEntity* face = grid.face(solids.first, solids.second);
            QVERIFY(!MeshChecks::verticesOn(face).intersects(interface));
        }
        QVERIFY(MeshChecks::verticesOn(grid.face(0, 1)).contains(interface));
        QCOMPARE(MeshChecks::findStaleUpwardList(grid.database()), QString());
    }

    void aFaceOfAnUnmeshedSolidKeepsTheOldVertices()
    {
        // Region 3 is solid and without mesh: its face towards the fluid is neither split nor
        // moved.
        GridSpec spec;
        spec.cells = {2, 1, 2};
        spec.regionOf = [](int x, int, int z) { return z == 0 ? 1 : 2 + x; };
        spec.materials = {{1, "fluid"}, {2, "solid"}, {3, "solid"}};
        spec.unmeshed = {3};
        GridMesh grid(spec);
        const QSet<MeshEntity*> before = MeshChecks::verticesOn(grid.face(1, 3));
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(MeshChecks::verticesOn(grid.face(1, 3)), before);
        QVERIFY(!grid.face(1, 3)->attributes().contains(AttributeType::SolidFace));
    }

    void aMeshFaceWithoutElementBeyondGetsNoTwin()
    {
        GridSpec spec;
        spec.cells = {2, 2, 1};
        spec.regionOf = [](int x, int, int) { return x + 1; };
        spec.materials = {{1, "fluid"}, {2, "solid"}};
        GridMesh grid(spec);
        grid.mesh()->remove(MeshChecks::sorted(grid.region(2)->childIterator()).last());
        LogCapture log;
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(log.messages().last(), QStringLiteral("Created 4 new vertices"));
        QCOMPARE(grid.face(1, 2)->childCount(), 2);
        QCOMPARE(partner(grid, grid.face(1, 2), AttributeType::SolidFace)->childCount(), 1);
    }

    void ofSeveralElementsBeyondTheLastMovesOver()
    {
        GridMesh grid(row({"fluid", "solid"}));
        ModelEntity* face = grid.face(1, 2);
        MeshEntity* meshFace = onlyChild(face);
        MeshEntity* solid = onlyChild(grid.region(2));
        MeshEntity* last = addElementOver(grid, meshFace, grid.region(2));
        Solver(grid.database()).splitFluidSolidFaces();
        MeshEntity* newMeshFace = onlyChild(partner(grid, face, AttributeType::SolidFace));
        QCOMPARE(MeshChecks::neighbours(newMeshFace, 3), QList<MeshEntity*>({last}));
        QCOMPARE(MeshChecks::neighbours(meshFace, 3),
                 QList<MeshEntity*>({onlyChild(grid.region(1)), solid}));
        QVERIFY(!MeshChecks::verticesOn(grid.region(2)).intersects(MeshChecks::verticesOn(face)));
    }

    void leavesMeshEdgesAlone()
    {
        GridMesh grid(row({"fluid", "solid"}));
        const MeshEntity* edge = addMeshEdge(grid, grid.vertexAt(1, 0, 0), grid.vertexAt(2, 0, 0));
        const QList<MeshEntity*> ends = MeshChecks::neighbours(edge, 0);
        Solver(grid.database()).splitFluidSolidFaces();
        QCOMPARE(grid.mesh()->count(1), 1);
        QCOMPARE(MeshChecks::neighbours(edge, 0), ends);
        QCOMPARE(ends.first()->adjacencyAt(1, 0), edge);
    }

    void aSecondCallAddsNothing()
    {
        GridMesh grid(row({"fluid", "solid", "fluid"}));
        Solver solver(grid.database());
        solver.splitFluidSolidFaces();
        const QList<int> before = counts(grid);
        LogCapture log;
        solver.splitFluidSolidFaces();
        QCOMPARE(log.messages(), QStringList({"Created 0 new vertices"}));
        QCOMPARE(counts(grid), before);
    }

    void recordsNoError()
    {
        GridMesh grid(row({"fluid", "solid"}));
        Solver solver(grid.database());
        solver.splitFluidSolidFaces();
        QVERIFY(solver.isOk());
    }

    void handsOutTheSameIdsInEveryRun()
    {
        GridSpec spec = row({"fluid", "solid", "fluid", "solid"});
        spec.cells = {4, 3, 3};
        spec.idSeed = 11;
        GridMesh grid(spec);
        Solver(grid.database()).splitFluidSolidFaces();
        int id = 0;
        for (const auto& regions : {std::pair(1, 2), std::pair(2, 3), std::pair(3, 4)}) {
            ModelEntity* newFace =
                partner(grid, grid.face(regions.first, regions.second), AttributeType::SolidFace);
            QVERIFY(newFace->id() > id);
            id = newFace->id();
            const auto olds =
                MeshChecks::sorted(grid.face(regions.first, regions.second)->childIterator());
            const auto news = MeshChecks::sorted(newFace->childIterator());
            QCOMPARE(news.size(), olds.size());
            for (int i = 0; i < olds.size(); ++i) {
                QCOMPARE(news.at(i)->centroid(), olds.at(i)->centroid());
            }
        }
    }

    void holdsOnBigMeshes_data() { addBigGridRows(); }

    void holdsOnBigMeshes()
    {
        // Two solids that touch, in a fluid, beside a fan and an unmeshed device.
        GridSpec spec = bigGrid();
        spec.regionOf = [](int x, int y, int) {
            if (y < 2 || y > 3) {
                return 1;
            }
            return x < 2 ? 2 : x < 4 ? 3 : x < 5 ? 1 : x < 6 ? 4 : 5;
        };
        spec.materials = {
            {1, "fluid"}, {2, "solid"}, {3, "solid"}, {4, "internal_fan"}, {5, "ecomp_tec"}};
        spec.unmeshed = {5};
        GridMesh grid(spec);
        const RegionRecords before(grid, 5);
        Solver(grid.database()).splitFluidSolidFaces();

        QCOMPARE(before.findDamage(), QString());
        const QSet<MeshEntity*> fluid =
            MeshChecks::verticesOn(grid.region(1)) | MeshChecks::verticesOn(grid.region(4));
        const QSet<MeshEntity*> solid =
            MeshChecks::verticesOn(grid.region(2)) | MeshChecks::verticesOn(grid.region(3));
        QVERIFY(!fluid.intersects(solid));
        for (const auto& regions :
             {std::pair(1, 2), std::pair(1, 3), std::pair(1, 5), std::pair(4, 5)}) {
            ModelEntity* face = grid.face(regions.first, regions.second);
            ModelEntity* newFace = partner(grid, face, AttributeType::SolidFace);
            QVERIFY(newFace);
            QCOMPARE(partner(grid, newFace, AttributeType::FluidFace), face);
            QCOMPARE(newFace->childCount(), face->childCount());
            QVERIFY(fluid.contains(MeshChecks::verticesOn(face)));
            QVERIFY(!fluid.intersects(MeshChecks::verticesOn(newFace)));
            QVERIFY(MeshChecks::coincide(MeshChecks::verticesOn(face),
                                         MeshChecks::verticesOn(newFace)));
        }
        QVERIFY(!grid.face(1, 4)->attributes().contains(AttributeType::SolidFace));
        QVERIFY(!grid.face(2, 3)->attributes().contains(AttributeType::SolidFace));
    }
};

QTEST_APPLESS_MAIN(TestSolverSplit)
#include "tst_SolverSplit.moc"
