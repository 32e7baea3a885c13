#include "GeometryDatabaseTests/TestMesh.h"
#include "PreparationCase.h"
#include "Solver.h"

#include <QTest>

using namespace Ovra::Geo;
using namespace PreparationCase;

namespace
{

constexpr auto Wedge = GridSpec::Shape::Wedge;
constexpr auto Simplex = GridSpec::Shape::Simplex;

const QMap<int, QString> fluidAndSolid = {{1, "fluid"}, {2, "solid"}};

void refresh(Database* database)
{
    database->mesh()->clearUpwardAdjacencies();
    database->mesh()->setUpwardAdjacencies();
}

ModelEntity* twinOf(GridMesh& grid, ModelEntity* face, const AttributeType& link)
{
    return grid.model()->entity(grid.faceDimension(), face->attributes().value(link, 0).toInt());
}

} // namespace

/// Each test names the sequence that goes wrong in the library, and holds that the host's does not.
class TestPreparationOrder : public QObject
{
    Q_OBJECT

private slots:
    void namesTheOperationsInTheirOrder()
    {
        const QStringList expected = {
            "decompose-wedges",    "replicate-moving", "split-fluid-solid", "peripheral",
            "remove-unreferenced", "renumber",         "periodic",          "extruded"};
        QCOMPARE(Ovra::GeoTool::Preparation::operationNames(), expected);
    }

    void aCaseWithoutAttributesHasNothingToDo()
    {
        GridMesh grid(plan({"12"}, {}));
        QCOMPARE(prepareAll(*grid.database()).report,
                 QStringList({"decompose-wedges: nothing to do", "replicate-moving: nothing to do",
                              "split-fluid-solid: nothing to do", "peripheral: nothing to do",
                              "remove-unreferenced: nothing to do", "renumber: nothing to do",
                              "periodic: nothing to do", "extruded: nothing to do"}));
        QCOMPARE(findFault(*grid.database()), QString());
    }

    void reportsInNumbers()
    {
        GridMesh grid(plan({"12"}, fluidAndSolid, Wedge));
        const QStringList report = prepareAll(*grid.database()).report;
        QCOMPARE(report.value(0), "decompose-wedges: 4 wedges cut into 12 tetrahedra, 7 "
                                  "quadrilateral mesh faces into 14 triangles");
        QCOMPARE(report.value(2), "split-fluid-solid: 1 model face between fluid and something "
                                  "else doubled, with 2 new mesh faces and 4 new vertices");
    }

    // Decomposition leaves quadrilaterals without elements: removed, they would leave holes.
    void theSurfaceOfDecomposedWedgesIsWhole()
    {
        for (const unsigned seed : {0U, 1U, 2U, 3U, 4U}) {
            GridSpec spec = plan({"112", "122"}, fluidAndSolid, Wedge);
            spec.cells[2] = 2;
            spec.idSeed = seed;
            GridMesh grid(spec);
            const QMap<int, double> volumes = measures(*grid.database());
            QCOMPARE(prepareAll(*grid.database()).refusal, QString());
            QCOMPARE(findFault(*grid.database()), QString());
            QCOMPARE(grid.mesh()->count(3), 72);
            QVERIFY(areAlike(measures(*grid.database()), volumes));
        }
    }

    // Cut after a split, the two sides of an interface may be cut along different diagonals.
    void bothSidesOfASplitAreCutAlike()
    {
        for (const unsigned seed : {0U, 1U, 2U, 3U, 4U, 5U, 6U, 7U}) {
            GridSpec spec = plan({"12", "12"}, fluidAndSolid, Wedge);
            spec.cells[2] = 3;
            spec.idSeed = seed;
            GridMesh grid(spec);
            QCOMPARE(prepareAll(*grid.database()).refusal, QString());
            ModelEntity* const fluidSide = grid.face(1, 2);
            ModelEntity* const solidSide = twinOf(grid, fluidSide, AttributeType::SolidFace);
            QCOMPARE(shapes(solidSide), shapes(fluidSide));
            QCOMPARE(findSharedVertex(*grid.database(), {1}, {2}), QString());
        }
    }

    void trianglesAndTetrahedraInheritAttributes()
    {
        GridMesh grid(plan({"1"}, fluidAndSolid, Wedge));
        MeshEntity* const wedge = grid.mesh()->entity(3, 1);
        wedge->attributes().insert(AttributeType::InBL, true);
        for (MeshEntity* meshFace : MeshChecks::sorted(grid.mesh()->iterator(2))) {
            meshFace->attributes().insert(AttributeType::Side, meshFace->adjacencyCount(0));
        }
        QCOMPARE(prepare(*grid.database(), {"decompose-wedges"}).refusal, QString());
        int marked = 0;
        for (MeshEntity* element : MeshChecks::sorted(grid.mesh()->iterator(3))) {
            marked += element->attributes().value(AttributeType::InBL, false).toBool() ? 1 : 0;
        }
        QCOMPARE(marked, 3);
        int inherited = 0;
        for (MeshEntity* meshFace : MeshChecks::sorted(grid.mesh()->iterator(2))) {
            QCOMPARE(meshFace->adjacencyCount(0), 3);
            inherited += meshFace->attributes().value(AttributeType::Side, 0).toInt() == 4 ? 1 : 0;
        }
        QCOMPARE(inherited, 8);
    }

    // Split first, a moving region has no fluid beside it any more: it is silently not replicated,
    // or, beside another moving region, its null fluid is dereferenced.
    void splittingFirstWouldLoseTheMotion()
    {
        GridMesh grid(plan({"12"}, fluidAndSolid));
        setAttribute(grid.region(2), AttributeType::MotionType, 1);
        Solver solver(grid.database());
        solver.splitFluidSolidFaces();
        solver.replicateMovingRegions();
        QCOMPARE(grid.model()->count(3), 2);

        refresh(grid.database());
        QCOMPARE(prepare(*grid.database(), {"replicate-moving"}).refusal,
                 "model region 2 moves, but has been split from its fluid already, at model face "
                 "4; moving regions must be replicated before faces are split");
    }

    void movingRegionsAreReplicatedBeforeTheSplit()
    {
        GridMesh grid(plan({"111", "123", "111"}, {{1, "fluid"}, {2, "solid"}, {3, "solid"}}));
        for (const int id : {2, 3}) {
            setAttribute(grid.region(id), AttributeType::MotionType, 1);
        }
        const Outcome outcome = prepareAll(*grid.database());
        QCOMPARE(outcome.refusal, QString());
        QCOMPARE(outcome.report.value(1), "replicate-moving: 2 moving regions replicated, with 2 "
                                          "new elements, 12 new mesh faces and 16 new vertices");
        QCOMPARE(outcome.report.value(2), "split-fluid-solid: nothing to do");
        QCOMPARE(findFault(*grid.database()), QString());
        QCOMPARE(findSharedVertex(*grid.database(), {1, 2, 3}, {4, 5}), QString());
        QVERIFY(areAlike(measures(*grid.database()),
                         {{1, 7.0}, {2, 1.0}, {3, 1.0}, {4, 1.0}, {5, 1.0}}));
    }

    void whatAMovingRegionLeavesIsSplitFromSolids()
    {
        GridMesh grid(plan({"123"}, {{1, "fluid"}, {2, "solid"}, {3, "solid"}}));
        setAttribute(grid.region(2), AttributeType::MotionType, 1);
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        QVERIFY(grid.face(2, 3)->attributes().contains(AttributeType::SolidFace));
        QVERIFY(!grid.face(1, 2)->attributes().contains(AttributeType::SolidFace));
        QCOMPARE(findFault(*grid.database()), QString());
        QCOMPARE(findSharedVertex(*grid.database(), {1, 2}, {3, 4}), QString());
    }

    // Peripheral first, mesh faces of the solid at the rim move to the stator while its elements
    // stay on the rotor.
    void splittingComesBeforePeripheralFaces()
    {
        const QMap<int, QString> materials = {{1, "fluid"}, {2, "rotating_device"}, {3, "solid"}};
        GridMesh naive(plan({"21", "31"}, materials));
        Solver(naive.database()).addPeripheralFaces();
        refresh(naive.database());
        QVERIFY(!findPartedFace(*naive.database()).isEmpty());

        GridMesh grid(plan({"21", "31"}, materials));
        const Outcome outcome = prepareAll(*grid.database());
        QCOMPARE(outcome.refusal, QString());
        QCOMPARE(outcome.report.value(3), "peripheral: 1 model face of rotating devices doubled, "
                                          "with 1 new mesh face and 4 new vertices");
        QCOMPARE(findFault(*grid.database()), QString());
        QCOMPARE(findSharedVertex(*grid.database(), {1}, {2, 3}), QString());
        QCOMPARE(findSharedVertex(*grid.database(), {2}, {3}), QString());
    }

    void peripheralFacesOfDecomposedWedgesHaveTheirElements()
    {
        GridMesh grid(plan({"111", "121", "111"}, {{1, "fluid"}, {2, "rotating_device"}}, Wedge));
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        QCOMPARE(findFault(*grid.database()), QString());
        QCOMPARE(findSharedVertex(*grid.database(), {1}, {2}), QString());
        ModelEntity* const rotor = grid.face(1, 2);
        QCOMPARE(shapes(twinOf(grid, rotor, AttributeType::StatorFace)), shapes(rotor));
        QCOMPARE(rotor->childCount(), 8);
    }

    // The old place of a moving region is fluid: where a rotor touches it, it moves to the stator's
    // vertices, and its replica must name those.
    void replicasFollowTheirOriginalToTheStator()
    {
        GridMesh grid(plan({"23", "11"}, {{1, "fluid"}, {2, "rotating_device"}, {3, "solid"}}));
        setAttribute(grid.region(3), AttributeType::MotionType, 1);
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        QCOMPARE(findFault(*grid.database()), QString());
        const QSet<MeshEntity*> originals = MeshChecks::verticesOn(grid.region(3));
        const QSet<MeshEntity*> replicas = MeshChecks::verticesOn(grid.region(4));
        QCOMPARE(replicas.size(), 8);
        for (MeshEntity* replica : replicas) {
            MeshEntity* const original = grid.mesh()->entity(
                0, replica->attributes().value(AttributeType::OriginalMotionVertex, 0).toInt());
            QVERIFY(originals.contains(original));
            QCOMPARE(original->centroid().toString(), replica->centroid().toString());
            QCOMPARE(original->attributes().value(AttributeType::NewMotionVertex, 0).toInt(),
                     replica->id());
        }
    }

    // The new vertices of a face towards a device without mesh have no place in the model and are
    // used by mesh faces only: they would be removed from under them.
    void theSurfaceOfADeviceWithoutMeshSurvivesTheRemoval()
    {
        GridSpec spec = plan({"111", "121", "111"}, {{1, "fluid"}, {2, "led_device"}});
        spec.cells[2] = 3;
        spec.regionOf = [](int x, int y, int z) { return x == 1 && y == 1 && z == 1 ? 2 : 1; };
        spec.unmeshed = {2};
        GridMesh naive(spec);
        Solver solver(naive.database());
        solver.splitFluidSolidFaces();
        solver.removeUnreferencedMeshEntities();
        QVERIFY(!MeshChecks::findDeadPointer(naive.database()).isEmpty());

        GridMesh grid(spec);
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        QCOMPARE(findFault(*grid.database()), QString());
        ModelEntity* const fluidSide = grid.face(1, 2);
        ModelEntity* const deviceSide = twinOf(grid, fluidSide, AttributeType::SolidFace);
        QCOMPARE(shapes(deviceSide), shapes(fluidSide));
        QCOMPARE(deviceSide->childCount(), 6);
        for (const MeshEntity* vertex : MeshChecks::verticesOn(deviceSide)) {
            QCOMPARE(vertex->parent(), deviceSide);
            QCOMPARE(vertex->adjacencyCount(3), 0);
        }
    }

    // Whoever removes unreferenced entities later, in another run or by the library alone, finds
    // them in place.
    void newVerticesOfADeviceWithoutMeshStandOnItsFace()
    {
        GridSpec spec = plan({"12"}, {{1, "fluid"}, {2, "led_device"}});
        spec.unmeshed = {2};
        GridMesh grid(spec);
        QCOMPARE(prepare(*grid.database(), {"split-fluid-solid"}).refusal, QString());
        ModelEntity* const deviceSide = twinOf(grid, grid.face(1, 2), AttributeType::SolidFace);
        QCOMPARE(MeshChecks::verticesOn(deviceSide).size(), 4);
        for (const MeshEntity* vertex : MeshChecks::verticesOn(deviceSide)) {
            QCOMPARE(vertex->parent(), deviceSide);
        }
        Solver(grid.database()).removeUnreferencedMeshEntities();
        QCOMPARE(MeshChecks::findDeadPointer(grid.database()), QString());
        QCOMPARE(deviceSide->childCount(), 1);
    }

    // A vertex of such a surface may stand on a model edge that does not list the device.
    void verticesOfADevicesEdgesSurviveTheRemovalAndStayInPlace()
    {
        TestMesh naive;
        addDeviceWithOuterFace(naive);
        Solver(&naive.database).removeUnreferencedMeshEntities();
        QVERIFY(!MeshChecks::findDeadPointer(&naive.database).isEmpty());

        TestMesh test;
        addDeviceWithOuterFace(test);
        QCOMPARE(prepare(test.database, {"remove-unreferenced", "renumber"}).refusal, QString());
        QCOMPARE(findFault(test.database), QString());
        QCOMPARE(test.mesh().count(2), 5);
        QCOMPARE(test.mesh().entity(0, 5)->parent(), test.model().entity(1, 1));
    }

    // A replica of a moving device has a surface without elements behind it, too.
    void theSurfaceOfAMovingDeviceSurvivesTheRemoval()
    {
        GridSpec spec = plan({"111", "121", "111"}, {{1, "fluid"}, {2, "led_device"}});
        spec.cells[2] = 3;
        spec.regionOf = [](int x, int y, int z) { return x == 1 && y == 1 && z == 1 ? 2 : 1; };
        spec.unmeshed = {2};
        const auto makeMoving = [](GridMesh& grid) {
            setAttribute(grid.region(2), AttributeType::MotionType, 1);
        };
        GridMesh naive(spec);
        makeMoving(naive);
        Solver solver(naive.database());
        solver.replicateMovingRegions();
        solver.removeUnreferencedMeshEntities();
        QVERIFY(!MeshChecks::findDeadPointer(naive.database()).isEmpty());

        GridMesh grid(spec);
        makeMoving(grid);
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        QCOMPARE(findFault(*grid.database()), QString());
        ModelEntity* const replica = grid.region(3);
        QCOMPARE(replica->adjacencyCount(2), 1);
        QCOMPARE(shapes(replica->adjacencyAt(2, 0)), shapes(grid.face(1, 2)));
    }

    // After renumbering, the tables of children have the old ids as keys, and removal misses.
    void elementsAreRemovedBeforeTheyAreRenumbered()
    {
        const auto makeGap = [](GridMesh& grid) {
            MeshEntity* const copy = MeshEntity::create(3);
            for (MeshEntity* vertex : MeshChecks::neighbours(grid.mesh()->entity(3, 4), 0)) {
                copy->addAdjacency(vertex);
            }
            copy->setId(1000);
            grid.mesh()->add(copy);
            grid.region(1)->addChild(copy);
            grid.mesh()->remove(grid.mesh()->entity(3, 4));
            refresh(grid.database());
        };
        GridSpec spec = plan({"11", "11"}, {{1, "fluid"}}, Wedge);
        GridMesh naive(spec);
        makeGap(naive);
        naive.mesh()->renumber(3);
        Solver(naive.database()).decomposeWedgesToTets();
        QVERIFY(!MeshChecks::findDeadPointer(naive.database()).isEmpty());

        GridMesh grid(spec);
        makeGap(grid);
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        QCOMPARE(findFault(*grid.database()), QString());
        QCOMPARE(grid.mesh()->count(3), 24);
    }

    void removesWhatNothingUsesAndClosesTheGaps()
    {
        GridMesh grid(plan({"1"}, fluidAndSolid));
        for (const int id : {100, 200}) {
            auto* vertex = new MeshVertex;
            vertex->setId(id);
            grid.mesh()->add(vertex);
        }
        const QStringList report = prepareAll(*grid.database()).report;
        QCOMPARE(report.value(4), "remove-unreferenced: 2 vertices, 0 edges and 0 faces removed");
        QCOMPARE(grid.mesh()->count(0), 8);
        QCOMPARE(findFault(*grid.database()), QString());
    }

    void renumberingKeepsLinksBetweenVertices()
    {
        GridMesh grid(plan({"1"}, fluidAndSolid));
        grid.mesh()->remove(addLoneVertex(grid, 9));
        MeshEntity* const last = addLoneVertex(grid, 20);
        grid.mesh()->entity(0, 1)->attributes().insert(AttributeType::ShellVertex, 20);
        QCOMPARE(prepare(*grid.database(), {"renumber"}).report,
                 QStringList{"renumber: 1 vertex given new ids"});
        QCOMPARE(last->id(), 9);
        QCOMPARE(grid.mesh()->entity(0, 1)->attributes().value(AttributeType::ShellVertex, 0),
                 QVariant(9));
    }

    // A solid's mesh edge that ends on the interface is used by faces on the new vertices alone.
    void meshEdgesFollowTheirFaces()
    {
        GridMesh grid(plan({"12"}, fluidAndSolid));
        auto* curve = ModelEntity::create(1);
        grid.model()->add(curve);
        MeshEntity* const edge = MeshEntity::create(1);
        edge->addAdjacency(grid.vertexAt(1, 0, 0));
        edge->addAdjacency(grid.vertexAt(2, 0, 0));
        grid.mesh()->add(edge);
        curve->addChild(edge);
        refresh(grid.database());
        QCOMPARE(edge->adjacencyCount(2), 2);
        QCOMPARE(prepareAll(*grid.database()).refusal, QString());
        QCOMPARE(grid.mesh()->count(1), 1);
        QCOMPARE(edge->adjacencyCount(2), 2);
        QVERIFY(edge->adjacencyAt(0, 0) != grid.vertexAt(1, 0, 0));
        QCOMPARE(findFault(*grid.database()), QString());
    }

    // Shell links stay on the old vertices; a shell between solids has moved to the copies.
    void shellLinksFollowTheirSurfaces()
    {
        GridMesh grid(plan({"23", "11"}, {{1, "fluid"}, {2, "solid"}, {3, "solid"}}));
        setAttribute(grid.region(3), AttributeType::IsShell, true);
        setAttribute(grid.face(2, 3), AttributeType::NewShellFace, grid.face(0, 3)->id());
        for (const int y : {0, 1}) {
            for (const int z : {0, 1}) {
                linkShell(grid.vertexAt(1, y, z), grid.vertexAt(2, y, z));
            }
        }
        QCOMPARE(prepare(*grid.database(), {"split-fluid-solid", "renumber"}).refusal, QString());
        QCOMPARE(findFault(*grid.database()), QString());
        const QSet<MeshEntity*> shell = MeshChecks::verticesOn(grid.region(3));
        for (MeshEntity* vertex : shell) {
            MeshEntity* const partner = grid.mesh()->entity(
                0, vertex->attributes().value(AttributeType::ShellVertex, 0).toInt());
            QVERIFY(partner && shell.contains(partner));
            const Vector offset = partner->centroid() - vertex->centroid();
            QCOMPARE(qAbs(offset.x()), 1.0);
            QCOMPARE(offset.y(), 0.0);
            QCOMPARE(offset.z(), 0.0);
        }
        QVERIFY(!grid.vertexAt(1, 1, 0)->attributes().contains(AttributeType::ShellVertex));
    }

    // A shell between fluids is looked across from the fluid's side, which keeps vertices and links.
    void shellLinksOfTheFluidSideStay()
    {
        GridMesh grid(plan({"121"}, {{1, "fluid"}, {2, "solid"}}));
        setAttribute(grid.region(2), AttributeType::IsShell, true);
        setAttribute(grid.face(1, 2), AttributeType::NewShellFace, grid.face(1, 2)->id());
        for (const int y : {0, 1}) {
            for (const int z : {0, 1}) {
                linkShell(grid.vertexAt(1, y, z), grid.vertexAt(2, y, z));
            }
        }
        QCOMPARE(prepare(*grid.database(), {"split-fluid-solid"}).refusal, QString());
        for (const int y : {0, 1}) {
            for (const int z : {0, 1}) {
                QCOMPARE(grid.vertexAt(1, y, z)->attributes().value(AttributeType::ShellVertex, 0),
                         QVariant(grid.vertexAt(2, y, z)->id()));
            }
        }
    }

    void planarCasesArePreparedToo()
    {
        GridSpec spec = plan({"111", "123", "111"},
                             {{1, "fluid"}, {2, "rotating_device"}, {3, "solid"}}, Simplex);
        spec.planar = true;
        GridMesh grid(spec);
        const QMap<int, double> areas = measures(*grid.database());
        const Outcome outcome = prepareAll(*grid.database());
        QCOMPARE(outcome.refusal, QString());
        QCOMPARE(outcome.report.value(0), "decompose-wedges: nothing to do");
        QVERIFY(outcome.report.value(2).startsWith("split-fluid-solid: 2 model faces"));
        QVERIFY(outcome.report.value(3).startsWith("peripheral: 1 model face"));
        QCOMPARE(findFault(*grid.database()), QString());
        QVERIFY(areAlike(measures(*grid.database()), areas));
        QCOMPARE(findSharedVertex(*grid.database(), {1}, {2, 3}), QString());
        QCOMPARE(findSharedVertex(*grid.database(), {2}, {3}), QString());
    }

    void everythingAtOnce()
    {
        for (const auto shape : {Wedge, Simplex, GridSpec::Shape::Block}) {
            GridSpec spec = plan({"11111", "12341", "12541", "12611", "17111"},
                                 {{1, "fluid"},
                                  {2, "solid"},
                                  {3, "solid"},
                                  {4, "solid"},
                                  {5, "rotating_device"},
                                  {6, "led_device"},
                                  {7, "heat_sink"}},
                                 shape);
            spec.cells[2] = 2;
            spec.unmeshed = {6};
            spec.idSeed = 5;
            GridMesh grid(spec);
            setAttribute(grid.region(4), AttributeType::MotionType, 1);
            QMap<int, double> volumes = measures(*grid.database());
            volumes[8] = volumes[4];
            QCOMPARE(prepareAll(*grid.database()).refusal, QString());
            QCOMPARE(findFault(*grid.database()), QString());
            QVERIFY(areAlike(measures(*grid.database()), volumes));
            QCOMPARE(findSharedVertex(*grid.database(), {1, 4, 7}, {2, 3, 5, 8}), QString());
            QCOMPARE(findSharedVertex(*grid.database(), {5}, {2, 3, 8}), QString());
            QCOMPARE(findSharedVertex(*grid.database(), {8}, {2, 3}), QString());
            for (const QString& line : prepareAll(*grid.database()).report) {
                QVERIFY2(line.endsWith(": nothing to do"), qPrintable(line));
            }
        }
    }

private:
    static void linkShell(MeshVertex* a, MeshVertex* b)
    {
        a->attributes().insert(AttributeType::ShellVertex, b->id());
        b->attributes().insert(AttributeType::ShellVertex, a->id());
    }

    static MeshEntity* addLoneVertex(GridMesh& grid, int id)
    {
        auto* vertex = new MeshVertex;
        vertex->setId(id);
        grid.mesh()->add(vertex);
        return vertex;
    }

    /// A tetrahedron of fluid, a device without mesh below it, and one mesh face of the device that
    /// touches nothing else: its vertex 5 stands on a model edge.
    static void addDeviceWithOuterFace(TestMesh& test)
    {
        auto* fluid = test.addModelRegion();
        auto* device = test.addModelRegion();
        setAttribute(fluid, AttributeType::MaterialType, "fluid");
        setAttribute(device, AttributeType::MaterialType, "led_device");
        auto* outside = test.addModelFace();
        auto* deviceOutside = test.addModelFace();
        auto* edge = test.addModelEdge();
        TestMesh::link(fluid, outside);
        TestMesh::link(device, deviceOutside);
        test.addUnitCell(4, fluid, outside);
        auto* far = test.addVertex(Vector(0, 0, -1), 5, edge);
        auto* first = static_cast<MeshVertex*>(test.mesh().entity(0, 1));
        auto* second = static_cast<MeshVertex*>(test.mesh().entity(0, 2));
        test.addElement(2, {first, second, far}, deviceOutside);
        for (MeshEntity* meshEdge : MeshChecks::sorted(test.mesh().iterator(1))) {
            edge->addChild(meshEdge);
        }
        test.mesh().setUpwardAdjacencies();
    }
};

QTEST_APPLESS_MAIN(TestPreparationOrder)
#include "tst_PreparationOrder.moc"
