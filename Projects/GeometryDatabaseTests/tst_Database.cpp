#include "AttributeType.h"
#include "RefinementRegion.h"
#include "TestMesh.h"

#include <QDataStream>
#include <QTest>

#include <type_traits>

using namespace Ovra::Geo;

static_assert(!std::is_copy_constructible_v<Database> && !std::is_copy_assignable_v<Database>);

class TestDatabase : public QObject
{
    Q_OBJECT

private slots:
    void startsEmpty()
    {
        Database database;
        QVERIFY(database.model());
        QVERIFY(database.mesh());
        QVERIFY(database.model()->isEmpty());
        QVERIFY(database.mesh()->isEmpty());
    }

    void bindsTheMeshToTheModel()
    {
        TestMesh source;
        source.addVertex(Vector(1, 2, 3), 5, source.addModelVertex(Vector(1, 2, 3), 7));
        QByteArray bytes;
        QDataStream output(&bytes, QIODevice::WriteOnly);
        source.mesh().write(output);

        TestMesh target;
        auto* parent = target.addModelVertex(Vector(1, 2, 3), 7);
        QDataStream input(bytes);
        target.mesh().read(input);
        QCOMPARE(parent->childCount(), 1);
        QCOMPARE(target.mesh().entity(0, 5)->parent(), parent);
    }

    void clearsEntitiesAndKeepsTheRest()
    {
        TestMesh test;
        test.addUnitCell(4, test.addModelRegion(), test.addModelFace());
        test.model().addRefinementRegion(new RefinementRegion);
        test.model().setVersion(Version(1, 0, 0));
        test.model().setBoundingBox(Box(Vector(), Vector(1, 1, 1)));
        test.model().attributes().insert(AttributeType::MeshSize, QVariant(2));
        test.mesh().setVersion(Version(2, 0, 0));
        test.mesh().attributes().insert(AttributeType::MaterialId, QVariant(1));
        test.database.clear();
        QVERIFY(test.model().isEmpty());
        QVERIFY(test.mesh().isEmpty());
        QCOMPARE(test.model().refinementRegionCount(), 1);
        QVERIFY(test.model().version() == Version(1, 0, 0));
        QVERIFY(test.model().boundingBox() == Box(Vector(), Vector(1, 1, 1)));
        QVERIFY(test.model().attributes().contains(AttributeType::MeshSize));
        QVERIFY(test.mesh().version() == Version(2, 0, 0));
        QVERIFY(test.mesh().attributes().contains(AttributeType::MaterialId));
        test.model().clearRefinementRegions();
    }

    void canBeFilledAgain()
    {
        TestMesh test;
        test.addUnitCell(8, test.addModelRegion());
        test.database.clear();
        auto* region = test.addModelRegion();
        QCOMPARE(region->id(), 1);
        QCOMPARE(test.addVertex(Vector(), 0, region)->id(), 1);
    }

    void meshEntitiesTakeThemselvesOffTheModel()
    {
        TestMesh test;
        auto* region = test.addModelRegion();
        auto* face = test.addModelFace();
        test.addUnitCell(6, region, face);
        QCOMPARE(region->childCount(), 1);
        QCOMPARE(face->childCount(), 5);
        test.mesh().clear();
        QCOMPARE(region->childCount(), 0);
        QCOMPARE(face->childCount(), 0);
    }

    void destroysTheMeshAheadOfTheModel()
    {
        // A mesh that outlived its model would call into freed parents, which the sanitizers see.
        TestMesh test;
        test.addUnitCell(5, test.addModelRegion(), test.addModelFace());
        QCOMPARE(test.mesh().count(3), 1);
    }
};

QTEST_APPLESS_MAIN(TestDatabase)
#include "tst_Database.moc"
