#include "AssertionCapture.h"
#include "Box.h"
#include "ElementFaceData.h"
#include "ModelRegion.h"
#include "SurfaceMesh.h"
#include "Utility.h"

#include <QTest>

#include <algorithm>

using namespace Ovra::Geo;

namespace
{

void setMaterial(ModelEntity* region, const QString& kind)
{
    region->attributes().insert(AttributeType::MaterialType, kind);
}

/// A region of dimension 3 with the faces given.
ModelEntity* addRegion(SurfaceMesh* surface, const QString& kind, const QList<ModelEntity*>& faces)
{
    ModelEntity* region = surface->addModelEntity(3);
    if (!kind.isNull()) {
        setMaterial(region, kind);
    }
    for (ModelEntity* face : faces) {
        SurfaceMesh::link(region, face);
    }
    return region;
}

QList<Vector> tetrahedronAt(const Vector& corner)
{
    return {corner, corner + Vector(1, 0, 0), corner + Vector(0, 1, 0), corner + Vector(0, 0, 1)};
}

QList<Vector> squareAt(const Vector& corner)
{
    return {corner, corner + Vector(1, 0, 0), corner + Vector(1, 1, 0), corner + Vector(0, 1, 0)};
}

} // namespace

class TestUtilityQueries : public QObject
{
    Q_OBJECT

private slots:
    void materialKinds_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<bool>("fluid");
        QTest::addColumn<bool>("unmeshedDevice");
        for (const char* kind :
             {"fluid", "resistance", "internal_fan", "check_valve", "rotating_device",
              "centrifugal_fan", "heat_exchanger", "heat_sink"}) {
            QTest::newRow(kind) << QString(kind) << true << false;
        }
        for (const char* kind : {"ecomp_2resist", "ecomp_tec", "led_device"}) {
            QTest::newRow(kind) << QString(kind) << false << true;
        }
        for (const char* kind : {"Fluid", "FLUID", "fluid ", " fluid", "fluids", "solid",
                                 "Led_device", "led_device2", "ecomp", "heat_sink_"}) {
            QTest::newRow(kind) << QString(kind) << false << false;
        }
        QTest::newRow("empty") << QString("") << false << false;
        QTest::newRow("absent") << QString() << false << false;
    }

    void materialKinds()
    {
        QFETCH(QString, kind);
        ModelRegion region;
        if (!kind.isNull()) {
            setMaterial(&region, kind);
        }
        QTEST(Utility::isFluid(&region), "fluid");
        QTEST(Utility::isUnmeshedDevice(&region), "unmeshedDevice");
    }

    void externalFace_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<int>("regions");
        QTest::addColumn<bool>("external");
        for (int dimension = 0; dimension < 3; ++dimension) {
            for (int regions = 0; regions < 5; ++regions) {
                QTest::addRow("dimension %d, %d above", dimension, regions)
                    << dimension << regions << (regions != 2);
            }
        }
    }

    void externalFace()
    {
        QFETCH(int, dimension);
        QFETCH(int, regions);
        SurfaceMesh surface;
        ModelEntity* face = surface.addModelEntity(dimension);
        for (int i = 0; i < regions; ++i) {
            SurfaceMesh::link(face, surface.addModelEntity(dimension + 1));
        }
        QTEST(Utility::isExternalFace(face), "external");
    }

    void nothingLiesAboveARegionOrBelowAVertex()
    {
        SurfaceMesh surface;
        ModelEntity* region = surface.addModelEntity(3);
        ModelEntity* vertex = surface.addModelEntity(0);
        for (ModelEntity* entity : {region, vertex}) {
            for (int dimension = 0; dimension < 4; ++dimension) {
                entity->addAdjacency(surface.addModelEntity(dimension));
            }
        }
        QVERIFY(Utility::isExternalFace(region));
        QVERIFY(!Utility::getOtherAdjacentRegion(region, nullptr));
        QVERIFY(Utility::getAdjacentRegions(vertex, surface.model()).isEmpty());
    }

    // The stand-in is looked up in the dimension below the region, not in that of what stands in
    // the list, which may be of another one.
    void standInsAreOfTheDimensionBelow()
    {
        SurfaceMesh surface;
        ModelEntity* standIn = surface.addFace();
        ModelEntity* behind = addRegion(&surface, "fluid", {standIn});
        ModelEntity* face = surface.addFace();
        ModelEntity* region = addRegion(&surface, "solid", {face});
        region->attributes().insert(AttributeType::MeshByExtrusion, true);
        ModelEntity* edge = surface.addModelEntity(1);
        edge->attributes().insert(AttributeType::NonExtrudedFace, standIn->id());
        region->replaceAdjacency(face, edge);
        QCOMPARE(Utility::getAdjacentRegions(region, surface.model()),
                 QSet<ModelEntity*>({behind}));
    }

    void fluidInterface_data()
    {
        QTest::addColumn<QStringList>("kinds");
        QTest::addColumn<bool>("interface");
        QTest::newRow("no region") << QStringList() << true;
        QTest::newRow("fluid") << QStringList{"fluid"} << true;
        QTest::newRow("solid") << QStringList{"solid"} << false;
        QTest::newRow("fluid and rotating") << QStringList{"fluid", "rotating_device"} << true;
        QTest::newRow("fluid and solid") << QStringList{"fluid", "solid"} << false;
        QTest::newRow("solid and fluid") << QStringList{"solid", "fluid"} << false;
        QTest::newRow("device without mesh") << QStringList{"fluid", "led_device"} << false;
    }

    void fluidInterface()
    {
        QFETCH(QStringList, kinds);
        QFETCH(bool, interface);
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        for (const QString& kind : kinds) {
            addRegion(&surface, kind, {face});
        }
        QCOMPARE(Utility::isFluidFluidInterface(face, nullptr), interface);

        ModelEntity* fluidFace = surface.addFace();
        addRegion(&surface, "fluid", {fluidFace});
        QCOMPARE(Utility::isFluidFluidInterface(face, fluidFace), interface);
        QCOMPARE(Utility::isFluidFluidInterface(fluidFace, face), interface);
        ModelEntity* solidFace = surface.addFace();
        addRegion(&surface, "solid", {solidFace});
        QVERIFY(!Utility::isFluidFluidInterface(face, solidFace));
        QVERIFY(!Utility::isFluidFluidInterface(solidFace, face));
    }

    void fluidInterfaceLooksAtDimensionThreeInPlanarModelsToo()
    {
        SurfaceMesh surface;
        ModelEntity* edge = surface.addFace(1);
        ModelEntity* solid = surface.addModelEntity(2);
        setMaterial(solid, "solid");
        SurfaceMesh::link(edge, solid);
        QVERIFY(Utility::isFluidFluidInterface(edge, nullptr));
        addRegion(&surface, "solid", {edge});
        QVERIFY(!Utility::isFluidFluidInterface(edge, nullptr));
    }

    void otherAdjacentRegion()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        ModelEntity* first = addRegion(&surface, "fluid", {face});
        QCOMPARE(Utility::getOtherAdjacentRegion(face, first), nullptr);
        ModelEntity* second = addRegion(&surface, "solid", {face});
        ModelEntity* third = addRegion(&surface, "solid", {face});
        QCOMPARE(Utility::getOtherAdjacentRegion(face, first), second);
        QCOMPARE(Utility::getOtherAdjacentRegion(face, second), first);
        QCOMPARE(Utility::getOtherAdjacentRegion(face, third), first);
    }

    void otherAdjacentRegionComparesPointers()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        ModelEntity* region = addRegion(&surface, "fluid", {face});
        ModelRegion twin;
        twin.setId(region->id());
        QVERIFY(twin == *region);
        QCOMPARE(Utility::getOtherAdjacentRegion(face, &twin), region);
    }

    void otherAdjacentRegionOfAnEdgeIsAFace()
    {
        SurfaceMesh surface;
        ModelEntity* edge = surface.addFace(1);
        ModelEntity* first = surface.addModelEntity(2);
        ModelEntity* second = surface.addModelEntity(2);
        SurfaceMesh::link(edge, first);
        SurfaceMesh::link(edge, second);
        QCOMPARE(Utility::getOtherAdjacentRegion(edge, first), second);
    }

    void adjacentRegions()
    {
        SurfaceMesh surface;
        ModelEntity* shared = surface.addFace();
        ModelEntity* sharedToo = surface.addFace();
        ModelEntity* outer = surface.addFace();
        ModelEntity* region = addRegion(&surface, "solid", {shared, sharedToo, outer});
        QCOMPARE(Utility::getAdjacentRegions(region, surface.model()), QSet<ModelEntity*>());
        ModelEntity* first = addRegion(&surface, "solid", {shared});
        ModelEntity* second = addRegion(&surface, "solid", {shared, sharedToo});
        QCOMPARE(Utility::getAdjacentRegions(region, surface.model()),
                 QSet<ModelEntity*>({first, second}));
        QCOMPARE(Utility::getAdjacentRegions(first, surface.model()),
                 QSet<ModelEntity*>({region, second}));
    }

    void adjacentRegionsOfAnEntityWithoutBoundary()
    {
        SurfaceMesh surface;
        ModelEntity* region = surface.addModelEntity(3);
        QCOMPARE(Utility::getAdjacentRegions(region, surface.model()), QSet<ModelEntity*>());
    }

    void adjacentRegionsOfAPlanarModelAreFaces()
    {
        SurfaceMesh surface;
        ModelEntity* edge = surface.addFace(1);
        ModelEntity* first = surface.addModelEntity(2);
        ModelEntity* second = surface.addModelEntity(2);
        SurfaceMesh::link(edge, first);
        SurfaceMesh::link(edge, second);
        QCOMPARE(Utility::getAdjacentRegions(first, surface.model()), QSet<ModelEntity*>({second}));
    }

    void extrudedRegionFindsNeighboursThroughNonExtrudedFaces()
    {
        SurfaceMesh surface;
        ModelEntity* extruded = surface.addFace();
        ModelEntity* standIn = surface.addFace();
        extruded->attributes().insert(AttributeType::NonExtrudedFace, standIn->id());
        ModelEntity* plain = surface.addFace();
        plain->attributes().insert(AttributeType::NonExtrudedFace, 0);
        ModelEntity* region = addRegion(&surface, "solid", {extruded, plain});
        ModelEntity* atExtruded = addRegion(&surface, "fluid", {extruded});
        ModelEntity* atStandIn = addRegion(&surface, "fluid", {standIn});
        ModelEntity* atPlain = addRegion(&surface, "fluid", {plain});

        QCOMPARE(Utility::getAdjacentRegions(region, surface.model()),
                 QSet<ModelEntity*>({atExtruded, atPlain}));
        region->attributes().insert(AttributeType::MeshByExtrusion, false);
        QCOMPARE(Utility::getAdjacentRegions(region, surface.model()),
                 QSet<ModelEntity*>({atExtruded, atPlain}));
        region->attributes().insert(AttributeType::MeshByExtrusion, true);
        QCOMPARE(Utility::getAdjacentRegions(region, surface.model()),
                 QSet<ModelEntity*>({atStandIn, atPlain}));
    }

    void adjacentFluidRegion_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<int>("newMotionRegion");
        QTest::addColumn<bool>("suppressed");
        QTest::addColumn<bool>("qualifies");
        QTest::newRow("fluid") << "fluid" << -1 << false << true;
        QTest::newRow("new_motion_region 0") << "fluid" << 0 << false << true;
        QTest::newRow("replicated") << "fluid" << 4 << false << false;
        QTest::newRow("suppressed") << "fluid" << -1 << true << false;
        QTest::newRow("heat sink") << "heat_sink" << -1 << false << false;
        QTest::newRow("fan") << "internal_fan" << -1 << false << false;
        QTest::newRow("capital") << "Fluid" << -1 << false << false;
        QTest::newRow("absent") << QString() << -1 << false << false;
    }

    void adjacentFluidRegion()
    {
        QFETCH(QString, kind);
        QFETCH(int, newMotionRegion);
        QFETCH(bool, suppressed);
        QFETCH(bool, qualifies);
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        ModelEntity* region = addRegion(&surface, "fluid", {face});
        ModelEntity* other = addRegion(&surface, kind, {face});
        if (newMotionRegion >= 0) {
            other->attributes().insert(AttributeType::NewMotionRegion, newMotionRegion);
        }
        if (suppressed) {
            other->attributes().insert(AttributeType::IsSuppressed, true);
        }
        QCOMPARE(Utility::getAdjacentFluidRegion(region, surface.model()),
                 qualifies ? other : nullptr);
    }

    void adjacentFluidRegionIsNotTheRegionItself()
    {
        SurfaceMesh surface;
        ModelEntity* region = addRegion(&surface, "fluid", {surface.addFace()});
        QCOMPARE(Utility::getAdjacentFluidRegion(region, surface.model()), nullptr);
    }

    void adjacentFluidRegionOfSeveralIsTheSameInEveryRun()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        ModelEntity* region = addRegion(&surface, "solid", {face});
        QList<ModelEntity*> fluids;
        for (int i = 0; i < 20; ++i) {
            fluids.append(addRegion(&surface, "fluid", {face}));
        }
        QCOMPARE(Utility::getAdjacentFluidRegion(region, surface.model()), fluids.first());
    }

    void simplexMeshOfARegion()
    {
        SurfaceMesh surface;
        ModelEntity* region = surface.addModelEntity(3);
        QVERIFY(!Utility::hasNonSimplexMeshEntities(region));
        surface.addElementAt(region, tetrahedronAt(Vector()));
        surface.addElementAt(region, tetrahedronAt(Vector(2, 0, 0)));
        QVERIFY(!Utility::hasNonSimplexMeshEntities(region));
        QVERIFY(!Utility::hasNonSimplexMeshEntities(surface.model()));
        surface.addElementAt(region, squareAt(Vector()) + squareAt(Vector(0, 0, 1)));
        QVERIFY(Utility::hasNonSimplexMeshEntities(region));
        QVERIFY(Utility::hasNonSimplexMeshEntities(surface.model()));
    }

    void simplexMeshOfAPlanarRegion()
    {
        SurfaceMesh surface;
        ModelEntity* region = surface.addModelEntity(2);
        surface.addElementAt(region, {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0)});
        QVERIFY(!Utility::hasNonSimplexMeshEntities(region));
        QVERIFY(!Utility::hasNonSimplexMeshEntities(surface.model()));
        surface.addElementAt(region, squareAt(Vector(2, 0, 0)));
        QVERIFY(Utility::hasNonSimplexMeshEntities(region));
        QVERIFY(Utility::hasNonSimplexMeshEntities(surface.model()));
    }

    void modelLooksAtItsRegionsOnly()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addModelEntity(2);
        surface.addElementAt(face, squareAt(Vector()));
        QVERIFY(Utility::hasNonSimplexMeshEntities(surface.model()));
        ModelEntity* region = surface.addModelEntity(3);
        surface.addElementAt(region, tetrahedronAt(Vector()));
        QVERIFY(!Utility::hasNonSimplexMeshEntities(surface.model()));
    }

    void edgesAndVerticesCountAsNoSimplices()
    {
        // 4 vertices are expected of whatever does not lie on a face.
        SurfaceMesh surface;
        ModelEntity* edge = surface.addModelEntity(1);
        QVERIFY(!Utility::hasNonSimplexMeshEntities(edge));
        surface.addElementAt(edge, {Vector(0, 0, 0), Vector(1, 0, 0)});
        QVERIFY(Utility::hasNonSimplexMeshEntities(edge));
    }

    void counterClockwiseEdge_data()
    {
        QTest::addColumn<Vector>("centroid");
        QTest::addColumn<Vector>("normal");
        QTest::addColumn<bool>("kept");
        QTest::newRow("left of the edge") << Vector(0, 1, 0) << Vector(0, 0, 1) << true;
        QTest::newRow("right of the edge") << Vector(0, -1, 0) << Vector(0, 0, 1) << false;
        QTest::newRow("normal down") << Vector(0, 1, 0) << Vector(0, 0, -1) << false;
        QTest::newRow("through the centroid") << Vector(0, 0, 0) << Vector(0, 0, 1) << false;
        QTest::newRow("no normal") << Vector(0, 1, 0) << Vector() << false;
    }

    void counterClockwiseEdge()
    {
        QFETCH(Vector, centroid);
        QFETCH(Vector, normal);
        QFETCH(bool, kept);
        ModelFace face;
        face.setCentroid(centroid);
        face.setNormal(normal);
        ModelEdge edge;
        ModelVertex a;
        ModelVertex b;
        ModelVertex third;
        a.setPoint(Vector(-1, 0, 0));
        b.setPoint(Vector(1, 0, 0));
        edge.addAdjacency(&a);
        edge.addAdjacency(&b);
        edge.addAdjacency(&third);
        const auto expected = kept ? std::make_pair(&a, &b) : std::make_pair(&b, &a);
        QVERIFY(Utility::getCounterClockwiseEdge(&face, &edge) == expected);
    }

    void edgeWithoutTwoVerticesStopsTheProcess()
    {
        ModelFace face;
        ModelEdge edge;
        ModelVertex vertex;
        for (int count = 0; count < 2; ++count) {
            const QString message =
                stopMessage([&] { Utility::getCounterClockwiseEdge(&face, &edge); });
            QVERIFY2(message.startsWith("ASSERT: \"i.hasNext()\" in file "
                                        "Projects/GeometryDatabase/Utility, line "),
                     qPrintable(message));
            edge.addAdjacency(&vertex);
        }
    }

    void elementFaces()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        ModelEntity* fluid = addRegion(&surface, "fluid", {face});
        ModelEntity* sink = addRegion(&surface, "heat_sink", {face});
        MeshEntity* upper = surface.addElementAt(fluid, tetrahedronAt(Vector()), 8);
        const QList<MeshVertex*> v = SurfaceMesh::verticesOf(upper);
        MeshVertex* apex = surface.addVertex(Vector(0, 0, -1));
        surface.addElement(sink, {apex, v[0], v[1], v[2]}, 5);
        surface.addElement(face, {v[2], v[0], v[1]});
        MeshEntity* loose = surface.addElementAt(face, squareAt(Vector(9, 9, 9)));
        surface.mesh()->setUpwardAdjacencies();
        QCOMPARE(loose->adjacencyCount(3), 0);

        QList<ElementFaceData> records = Utility::getElementFaceDataOnModelFace(face, nullptr);
        std::sort(records.begin(), records.end());
        QCOMPARE(records.size(), 2);
        QCOMPARE(records[0].elementId_, 5);
        QCOMPARE(records[0].localFace_, 0);
        QCOMPARE(records[0].fluidInterface_, true);
        QCOMPARE(records[1].elementId_, 8);
        QCOMPARE(records[1].localFace_, 3);
        QCOMPARE(records[1].fluidInterface_, true);
    }

    void otherFaceDecidesTheFlagOnly()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        ModelEntity* fluid = addRegion(&surface, "fluid", {face});
        MeshEntity* element = surface.addElementAt(fluid, tetrahedronAt(Vector()));
        const QList<MeshVertex*> v = SurfaceMesh::verticesOf(element);
        surface.addElement(face, {v[0], v[1], v[3]});
        ModelEntity* other = surface.addFace();
        ModelEntity* solid = addRegion(&surface, "solid", {other});
        MeshEntity* otherElement = surface.addElementAt(solid, tetrahedronAt(Vector(5, 0, 0)));
        const QList<MeshVertex*> w = SurfaceMesh::verticesOf(otherElement);
        surface.addElement(other, {w[0], w[1], w[2]});
        surface.mesh()->setUpwardAdjacencies();

        const QList<ElementFaceData> alone = Utility::getElementFaceDataOnModelFace(face, nullptr);
        QCOMPARE(alone.size(), 1);
        QCOMPARE(alone[0].fluidInterface_, true);
        const QList<ElementFaceData> paired = Utility::getElementFaceDataOnModelFace(face, other);
        QCOMPARE(paired, alone);
        QCOMPARE(paired[0].localFace_, 2);
        QCOMPARE(paired[0].fluidInterface_, false);
    }

    void elementFacesOfAFaceWithoutMesh()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        addRegion(&surface, "fluid", {face});
        QVERIFY(Utility::getElementFaceDataOnModelFace(face, nullptr).isEmpty());
    }

    void elementFacesOfAPlanarModelAreNone()
    {
        // Elements are those of dimension 3, whatever the model.
        SurfaceMesh surface;
        ModelEntity* edge = surface.addFace(1);
        ModelEntity* region = surface.addModelEntity(2);
        SurfaceMesh::link(edge, region);
        MeshEntity* triangle =
            surface.addElementAt(region, {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0)});
        const QList<MeshVertex*> v = SurfaceMesh::verticesOf(triangle);
        MeshEntity* side = surface.addElement(edge, {v[0], v[1]});
        surface.mesh()->setUpwardAdjacencies();
        QCOMPARE(side->adjacencyCount(2), 1);
        QVERIFY(Utility::getElementFaceDataOnModelFace(edge, nullptr).isEmpty());
    }

    void meshBoundingBox()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        QCOMPARE(Utility::getMeshBoundingBox(face), Box());
        surface.addElementAt(face, {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0)});
        QCOMPARE(Utility::getMeshBoundingBox(face), Box(Vector(0, 0, 0), Vector(1, 1, 0)));
        surface.addElementAt(face, squareAt(Vector(3, -2, 5)));
        QCOMPARE(Utility::getMeshBoundingBox(face), Box(Vector(0, -2, 0), Vector(4, 1, 5)));
    }

    void meshBoundingBoxOfAVertex()
    {
        SurfaceMesh surface;
        ModelEntity* vertex = surface.addModelEntity(0);
        vertex->addChild(surface.addVertex(Vector(1, 2, 3)));
        QCOMPARE(Utility::getMeshBoundingBox(vertex), Box(Vector(1, 2, 3), Vector(1, 2, 3)));
    }
};

QTEST_APPLESS_MAIN(TestUtilityQueries)
#include "tst_UtilityQueries.moc"
