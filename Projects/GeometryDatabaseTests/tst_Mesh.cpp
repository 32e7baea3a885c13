#include "AttributeType.h"
#include "TestMesh.h"

#include <QTest>

#include <limits>
#include <memory>
#include <type_traits>

using namespace Ovra::Geo;

static_assert(!std::is_polymorphic_v<Mesh>);

namespace
{

class CountedEdge : public MeshEdge
{
public:
    explicit CountedEdge(int* calls)
        : calls_(calls)
    {
    }

    void setUpwardAdjacencies() override
    {
        ++*calls_;
        MeshEdge::setUpwardAdjacencies();
    }

private:
    int* calls_;
};

} // namespace

class TestMeshContainer : public QObject
{
    Q_OBJECT

private slots:
    void startsEmpty()
    {
        Model model;
        Mesh mesh(&model);
        QVERIFY(mesh.isEmpty());
        QVERIFY(mesh.version() == Version());
        QVERIFY(mesh.attributes().isEmpty());
        for (int dimension = 0; dimension <= 3; ++dimension) {
            QCOMPARE(mesh.count(dimension), 0);
            QCOMPARE(mesh.entity(dimension, 1), nullptr);
            QVERIFY(!mesh.iterator(dimension).hasNext());
            QVERIFY(!mesh.orderedIterator(dimension).hasNext());
        }
    }

    void givesIdsFromOneUpInEachDimension()
    {
        TestMesh test;
        QCOMPARE(test.addVertex(Vector())->id(), 1);
        QCOMPARE(test.addVertex(Vector())->id(), 2);
        QCOMPARE(test.addElement(2, {})->id(), 1);
    }

    void givesIdsAboveThoseThatEntitiesBring()
    {
        TestMesh test;
        QCOMPARE(test.addVertex(Vector(), 10)->id(), 10);
        QCOMPARE(test.addVertex(Vector())->id(), 11);
        QCOMPARE(test.addVertex(Vector(), 5)->id(), 5);
        QCOMPARE(test.addVertex(Vector())->id(), 12);
    }

    void givesFreeIdsWhenTheHighestIsInUse()
    {
        const int highest = std::numeric_limits<int>::max();
        TestMesh test;
        auto* far = test.addVertex(Vector(), highest);
        test.addVertex(Vector(), 3);
        QCOMPARE(test.addVertex(Vector())->id(), 4);
        test.addVertex(Vector(), 5);
        QCOMPARE(test.addVertex(Vector())->id(), 6);
        QCOMPARE(test.mesh().count(0), 5);
        QCOMPARE(test.mesh().entity(0, highest), far);
        test.mesh().renumber(0);
        QCOMPARE(far->id(), 5);
        QCOMPARE(test.addVertex(Vector())->id(), 6);
    }

    void givesPositiveIdsBesideNegativeOnes()
    {
        TestMesh test;
        test.addVertex(Vector(), -1);
        test.addVertex(Vector(), std::numeric_limits<int>::max());
        for (int id = 1; id <= 3; ++id) {
            QCOMPARE(test.addVertex(Vector())->id(), id);
        }
    }

    void doesNotGiveRemovedIdsAgainWhenTheHighestIsInUse()
    {
        TestMesh test;
        for (int id = 1; id <= 100; ++id) {
            test.addVertex(Vector(), id);
        }
        test.addVertex(Vector(), std::numeric_limits<int>::max());
        test.mesh().remove(test.mesh().entity(0, 100));
        QCOMPARE(test.addVertex(Vector())->id(), 101);
    }

    void findsFreeIdsForManyWhenTheHighestIsInUse()
    {
        constexpr int Count = 200000;
        TestMesh test;
        for (int id = Count + 1; id <= 2 * Count; ++id) {
            test.addVertex(Vector(), id);
        }
        test.addVertex(Vector(), std::numeric_limits<int>::max());
        for (int i = 1; i <= Count; ++i) {
            QCOMPARE(test.addVertex(Vector())->id(), 2 * Count + i);
        }
    }

    void removesFromListsThatManyShare()
    {
        constexpr int Count = 3000;
        TestMesh test;
        auto* a = test.addVertex(Vector(0, 0, 0));
        auto* b = test.addVertex(Vector(1, 0, 0));
        for (int i = 0; i < Count; ++i) {
            test.addElement(1, {a, b});
            test.addElement(2, {a, b});
        }
        test.mesh().setUpwardAdjacencies();
        for (int face = 1; face <= 100; ++face) {
            test.mesh().remove(test.mesh().entity(2, face));
        }
        auto edges = test.mesh().iterator(1);
        while (edges.hasNext()) {
            const MeshEntity* edge = edges.next().value();
            QCOMPARE(edge->adjacencyCount(2), Count - 100);
            QCOMPARE(edge->adjacencyAt(2, 0)->id(), 101);
        }
    }

    void countsUpToTheHighestId()
    {
        const int highest = std::numeric_limits<int>::max();
        TestMesh test;
        test.addVertex(Vector(), highest - 1);
        QCOMPARE(test.addVertex(Vector())->id(), highest);
        QCOMPARE(test.addVertex(Vector())->id(), 3);
    }

    void findsEntitiesByDimensionAndId()
    {
        TestMesh test;
        auto* vertex = test.addVertex(Vector(), 7);
        auto* face = test.addElement(2, {}, nullptr, 7);
        QCOMPARE(test.mesh().entity(0, 7), vertex);
        QCOMPARE(test.mesh().entity(2, 7), face);
        QCOMPARE(test.mesh().entity(2, 8), nullptr);
        QCOMPARE(test.mesh().count(2), 1);
        QVERIFY(!test.mesh().isEmpty());
    }

    void replacesTheEntryOfAnIdInUse()
    {
        TestMesh test;
        const std::unique_ptr<MeshVertex> first(test.addVertex(Vector(), 4));
        auto* second = test.addVertex(Vector(), 4);
        QCOMPARE(test.mesh().count(0), 1);
        QCOMPARE(test.mesh().entity(0, 4), second);
        QCOMPARE(first->id(), 4);
    }

    void addsWithoutTouchingParentOrLinks()
    {
        TestMesh test;
        auto* vertex = test.addVertex(Vector());
        auto* edge = test.addElement(1, {vertex});
        QCOMPARE(edge->parent(), nullptr);
        QCOMPARE(vertex->adjacencyCount(1), 0);
    }

    void doesNotReuseTheIdOfARemovedEntity()
    {
        TestMesh test;
        test.addVertex(Vector());
        auto* second = test.addVertex(Vector());
        test.addVertex(Vector());
        test.mesh().remove(second);
        QCOMPARE(test.mesh().count(0), 2);
        QCOMPARE(test.mesh().entity(0, 2), nullptr);
        QCOMPARE(test.addVertex(Vector())->id(), 4);
    }

    void removalDetachesFromNeighboursAndParent()
    {
        TestMesh test;
        auto* region = test.addModelRegion();
        auto* face = test.addModelFace();
        auto* cell = test.addUnitCell(4, region, face);
        test.mesh().setUpwardAdjacencies();
        test.mesh().remove(test.mesh().entity(2, 1));
        QCOMPARE(face->childCount(), 3);
        QCOMPARE(listCount(test, 0, 2), 9);
        QCOMPARE(listCount(test, 1, 2), 9);
        test.mesh().remove(cell);
        QCOMPARE(region->childCount(), 0);
        QCOMPARE(listCount(test, 0, 3), 0);
        QCOMPARE(listCount(test, 2, 3), 0);
        test.mesh().remove(test.mesh().entity(1, 1));
        QCOMPARE(listCount(test, 0, 1), 10);
        QCOMPARE(test.mesh().count(0), 4);
    }

    void removesAnEntityThatWasNeverAdded()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        auto* vertex = test.addVertex(Vector());
        auto* stranger = new MeshFace;
        TestMesh::link(stranger, vertex);
        stranger->setId(8);
        face->addChild(stranger);
        test.addElement(2, {}, nullptr, 3);
        test.mesh().remove(stranger);
        QCOMPARE(vertex->adjacencyCount(2), 0);
        QCOMPARE(face->childCount(), 0);
        QCOMPARE(test.mesh().count(2), 1);
    }

    void clearOfADimensionStartsItsIdsAgain()
    {
        TestMesh test;
        auto* edge = test.addModelEdge();
        test.addElement(1, {}, edge, 20);
        test.addElement(2, {}, nullptr, 20);
        test.mesh().clear(1);
        QCOMPARE(test.mesh().count(1), 0);
        QCOMPARE(test.mesh().count(2), 1);
        QCOMPARE(edge->childCount(), 0);
        QCOMPARE(test.addElement(1, {})->id(), 1);
        QCOMPARE(test.addElement(2, {})->id(), 21);
    }

    void clearOfADimensionLeavesNeighboursAlone()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        test.mesh().clear(3);
        QCOMPARE(test.mesh().count(2), 4);
        QCOMPARE(test.mesh().entity(2, 1)->adjacencyCount(3), 1);
    }

    void clearKeepsVersionAndAttributes()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().setVersion(Version(14, 1, 0));
        test.mesh().attributes().insert(AttributeType::MaterialId, QVariant(2));
        test.mesh().clear();
        QVERIFY(test.mesh().isEmpty());
        QVERIFY(test.mesh().version() == Version(14, 1, 0));
        QCOMPARE(test.mesh().attributes().value(AttributeType::MaterialId, QVariant()),
                 QVariant(2));
        QCOMPARE(test.addVertex(Vector())->id(), 1);
    }

    void walksASnapshotOrTheLiveTable()
    {
        TestMesh test;
        for (int id : {30, 2, 11}) {
            test.addVertex(Vector(), id);
        }
        auto snapshot = test.mesh().iterator(0);
        auto live = test.mesh().orderedIterator(0);
        test.mesh().remove(test.mesh().entity(0, 11));
        test.addVertex(Vector(), 5);
        QCOMPARE(live.next()->id(), 2);
        QCOMPARE(live.next(), nullptr);
        QCOMPARE(live.next()->id(), 30);
        QVERIFY(!live.hasNext());
        int visited = 0;
        for (; snapshot.hasNext(); snapshot.next()) {
            ++visited;
        }
        QCOMPARE(visited, 3);
    }

    void derivesTheUpwardListsOfATetrahedron()
    {
        TestMesh test;
        auto* cell = test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(test.mesh().count(1), 6);
        QCOMPARE(test.mesh().count(2), 4);
        verifyListSizes(test, 0, {0, 3, 3, 1});
        verifyListSizes(test, 1, {2, 0, 2, 0});
        verifyListSizes(test, 2, {3, 0, 0, 1});
        verifyListSizes(test, 3, {4, 0, 0, 0});
        QVERIFY(test.mesh().entity(2, 1)->isAdjacentTo(cell));
    }

    void derivesTheUpwardListsOfEveryKind_data()
    {
        QTest::addColumn<int>("vertexCount");
        QTest::addColumn<int>("edges");
        QTest::addColumn<int>("faces");
        QTest::newRow("tetrahedron") << 4 << 6 << 4;
        QTest::newRow("pyramid") << 5 << 8 << 5;
        QTest::newRow("wedge") << 6 << 9 << 5;
        QTest::newRow("hexahedron") << 8 << 12 << 6;
    }

    void derivesTheUpwardListsOfEveryKind()
    {
        QFETCH(int, vertexCount);
        QFETCH(int, edges);
        QFETCH(int, faces);
        TestMesh test;
        test.addUnitCell(vertexCount);
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(test.mesh().count(1), edges);
        QCOMPARE(test.mesh().count(2), faces);
        QCOMPARE(listCount(test, 0, 1), 2 * edges);
        QCOMPARE(listCount(test, 0, 3), vertexCount);
        QCOMPARE(listCount(test, 1, 2), 2 * edges);
        QCOMPARE(listCount(test, 2, 3), faces);
        // A face has as many edges as corners.
        QCOMPARE(listCount(test, 0, 2), 2 * edges);
    }

    void asksEveryElementItselfForItsUpwardLists_data()
    {
        QTest::addColumn<int>("faceCount");
        QTest::newRow("few neighbours") << 3;
        QTest::newRow("many neighbours") << 100;
        QTest::newRow("very many neighbours") << 3000;
    }

    void asksEveryElementItselfForItsUpwardLists()
    {
        QFETCH(int, faceCount);
        TestMesh test;
        auto* a = test.addVertex({0, 0, 0});
        auto* b = test.addVertex({1, 0, 0});
        int calls = 0;
        for (int i = 0; i < 3; ++i) {
            auto* edge = new CountedEdge(&calls);
            edge->addAdjacency(a);
            edge->addAdjacency(b);
            test.mesh().add(edge);
        }
        for (int i = 0; i < faceCount; ++i) {
            test.addElement(2, {a, b});
        }
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(calls, 3);
        for (int id = 1; id <= 3; ++id) {
            QCOMPARE(test.mesh().entity(1, id)->adjacencyCount(2), faceCount);
        }
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(calls, 6);
        QCOMPARE(test.mesh().entity(1, 3)->adjacencyCount(2), 2 * faceCount);
    }

    // An element that lists something already gets the rest behind it, and no other does.
    void addsToTheUpwardListThatAnElementHas()
    {
        constexpr int FaceCount = 100;
        TestMesh test;
        auto* a = test.addVertex({0, 0, 0});
        auto* b = test.addVertex({1, 0, 0});
        auto* c = test.addVertex({0, 1, 0});
        test.addElement(1, {a, b});
        auto* edge = test.addElement(1, {a, b});
        for (int i = 0; i < FaceCount; ++i) {
            test.addElement(2, {a, b});
        }
        auto* other = test.addElement(2, {a, c});
        edge->addAdjacency(other);
        test.addElement(1, {a, b});
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(test.mesh().entity(1, 1)->adjacencyCount(2), FaceCount);
        QCOMPARE(edge->adjacencyCount(2), FaceCount + 1);
        QCOMPARE(edge->adjacencyAt(2, 0), other);
        QCOMPARE(test.mesh().entity(1, 3)->adjacencyCount(2), FaceCount);
    }

    void clearsAndRestoresTheUpwardLists()
    {
        TestMesh test;
        test.addUnitCell(8);
        test.addUnitCell(6);
        test.mesh().setUpwardAdjacencies();
        const QList<QList<int>> before = upwardLists(test);
        test.mesh().clearUpwardAdjacencies();
        for (int dimension = 0; dimension <= 2; ++dimension) {
            for (int list = 1; list <= 3; ++list) {
                QCOMPARE(listCount(test, dimension, list), 0);
            }
        }
        QCOMPARE(listCount(test, 1, 0), 2 * test.mesh().count(1));
        QCOMPARE(listCount(test, 3, 0), 14);
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(upwardLists(test), before);
    }

    void clearLeavesTheListsOfRegionsAlone()
    {
        TestMesh test;
        auto* cell = test.addUnitCell(4);
        cell->addAdjacency(test.mesh().entity(2, 1));
        test.mesh().clearUpwardAdjacencies();
        QCOMPARE(cell->adjacencyCount(2), 1);
    }

    void aSecondCallEntersEverythingAgain()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        test.mesh().setUpwardAdjacencies();
        verifyListSizes(test, 0, {0, 6, 6, 2});
        verifyListSizes(test, 1, {2, 0, 4, 0});
        verifyListSizes(test, 2, {3, 0, 0, 2});
    }

    // Would take minutes if each spoke went through all that stands at the hub.
    void derivesTheListsOfAFan()
    {
        constexpr int Count = 150000;
        TestMesh test;
        auto* hub = test.addVertex(Vector());
        TestMesh::Vertices rim;
        for (int i = 0; i < Count; ++i) {
            rim.append(test.addVertex(Vector()));
            test.addElement(1, {hub, rim.last()});
        }
        for (int i = 0; i < Count; ++i) {
            test.addElement(2, {hub, rim[i], rim[(i + 1) % Count]});
        }
        // Stands at a rim vertex, but not at the hub.
        test.addElement(2, {rim[0], rim[2], rim[4]});
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(hub->adjacencyCount(2), Count);
        verifyListSizes(test, 1, {2, 0, 2, 0});
        QCOMPARE(sortedIdsOf(test.mesh().entity(1, 1), 2), (QList<int>{1, Count}));
    }

    void derivesManyEqualListsLikeAnyOthers()
    {
        constexpr int Count = 100;
        TestMesh test;
        auto* a = test.addVertex(Vector());
        auto* b = test.addVertex(Vector());
        for (int i = 0; i < Count; ++i) {
            test.addElement(1, i % 2 == 0 ? TestMesh::Vertices{a, b} : TestMesh::Vertices{b, a});
            test.addElement(2, {a, test.addVertex(Vector()), b});
            test.addElement(2, {a, test.addVertex(Vector()), test.addVertex(Vector())});
        }
        auto* loop = test.addElement(1, {a, a});
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(loop->adjacencyCount(2), 2 * Count);
        test.mesh().remove(loop);
        verifyListSizes(test, 1, {2, 0, Count, 0});
        test.mesh().remove(test.mesh().entity(2, 1));
        verifyListSizes(test, 1, {2, 0, Count - 1, 0});
        for (int id = 1; id <= Count; ++id) {
            QCOMPARE(sortedIds(MeshEntity::getUpwardAdjacencies(test.mesh().entity(1, id), 2)),
                     sortedIdsOf(test.mesh().entity(1, id), 2));
        }
        test.mesh().setUpwardAdjacencies();
        verifyListSizes(test, 1, {2, 0, 2 * (Count - 1), 0});
        test.mesh().clearUpwardAdjacencies();
        test.mesh().setUpwardAdjacencies();
        verifyListSizes(test, 1, {2, 0, Count - 1, 0});
    }

    void copiesShareTheEntities()
    {
        TestMesh test;
        auto* vertex = test.addVertex(Vector(), 3);
        Mesh copy(test.mesh());
        QCOMPARE(copy.entity(0, 3), vertex);
        // The copy must not end with entities in it, or they would be deleted twice.
        copy = Mesh(&test.model());
        QCOMPARE(copy.count(0), 0);
        QCOMPARE(test.mesh().entity(0, 3)->id(), 3);
    }

private:
    /// The total number of entries of one list of all entities of a dimension.
    static int listCount(TestMesh& test, int dimension, int list)
    {
        int count = 0;
        for (auto i = test.mesh().iterator(dimension); i.hasNext();) {
            count += i.next().value()->adjacencyCount(list);
        }
        return count;
    }

    static QList<int> sortedIdsOf(const MeshEntity* entity, int list)
    {
        QList<int> ids = neighbourIds(entity, list);
        std::sort(ids.begin(), ids.end());
        return ids;
    }

    static void verifyListSizes(TestMesh& test, int dimension, const QList<int>& sizes)
    {
        for (auto i = test.mesh().orderedIterator(dimension); i.hasNext();) {
            const MeshEntity* entity = i.next();
            QList<int> actual;
            for (int list = 0; list <= 3; ++list) {
                actual.append(entity->adjacencyCount(list));
            }
            QCOMPARE(actual, sizes);
        }
    }

    /// The lists of all entities, in order of ids and sorted each, since their order means nothing.
    static QList<QList<int>> upwardLists(TestMesh& test)
    {
        QList<QList<int>> lists;
        for (int dimension = 0; dimension <= 2; ++dimension) {
            for (auto i = test.mesh().orderedIterator(dimension); i.hasNext();) {
                const MeshEntity* entity = i.next();
                for (int list = 0; list <= 3; ++list) {
                    lists.append(sortedIdsOf(entity, list));
                }
            }
        }
        return lists;
    }
};

QTEST_APPLESS_MAIN(TestMeshContainer)
#include "tst_Mesh.moc"
