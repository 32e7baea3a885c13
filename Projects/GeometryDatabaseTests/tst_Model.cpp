#include "AttributeType.h"
#include "RefinementRegion.h"
#include "TestMesh.h"

#include <QTest>

#include <type_traits>

using namespace Ovra::Geo;

static_assert(!std::is_polymorphic_v<Model>);

class TestModel : public QObject
{
    Q_OBJECT

private slots:
    void startsEmpty()
    {
        Model model;
        QVERIFY(model.isEmpty());
        QVERIFY(model.version() == Version());
        QVERIFY(model.boundingBox() == Box());
        QVERIFY(model.attributes().isEmpty());
        QCOMPARE(model.refinementRegionCount(), 0);
        QVERIFY(!model.is3d());
        QCOMPARE(model.faceDimension(), 1);
        for (int dimension = 0; dimension <= 3; ++dimension) {
            QCOMPARE(model.count(dimension), 0);
            QCOMPARE(model.entity(dimension, 1), nullptr);
            QVERIFY(!model.iterator(dimension).hasNext());
            QVERIFY(!model.orderedIterator(dimension).hasNext());
        }
    }

    void namesTheUnknownTag() { QCOMPARE(Model::UNKNOWN_TAG, QString("Unknown Tag")); }

    void keepsVersionAndBox()
    {
        Model model;
        model.setVersion(Version(13, 1, 2));
        model.setBoundingBox(Box(Vector(0, 0, 0), Vector(1, 1, 1)));
        model.add(new ModelVertex);
        QVERIFY(model.version() == Version(13, 1, 2));
        QVERIFY(model.boundingBox() == Box(Vector(0, 0, 0), Vector(1, 1, 1)));
    }

    void keepsTheCoordinateSystemAsAnAttribute()
    {
        Model model;
        QCOMPARE(model.coordinateSystem(), 0);
        QVERIFY(!model.attributes().contains(AttributeType::CoordinateSystem));
        model.setCoordinateSystem(3);
        QCOMPARE(model.coordinateSystem(), 3);
        QCOMPARE(model.attributes().value(AttributeType::CoordinateSystem, QVariant()),
                 QVariant(3));
    }

    void isThreeDimensionalWithARegion()
    {
        TestMesh test;
        test.addModelFace();
        QVERIFY(!test.model().is3d());
        test.addModelRegion();
        QVERIFY(test.model().is3d());
        QCOMPARE(test.model().faceDimension(), 2);
        test.model().clear(3);
        QVERIFY(!test.model().is3d());
        QCOMPARE(test.model().faceDimension(), 1);
    }

    void givesIdsFromOneUpInEachDimension()
    {
        TestMesh test;
        QCOMPARE(test.addModelFace()->id(), 1);
        QCOMPARE(test.addModelFace()->id(), 2);
        QCOMPARE(test.addModelEdge()->id(), 1);
    }

    void givesIdsAboveThoseThatEntitiesBring()
    {
        TestMesh test;
        QCOMPARE(test.addModelFace(10)->id(), 10);
        QCOMPARE(test.addModelFace()->id(), 11);
        QCOMPARE(test.addModelFace(5)->id(), 5);
        QCOMPARE(test.addModelFace()->id(), 12);
    }

    void findsEntitiesByDimensionAndId()
    {
        TestMesh test;
        auto* face = test.addModelFace(7);
        auto* vertex = test.addModelVertex(Vector(), 7);
        QCOMPARE(test.model().entity(2, 7), face);
        QCOMPARE(test.model().entity(0, 7), vertex);
        QCOMPARE(test.model().entity(1, 7), nullptr);
        QCOMPARE(test.model().entity(2, 99), nullptr);
        QCOMPARE(test.model().count(2), 1);
        QVERIFY(!test.model().isEmpty());
    }

    void replacesTheEntryOfAnIdInUse()
    {
        TestMesh test;
        const std::unique_ptr<ModelFace> first(test.addModelFace(4));
        auto* second = test.addModelFace(4);
        QCOMPARE(test.model().count(2), 1);
        QCOMPARE(test.model().entity(2, 4), second);
        QCOMPARE(first->id(), 4);
    }

    void addsWithoutTouchingLinks()
    {
        ModelEdge edge;
        auto* face = new ModelFace;
        face->addAdjacency(&edge);
        Model model;
        model.add(face);
        QCOMPARE(face->adjacencyCount(1), 1);
        QCOMPARE(edge.adjacencyCount(2), 0);
    }

    void doesNotReuseTheIdOfARemovedEntity()
    {
        TestMesh test;
        test.addModelFace();
        auto* second = test.addModelFace();
        test.addModelFace();
        test.model().remove(second);
        QCOMPARE(test.model().count(2), 2);
        QCOMPARE(test.model().entity(2, 2), nullptr);
        QCOMPARE(test.addModelFace()->id(), 4);
    }

    void removalLeavesNeighboursAndMeshAlone()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        auto* edge = test.addModelEdge();
        auto* child = test.addElement(1, {}, edge);
        TestMesh::link(face, edge);
        test.model().remove(edge);
        QCOMPARE(face->adjacencyCount(1), 1);
        QVERIFY(child->parent());
        child->setParent(nullptr);
    }

    void removesAnEntityThatWasNeverAdded()
    {
        TestMesh test;
        test.addModelFace(1);
        auto* stranger = new ModelFace;
        stranger->setId(2);
        test.model().remove(stranger);
        test.model().remove(new ModelEdge);
        QCOMPARE(test.model().count(2), 1);
    }

    void removalTakesOutWhatStandsUnderTheId()
    {
        TestMesh test;
        const std::unique_ptr<ModelFace> kept(test.addModelFace(1));
        auto* twin = new ModelFace;
        twin->setId(1);
        test.model().remove(twin);
        QCOMPARE(test.model().count(2), 0);
        QCOMPARE(kept->id(), 1);
    }

    void clearOfADimensionStartsItsIdsAgain()
    {
        TestMesh test;
        auto* edge = test.addModelEdge(20);
        auto* face = test.addModelFace(20);
        TestMesh::link(face, edge);
        test.model().clear(1);
        QCOMPARE(face->adjacencyCount(1), 1);
        QCOMPARE(test.model().count(1), 0);
        QCOMPARE(test.model().count(2), 1);
        QCOMPARE(test.addModelEdge()->id(), 1);
        QCOMPARE(test.addModelFace()->id(), 21);
    }

    void clearKeepsWhatIsNoEntity()
    {
        TestMesh test;
        test.addModelVertex(Vector());
        test.addModelEdge();
        test.addModelFace();
        test.addModelRegion();
        Model& model = test.model();
        model.setVersion(Version(1, 2, 3));
        model.setBoundingBox(Box(Vector(), Vector(1, 1, 1)));
        model.setCoordinateSystem(2);
        model.addRefinementRegion(new RefinementRegion);
        model.clear();
        QVERIFY(model.isEmpty());
        QVERIFY(model.version() == Version(1, 2, 3));
        QVERIFY(model.boundingBox() == Box(Vector(), Vector(1, 1, 1)));
        QCOMPARE(model.coordinateSystem(), 2);
        QCOMPARE(model.refinementRegionCount(), 1);
        model.clearRefinementRegions();
    }

    void isNotEmptyWithAnEntityOfAnyDimension_data()
    {
        QTest::addColumn<int>("dimension");
        for (int dimension = 0; dimension <= 3; ++dimension) {
            QTest::addRow("dimension %d", dimension) << dimension;
        }
    }

    void isNotEmptyWithAnEntityOfAnyDimension()
    {
        QFETCH(int, dimension);
        Model model;
        model.add(ModelEntity::create(dimension));
        QVERIFY(!model.isEmpty());
        model.clear(dimension);
        QVERIFY(model.isEmpty());
    }

    void isEmptyWithAttributesAndRegionsOnly()
    {
        Model model;
        model.setCoordinateSystem(1);
        model.addRefinementRegion(new RefinementRegion);
        QVERIFY(model.isEmpty());
        model.clearRefinementRegions();
    }

    void walksASnapshotOrTheLiveTable()
    {
        TestMesh test;
        for (int id : {30, 2, 11}) {
            test.addModelFace(id);
        }
        auto snapshot = test.model().iterator(2);
        auto live = test.model().orderedIterator(2);
        test.model().remove(test.model().entity(2, 11));
        test.addModelFace(5);

        QCOMPARE(live.next()->id(), 2);
        QCOMPARE(live.next(), nullptr);
        QCOMPARE(live.next()->id(), 30);
        QVERIFY(!live.hasNext());

        QList<int> keys;
        while (snapshot.hasNext()) {
            keys.append(snapshot.next().key());
        }
        std::sort(keys.begin(), keys.end());
        QCOMPARE(keys, QList<int>({2, 11, 30}));
    }

    void keepsRefinementRegionsInOrder()
    {
        Model model;
        auto* first = new RefinementRegion;
        auto* second = new RefinementRegion;
        model.addRefinementRegion(first);
        auto i = model.refinementRegionIterator();
        model.addRefinementRegion(second);
        QCOMPARE(model.refinementRegionCount(), 2);
        QCOMPARE(model.refinementRegion(0), first);
        QCOMPARE(model.refinementRegion(1), second);
        QCOMPARE(i.next(), first);
        QVERIFY(!i.hasNext());
        model.clearRefinementRegions();
        QCOMPARE(model.refinementRegionCount(), 0);
    }

    void leavesRefinementRegionsToTheHost()
    {
        RefinementRegion onTheStack;
        {
            Model model;
            model.addRefinementRegion(&onTheStack);
        }
        onTheStack.setType("box");
        QCOMPARE(onTheStack.type(), QString("box"));
    }

    void copiesShareTheEntities()
    {
        TestMesh test;
        auto* face = test.addModelFace(3);
        test.model().setCoordinateSystem(1);
        Model copy(test.model());
        QCOMPARE(copy.entity(2, 3), face);
        copy.setCoordinateSystem(2);
        QCOMPARE(test.model().coordinateSystem(), 1);
        copy = test.model();
        QCOMPARE(copy.coordinateSystem(), 1);
        QCOMPARE(copy.entity(2, 3), face);
        // The copy must not end with entities in it, or they would be deleted twice.
        copy = Model();
        QCOMPARE(test.model().entity(2, 3)->id(), 3);
    }
};

QTEST_APPLESS_MAIN(TestModel)
#include "tst_Model.moc"
