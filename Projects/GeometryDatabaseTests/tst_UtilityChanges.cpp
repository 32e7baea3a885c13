#include "ModelFace.h"
#include "ModelRegion.h"
#include "SurfaceMesh.h"
#include "Utility.h"

#include <QTest>

using namespace Ovra::Geo;

/// What Utility changes: attributes that are copied, neighbours that are replaced.
class TestUtilityChanges : public QObject
{
    Q_OBJECT

private slots:
    void copiesAnAttributeThatTheSourceHas()
    {
        ModelFace source;
        ModelFace target;
        target.attributes().insert(AttributeType::MeshSize, 2.5);
        Utility::copyAttribute(&source, &target, AttributeType::MeshSize);
        QCOMPARE(target.attributes().value(AttributeType::MeshSize, QVariant()), QVariant(2.5));

        source.attributes().insert(AttributeType::MeshSize, 4.0);
        source.attributes().insert(AttributeType::MotionType, QString("spin"));
        Utility::copyAttribute(&source, &target, AttributeType::MeshSize);
        QCOMPARE(target.attributes().value(AttributeType::MeshSize, QVariant()), QVariant(4.0));
        QCOMPARE(target.attributes().count(), 1);
        QCOMPARE(source.attributes().count(), 2);
    }

    void copiesAnInvalidValueToo()
    {
        ModelFace source;
        ModelFace target;
        source.attributes().insert(AttributeType::MeshSize, QVariant());
        target.attributes().insert(AttributeType::MeshSize, 1.0);
        Utility::copyAttribute(&source, &target, AttributeType::MeshSize);
        QVERIFY(target.attributes().contains(AttributeType::MeshSize));
        QCOMPARE(target.attributes().value(AttributeType::MeshSize, 7), QVariant());
    }

    void replacesMeshAdjacencyLinkedInAnyDirection_data()
    {
        QTest::addColumn<bool>("forward");
        QTest::addColumn<bool>("backward");
        QTest::addColumn<bool>("replaced");
        QTest::newRow("both") << true << true << true;
        QTest::newRow("forward") << true << false << true;
        QTest::newRow("backward") << false << true << true;
        QTest::newRow("none") << false << false << false;
    }

    void replacesMeshAdjacencyLinkedInAnyDirection()
    {
        QFETCH(bool, forward);
        QFETCH(bool, backward);
        SurfaceMesh surface;
        ModelEntity* parent = surface.addModelEntity(2);
        MeshEntity* face = surface.addElement(parent, {});
        MeshVertex* oldVertex = surface.addVertex(Vector());
        MeshVertex* newVertex = surface.addVertex(Vector());
        if (forward) {
            face->addAdjacency(oldVertex);
        }
        if (backward) {
            oldVertex->addAdjacency(face);
        }
        MeshEntity* base = face;
        QTEST(Utility::replaceAdjacencies(base, oldVertex, newVertex), "replaced");
        QCOMPARE(face->isAdjacentTo(newVertex), forward);
        QVERIFY(!face->isAdjacentTo(oldVertex));
        QVERIFY(!oldVertex->isAdjacentTo(face));
        QCOMPARE(newVertex->isAdjacentTo(face), forward || backward);
    }

    void replacedMeshVertexKeepsItsPosition()
    {
        SurfaceMesh surface;
        ModelEntity* parent = surface.addModelEntity(2);
        MeshEntity* face =
            surface.addElementAt(parent, {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0)});
        surface.mesh()->setUpwardAdjacencies();
        const QList<MeshVertex*> vertices = SurfaceMesh::verticesOf(face);
        MeshVertex* twin = surface.addVertex(Vector(1, 0, 0));
        QVERIFY(Utility::replaceAdjacencies(face, vertices[1], twin));
        QCOMPARE(SurfaceMesh::verticesOf(face),
                 QList<MeshVertex*>({vertices[0], twin, vertices[2]}));
    }

    void newMeshEntityGetsASecondBackLink()
    {
        SurfaceMesh surface;
        MeshEntity* face = surface.addElement(surface.addModelEntity(2), {});
        MeshVertex* oldVertex = surface.addVertex(Vector());
        MeshVertex* newVertex = surface.addVertex(Vector());
        face->addAdjacency(oldVertex);
        oldVertex->addAdjacency(face);
        newVertex->addAdjacency(face);
        QVERIFY(Utility::replaceAdjacencies(face, oldVertex, newVertex));
        QCOMPARE(newVertex->adjacencyCount(2), 2);
    }

    void replacesModelAdjacencyLinkedInBothDirectionsOnly_data()
    {
        QTest::addColumn<bool>("forward");
        QTest::addColumn<bool>("backward");
        QTest::newRow("both") << true << true;
        QTest::newRow("forward") << true << false;
        QTest::newRow("backward") << false << true;
        QTest::newRow("none") << false << false;
    }

    void replacesModelAdjacencyLinkedInBothDirectionsOnly()
    {
        QFETCH(bool, forward);
        QFETCH(bool, backward);
        ModelRegion region;
        ModelFace oldFace;
        ModelFace newFace;
        if (forward) {
            region.addAdjacency(&oldFace);
        }
        if (backward) {
            oldFace.addAdjacency(&region);
        }
        const bool both = forward && backward;
        QCOMPARE(
            Utility::replaceAdjacencies(static_cast<ModelEntity*>(&region), &oldFace, &newFace),
            both);
        QCOMPARE(region.isAdjacentTo(&newFace), both);
        QCOMPARE(newFace.isAdjacentTo(&region), both);
        QCOMPARE(region.isAdjacentTo(&oldFace), forward && !both);
        QCOMPARE(oldFace.isAdjacentTo(&region), backward && !both);
    }

    void newModelEntityKeepsItsBackLink()
    {
        ModelRegion region;
        ModelFace oldFace;
        ModelFace newFace;
        SurfaceMesh::link(&region, &oldFace);
        newFace.addAdjacency(&region);
        QVERIFY(
            Utility::replaceAdjacencies(static_cast<ModelEntity*>(&region), &oldFace, &newFace));
        QCOMPARE(newFace.adjacencyCount(3), 1);
        QCOMPARE(region.adjacencyCount(2), 1);
        QCOMPARE(oldFace.adjacencyCount(3), 0);
    }
};

QTEST_APPLESS_MAIN(TestUtilityChanges)
#include "tst_UtilityChanges.moc"
