#include "TestMesh.h"
#include "Utility.h"

#include <QTest>

#include <algorithm>
#include <memory>

using namespace Ovra::Geo;

namespace
{

QList<int> childIds(const ModelEntity* entity)
{
    QList<MeshEntity*> children;
    for (auto i = entity->childIterator(); i.hasNext();) {
        children.append(i.next().value());
    }
    return sortedIds(children);
}

// Counts the objects of its kind that are deleted.
class CountedRegion : public MeshRegion
{
public:
    explicit CountedRegion(int* deleted)
        : deleted_(deleted)
    {
    }
    CountedRegion(const CountedRegion&) = delete;
    CountedRegion& operator=(const CountedRegion&) = delete;
    ~CountedRegion() override { ++*deleted_; }

private:
    int* deleted_;
};

// Notes how many children its parent has when it is deleted, itself included.
class CountingRegion : public MeshRegion
{
public:
    CountingRegion(const ModelRegion* parent, QList<int>* counts)
        : parent_(parent)
        , counts_(counts)
    {
    }
    CountingRegion(const CountingRegion&) = delete;
    CountingRegion& operator=(const CountingRegion&) = delete;
    ~CountingRegion() override { counts_->append(parent_->childCount()); }

private:
    const ModelRegion* parent_;
    QList<int>* counts_;
};

bool isClose(const Vector& a, const Vector& b)
{
    return a.isAlmostEqualTo(b, 0.0, 1e-14);
}

} // namespace

class TestClassification : public QObject
{
    Q_OBJECT

private slots:
    void holdsChildrenOfItsOwnDimension_data()
    {
        QTest::addColumn<int>("parentDimension");
        QTest::addColumn<int>("childDimension");
        for (int parent = 0; parent <= 3; ++parent) {
            for (int child = 0; child <= 3; ++child) {
                QTest::addRow("%d on %d", child, parent) << parent << child;
            }
        }
    }

    void holdsChildrenOfItsOwnDimension()
    {
        QFETCH(int, parentDimension);
        QFETCH(int, childDimension);
        TestMesh test;
        auto* parent = ModelEntity::create(parentDimension);
        test.model().add(parent);
        auto* child = MeshEntity::create(childDimension);
        test.mesh().add(child);
        parent->addChild(child);
        QCOMPARE(child->parent(), parent);
        QCOMPARE(parent->childCount(), parentDimension == childDimension ? 1 : 0);
        parent->removeChild(child);
        QCOMPARE(child->parent(), nullptr);
        QCOMPARE(parent->childCount(), 0);
    }

    void movesAChildFromParentToParent()
    {
        TestMesh test;
        auto* first = test.addModelFace();
        auto* second = test.addModelFace();
        auto* child = test.addElement(2, {}, first);
        second->addChild(child);
        QCOMPARE(child->parent(), second);
        QCOMPARE(first->childCount(), 0);
        QCOMPARE(second->childCount(), 1);
        second->addChild(child);
        QCOMPARE(second->childCount(), 1);
        QCOMPARE(child->parent(), second);
    }

    void childrenOfTheSameIdOverwriteEachOther()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        MeshFace first;
        MeshFace second;
        first.setId(4);
        second.setId(4);
        face->addChild(&first);
        face->addChild(&second);
        QCOMPARE(face->childCount(), 1);
        QCOMPARE(face->childIterator().next().value(), &second);
        QCOMPARE(first.parent(), face);
        face->removeChild(&first);
        QCOMPARE(face->childCount(), 0);
        QCOMPARE(second.parent(), face);
    }

    void keepsTheIdAtTheTimeOfAdding()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        MeshFace child;
        child.setId(4);
        face->addChild(&child);
        child.setId(9);
        QCOMPARE(face->childIterator().next().key(), 4);
        face->removeChild(&child);
        QCOMPARE(child.parent(), nullptr);
        QCOMPARE(face->childCount(), 1);
        child.setId(4);
        face->removeChild(&child);
        QCOMPARE(face->childCount(), 0);
    }

    void removingAStrangerResetsItsParent()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        auto* other = test.addModelFace();
        auto* child = test.addElement(2, {}, other);
        face->removeChild(child);
        QCOMPARE(child->parent(), nullptr);
        QCOMPARE(other->childCount(), 1);
        child->setParent(other);
    }

    void destroyedChildrenLeaveTheTable_data()
    {
        QTest::addColumn<int>("dimension");
        for (int dimension = 0; dimension <= 3; ++dimension) {
            QTest::addRow("dimension %d", dimension) << dimension;
        }
    }

    void destroyedChildrenLeaveTheTable()
    {
        QFETCH(int, dimension);
        const std::unique_ptr<ModelEntity> parent(ModelEntity::create(dimension));
        std::unique_ptr<MeshEntity> gone(MeshEntity::create(dimension));
        const std::unique_ptr<MeshEntity> kept(MeshEntity::create(dimension));
        gone->setId(1);
        kept->setId(2);
        parent->addChild(gone.get());
        parent->addChild(kept.get());
        gone.reset();
        QCOMPARE(childIds(parent.get()), QList<int>({2}));
    }

    void aDestroyedParentTellsNobody()
    {
        MeshFace child;
        ModelEdge neighbour;
        {
            ModelFace face;
            face.addChild(&child);
            TestMesh::link(&face, &neighbour);
        }
        QVERIFY(child.parent());
        QCOMPARE(neighbour.adjacencyCount(2), 1);
        child.setParent(nullptr);
    }

    void walksChildrenAsTheyWere()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        auto* first = test.addElement(2, {}, face);
        auto* second = test.addElement(2, {}, face);
        auto i = face->childIterator();
        face->removeChild(first);
        face->removeChild(second);
        QSet<MeshEntity*> seen;
        while (i.hasNext()) {
            seen.insert(i.next().value());
        }
        QCOMPARE(seen, QSet<MeshEntity*>({first, second}));
        QCOMPARE(face->childCount(), 0);
    }

    void removesAllChildrenByDeletingThem()
    {
        ModelRegion region;
        int deleted = 0;
        for (int id = 1; id <= 100; ++id) {
            auto* child = new CountedRegion(&deleted);
            child->setId(id);
            region.addChild(child);
        }
        MeshVertex vertex;
        region.addChild(&vertex);
        region.removeAllChildren();
        QCOMPARE(deleted, 100);
        QCOMPARE(region.childCount(), 0);
        QCOMPARE(vertex.parent(), &region);
    }

    // While a child is deleted, those that come after it are still in the table.
    void deletesAllChildrenAheadOfEmptyingTheTable()
    {
        ModelRegion region;
        QList<int> counts;
        for (int id = 1; id <= 3; ++id) {
            auto* child = new CountingRegion(&region, &counts);
            child->setId(id);
            region.addChild(child);
        }
        region.removeAllChildren();
        QCOMPARE(counts, (QList<int>{3, 2, 1}));
        QCOMPARE(region.childCount(), 0);
    }

    void removesAllChildrenAfterARenumbering()
    {
        ModelRegion region;
        for (int id = 1; id <= 3; ++id) {
            auto* child = new MeshRegion;
            child->setId(id);
            region.addChild(child);
            child->setId(id % 3 + 1);
        }
        region.removeAllChildren();
        QCOMPARE(region.childCount(), 0);
    }

    void findsTheVerticesOfTheChildren()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        TestMesh::Vertices v;
        for (int i = 0; i < 5; ++i) {
            v.append(test.addVertex(Vector(i, 0, 0)));
        }
        test.addElement(2, {v[0], v[1], v[2]}, face);
        test.addElement(2, {v[2], v[1], v[3]}, face);
        test.addElement(2, {}, face);
        face->addChild(v[4]);
        QCOMPARE(sortedIds(Utility::getMeshVerticesOnModelEntity(face)), QList<int>({1, 2, 3, 4}));
        QVERIFY(Utility::getMeshVerticesOnModelEntity(test.addModelFace()).isEmpty());
    }

    void theMeshCentroidOfAVertexIsItsPoint()
    {
        TestMesh test;
        auto* vertex = test.addModelVertex(Vector(1, 2, 3));
        QVERIFY(vertex->meshCentroid() == Vector());
        auto* child = test.addVertex(Vector(9, 9, 9), 0, vertex);
        QVERIFY(vertex->meshCentroid() == Vector(1, 2, 3));
        QVERIFY(vertex->meshNormal() == Vector());
        vertex->removeChild(child);
        QVERIFY(vertex->meshCentroid() == Vector());
    }

    void theMeshCentroidOfAnEdgeIsTheMeanOfItsElements()
    {
        TestMesh test;
        auto* edge = test.addModelEdge();
        auto* a = test.addVertex(Vector(0, 0, 0));
        auto* b = test.addVertex(Vector(1, 0, 0));
        auto* c = test.addVertex(Vector(1, 3, 0));
        test.addElement(1, {a, b}, edge);
        test.addElement(1, {b, c}, edge);
        QVERIFY(isClose(edge->meshCentroid(), Vector(0.75, 0.75, 0)));
        QVERIFY(isClose(edge->meshNormal(), Vector(0.5, -0.5, 0)));
    }

    void theMeshCentroidOfAFaceIsTheMeanOfItsDistinctVertices()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        auto* a = test.addVertex(Vector(0, 0, 0));
        auto* b = test.addVertex(Vector(1, 0, 0));
        auto* c = test.addVertex(Vector(0, 1, 0));
        auto* d = test.addVertex(Vector(0, 0, 8));
        test.addElement(2, {a, b, c}, face);
        test.addElement(2, {a, d, b}, face);
        QVERIFY(isClose(face->meshCentroid(), Vector(0.25, 0.25, 2)));
        QVERIFY(isClose(face->meshNormal(), Vector(0, 0.5, 0.5)));
    }

    void theMeshCentroidOfARegionIsTheMeanOfItsDistinctVertices()
    {
        TestMesh test;
        auto* region = test.addModelRegion();
        auto* a = test.addVertex(Vector(0, 0, 0));
        auto* b = test.addVertex(Vector(5, 0, 0));
        auto* c = test.addVertex(Vector(0, 5, 0));
        auto* d = test.addVertex(Vector(0, 0, 5));
        auto* e = test.addVertex(Vector(5, 5, 5));
        test.addElement(3, {a, b, c, d}, region);
        test.addElement(3, {b, c, d, e}, region);
        QVERIFY(isClose(region->meshCentroid(), Vector(2, 2, 2)));
        QVERIFY(region->meshNormal() == Vector());
    }

    void meshDataAreComputedOnceThereAreChildrenAndThenKept_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::newRow("edge") << 1;
        QTest::newRow("face") << 2;
        QTest::newRow("region") << 3;
    }

    void meshDataAreComputedOnceThereAreChildrenAndThenKept()
    {
        QFETCH(int, dimension);
        TestMesh test;
        auto* parent = ModelEntity::create(dimension);
        test.model().add(parent);
        QVERIFY(parent->meshCentroid() == Vector());
        QVERIFY(parent->meshNormal() == Vector());

        auto* child = test.addElement(dimension, simplex(test, dimension), parent);
        const Vector centroid = parent->meshCentroid();
        const Vector normal = parent->meshNormal();
        QVERIFY(isClose(centroid, child->centroid()));
        QVERIFY(isClose(normal, child->normal()));

        auto* other = test.addElement(dimension, simplex(test, dimension), parent);
        static_cast<MeshVertex*>(other->adjacencyAt(0, 0))->setPoint(Vector(50, 60, 70));
        QVERIFY(parent->meshCentroid() == centroid);
        QVERIFY(parent->meshNormal() == normal);
        test.mesh().clear();
        QVERIFY(parent->meshCentroid() == centroid);
        QVERIFY(parent->meshNormal() == normal);
    }

    void meshCentroidAndNormalAreComputedTogether_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::addColumn<bool>("normalFirst");
        for (int dimension : {1, 2}) {
            QTest::addRow("dimension %d, normal first", dimension) << dimension << true;
            QTest::addRow("dimension %d, centroid first", dimension) << dimension << false;
        }
    }

    void meshCentroidAndNormalAreComputedTogether()
    {
        QFETCH(int, dimension);
        QFETCH(bool, normalFirst);
        TestMesh test;
        auto* parent = ModelEntity::create(dimension);
        test.model().add(parent);
        auto* child = test.addElement(dimension, simplex(test, dimension), parent);
        const Vector centroid = child->centroid();
        const Vector normal = child->normal();
        QVERIFY(isClose(normalFirst ? parent->meshNormal() : parent->meshCentroid(),
                        normalFirst ? normal : centroid));

        TestMesh::Vertices reversed = simplex(test, dimension);
        std::reverse(reversed.begin(), reversed.end());
        reversed.first()->setPoint(Vector(50, 60, 0));
        test.addElement(dimension, reversed, parent);
        QVERIFY(isClose(parent->meshCentroid(), centroid));
        QVERIFY(isClose(parent->meshNormal(), normal));
    }

    void meshDataDoNotHangOnHashOrder()
    {
        // The exact sum depends on the order of its terms; the order of ids gives 0 here.
        TestMesh test;
        auto* edge = test.addModelEdge();
        const QList<double> values = {1e16, 1.0, -1e16};
        for (double x : values) {
            auto* a = test.addVertex(Vector(x, 0, 0));
            auto* b = test.addVertex(Vector(x, 0, 0));
            test.addElement(1, {a, b}, edge);
        }
        QCOMPARE(edge->meshCentroid().x(), 0.0);

        auto* face = test.addModelFace();
        TestMesh::Vertices vertices;
        for (double x : values) {
            vertices.append(test.addVertex(Vector(x, 0, 0)));
        }
        test.addElement(2, {vertices[1], vertices[2], vertices[0]}, face);
        QCOMPARE(face->meshCentroid().x(), 0.0);
    }

    void classifiesAWholeCell()
    {
        TestMesh test;
        auto* region = test.addModelRegion();
        auto* face = test.addModelFace();
        test.addUnitCell(8, region, face);
        QCOMPARE(childIds(region), QList<int>({1}));
        QCOMPARE(childIds(face), QList<int>({1, 2, 3, 4, 5, 6}));
        QVERIFY(isClose(face->meshCentroid(), Vector(0.5, 0.5, 0.5)));
        QVERIFY(isClose(face->meshNormal(), Vector(0, 0, 0)));
    }

private:
    static TestMesh::Vertices simplex(TestMesh& test, int dimension)
    {
        const QList<Vector> corners = {{0, 0, 0}, {2, 0, 0}, {0, 4, 0}, {0, 0, 8}};
        TestMesh::Vertices vertices;
        for (int i = 0; i <= dimension; ++i) {
            vertices.append(test.addVertex(corners[i]));
        }
        return vertices;
    }
};

QTEST_APPLESS_MAIN(TestClassification)
#include "tst_Classification.moc"
