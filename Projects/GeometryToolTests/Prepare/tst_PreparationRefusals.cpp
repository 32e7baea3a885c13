#include "GeometryDatabaseTests/TestMesh.h"
#include "ModelFace.h"
#include "PreparationCase.h"
#include "Solver.h"

#include <QTest>

#include <functional>
#include <limits>
#include <memory>

using namespace Ovra::Geo;
using namespace PreparationCase;

namespace
{

constexpr auto Wedge = GridSpec::Shape::Wedge;

const QString goingRound = QStringLiteral(
    "To keep the wedges, name the operations instead of --all or --decompose-wedges: "
    "--replicate-moving --split-fluid-solid --peripheral --remove-unreferenced --renumber "
    "--periodic --extruded");

using Change = std::function<void(GridMesh&)>;

Change attribute(int regionId, const AttributeType& type, const QVariant& value)
{
    return [=](GridMesh& grid) { setAttribute(grid.region(regionId), type, value); };
}

Change both(const Change& first, const Change& second)
{
    return [=](GridMesh& grid) {
        first(grid);
        second(grid);
    };
}

/// A region that lists its face towards another one twice.
Change listedTwice(int regionId, int otherId)
{
    return
        [=](GridMesh& grid) { grid.region(regionId)->addAdjacency(grid.face(regionId, otherId)); };
}

/// A third region at the face between two.
Change boundedToo(int a, int b, int third)
{
    return [=](GridMesh& grid) {
        grid.region(third)->addAdjacency(grid.face(a, b));
        grid.face(a, b)->addAdjacency(grid.region(third));
    };
}

GridSpec withoutMesh(GridSpec spec, int regionId)
{
    spec.unmeshed.insert(regionId);
    return spec;
}

} // namespace

/// What the contract of an operation shuts out is refused, where the library would follow a null
/// pointer or part elements from their surfaces.
class TestPreparationRefusals : public QObject
{
    Q_OBJECT

private slots:
    void refuses_data()
    {
        QTest::addColumn<GridSpec>("spec");
        QTest::addColumn<Change>("change");
        QTest::addColumn<QStringList>("operations");
        QTest::addColumn<QString>("text");
        addReplicationRows();
        addSplitRows();
        addPeripheralRows();
    }

    void refuses()
    {
        QFETCH(GridSpec, spec);
        QFETCH(Change, change);
        QFETCH(QStringList, operations);
        GridMesh grid(spec);
        if (change) {
            change(grid);
        }
        grid.mesh()->clearUpwardAdjacencies();
        grid.mesh()->setUpwardAdjacencies();
        QTEST(prepare(*grid.database(), operations).refusal, "text");
    }

    void wedgesAtHexahedraAreNotCut()
    {
        TestMesh test;
        auto* region = test.addModelRegion();
        auto* face = test.addModelFace();
        TestMesh::link(region, face);
        TestMesh::Vertices v;
        for (const Vector& point : TestMesh::unitCellPoints(8)) {
            v.append(test.addVertex(point, 0, region));
        }
        v.append(test.addVertex(Vector(2, 0, 0), 0, region));
        v.append(test.addVertex(Vector(2, 0, 1), 0, region));
        test.addCell(v.mid(0, 8), region, face);
        test.addCell({v[1], v[8], v[2], v[5], v[9], v[6]}, region, face);
        auto* curve = test.addModelEdge();
        for (MeshEntity* edge : MeshChecks::sorted(test.mesh().iterator(1))) {
            curve->addChild(edge);
        }
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(prepare(test.database, {"decompose-wedges"}).refusal,
                 "mesh region 2, a wedge, shares a quadrilateral with mesh region 1, a "
                 "hexahedron, which is not cut; the mesh would no longer conform. " +
                     goingRound);
        QCOMPARE(test.mesh().count(3), 2);
    }

    void wedgesAtPyramidsAreNotCut()
    {
        TestMesh test;
        auto* region = test.addModelRegion();
        auto* face = test.addModelFace();
        TestMesh::link(region, face);
        TestMesh::Vertices v;
        for (const Vector& point : TestMesh::unitCellPoints(6)) {
            v.append(test.addVertex(point, 0, region));
        }
        v.append(test.addVertex(Vector(0.5, -1, 0.5), 0, region));
        test.addCell(v.mid(0, 6), region, face);
        test.addCell({v[0], v[1], v[4], v[3], v[6]}, region, face);
        auto* curve = test.addModelEdge();
        for (MeshEntity* edge : MeshChecks::sorted(test.mesh().iterator(1))) {
            curve->addChild(edge);
        }
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(prepare(test.database, {"decompose-wedges"}).refusal,
                 "mesh region 1, a wedge, shares a quadrilateral with mesh region 2, a pyramid, "
                 "which is not cut; the mesh would no longer conform. " +
                     goingRound);
        QCOMPARE(test.mesh().count(3), 2);
    }

    // The tetrahedra of a wedge that is inside out are so too: three wrong elements for one.
    void whatWouldComeOutWorseIsNotLetOut()
    {
        GridMesh grid(plan({"1"}, {}, Wedge));
        MeshEntity* const wedge = grid.mesh()->entity(3, 1);
        const QList<MeshEntity*> vertices = MeshChecks::neighbours(wedge, 0);
        for (MeshEntity* vertex : vertices) {
            wedge->removeAdjacency(vertex);
        }
        for (const int position : {3, 4, 5, 0, 1, 2}) {
            wedge->addAdjacency(vertices[position]);
        }
        const QString refusal = prepare(*grid.database(), {"decompose-wedges"}).refusal;
        QVERIFY2(refusal.startsWith("the case would come out unsound, so nothing is written: mesh "
                                    "region "),
                 qPrintable(refusal));
        QVERIFY2(refusal.contains("inside out"), qPrintable(refusal));
    }

    // The next id would be none: numbers begin again far below 0.
    void thereMustBeRoomForNewIds_data()
    {
        QTest::addColumn<QString>("operation");
        for (const char* name :
             {"decompose-wedges", "replicate-moving", "split-fluid-solid", "peripheral"}) {
            QTest::newRow(name) << name;
        }
    }

    void thereMustBeRoomForNewIds()
    {
        QFETCH(QString, operation);
        constexpr int highest = std::numeric_limits<int>::max();
        const QMap<int, QString> materials = {{1, "fluid"}, {2, "solid"}};
        GridMesh grid(plan({"12"}, materials, Wedge));
        auto* lone = new MeshVertex;
        lone->setId(highest);
        grid.mesh()->add(lone);
        QCOMPARE(prepare(*grid.database(), {operation}).refusal,
                 "mesh vertex 2147483647 has an id above 1000000000, which leaves too few for new "
                 "entities; give --renumber first, by itself");
        QCOMPARE(prepare(*grid.database(), {"renumber"}).refusal, QString());
        QCOMPARE(prepare(*grid.database(), {"split-fluid-solid"}).refusal, QString());

        GridMesh other(plan({"12"}, materials, Wedge));
        auto* face = new ModelFace;
        face->setId(highest);
        other.model()->add(face);
        QCOMPARE(prepare(*other.database(), {operation}).refusal,
                 "model face 2147483647 has an id above 1000000000, which leaves too few for new "
                 "entities");
    }

    // The two sides of what has been doubled have vertices of their own, whose ids may call for
    // different diagonals.
    void wedgesAreNotCutAfterDoubling_data()
    {
        QTest::addColumn<QString>("material");
        QTest::addColumn<QString>("operation");
        QTest::newRow("split") << "solid"
                               << "split-fluid-solid";
        QTest::newRow("peripheral") << "rotating_device"
                                    << "peripheral";
    }

    void wedgesAreNotCutAfterDoubling()
    {
        QFETCH(QString, material);
        QFETCH(QString, operation);
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, material}}, Wedge));
        QCOMPARE(prepare(*grid.database(), {operation}).refusal, QString());
        QCOMPARE(prepare(*grid.database(), {"decompose-wedges"}).refusal,
                 "wedges lie beside model face 2, which has been doubled already: its two sides "
                 "might be cut along different diagonals; decompose wedges first");
    }

    void wedgesAreNotCutAfterReplication()
    {
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "solid"}}, Wedge));
        setAttribute(grid.region(2), AttributeType::MotionType, 1);
        QCOMPARE(prepare(*grid.database(), {"replicate-moving"}).refusal, QString());
        QCOMPARE(prepare(*grid.database(), {"decompose-wedges"}).refusal,
                 "model region 2 has wedges and has been replicated already: the replica might "
                 "be cut along other diagonals; decompose wedges first");
    }

    // Decomposed twice over in one run, the tables of children would still have the ids from
    // before the first renumbering as keys; a case read anew has not.
    void decompositionAfterGapsLeavesNoDeadChildren()
    {
        GridMesh grid(plan({"1"}, {}, Wedge));
        QCOMPARE(prepare(*grid.database(), {"decompose-wedges"}).refusal, QString());
        QCOMPARE(MeshChecks::findDeadPointer(grid.database()), QString());
        QCOMPARE(prepare(*grid.database(), {"decompose-wedges"}).report,
                 QStringList{"decompose-wedges: nothing to do"});
    }

    // The removed number would be a stale link, and after renumbering the name of another vertex.
    void verticesThatLinksNameAreNotRemoved_data()
    {
        QTest::addColumn<QString>("tag");
        for (const char* tag : {"shell_vertex", "rotor_vertex", "stator_vertex",
                                "original_motion_vertex", "new_motion_vertex"}) {
            QTest::newRow(tag) << tag;
        }
    }

    void verticesThatLinksNameAreNotRemoved()
    {
        QFETCH(QString, tag);
        GridMesh grid(plan({"1"}, {}));
        auto* lone = new MeshVertex;
        grid.mesh()->add(lone);
        grid.mesh()->entity(0, 3)->attributes().insert(AttributeType::fromString(tag), lone->id());
        QCOMPARE(prepare(*grid.database(), {"remove-unreferenced"}).refusal,
                 QStringLiteral("%1 of mesh vertex 3 names mesh vertex %2, which no element uses "
                                "and which would be removed")
                     .arg(tag)
                     .arg(lone->id()));
    }

    void unsoundCasesAreRefused_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("entity");
        QTest::newRow("element without parent") << Change([](GridMesh& grid) {
            MeshEntity* const element = grid.mesh()->entity(3, 1);
            element->parent()->removeChild(element);
        }) << "mesh region 1";
        QTest::newRow("mesh face without parent") << Change([](GridMesh& grid) {
            MeshEntity* const meshFace = grid.mesh()->entity(2, 2);
            meshFace->parent()->removeChild(meshFace);
        }) << "mesh face 2";
        QTest::newRow("vertex twice") << Change([](GridMesh& grid) {
            MeshEntity* const element = grid.mesh()->entity(3, 1);
            element->replaceAdjacency(element->adjacencyAt(0, 0), element->adjacencyAt(0, 1));
        }) << "mesh region 1";
        QTest::newRow("link to a missing vertex") << Change([](GridMesh& grid) {
            grid.mesh()->entity(0, 3)->attributes().insert(AttributeType::ShellVertex, 99);
        }) << "mesh vertex 99";
        QTest::newRow("stand-in face that does not exist")
            << both(attribute(2, AttributeType::MeshByExtrusion, true),
                    [](GridMesh& grid) {
                        setAttribute(grid.face(1, 2), AttributeType::NonExtrudedFace, 77);
                    })
            << "model face 77";
        QTest::newRow("model entity that is gone") << Change([](GridMesh& grid) {
            auto* spare = new ModelFace;
            grid.model()->add(spare);
            grid.region(1)->addAdjacency(spare);
            grid.model()->remove(spare);
        }) << "model region 1 lists among its faces one that is no longer there";
        QTest::newRow("child that stands elsewhere")
            << Change([](GridMesh& grid) { grid.mesh()->entity(3, 1)->setParent(grid.region(2)); })
            << "model region 1 has the child 1, which stands elsewhere";
        QTest::newRow("face of two vertices") << Change([](GridMesh& grid) {
            MeshEntity* const meshFace = MeshEntity::create(2);
            meshFace->addAdjacency(grid.mesh()->entity(0, 1));
            meshFace->addAdjacency(grid.mesh()->entity(0, 2));
            grid.mesh()->add(meshFace);
            grid.face(1, 2)->addChild(meshFace);
        }) << "mesh face 12";
        QTest::newRow("mesh face on a region")
            << Change([](GridMesh& grid) { grid.region(1)->addChild(grid.mesh()->entity(2, 2)); })
            << "mesh face 2";
        QTest::newRow("link one way")
            << Change([](GridMesh& grid) { grid.region(2)->removeAdjacency(grid.face(1, 2)); })
            << "model face 2";
        QTest::newRow("three elements at a face") << Change([](GridMesh& grid) {
            MeshEntity* const twin = MeshEntity::create(3);
            for (MeshEntity* vertex : MeshChecks::neighbours(grid.mesh()->entity(3, 2), 0)) {
                twin->addAdjacency(vertex);
            }
            grid.mesh()->add(twin);
            grid.region(2)->addChild(twin);
        }) << "lies between 3 elements";
        QTest::newRow("text for a number")
            << attribute(1, AttributeType::MaterialId, "copper") << "model region 1";
        QTest::newRow("point at infinity") << Change([](GridMesh& grid) {
            static_cast<MeshVertex*>(grid.mesh()->entity(0, 3))->setPoint(Vector(qInf(), 0, 0));
        }) << "mesh vertex 3";
    }

    void unsoundCasesAreRefused()
    {
        QFETCH(Change, change);
        QFETCH(QString, entity);
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "solid"}}));
        change(grid);
        grid.mesh()->clearUpwardAdjacencies();
        grid.mesh()->setUpwardAdjacencies();
        const QString refusal = prepareAll(*grid.database()).refusal;
        QVERIFY2(refusal.startsWith("the case is unsound, see ovrageo verify: "),
                 qPrintable(refusal));
        QVERIFY2(refusal.contains(entity), qPrintable(refusal));
    }

private:
    static void addRow(const char* name, const GridSpec& spec, const Change& change,
                       const QStringList& operations, const QString& text)
    {
        QTest::newRow(name) << spec << change << operations << text;
    }

    static void addReplicationRows()
    {
        const Change moving = attribute(2, AttributeType::MotionType, 1);
        const QStringList replicate = {"replicate-moving"};
        addRow("moving region in solids", plan({"12"}, {{1, "solid"}, {2, "solid"}}), moving,
               replicate,
               "model region 2 (material_type \"solid\") moves, but no region beside it is plain "
               "fluid at rest that could take its place");
        addRow("moving region beside moving ones only",
               plan({"123"}, {{1, "fluid"}, {2, "solid"}, {3, "solid"}}),
               both(moving, attribute(3, AttributeType::MotionType, 1)), replicate,
               "model region 3 (material_type \"solid\") moves, but no region beside it is plain "
               "fluid at rest that could take its place");
        addRow("moving region beside a moving fluid only",
               plan({"123"}, {{1, "fluid"}, {2, "fluid"}, {3, "solid"}}),
               both(moving, attribute(3, AttributeType::MotionType, 1)), replicate,
               "model region 3 (material_type \"solid\") moves, but no region beside it is plain "
               "fluid at rest that could take its place");
        addRow("moving region beside a device only", plan({"12"}, {{1, "heat_sink"}, {2, "solid"}}),
               moving, replicate,
               "model region 2 (material_type \"solid\") moves, but no region beside it is plain "
               "fluid at rest that could take its place");
        // What has been replicated is fluid, but the library takes it for nobody's.
        addRow("moving region beside a replicated one only",
               plan({"123"}, {{1, "fluid"}, {2, "fluid"}, {3, "solid"}}),
               both(attribute(2, AttributeType::NewMotionRegion, 1),
                    attribute(3, AttributeType::MotionType, 1)),
               replicate,
               "model region 3 (material_type \"solid\") moves, but no region beside it is plain "
               "fluid at rest that could take its place");
        addRow("moving region beside a suppressed fluid only",
               plan({"12"}, {{1, "fluid"}, {2, "solid"}}),
               both(moving, attribute(1, AttributeType::IsSuppressed, true)), replicate,
               "model region 2 (material_type \"solid\") moves, but no region beside it is plain "
               "fluid at rest that could take its place");
        addRow("face listed twice", plan({"12"}, {{1, "fluid"}, {2, "solid"}}),
               both(moving, listedTwice(2, 1)), replicate,
               "model region 2 lists model face 2 more than once; it would be doubled as often");
        // A wedge case first: what cannot be done later is told before anything is done.
        addRow("told ahead of the wedges", plan({"12"}, {{2, "solid"}}, Wedge), moving,
               {"decompose-wedges", "replicate-moving"},
               "model region 2 (material_type \"solid\") moves, but no region beside it is plain "
               "fluid at rest that could take its place");
    }

    static void addSplitRows()
    {
        const QStringList split = {"split-fluid-solid"};
        addRow("neither fluid nor solid", plan({"12"}, {{1, "fluid"}, {2, "porous"}}), {}, split,
               "model region 2 (material_type \"porous\") lies beside the fluid model region 1 at "
               "model face 2 and is neither fluid nor \"solid\", so that its elements would lose "
               "their surface");
        addRow("no material", plan({"12"}, {{1, "fluid"}}), {}, split,
               "model region 2 (no material_type) lies beside the fluid model region 1 at model "
               "face 2 and is neither fluid nor \"solid\", so that its elements would lose their "
               "surface");
        addRow("device with a mesh", plan({"12"}, {{1, "fluid"}, {2, "led_device"}}), {}, split,
               "model region 2 (material_type \"led_device\") is a device of a kind that has no "
               "mesh, but has 1 element");
        addRow("face listed twice", plan({"12"}, {{1, "fluid"}, {2, "solid"}}), listedTwice(2, 1),
               split,
               "model region 2 lists model face 2 more than once; it would be doubled as often");
        addRow(
            "face between three regions", plan({"12", "33"}, {{1, "fluid"}, {2, "solid"}}),
            boundedToo(1, 2, 3), split,
            "model face 2 lies between 3 regions, fluid and other; only a face between two can be "
            "split");
        // It touches the solid along a face and the fluid along an edge only.
        addRow("neither fluid nor solid, round the corner",
               plan({"12", " 3"}, {{1, "fluid"}, {2, "solid"}, {3, "porous"}}), {}, split,
               "doubling the model faces between fluid and something else would take elements away "
               "from 1 mesh face: a region that is neither fluid nor \"solid\" touches fluid and "
               "solid");
        addRow(
            "half of the interface has no solid behind it",
            plan({"12"}, {{1, "fluid"}, {2, "solid"}}),
            [](GridMesh& grid) { addSurplusFace(grid); }, split,
            "mesh face 12 on model face 2 does not lie between one element of model region 1 and "
            "one of model region 2");
        // It would get no twin, and the fluid would keep the solid's surface.
        addRow(
            "fluid on both sides of the interface", plan({"122"}, {{1, "fluid"}, {2, "solid"}}),
            [](GridMesh& grid) { grid.region(1)->addChild(grid.mesh()->entity(3, 2)); }, split,
            "mesh face 2 on model face 2 does not lie between one element of model region 1 and "
            "one of model region 2");
        // The library moves the vertices of doubled faces alone, and here is none.
        addRow("fluid and solid share an edge alone",
               plan({"1 ", " 2"}, {{1, "fluid"}, {2, "solid"}}), {}, split,
               "model region 1 (material_type \"fluid\") and model region 2 (material_type "
               "\"solid\") share mesh vertex 5, away from all faces between them; fluid and what "
               "is not must touch along whole faces");
    }

    static void addPeripheralRows()
    {
        const QStringList peripheral = {"peripheral"};
        addRow("two devices touch",
               plan({"123"}, {{1, "fluid"}, {2, "rotating_device"}, {3, "rotating_device"}}), {},
               peripheral,
               "model region 2 (material_type \"rotating_device\") and model region 3 "
               "(material_type \"rotating_device\") touch at model face 3; there must be fluid "
               "between two rotating devices");
        addRow("two devices share an edge",
               plan({"21", "13"}, {{1, "fluid"}, {2, "rotating_device"}, {3, "rotating_device"}}),
               {}, peripheral,
               "model region 2 (material_type \"rotating_device\") and model region 3 "
               "(material_type \"rotating_device\") share mesh vertex 5; there must be fluid "
               "between two rotating devices");
        // The library would come to the face a second time, when no region is left beyond it.
        addRow("face listed twice", plan({"12"}, {{1, "fluid"}, {2, "rotating_device"}}),
               listedTwice(2, 1), peripheral,
               "model region 2 lists model face 2 more than once; it would be doubled as often");
        addRow("face between three regions",
               plan({"12", "33"}, {{1, "fluid"}, {2, "rotating_device"}, {3, "solid"}}),
               boundedToo(1, 2, 3), peripheral,
               "model face 2 of model region 2 (material_type \"rotating_device\") lies between 3 "
               "regions, not two");
        const QStringList splitFirst = {"split-fluid-solid", "peripheral"};
        addRow("fluid touches the device along an edge alone",
               plan({"23", "31"}, {{1, "fluid"}, {2, "rotating_device"}, {3, "solid"}}), {},
               splitFirst,
               "model region 1 (material_type \"fluid\") and model region 2 (material_type "
               "\"rotating_device\") share mesh vertex 5, away from all faces between them; a "
               "rotating device must touch fluid along whole faces");
        addRow("devices share an edge between solids",
               plan({"23", "34"}, {{2, "rotating_device"}, {3, "solid"}, {4, "rotating_device"}}),
               {}, splitFirst,
               "model region 2 (material_type \"rotating_device\") and model region 4 "
               "(material_type \"rotating_device\") share mesh vertex 5, away from all faces "
               "between them; a rotating device must touch fluid along whole faces");
        addRow("device without mesh",
               withoutMesh(plan({"12"}, {{1, "fluid"}, {2, "rotating_device"}}), 2), {}, peripheral,
               "model region 2 (material_type \"rotating_device\") has no mesh, but the fluid "
               "beside it has");
        addRow("solid at the rim",
               plan({"21", "31"}, {{1, "fluid"}, {2, "rotating_device"}, {3, "solid"}}), {},
               peripheral,
               "model region 3 (material_type \"solid\") shares mesh vertex 5 with the rim of "
               "model region 2 (material_type \"rotating_device\"); it must be split from the "
               "fluid first (--split-fluid-solid)");
        addRow(
            "mesh face without fluid behind it",
            plan({"12"}, {{1, "fluid"}, {2, "rotating_device"}}),
            [](GridMesh& grid) { addSurplusFace(grid); }, peripheral,
            "mesh face 12 on model face 2 has no element on one side of the rotating device, "
            "or more than one; there must be one on each");
    }

    /// One more mesh face on the interface, away from the others and used by no element.
    static void addSurplusFace(GridMesh& grid)
    {
        MeshEntity* const meshFace = MeshEntity::create(2);
        for (const Vector& point : {Vector(1, 5, 0), Vector(1, 6, 0), Vector(1, 5, 1)}) {
            auto* vertex = new MeshVertex;
            vertex->setPoint(point);
            grid.mesh()->add(vertex);
            meshFace->addAdjacency(vertex);
        }
        grid.mesh()->add(meshFace);
        grid.face(1, 2)->addChild(meshFace);
    }
};

QTEST_APPLESS_MAIN(TestPreparationRefusals)
#include "tst_PreparationRefusals.moc"
