#include "GridCases.h"
#include "LogCapture.h"
#include "Solver.h"

#include <QTest>
#include <QVariant>

using namespace Ovra::Geo;
using namespace GridCases;

namespace
{

/// A solid of two cells, region 2, in the middle of a fluid, region 1.
GridSpec bodyInFluid()
{
    GridSpec spec;
    spec.cells = {4, 3, 3};
    spec.regionOf = [](int x, int y, int z) {
        return (x == 1 || x == 2) && y == 1 && z == 1 ? 2 : 1;
    };
    spec.materials = {{1, "fluid"}, {2, "solid"}};
    return spec;
}

void setMoving(GridMesh& grid, const QList<int>& regions)
{
    for (const int id : regions) {
        grid.region(id)->attributes().insert(AttributeType::MotionType, "rotation");
    }
}

QVariant attribute(const ModelEntity* entity, const AttributeType& type)
{
    return entity->attributes().value(type, QVariant());
}

QVariant attribute(MeshEntity* entity, const AttributeType& type)
{
    return entity->attributes().value(type, QVariant());
}

ModelEntity* copyOf(GridMesh& grid, int regionId)
{
    const int id = attribute(grid.region(regionId), AttributeType::NewMotionRegion).toInt();
    return grid.region(id);
}

} // namespace

class TestSolverReplication : public QObject
{
    Q_OBJECT

private slots:
    void givesTheMovingBodyARegionAndFaces()
    {
        GridMesh grid(bodyInFluid());
        setMoving(grid, {2});
        ModelEntity* old = grid.region(2);
        const int faces = grid.model()->count(2);
        Solver(grid.database()).replicateMovingRegions();

        QCOMPARE(grid.model()->count(3), 3);
        QCOMPARE(grid.model()->count(2), faces + old->adjacencyCount(2));
        ModelEntity* copy = grid.region(3);
        QCOMPARE(attribute(old, AttributeType::NewMotionRegion), QVariant(3));
        QCOMPARE(attribute(copy, AttributeType::OriginalMotionRegion), QVariant(2));
        QCOMPARE(copy->adjacencyCount(2), old->adjacencyCount(2));
        for (int i = 0; i < copy->adjacencyCount(2); ++i) {
            ModelEntity* face = copy->adjacencyAt(2, i);
            QVERIFY(face != old->adjacencyAt(2, i));
            QVERIFY(face->attributes().isEmpty());
            QCOMPARE(face->adjacencyCount(3), 1);
            QCOMPARE(face->adjacencyAt(3, 0), copy);
            QCOMPARE(face->adjacencyCount(1), 0);
            QCOMPARE(face->adjacencyCount(0), 0);
        }
    }

    // replaceAdjacency() puts entities of any dimension into a list.
    void theNewFacesAreFacesWhateverTheListHolds()
    {
        GridMesh grid(bodyInFluid());
        setMoving(grid, {2});
        ModelEntity* old = grid.region(2);
        const int faces = old->adjacencyCount(2);
        ModelEntity* edge = ModelEntity::create(1);
        grid.model()->add(edge);
        ModelEntity* spare = ModelEntity::create(2);
        grid.model()->add(spare);
        old->addAdjacency(spare);
        old->replaceAdjacency(spare, edge);
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(copyOf(grid, 2)->adjacencyCount(2), faces + 1);
        QCOMPARE(copyOf(grid, 2)->adjacencyCount(1), 0);
    }

    void theAttributesAreIntegers()
    {
        GridMesh grid(bodyInFluid());
        setMoving(grid, {2});
        Solver(grid.database()).replicateMovingRegions();
        ModelEntity* copy = copyOf(grid, 2);
        for (const QVariant& link :
             {attribute(grid.region(2), AttributeType::NewMotionRegion),
              attribute(grid.region(2), AttributeType::FluidRegion),
              attribute(copy, AttributeType::OriginalMotionRegion),
              attribute(grid.vertexAt(1, 1, 1), AttributeType::NewMotionVertex),
              attribute(onlyChild(copy)->adjacencyAt(0, 0), AttributeType::OriginalMotionVertex)}) {
            QCOMPARE(link.typeId(), static_cast<int>(QMetaType::Int));
        }
    }

    void handsOverMaterialAndMotion()
    {
        GridMesh grid(bodyInFluid());
        setMoving(grid, {2});
        AttributeMap& body = grid.region(2)->attributes();
        body.insert(AttributeType::MaterialId, 7);
        body.insert(AttributeType::MeshSize, 0.25);
        body.insert(AttributeType::IsShell, true);
        grid.region(1)->attributes().insert(AttributeType::MaterialId, 3);
        grid.region(1)->attributes().insert(AttributeType::MeshSize, 9.0);
        Solver(grid.database()).replicateMovingRegions();

        ModelEntity* copy = copyOf(grid, 2);
        QCOMPARE(attribute(copy, AttributeType::MaterialType), QVariant("solid"));
        QCOMPARE(attribute(copy, AttributeType::MaterialId), QVariant(7));
        QCOMPARE(attribute(copy, AttributeType::MotionType), QVariant("rotation"));
        QCOMPARE(attribute(copy, AttributeType::MeshSize), QVariant(0.25));
        QCOMPARE(copy->attributes().count(), 5);

        QCOMPARE(attribute(grid.region(2), AttributeType::MaterialType), QVariant("fluid"));
        QCOMPARE(attribute(grid.region(2), AttributeType::MaterialId), QVariant(3));
        QCOMPARE(attribute(grid.region(2), AttributeType::FluidRegion), QVariant(1));
        QCOMPARE(attribute(grid.region(2), AttributeType::MeshSize), QVariant(0.25));
        QVERIFY(!body.contains(AttributeType::MotionType));
        QCOMPARE(body.count(), 6);
    }

    void copiesOnlyAttributesThatAreThere()
    {
        GridMesh grid(bodyInFluid());
        setMoving(grid, {2});
        grid.region(2)->attributes().insert(AttributeType::MaterialId, 7);
        Solver(grid.database()).replicateMovingRegions();
        QVERIFY(!copyOf(grid, 2)->attributes().contains(AttributeType::MeshSize));
        // The fluid has no material id, so that the body's stays.
        QCOMPARE(attribute(grid.region(2), AttributeType::MaterialId), QVariant(7));
        QCOMPARE(attribute(grid.region(2), AttributeType::MaterialType), QVariant("fluid"));
    }

    void copiesTheMesh()
    {
        GridMesh grid(bodyInFluid());
        setMoving(grid, {2});
        ModelEntity* old = grid.region(2);
        const QList<int> before = counts(grid);
        const auto elements = MeshChecks::sorted(old->childIterator());
        Solver(grid.database()).replicateMovingRegions();

        ModelEntity* copy = copyOf(grid, 2);
        const auto copies = MeshChecks::sorted(copy->childIterator());
        QCOMPARE(copies.size(), elements.size());
        for (int i = 0; i < elements.size(); ++i) {
            QCOMPARE(copies.at(i)->adjacencyCount(0), 8);
            for (int v = 0; v < 8; ++v) {
                MeshEntity* original = elements.at(i)->adjacencyAt(0, v);
                MeshEntity* vertex = copies.at(i)->adjacencyAt(0, v);
                QVERIFY(vertex != original);
                QCOMPARE(vertex->centroid(), original->centroid());
                QCOMPARE(vertex->parent(), nullptr);
                QCOMPARE(attribute(original, AttributeType::NewMotionVertex),
                         QVariant(vertex->id()));
                QCOMPARE(attribute(vertex, AttributeType::OriginalMotionVertex),
                         QVariant(original->id()));
                QCOMPARE(vertex->attributes().count(), 1);
            }
        }
        const QList<int> after = counts(grid);
        QCOMPARE(after.at(1) - before.at(1), 12);
        QCOMPARE(after.at(3), before.at(3));
        QCOMPARE(after.at(5) - before.at(5), 10);
        QCOMPARE(after.at(7) - before.at(7), 2);
        for (int i = 0; i < copy->adjacencyCount(2); ++i) {
            QCOMPARE(copy->adjacencyAt(2, i)->childCount(), old->adjacencyAt(2, i)->childCount());
        }
    }

    void theFluidStaysWithTheOldFace()
    {
        GridMesh grid(bodyInFluid());
        setMoving(grid, {2});
        ModelEntity* face = grid.face(1, 2);
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(face->adjacencyCount(3), 2);
        for (const MeshEntity* meshFace : MeshChecks::sorted(face->childIterator())) {
            QCOMPARE(meshFace->adjacencyCount(3), 2);
        }
        ModelEntity* copy = copyOf(grid, 2);
        for (const MeshEntity* meshFace :
             MeshChecks::sorted(copy->adjacencyAt(2, 0)->childIterator())) {
            QCOMPARE(meshFace->adjacencyCount(3), 1);
            QCOMPARE(meshFace->adjacencyAt(3, 0)->parent(), copy);
        }
    }

    void logsEachRegion()
    {
        GridMesh grid(row({"solid", "fluid", "solid"}));
        setMoving(grid, {1, 3});
        LogCapture log;
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(log.messages(), QStringList({"Replicate region 1", "Replicate region 3"}));
    }

    void leavesOtherRegionsAlone_data()
    {
        QTest::addColumn<QStringList>("materials");
        QTest::addColumn<bool>("moving");
        QTest::newRow("no motion") << QStringList({"fluid", "solid"}) << false;
        QTest::newRow("between solids") << QStringList({"solid", "solid", "solid"}) << true;
        QTest::newRow("beside a fan alone") << QStringList({"internal_fan", "solid"}) << true;
        QTest::newRow("beside a resistance alone") << QStringList({"resistance", "solid"}) << true;
        QTest::newRow("beside a device alone") << QStringList({"rotating_device", "solid"}) << true;
        QTest::newRow("beside Fluid, spelt otherwise") << QStringList({"Fluid", "solid"}) << true;
        QTest::newRow("no neighbour") << QStringList({"", "solid"}) << true;
    }

    void leavesOtherRegionsAlone()
    {
        QFETCH(QStringList, materials);
        QFETCH(bool, moving);
        GridMesh grid(row(materials));
        if (moving) {
            setMoving(grid, {2});
        }
        const QList<int> before = counts(grid);
        LogCapture log;
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(log.messages(), QStringList());
        QCOMPARE(counts(grid), before);
        QCOMPARE(grid.region(2)->attributes().contains(AttributeType::MotionType), moving);
        QVERIFY(!grid.region(2)->attributes().contains(AttributeType::NewMotionRegion));
    }

    void anEmptyMotionTypeIsMotionToo()
    {
        GridMesh grid(row({"fluid", "solid"}));
        grid.region(2)->attributes().insert(AttributeType::MotionType, QVariant());
        Solver(grid.database()).replicateMovingRegions();
        QVERIFY(copyOf(grid, 2));
        QVERIFY(copyOf(grid, 2)->attributes().contains(AttributeType::MotionType));
    }

    void aSuppressedFluidIsPassedOver()
    {
        GridMesh grid(row({"fluid", "solid", "fluid"}));
        setMoving(grid, {2});
        grid.region(1)->attributes().insert(AttributeType::IsSuppressed, true);
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(attribute(grid.region(2), AttributeType::FluidRegion), QVariant(3));
    }

    void aReplicatedNeighbourIsPassedOver()
    {
        // The first body has become fluid by the time the second one looks for its fluid.
        GridMesh grid(row({"fluid", "solid", "solid", "fluid"}));
        setMoving(grid, {2, 3});
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(attribute(grid.region(2), AttributeType::FluidRegion), QVariant(1));
        QCOMPARE(attribute(grid.region(3), AttributeType::FluidRegion), QVariant(4));
    }

    void verticesOfTwoBodiesHaveTwoCopies()
    {
        GridMesh grid(row({"fluid", "solid", "solid", "fluid"}));
        setMoving(grid, {2, 3});
        const QSet<MeshEntity*> shared = MeshChecks::verticesOn(grid.face(2, 3));
        QCOMPARE(shared.size(), 4);
        Solver(grid.database()).replicateMovingRegions();

        const auto firstCopies = MeshChecks::verticesOn(copyOf(grid, 2));
        const auto secondCopies = MeshChecks::verticesOn(copyOf(grid, 3));
        QVERIFY(!firstCopies.intersects(secondCopies));
        for (MeshEntity* vertex : shared) {
            QList<int> copies;
            for (MeshEntity* copy : firstCopies | secondCopies) {
                if (attribute(copy, AttributeType::OriginalMotionVertex) ==
                    QVariant(vertex->id())) {
                    copies.append(copy->id());
                }
            }
            QCOMPARE(copies.size(), 2);
            QCOMPARE(attribute(vertex, AttributeType::NewMotionVertex),
                     QVariant(std::min(copies.at(0), copies.at(1))));
        }
    }

    void eachBodyCopiesTheFaceBetweenThem()
    {
        GridMesh grid(row({"fluid", "solid", "solid", "fluid"}));
        setMoving(grid, {2, 3});
        Solver(grid.database()).replicateMovingRegions();
        for (const int id : {2, 3}) {
            QList<int> meshFaces;
            for (int i = 0; i < 3; ++i) {
                ModelEntity* face = copyOf(grid, id)->adjacencyAt(2, i);
                meshFaces.append(face->childCount());
                for (const MeshEntity* meshFace : MeshChecks::sorted(face->childIterator())) {
                    QCOMPARE(meshFace->adjacencyCount(3), 1);
                }
            }
            std::sort(meshFaces.begin(), meshFaces.end());
            QCOMPARE(meshFaces, QList<int>({1, 1, 4}));
        }
    }

    void mixedMotionOfAFluid()
    {
        // A region that is fluid already and moves: it has a copy and stays fluid.
        GridMesh grid(row({"fluid", "fluid"}));
        setMoving(grid, {2});
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(attribute(copyOf(grid, 2), AttributeType::MaterialType), QVariant("fluid"));
        QCOMPARE(attribute(grid.region(2), AttributeType::FluidRegion), QVariant(1));
    }

    void leavesMeshEdgesAlone()
    {
        GridMesh grid(row({"fluid", "solid"}));
        setMoving(grid, {2});
        addMeshEdge(grid, grid.vertexAt(1, 0, 0), grid.vertexAt(1, 1, 0), grid.face(1, 2));
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(grid.mesh()->count(1), 1);
        QCOMPARE(grid.model()->count(1), 1);
    }

    void aSecondCallReplicatesNothing()
    {
        GridMesh grid(row({"fluid", "solid", "solid", "fluid"}));
        setMoving(grid, {2, 3});
        Solver solver(grid.database());
        solver.replicateMovingRegions();
        const QList<int> before = counts(grid);
        LogCapture log;
        solver.replicateMovingRegions();
        QCOMPARE(log.messages(), QStringList());
        QCOMPARE(counts(grid), before);
    }

    void aBodyWithoutMeshHasACopyWithoutMesh()
    {
        GridSpec spec = row({"fluid", "solid"});
        spec.unmeshed = {2};
        GridMesh grid(spec);
        setMoving(grid, {2});
        const int elements = grid.mesh()->count(3);
        Solver(grid.database()).replicateMovingRegions();
        QCOMPARE(grid.mesh()->count(3), elements);
        ModelEntity* copy = copyOf(grid, 2);
        QCOMPARE(copy->childCount(), 0);
        QCOMPARE(copy->adjacencyAt(2, 0)->childCount(), 1);
        const MeshEntity* meshFace =
            MeshChecks::sorted(copy->adjacencyAt(2, 0)->childIterator()).first();
        QCOMPARE(meshFace->adjacencyCount(3), 0);
    }

    void needsNoUpwardLists()
    {
        GridMesh grid(bodyInFluid());
        setMoving(grid, {2});
        grid.mesh()->clearUpwardAdjacencies();
        Solver(grid.database()).replicateMovingRegions();
        for (const MeshEntity* meshFace :
             MeshChecks::sorted(copyOf(grid, 2)->adjacencyAt(2, 0)->childIterator())) {
            QCOMPARE(meshFace->adjacencyCount(3), 1);
        }
    }

    void handsOutTheSameIdsInEveryRun()
    {
        GridSpec spec = row({"solid", "fluid", "solid", "fluid", "solid"});
        spec.cells = {5, 3, 3};
        spec.idSeed = 4;
        GridMesh grid(spec);
        setMoving(grid, {1, 3, 5});
        Solver(grid.database()).replicateMovingRegions();
        QList<int> ids;
        for (const int id : {1, 3, 5}) {
            ids.append(copyOf(grid, id)->id());
            const auto olds = MeshChecks::sorted(grid.region(id)->childIterator());
            const auto news = MeshChecks::sorted(copyOf(grid, id)->childIterator());
            for (int i = 0; i < olds.size(); ++i) {
                QCOMPARE(news.at(i)->centroid(), olds.at(i)->centroid());
            }
        }
        QCOMPARE(ids, QList<int>({6, 7, 8}));
    }

    void holdsOnBigMeshes_data() { addBigGridRows(); }

    void holdsOnBigMeshes()
    {
        // Two moving bodies that touch, and a solid at rest, in a fluid.
        GridSpec spec = bigGrid();
        spec.regionOf = [](int x, int y, int) {
            if (y < 2 || y > 3) {
                return 1;
            }
            return x < 2 ? 2 : x < 4 ? 3 : x < 6 ? 1 : 4;
        };
        spec.materials = {{1, "fluid"}, {2, "solid"}, {3, "rotating_device"}, {4, "solid"}};
        GridMesh grid(spec);
        setMoving(grid, {2, 3});
        const int d = grid.regionDimension();
        const RegionRecords before(grid, 4);
        const int elementCount = grid.mesh()->count(d);
        Solver(grid.database()).replicateMovingRegions();

        QCOMPARE(before.findDamage(), QString());
        QCOMPARE(grid.model()->count(d), 6);
        QCOMPARE(grid.mesh()->count(d),
                 elementCount + grid.region(2)->childCount() + grid.region(3)->childCount());
        for (int id = 1; id <= 4; ++id) {
            QCOMPARE(MeshChecks::verticesOn(grid.region(id)), before.vertices(id));
        }
        for (const int id : {2, 3}) {
            const ModelEntity* copy = copyOf(grid, id);
            const QSet<MeshEntity*> copies = MeshChecks::verticesOn(copy);
            QCOMPARE(copy->childCount(), grid.region(id)->childCount());
            QCOMPARE(MeshChecks::meshMeasure(copy), before.measure(id));
            QVERIFY(MeshChecks::coincide(copies, before.vertices(id)));
            for (int other = 1; other <= 4; ++other) {
                QVERIFY(!copies.intersects(before.vertices(other)));
            }
            for (MeshEntity* vertex : copies) {
                const int original = attribute(vertex, AttributeType::OriginalMotionVertex).toInt();
                QCOMPARE(vertex->centroid(), grid.mesh()->entity(0, original)->centroid());
            }
            for (int i = 0; i < copy->adjacencyCount(d - 1); ++i) {
                const auto onFace = MeshChecks::verticesOn(copy->adjacencyAt(d - 1, i));
                QVERIFY(copies.contains(onFace));
                QVERIFY(MeshChecks::coincide(
                    onFace, MeshChecks::verticesOn(grid.region(id)->adjacencyAt(d - 1, i))));
            }
        }
    }
};

QTEST_APPLESS_MAIN(TestSolverReplication)
#include "tst_SolverReplication.moc"
