#include "GridMesh.h"
#include "LogCapture.h"
#include "MeshChecks.h"
#include "Solver.h"
#include "TestMesh.h"

#include <QTest>

using namespace Ovra::Geo;
using Shape = GridSpec::Shape;

namespace
{

QStringList found(int meshFaces, int meshEdges, int vertices)
{
    const QString text = QStringLiteral("There are %1 unreferenced mesh entities of dimension %2");
    return {text.arg(meshFaces).arg(2), text.arg(meshEdges).arg(1), text.arg(vertices).arg(0)};
}

QStringList foundInPlane(int meshEdges, int vertices)
{
    return found(0, meshEdges, vertices).mid(1);
}

QList<int> counts(const Mesh& mesh)
{
    return {mesh.count(0), mesh.count(1), mesh.count(2), mesh.count(3)};
}

QStringList clean(Database* database)
{
    LogCapture log;
    Solver(database).removeUnreferencedMeshEntities();
    return log.messages();
}

/// A tetrahedron with all its sides, and a triangle with its edges apart from it.
class CellAndTriangle : public TestMesh
{
public:
    explicit CellAndTriangle(ModelFace* triangleParent = nullptr)
        : region(addModelRegion())
        , cell(addUnitCell(4, region))
    {
        for (const Vector& point : {Vector(5, 0, 0), Vector(6, 0, 0), Vector(5, 1, 0)}) {
            corners.append(addVertex(point));
        }
        triangle = addElement(2, corners, triangleParent);
        for (int i = 0; i < 3; ++i) {
            edges.append(addElement(1, {corners.at(i), corners.at((i + 1) % 3)}));
        }
    }

    void classifyTriangleOn(ModelEntity* parent)
    {
        parent->addChild(triangle);
        for (MeshVertex* corner : corners) {
            parent->addChild(corner);
        }
    }

    ModelRegion* region;
    MeshEntity* cell;
    Vertices corners;
    MeshEntity* triangle = nullptr;
    QList<MeshEntity*> edges;
};

void setMaterial(ModelEntity* region, const char* material)
{
    region->attributes().insert(AttributeType::MaterialType, QString::fromLatin1(material));
}

} // namespace

class TestSolverCleaning : public QObject
{
    Q_OBJECT

private slots:
    void leavesAWholeMeshAlone()
    {
        TestMesh model;
        model.addUnitCell(8, model.addModelRegion(), model.addModelFace());
        model.mesh().setUpwardAdjacencies();
        const QList<int> before = counts(model.mesh());
        QCOMPARE(before, QList<int>({8, 12, 6, 1}));
        QCOMPARE(clean(&model.database), found(0, 0, 0));
        QCOMPARE(counts(model.mesh()), before);
    }

    void leavesAnEmptyModelAlone()
    {
        Database database;
        QCOMPARE(clean(&database), foundInPlane(0, 0));
    }

    void goesDownFromTheFaces()
    {
        // Only when the triangle is gone do its edges lie bare.
        CellAndTriangle model;
        model.mesh().setUpwardAdjacencies();
        QCOMPARE(clean(&model.database), found(1, 3, 3));
        QCOMPARE(counts(model.mesh()), QList<int>({4, 6, 4, 1}));
        QCOMPARE(MeshChecks::findDeadPointer(&model.database), QString());
        QCOMPARE(MeshChecks::findStaleUpwardList(&model.database), QString());
    }

    void anEdgeWithAnotherFaceStays()
    {
        CellAndTriangle model;
        auto* wing = model.addElement(2, {model.corners.at(0), model.corners.at(1),
                                          static_cast<MeshVertex*>(model.cell->adjacencyAt(0, 0))});
        auto* tip = model.addVertex(Vector(5, 0, 5));
        model.addElement(3,
                         {model.corners.at(0), model.corners.at(1),
                          static_cast<MeshVertex*>(model.cell->adjacencyAt(0, 0)), tip},
                         model.region);
        model.mesh().setUpwardAdjacencies();
        QCOMPARE(clean(&model.database), found(1, 2, 1));
        QVERIFY(MeshChecks::sorted(model.mesh().iterator(1)).contains(model.edges.at(0)));
        QVERIFY(MeshChecks::sorted(model.mesh().iterator(2)).contains(wing));
        QCOMPARE(MeshChecks::findDeadPointer(&model.database), QString());
    }

    void verticesNeedAnElementAndNotAFace()
    {
        TestMesh model;
        model.addUnitCell(4, model.addModelRegion());
        auto* a = model.addVertex(Vector(5, 0, 0));
        auto* b = model.addVertex(Vector(6, 0, 0));
        model.addElement(1, {a, b});
        model.mesh().setUpwardAdjacencies();
        QCOMPARE(clean(&model.database), found(0, 1, 2));
    }

    void theSurfaceOfAnUnmeshedDeviceStaysAndCounts_data()
    {
        QTest::addColumn<QString>("material");
        QTest::addColumn<bool>("stays");
        for (const char* kind : {"ecomp_2resist", "ecomp_tec", "led_device"}) {
            QTest::newRow(kind) << kind << true;
        }
        QTest::newRow("solid") << "solid" << false;
        QTest::newRow("LED_device") << "LED_device" << false;
    }

    void theSurfaceOfAnUnmeshedDeviceStaysAndCounts()
    {
        QFETCH(QString, material);
        QFETCH(bool, stays);
        CellAndTriangle model;
        ModelRegion* fluid = model.addModelRegion();
        setMaterial(fluid, "fluid");
        ModelRegion* device = model.addModelRegion();
        device->attributes().insert(AttributeType::MaterialType, material);
        ModelFace* face = model.addModelFace();
        TestMesh::link(face, fluid);
        TestMesh::link(face, device);
        model.classifyTriangleOn(face);
        model.mesh().setUpwardAdjacencies();
        QCOMPARE(clean(&model.database), stays ? found(1, 0, 3) : found(1, 3, 3));
        QCOMPARE(counts(model.mesh()), stays ? QList<int>({7, 9, 5, 1}) : QList<int>({4, 6, 4, 1}));
        QCOMPARE(MeshChecks::findDeadPointer(&model.database), QString());
        QCOMPARE(MeshChecks::findStaleUpwardList(&model.database), QString());
    }

    void onlyTheParentsOwnListKeepsAVertex()
    {
        // The vertices lie on a model edge, which does not list the device, so they go, and the
        // mesh face on the device is left with vertices that are no more.
        CellAndTriangle model;
        ModelRegion* device = model.addModelRegion();
        setMaterial(device, "led_device");
        ModelFace* face = model.addModelFace();
        TestMesh::link(face, device);
        ModelEdge* modelEdge = model.addModelEdge();
        TestMesh::link(modelEdge, face);
        model.classifyTriangleOn(face);
        modelEdge->addChild(model.corners.at(0));
        face->addChild(model.corners.at(1));
        modelEdge->addChild(model.corners.at(2));
        model.mesh().setUpwardAdjacencies();
        const int kept = model.corners.at(1)->id();
        const QList<int> gone = {model.corners.at(0)->id(), model.corners.at(2)->id()};
        QCOMPARE(clean(&model.database), found(1, 0, 3));
        QCOMPARE(model.mesh().count(0), 5);
        QVERIFY(model.mesh().entity(0, kept));
        for (const int id : gone) {
            QVERIFY(!model.mesh().entity(0, id));
        }
        QCOMPARE(model.mesh().count(2), 5);
    }

    void aModelEdgeMayListTheDeviceItself()
    {
        CellAndTriangle model;
        ModelRegion* device = model.addModelRegion();
        setMaterial(device, "led_device");
        ModelEdge* modelEdge = model.addModelEdge();
        modelEdge->addAdjacency(device);
        for (MeshVertex* corner : model.corners) {
            modelEdge->addChild(corner);
        }
        for (MeshEntity* edge : model.edges) {
            modelEdge->addChild(edge);
        }
        model.mesh().remove(model.triangle);
        model.mesh().setUpwardAdjacencies();
        QCOMPARE(clean(&model.database), found(0, 3, 3));
        QCOMPARE(counts(model.mesh()), QList<int>({7, 9, 4, 1}));
    }

    void aVertexWithoutParentGoes()
    {
        TestMesh model;
        model.addUnitCell(4, model.addModelRegion());
        auto* alone = model.addVertex(Vector(9, 9, 9));
        model.mesh().setUpwardAdjacencies();
        const int id = alone->id();
        QCOMPARE(clean(&model.database), found(0, 0, 1));
        QVERIFY(!model.mesh().entity(0, id));
    }

    void theCopiesTowardsAnUnmeshedDeviceGo()
    {
        GridSpec spec;
        spec.cells = {2, 1, 1};
        spec.regionOf = [](int x, int, int) { return x + 1; };
        spec.materials = {{1, "fluid"}, {2, "led_device"}};
        spec.unmeshed = {2};
        GridMesh grid(spec);
        Solver solver(grid.database());
        solver.splitFluidSolidFaces();
        QCOMPARE(grid.mesh()->count(0), 12);
        QCOMPARE(sortedIds(solver.getUnreferencedMeshVertices()), QList<int>({13, 14, 15, 16}));
        const int meshFaces = grid.mesh()->count(2);
        QCOMPARE(clean(grid.database()), found(1, 0, 4));
        QCOMPARE(grid.mesh()->count(2), meshFaces);
        QCOMPARE(grid.mesh()->count(0), 8);
    }

    void withoutUpwardListsNothingIsReferenced()
    {
        TestMesh model;
        model.addUnitCell(4, model.addModelRegion());
        QCOMPARE(clean(&model.database), found(4, 6, 4));
        QCOMPARE(counts(model.mesh()), QList<int>({0, 0, 0, 1}));
    }

    void theIdsOfTheRemovedStayGaps()
    {
        CellAndTriangle model;
        model.mesh().setUpwardAdjacencies();
        clean(&model.database);
        QCOMPARE(model.addVertex(Vector())->id(), 8);
        QVERIFY(!model.mesh().entity(0, 5));
    }

    void inAPlaneTheFacesAreTheElements()
    {
        GridSpec spec;
        spec.cells = {3, 2, 1};
        spec.planar = true;
        spec.regionOf = [](int x, int, int) { return x < 2 ? 1 : 2; };
        spec.materials = {{1, "fluid"}, {2, "solid"}};
        GridMesh grid(spec);
        QCOMPARE(clean(grid.database()), foundInPlane(0, 0));

        for (MeshEntity* element : MeshChecks::sorted(grid.region(2)->childIterator())) {
            grid.mesh()->remove(element);
        }
        QCOMPARE(clean(grid.database()), foundInPlane(4, 3));
        QCOMPARE(grid.mesh()->count(2), 4);
        QCOMPARE(grid.mesh()->count(0), 9);
        QCOMPARE(MeshChecks::findDeadPointer(grid.database()), QString());
    }

    void inAPlaneADeviceKeepsItsEdges()
    {
        GridSpec spec;
        spec.cells = {2, 1, 1};
        spec.planar = true;
        spec.regionOf = [](int x, int, int) { return x + 1; };
        spec.materials = {{1, "fluid"}, {2, "led_device"}};
        spec.unmeshed = {2};
        GridMesh grid(spec);
        grid.mesh()->remove(MeshChecks::sorted(grid.region(1)->childIterator()).first());
        QCOMPARE(grid.mesh()->count(1), 4);
        LogCapture log;
        Solver(grid.database()).removeUnreferencedMeshEntities();
        QCOMPARE(log.messages().first(),
                 QStringLiteral("There are 4 unreferenced mesh entities of dimension 1"));
        QCOMPARE(grid.mesh()->count(1), 1);
        const ModelEntity* const between = grid.face(1, 2);
        QVERIFY(between);
        QCOMPARE(between->childCount(), 1);
    }

    void listsUnreferencedVerticesWithoutRemoving()
    {
        CellAndTriangle model;
        model.mesh().setUpwardAdjacencies();
        LogCapture log;
        Solver solver(&model.database);
        const QList<MeshEntity*> vertices = solver.getUnreferencedMeshVertices();
        QCOMPARE(sortedIds(vertices), QList<int>({5, 6, 7}));
        QCOMPARE(model.mesh().count(0), 7);
        QCOMPARE(log.messages(), QStringList());
    }

    void listsInTheOrderOfTheWalk()
    {
        TestMesh model;
        model.addModelRegion();
        for (int i = 0; i < 100; ++i) {
            model.addVertex(Vector(i, 0, 0));
        }
        QList<MeshEntity*> walk;
        for (auto i = model.mesh().iterator(0); i.hasNext();) {
            walk.append(i.next().value());
        }
        for (MeshEntity* vertex : std::as_const(walk)) {
            vertex->setId(1000 - vertex->id()); // the table is not told: the walk stays as it was
        }
        const Solver& solver = &model.database;
        QCOMPARE(Solver(solver).getUnreferencedMeshVertices(), walk);
    }

    void listsAlsoWhatADeviceKeeps()
    {
        CellAndTriangle model;
        ModelRegion* device = model.addModelRegion();
        setMaterial(device, "led_device");
        ModelFace* face = model.addModelFace();
        TestMesh::link(face, device);
        model.classifyTriangleOn(face);
        model.mesh().setUpwardAdjacencies();
        QCOMPARE(Solver(&model.database).getUnreferencedMeshVertices().size(), 3);
    }

    void inAPlaneVerticesAreMeasuredAgainstFaces()
    {
        TestMesh model;
        ModelFace* face = model.addModelFace();
        auto* a = model.addVertex(Vector(0, 0, 0));
        auto* b = model.addVertex(Vector(1, 0, 0));
        auto* c = model.addVertex(Vector(0, 1, 0));
        auto* alone = model.addVertex(Vector(2, 2, 0));
        model.addElement(2, {a, b, c}, face);
        model.mesh().setUpwardAdjacencies();
        QCOMPARE(Solver(&model.database).getUnreferencedMeshVertices(),
                 QList<MeshEntity*>({alone}));
    }

    void removesAllThatARegionLeavesBehind_data()
    {
        QTest::addColumn<int>("shape");
        QTest::newRow("hexahedra") << static_cast<int>(Shape::Block);
        QTest::newRow("wedges") << static_cast<int>(Shape::Wedge);
        QTest::newRow("tetrahedra") << static_cast<int>(Shape::Simplex);
    }

    void removesAllThatARegionLeavesBehind()
    {
        QFETCH(int, shape);
        GridSpec spec;
        spec.cells = {6, 4, 4};
        spec.shape = static_cast<Shape>(shape);
        spec.idSeed = 3;
        spec.regionOf = [](int x, int, int) { return x < 3 ? 1 : 2; };
        spec.materials = {{1, "fluid"}, {2, "solid"}};
        GridMesh grid(spec);
        const QSet<MeshEntity*> kept = MeshChecks::verticesOn(grid.region(1));
        const ModelEntity* const outside = grid.face(0, 2);
        QVERIFY(outside);
        const int meshFaces = outside->childCount();
        const auto wholly = grid.mesh()->count(2) - meshFaces;
        const auto vertices = static_cast<int>(grid.mesh()->count(0) - kept.size());
        for (MeshEntity* element : MeshChecks::sorted(grid.region(2)->childIterator())) {
            grid.mesh()->remove(element);
        }
        QCOMPARE(clean(grid.database()), found(meshFaces, 0, vertices));
        QCOMPARE(grid.mesh()->count(2), wholly);
        QCOMPARE(grid.mesh()->count(0), kept.size());
        QCOMPARE(MeshChecks::findDeadPointer(grid.database()), QString());
        QCOMPARE(MeshChecks::findStaleUpwardList(grid.database()), QString());
    }
};

QTEST_APPLESS_MAIN(TestSolverCleaning)
#include "tst_SolverCleaning.moc"
