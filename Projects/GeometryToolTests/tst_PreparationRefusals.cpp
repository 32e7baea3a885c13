#include "../GeometryDatabaseTests/TestMesh.h"
#include "PreparationCase.h"
#include "Solver.h"

#include <QTest>

#include <functional>
#include <memory>

using namespace Ovra::Geo;
using namespace PreparationCase;

namespace
{

constexpr auto Wedge = GridSpec::Shape::Wedge;

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
        if (change)
            change(grid);
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
        for (const Vector& point : TestMesh::unitCellPoints(8))
            v.append(test.addVertex(point, 0, region));
        v.append(test.addVertex(Vector(2, 0, 0), 0, region));
        v.append(test.addVertex(Vector(2, 0, 1), 0, region));
        test.addCell(v.mid(0, 8), region, face);
        test.addCell({v[1], v[8], v[2], v[5], v[9], v[6]}, region, face);
        auto* curve = test.addModelEdge();
        for (MeshEntity* edge : MeshChecks::sorted(test.mesh().iterator(1)))
            curve->addChild(edge);
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(prepare(test.database, {"decompose-wedges"}).refusal,
                 "mesh region 2, a wedge, shares a quadrilateral with mesh region 1, a "
                 "hexahedron, which is not cut; the mesh would no longer conform");
        QCOMPARE(test.mesh().count(3), 2);
    }

    // The two sides of what has been doubled have vertices of their own, whose ids may call for
    // different diagonals.
    void wedgesAreNotCutAfterASplit()
    {
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "solid"}}, Wedge));
        QCOMPARE(prepare(*grid.database(), {"split-fluid-solid"}).refusal, QString());
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

    // Decomposed twice over in one session, the tables of children would still have the ids from
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
    void verticesThatLinksNameAreNotRemoved()
    {
        GridMesh grid(plan({"1"}, {}));
        auto* lone = new MeshVertex;
        grid.mesh()->add(lone);
        grid.mesh()->entity(0, 3)->attributes().insert(AttributeType::ShellVertex, lone->id());
        QCOMPARE(prepare(*grid.database(), {"remove-unreferenced"}).refusal,
                 QStringLiteral("shell_vertex of mesh vertex 3 names mesh vertex %1, which no "
                                "element uses and which would be removed")
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
        addRow("moving region beside a suppressed fluid only",
               plan({"12"}, {{1, "fluid"}, {2, "solid"}}),
               both(moving, attribute(1, AttributeType::IsSuppressed, true)), replicate,
               "model region 2 (material_type \"solid\") moves, but no region beside it is plain "
               "fluid at rest that could take its place");
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
        addRow(
            "face between three regions", plan({"12", "33"}, {{1, "fluid"}, {2, "solid"}}),
            [](GridMesh& grid) {
                grid.region(3)->addAdjacency(grid.face(1, 2));
                grid.face(1, 2)->addAdjacency(grid.region(3));
            },
            split,
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
            "mesh face 12 on model face 2 has 0 elements, not one on each side");
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
