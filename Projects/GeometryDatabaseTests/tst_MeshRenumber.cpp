#include "AttributeType.h"
#include "TestMesh.h"

#include <QTest>

#include <limits>

using namespace Ovra::Geo;

Q_DECLARE_METATYPE(Ovra::Geo::AttributeType)

namespace
{

int attribute(MeshEntity* entity, const AttributeType& type)
{
    return entity->attributes().value(type, QVariant(-1)).toInt();
}

} // namespace

class TestMeshRenumber : public QObject
{
    Q_OBJECT

private slots:
    void leavesAMeshWithoutGapsAlone()
    {
        TestMesh test;
        auto* vertex = test.addVertex(Vector(), 1);
        addVertices(test, {2, 3});
        vertex->attributes().insert(AttributeType::ShellVertex, QVariant(QString("3")));
        test.mesh().renumber(0);
        QCOMPARE(ids(test, 0), QList<int>({1, 2, 3}));
        QCOMPARE(vertex->attributes().value(AttributeType::ShellVertex, QVariant()),
                 QVariant(QString("3")));
    }

    void closesGapsInTheOrderOfIds()
    {
        TestMesh test;
        addVertices(test, {5, 1, 2});
        auto* last = test.mesh().entity(0, 5);
        test.mesh().renumber(0);
        QCOMPARE(last->id(), 3);
        QCOMPARE(test.mesh().entity(0, 5), nullptr);
        QCOMPARE(test.mesh().entity(0, 3), last);
        QCOMPARE(test.mesh().count(0), 3);
        QCOMPARE(test.addVertex(Vector())->id(), 4);
    }

    void keepsTheOrderOfAWalk()
    {
        TestMesh test;
        addVertices(test, {90, 7, 30, 4, 1000});
        const QList<MeshEntity*> before = walk(test, 0);
        test.mesh().renumber(0);
        QCOMPARE(walk(test, 0), before);
        QCOMPARE(ids(test, 0), QList<int>({1, 2, 3, 4, 5}));
    }

    void doesNotHangOnARemoteId()
    {
        TestMesh test;
        addVertices(test, {std::numeric_limits<int>::max() - 1, 3});
        test.mesh().renumber(0);
        QCOMPARE(ids(test, 0), QList<int>({1, 2}));
        QCOMPARE(test.addVertex(Vector())->id(), 3);
    }

    void endsWithIdsOutsideTheContract()
    {
        TestMesh test;
        addVertices(test, {-4, 7});
        test.mesh().renumber(0);
        QCOMPARE(test.mesh().count(0), 2);
    }

    void closesTheGapAtTheEnd()
    {
        TestMesh test;
        addVertices(test, {1, 2, 3});
        test.mesh().entity(0, 1)->attributes().insert(AttributeType::RotorVertex, QVariant(3));
        test.mesh().remove(test.mesh().entity(0, 3));
        test.mesh().renumber(0);
        QCOMPARE(ids(test, 0), QList<int>({1, 2}));
        QCOMPARE(attribute(test.mesh().entity(0, 1), AttributeType::RotorVertex), 3);
        QCOMPARE(test.addVertex(Vector())->id(), 3);
    }

    void renumbersAnEmptyDimension()
    {
        TestMesh test;
        test.mesh().remove(test.addVertex(Vector(), 9));
        test.mesh().renumber(0);
        QCOMPARE(test.mesh().count(0), 0);
        QCOMPARE(test.addVertex(Vector())->id(), 1);
    }

    void mapsEachValueOnce()
    {
        TestMesh test;
        addVertices(test, {2, 3});
        auto* vertex = test.mesh().entity(0, 2);
        vertex->attributes().insert(AttributeType::ShellVertex, QVariant(3));
        test.mesh().renumber(0);
        QCOMPARE(vertex->id(), 1);
        QCOMPARE(attribute(vertex, AttributeType::ShellVertex), 2);
    }

    void followsChangedIdsAndKeepsOthers()
    {
        TestMesh test;
        addVertices(test, {1, 2, 5});
        auto* first = test.mesh().entity(0, 1);
        auto* last = test.mesh().entity(0, 5);
        first->attributes().insert(AttributeType::RotorVertex, QVariant(5));
        last->attributes().insert(AttributeType::StatorVertex, QVariant(1));
        test.mesh().renumber(0);
        QCOMPARE(attribute(first, AttributeType::RotorVertex), 3);
        QCOMPARE(test.mesh().entity(0, 3), last);
        QCOMPARE(attribute(last, AttributeType::StatorVertex), 1);
    }

    void keepsAValueThatNamesNoVertex()
    {
        TestMesh test;
        addVertices(test, {1, 4, 5, 6});
        test.mesh().remove(test.mesh().entity(0, 4));
        auto* vertex = test.mesh().entity(0, 1);
        vertex->attributes().insert(AttributeType::RotorVertex, QVariant(4));
        vertex->attributes().insert(AttributeType::StatorVertex, QVariant(0));
        test.mesh().renumber(0);
        QCOMPARE(attribute(vertex, AttributeType::RotorVertex), 4);
        QCOMPARE(attribute(vertex, AttributeType::StatorVertex), 0);
        QVERIFY(!vertex->attributes().contains(AttributeType::ShellVertex));
    }

    void rewritesFiveAttributesAndNoOther_data()
    {
        QTest::addColumn<AttributeType>("type");
        QTest::addColumn<int>("after");
        QTest::newRow("shell vertex") << AttributeType::ShellVertex << 2;
        QTest::newRow("rotor vertex") << AttributeType::RotorVertex << 2;
        QTest::newRow("stator vertex") << AttributeType::StatorVertex << 2;
        QTest::newRow("original motion vertex") << AttributeType::OriginalMotionVertex << 2;
        QTest::newRow("new motion vertex") << AttributeType::NewMotionVertex << 2;
        QTest::newRow("periodic entity") << AttributeType::PeriodicEntityId << 8;
        QTest::newRow("extruded entity") << AttributeType::ExtrudedEntityId << 8;
        QTest::newRow("material") << AttributeType::MaterialId << 8;
    }

    void rewritesFiveAttributesAndNoOther()
    {
        QFETCH(AttributeType, type);
        QFETCH(int, after);
        TestMesh test;
        addVertices(test, {1, 8});
        auto* vertex = test.mesh().entity(0, 1);
        vertex->attributes().insert(type, QVariant(8));
        test.mesh().renumber(0);
        QCOMPARE(vertex->attributes().value(type, QVariant()), QVariant(after));
    }

    void writesAnIntWhateverTheFormBefore()
    {
        TestMesh test;
        addVertices(test, {1, 8});
        auto* vertex = test.mesh().entity(0, 1);
        vertex->attributes().insert(AttributeType::ShellVertex, QVariant(QString("8")));
        test.mesh().renumber(0);
        const QVariant value = vertex->attributes().value(AttributeType::ShellVertex, QVariant());
        QCOMPARE(value.metaType(), QMetaType::fromType<int>());
        QCOMPARE(value.toInt(), 2);
    }

    void renumberingElementsTouchesNothingElse_data()
    {
        QTest::addColumn<int>("dimension");
        for (int dimension = 1; dimension <= 3; ++dimension) {
            QTest::addRow("dimension %d", dimension) << dimension;
        }
    }

    void renumberingElementsTouchesNothingElse()
    {
        QFETCH(int, dimension);
        TestMesh test;
        addVertices(test, {4, 9});
        auto* vertex = test.mesh().entity(0, 4);
        vertex->attributes().insert(AttributeType::ShellVertex, QVariant(9));
        auto* element = test.addElement(dimension, {}, nullptr, 9);
        element->attributes().insert(AttributeType::ShellVertex, QVariant(9));
        test.mesh().renumber(dimension);
        QCOMPARE(element->id(), 1);
        QCOMPARE(ids(test, 0), QList<int>({4, 9}));
        QCOMPARE(attribute(vertex, AttributeType::ShellVertex), 9);
        QCOMPARE(attribute(element, AttributeType::ShellVertex), 9);
    }

    void renumberingVerticesLeavesTheAttributesOfElements()
    {
        TestMesh test;
        addVertices(test, {9});
        auto* face = test.addElement(2, {}, nullptr, 1);
        face->attributes().insert(AttributeType::ShellVertex, QVariant(9));
        test.mesh().attributes().insert(AttributeType::ShellVertex, QVariant(9));
        test.mesh().renumber(0);
        QCOMPARE(attribute(face, AttributeType::ShellVertex), 9);
        QCOMPARE(test.mesh().attributes().value(AttributeType::ShellVertex, QVariant()),
                 QVariant(9));
    }

    void adjacencyNeedsNoRepair()
    {
        TestMesh test;
        test.addUnitCell(4);
        test.mesh().remove(test.addVertex(Vector()));
        auto* far = test.addVertex(Vector(), 50);
        auto* edge = test.addElement(1, {static_cast<MeshVertex*>(test.mesh().entity(0, 1)), far});
        test.mesh().setUpwardAdjacencies();
        test.mesh().renumber(0);
        QCOMPARE(neighbourIds(edge, 0), QList<int>({1, 5}));
        QCOMPARE(far->adjacencyCount(1), 1);
    }

    void childTablesKeepTheOldIdsAsKeys()
    {
        TestMesh test;
        auto* region = test.addModelRegion();
        auto* first = test.addElement(3, {}, region, 2);
        auto* second = test.addElement(3, {}, region, 7);
        test.mesh().renumber(3);
        QMap<int, MeshEntity*> children;
        for (auto i = region->childIterator(); i.hasNext();) {
            i.next();
            children.insert(i.key(), i.value());
        }
        QCOMPARE(children, (QMap<int, MeshEntity*>{{2, first}, {7, second}}));
        QCOMPARE(second->id(), 2);

        // The table is searched by the present id, which is the key of the other child.
        region->removeChild(second);
        QCOMPARE(second->parent(), nullptr);
        QCOMPARE(region->childCount(), 1);
        QCOMPARE(region->childIterator().next().value(), second);
        region->removeChild(first);
        QCOMPARE(region->childCount(), 1);
    }

    void aSecondCallDoesNothing()
    {
        TestMesh test;
        addVertices(test, {3, 6});
        auto* vertex = test.mesh().entity(0, 3);
        vertex->attributes().insert(AttributeType::ShellVertex, QVariant(6));
        test.mesh().renumber(0);
        test.mesh().renumber(0);
        QCOMPARE(ids(test, 0), QList<int>({1, 2}));
        QCOMPARE(attribute(vertex, AttributeType::ShellVertex), 2);
    }

private:
    static void addVertices(TestMesh& test, const QList<int>& ids)
    {
        for (int id : ids) {
            test.addVertex(Vector(id, 0, 0), id);
        }
    }

    static QList<MeshEntity*> walk(TestMesh& test, int dimension)
    {
        QList<MeshEntity*> entities;
        for (auto i = test.mesh().orderedIterator(dimension); i.hasNext();) {
            entities.append(i.next());
        }
        return entities;
    }

    static QList<int> ids(TestMesh& test, int dimension)
    {
        QList<int> result;
        for (const MeshEntity* entity : walk(test, dimension)) {
            result.append(entity->id());
        }
        return result;
    }
};

QTEST_APPLESS_MAIN(TestMeshRenumber)
#include "tst_MeshRenumber.moc"
