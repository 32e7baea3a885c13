#include "AttributeType.h"
#include "TestMesh.h"

#include <QTest>

#include <memory>
#include <type_traits>

using namespace Ovra::Geo;

class TestMeshEntity : public QObject
{
    Q_OBJECT

private slots:
    void isCopiedThroughItsBase()
    {
        static_assert(std::is_copy_assignable_v<MeshEntity>);
        MeshVertex vertex;
        MeshEdge edge;
        edge.setId(7);
        edge.attributes().insert(AttributeType::Side, 1);
        edge.addAdjacency(&vertex);
        MeshEdge copy;
        static_cast<MeshEntity&>(copy) = edge;
        QCOMPARE(copy.id(), 7);
        QVERIFY(copy.attributes().contains(AttributeType::Side));
        QCOMPARE(copy.adjacencyAt(0, 0), &vertex);
    }

    void createsTheClassOfTheDimension()
    {
        const std::unique_ptr<MeshEntity> vertex(MeshEntity::create(0));
        const std::unique_ptr<MeshEntity> edge(MeshEntity::create(1));
        const std::unique_ptr<MeshEntity> face(MeshEntity::create(2));
        const std::unique_ptr<MeshEntity> region(MeshEntity::create(3));
        QVERIFY(dynamic_cast<MeshVertex*>(vertex.get()));
        QVERIFY(dynamic_cast<MeshEdge*>(edge.get()));
        QVERIFY(dynamic_cast<MeshFace*>(face.get()));
        QVERIFY(dynamic_cast<MeshRegion*>(region.get()));
        QCOMPARE(vertex->dimension(), 0);
        QCOMPARE(edge->dimension(), 1);
        QCOMPARE(face->dimension(), 2);
        QCOMPARE(region->dimension(), 3);
        QCOMPARE(MeshEntity::create(4), nullptr);
        QCOMPARE(MeshEntity::create(-1), nullptr);
    }

    void hasADimensionOfItsOwnForTheBaseClass()
    {
        const MeshFace face;
        QCOMPARE(face.MeshEntity::dimension(), -1);
    }

    void startsWithDefaults()
    {
        for (int dimension = 0; dimension <= 3; ++dimension) {
            const std::unique_ptr<MeshEntity> entity(MeshEntity::create(dimension));
            MeshVertex vertex;
            QCOMPARE(entity->id(), 0);
            QCOMPARE(entity->parent(), nullptr);
            QVERIFY(entity->attributes().isEmpty());
            QVERIFY(!entity->isAdjacentTo(&vertex));
            for (int d = 0; d <= 3; ++d) {
                QCOMPARE(entity->adjacencyCount(d), 0);
                QVERIFY(!entity->adjacencyIterator(d).hasNext());
            }
        }
    }

    void setsTheParentAlone()
    {
        ModelFace parent;
        MeshFace face;
        face.setId(3);
        face.setParent(&parent);
        QCOMPARE(face.parent(), &parent);
        QCOMPARE(parent.childCount(), 0);
        face.setParent(nullptr);
    }

    void keepsAttributes()
    {
        MeshVertex vertex;
        vertex.attributes().insert(AttributeType::ShellVertex, QVariant(7));
        QCOMPARE(vertex.attributes().value(AttributeType::ShellVertex, QVariant()), QVariant(7));
    }

    void listsNeighboursByDimensionInOrderOfInsertion()
    {
        TestMesh test;
        MeshVertex vertex;
        MeshEdge edge;
        MeshFace face;
        MeshRegion region;
        MeshRegion other;
        region.setId(9);
        other.setId(4);
        vertex.addAdjacency(&region);
        vertex.addAdjacency(&edge);
        vertex.addAdjacency(&other);
        vertex.addAdjacency(&face);
        QCOMPARE(vertex.adjacencyCount(0), 0);
        QCOMPARE(vertex.adjacencyAt(1, 0), &edge);
        QCOMPARE(vertex.adjacencyAt(2, 0), &face);
        QCOMPARE(neighbourIds(&vertex, 3), QList<int>({9, 4}));
        QVERIFY(vertex.isAdjacentTo(&edge));
        QVERIFY(!edge.isAdjacentTo(&vertex));
    }

    void removesTheFirstOfTwoEqualNeighbours()
    {
        MeshVertex vertex;
        MeshEdge edge;
        MeshEdge other;
        vertex.addAdjacency(&edge);
        vertex.addAdjacency(&other);
        vertex.addAdjacency(&edge);
        vertex.removeAdjacency(&edge);
        QCOMPARE(vertex.adjacencyCount(1), 2);
        QCOMPARE(vertex.adjacencyAt(1, 0), &other);
        QCOMPARE(vertex.adjacencyAt(1, 1), &edge);
        vertex.removeAdjacency(&edge);
        vertex.removeAdjacency(&edge);
        QCOMPARE(vertex.adjacencyCount(1), 1);
    }

    void replacesANeighbourInItsPlace()
    {
        MeshVertex a;
        MeshVertex b;
        MeshVertex c;
        MeshVertex other;
        MeshFace face;
        for (MeshVertex* vertex : {&a, &b, &c, &b}) {
            face.addAdjacency(vertex);
        }
        QVERIFY(face.replaceAdjacency(&b, &other));
        QCOMPARE(face.adjacencyCount(0), 4);
        QCOMPARE(face.adjacencyAt(0, 0), &a);
        QCOMPARE(face.adjacencyAt(0, 1), &other);
        QCOMPARE(face.adjacencyAt(0, 2), &c);
        QCOMPARE(face.adjacencyAt(0, 3), &b);
    }

    void doesNotReplaceAStranger()
    {
        MeshVertex a;
        MeshVertex stranger;
        MeshFace face;
        face.addAdjacency(&a);
        QVERIFY(!face.replaceAdjacency(&stranger, &a));
        QCOMPARE(face.adjacencyCount(0), 1);
        QCOMPARE(face.adjacencyAt(0, 0), &a);
    }

    void leavesAReplacementOfAnotherDimensionInTheOldList()
    {
        MeshVertex vertex;
        MeshEdge edge;
        MeshFace face;
        face.addAdjacency(&vertex);
        QVERIFY(face.replaceAdjacency(&vertex, &edge));
        QCOMPARE(face.adjacencyAt(0, 0), &edge);
        QCOMPARE(face.adjacencyCount(1), 0);
    }

    void walksNeighboursAsTheyWere()
    {
        MeshVertex a;
        MeshVertex b;
        MeshVertex c;
        MeshFace face;
        face.addAdjacency(&a);
        face.addAdjacency(&b);
        QListIterator<MeshEntity*> i = face.adjacencyIterator(0);
        QCOMPARE(i.next(), &a);
        face.removeAdjacency(&b);
        face.addAdjacency(&c);
        QCOMPARE(i.next(), &b);
        QVERIFY(!i.hasNext());
    }

    void comparesIdAndDimension()
    {
        MeshFace face;
        MeshFace sameFace;
        MeshEdge edge;
        face.setId(7);
        sameFace.setId(7);
        edge.setId(7);
        QVERIFY(face == sameFace);
        QVERIFY(!(face != sameFace));
        QVERIFY(face != edge);
        QVERIFY(!(face == edge));
        QVERIFY(!(face < edge));
        QVERIFY(!(edge < face));
        edge.setId(8);
        QVERIFY(face < edge);
        QVERIFY(MeshEntity::lessThan(&face, &edge));
        QVERIFY(!MeshEntity::lessThan(&edge, &face));
        QVERIFY(!MeshEntity::lessThan(&face, &sameFace));
    }

    void copiesMemberByMember()
    {
        ModelFace parent;
        MeshVertex vertex;
        MeshFace face;
        face.setId(3);
        face.addAdjacency(&vertex);
        parent.addChild(&face);
        MeshFace copy(face);
        QCOMPARE(copy.id(), 3);
        QCOMPARE(copy.parent(), &parent);
        QCOMPARE(copy.adjacencyAt(0, 0), &vertex);
        QCOMPARE(parent.childCount(), 1);
        copy.setParent(nullptr);
    }

    void theCopysDestructorTreatsTheParentAsTheOriginals()
    {
        ModelFace parent;
        MeshFace face;
        face.setId(3);
        parent.addChild(&face);
        {
            MeshFace copy(face);
        }
        QCOMPARE(parent.childCount(), 0);
        QCOMPARE(face.parent(), &parent);
    }

    void findsWhatAllOfAListHaveInCommon()
    {
        MeshVertex a;
        MeshVertex b;
        MeshVertex c;
        QList<MeshFace> faces(5);
        link(a, faces, {0, 1, 2, 1});
        link(b, faces, {2, 1, 3});
        link(c, faces, {4, 2, 1});
        using Set = QSet<MeshEntity*>;
        using List = QList<MeshEntity*>;
        QCOMPARE(MeshEntity::getUpwardAdjacencies(List{&a}, 2),
                 Set({&faces[0], &faces[1], &faces[2]}));
        QCOMPARE(MeshEntity::getUpwardAdjacencies(List{&a, &b}, 2), Set({&faces[1], &faces[2]}));
        QCOMPARE(MeshEntity::getUpwardAdjacencies(List{&a, &b, &c}, 2),
                 Set({&faces[1], &faces[2]}));
        QCOMPARE(MeshEntity::getUpwardAdjacencies(List{&a, &a}, 2),
                 Set({&faces[0], &faces[1], &faces[2]}));
        QVERIFY(MeshEntity::getUpwardAdjacencies(List{&a, &b}, 3).isEmpty());
        MeshVertex lonely;
        QVERIFY(MeshEntity::getUpwardAdjacencies(List{&a, &lonely, &b}, 2).isEmpty());
        QVERIFY(MeshEntity::getUpwardAdjacencies(List(), 2).isEmpty());
    }

    void findsWhatVerticesOfManyElementsHaveInCommon()
    {
        MeshVertex a;
        MeshVertex b;
        QList<MeshFace> faces(300);
        QSet<MeshEntity*> expected;
        for (qsizetype i = 0; i < faces.size(); ++i) {
            if (i % 2 == 0) {
                a.addAdjacency(&faces[i]);
            }
            if (i % 3 == 0) {
                b.addAdjacency(&faces[i]);
            }
            if (i % 6 == 0) {
                expected.insert(&faces[i]);
            }
        }
        QCOMPARE(MeshEntity::getUpwardAdjacencies({&a, &b}, 2), expected);
        QCOMPARE(MeshEntity::getUpwardAdjacencies({&b, &a}, 2), expected);
    }

    // Damaged meshes have such vertices; the time must not grow with the square of their number.
    void collapsesManyDuplicatesInOrder()
    {
        MeshVertex vertex;
        QList<MeshFace> faces(200000);
        for (int pass = 0; pass < 2; ++pass) {
            for (qsizetype i = 0; i < faces.size(); ++i) {
                faces[i].setId(static_cast<int>(i) + 1);
                vertex.addAdjacency(&faces[i]);
            }
        }
        MeshEdge edge;
        edge.addAdjacency(&vertex);
        // Minutes, if it were quadratic in the number of duplicates.
        edge.setUpwardAdjacencies();
        QCOMPARE(edge.adjacencyCount(2), 200000);
        QCOMPARE(sortedIds(MeshEntity::getUpwardAdjacencies(&edge, 2)), neighbourIds(&edge, 2));
    }

    void looksUpwardsThroughTheVertices()
    {
        TestMesh test;
        auto* cell = test.addUnitCell(8);
        test.mesh().setUpwardAdjacencies();
        auto* edge = test.mesh().entity(1, 1);
        QCOMPARE(edge->adjacencyCount(3), 0);
        QCOMPARE(MeshEntity::getUpwardAdjacencies(edge, 3), QSet<MeshEntity*>({cell}));
        QCOMPARE(MeshEntity::getUpwardAdjacencies(edge, 2).size(), 2);
        QCOMPARE(MeshEntity::getUpwardAdjacencies(edge, 1), QSet<MeshEntity*>({edge}));
        QCOMPARE(MeshEntity::getUpwardAdjacencies(cell, 3), QSet<MeshEntity*>({cell}));
    }

    void countsADiagonalAsAnEdgeOfItsFace()
    {
        TestMesh test;
        TestMesh::Vertices v;
        for (const Vector& point : TestMesh::unitCellPoints(8)) {
            v.append(test.addVertex(point));
        }
        auto* cell = test.addElement(3, v);
        auto* quadrilateral = test.addElement(2, {v[0], v[1], v[2], v[3]});
        auto* diagonal = test.addElement(1, {v[0], v[2]});
        auto* cut = test.addElement(2, {v[0], v[2], v[5]});
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(MeshEntity::getUpwardAdjacencies(diagonal, 2),
                 QSet<MeshEntity*>({quadrilateral, cut}));
        QCOMPARE(MeshEntity::getUpwardAdjacencies(cut, 3), QSet<MeshEntity*>({cell}));
        QCOMPARE(neighbourIds(cut, 3), QList<int>({1}));
    }

    void findsItselfAndItsSupersetsInItsOwnDimension()
    {
        TestMesh test;
        auto* a = test.addVertex(Vector());
        auto* b = test.addVertex(Vector());
        auto* c = test.addVertex(Vector());
        auto* d = test.addVertex(Vector());
        auto* triangle = test.addElement(2, {a, b, c});
        auto* quadrilateral = test.addElement(2, {a, b, c, d});
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(MeshEntity::getUpwardAdjacencies(triangle, 2),
                 QSet<MeshEntity*>({triangle, quadrilateral}));
        QCOMPARE(MeshEntity::getUpwardAdjacencies(quadrilateral, 2),
                 QSet<MeshEntity*>({quadrilateral}));
    }

    void looksDownwardsWhereTheUpwardRelationIsStored()
    {
        TestMesh test;
        auto* cell = test.addUnitCell(6);
        auto* quadrilateral = test.mesh().entity(2, 1);
        auto* triangle = test.mesh().entity(2, 4);
        QVERIFY(MeshEntity::getDownwardAdjacencies(cell, 2).isEmpty());
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(sortedIds(MeshEntity::getDownwardAdjacencies(cell, 2)),
                 QList<int>({1, 2, 3, 4, 5}));
        QCOMPARE(MeshEntity::getDownwardAdjacencies(quadrilateral, 1).size(), 4);
        QCOMPARE(MeshEntity::getDownwardAdjacencies(triangle, 1).size(), 3);
        QVERIFY(MeshEntity::getDownwardAdjacencies(cell, 1).isEmpty());
        QVERIFY(MeshEntity::getDownwardAdjacencies(cell, 0).isEmpty());
        QVERIFY(MeshEntity::getDownwardAdjacencies(triangle, 0).isEmpty());
        QVERIFY(MeshEntity::getDownwardAdjacencies(triangle, 3).isEmpty());
    }

    void findsOnlySidesThatExist()
    {
        TestMesh test;
        TestMesh::Vertices v;
        for (const Vector& point : TestMesh::unitCellPoints(4)) {
            v.append(test.addVertex(point));
        }
        auto* cell = test.addElement(3, v);
        auto* face = test.addElement(2, {v[0], v[1], v[2]});
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(MeshEntity::getDownwardAdjacencies(cell, 2), QSet<MeshEntity*>({face}));
    }

    void distinguishesSidesOfNeighbouringCells()
    {
        TestMesh test;
        TestMesh::Vertices v;
        for (const Vector& point : TestMesh::unitCellPoints(4)) {
            v.append(test.addVertex(point));
        }
        v.append(test.addVertex(Vector(1, 1, 1)));
        auto* first = test.addCell({v[0], v[1], v[2], v[3]});
        auto* second = test.addCell({v[1], v[2], v[3], v[4]});
        test.mesh().setUpwardAdjacencies();
        QCOMPARE(test.mesh().count(2), 7);
        const auto shared = MeshEntity::getDownwardAdjacencies(first, 2) &
                            MeshEntity::getDownwardAdjacencies(second, 2);
        QCOMPARE(shared.size(), 1);
        QCOMPARE(sortedIds(MeshEntity::getUpwardAdjacencies(*shared.cbegin(), 3)),
                 QList<int>({1, 2}));
        QCOMPARE((*shared.cbegin())->adjacencyCount(3), 2);
    }

    void aVertexHasNoUpwardAdjacenciesByItsVertices()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().setUpwardAdjacencies();
        QVERIFY(MeshEntity::getUpwardAdjacencies(test.mesh().entity(0, 1), 3).isEmpty());
    }

private:
    static void link(MeshVertex& vertex, QList<MeshFace>& faces, const QList<int>& indices)
    {
        for (int index : indices) {
            vertex.addAdjacency(&faces[index]);
        }
    }
};

QTEST_APPLESS_MAIN(TestMeshEntity)
#include "tst_MeshEntity.moc"
