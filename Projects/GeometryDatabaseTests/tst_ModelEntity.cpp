#include "AttributeType.h"
#include "TestMesh.h"

#include <QTest>

#include <memory>
#include <type_traits>

using namespace Ovra::Geo;

static_assert(std::is_abstract_v<ModelEntity>);
static_assert(std::has_virtual_destructor_v<ModelEntity>);
static_assert(std::is_copy_constructible_v<ModelVertex> && std::is_copy_assignable_v<ModelVertex>);
static_assert(std::is_copy_constructible_v<ModelEdge> && std::is_copy_assignable_v<ModelEdge>);
static_assert(std::is_copy_constructible_v<ModelFace> && std::is_copy_assignable_v<ModelFace>);
static_assert(std::is_copy_constructible_v<ModelRegion> && std::is_copy_assignable_v<ModelRegion>);

class TestModelEntity : public QObject
{
    Q_OBJECT

private slots:
    void createsTheClassOfTheDimension()
    {
        const std::unique_ptr<ModelEntity> vertex(ModelEntity::create(0));
        const std::unique_ptr<ModelEntity> edge(ModelEntity::create(1));
        const std::unique_ptr<ModelEntity> face(ModelEntity::create(2));
        const std::unique_ptr<ModelEntity> region(ModelEntity::create(3));
        QVERIFY(dynamic_cast<ModelVertex*>(vertex.get()));
        QVERIFY(dynamic_cast<ModelEdge*>(edge.get()));
        QVERIFY(dynamic_cast<ModelFace*>(face.get()));
        QVERIFY(dynamic_cast<ModelRegion*>(region.get()));
        QCOMPARE(vertex->dimension(), 0);
        QCOMPARE(edge->dimension(), 1);
        QCOMPARE(face->dimension(), 2);
        QCOMPARE(region->dimension(), 3);
        QCOMPARE(ModelEntity::create(4), nullptr);
        QCOMPARE(ModelEntity::create(-1), nullptr);
    }

    void startsWithDefaults_data()
    {
        QTest::addColumn<int>("dimension");
        for (int dimension = 0; dimension <= 3; ++dimension) {
            QTest::addRow("dimension %d", dimension) << dimension;
        }
    }

    void startsWithDefaults()
    {
        QFETCH(int, dimension);
        const std::unique_ptr<ModelEntity> entity(ModelEntity::create(dimension));
        QCOMPARE(entity->id(), 0);
        QVERIFY(entity->tag().isNull());
        QVERIFY(entity->name().isNull());
        QVERIFY(entity->attributes().isEmpty());
        QCOMPARE(entity->childCount(), 0);
        QVERIFY(!entity->childIterator().hasNext());
        QVERIFY(entity->boundingBox() == (dimension == 0 ? Box(Vector(), Vector()) : Box()));
        QVERIFY(entity->centroid() == Vector());
        QVERIFY(entity->normal() == Vector());
        QVERIFY(entity->meshCentroid() == Vector());
        QVERIFY(entity->meshNormal() == Vector());
        QVERIFY(!entity->isPlanar());
        for (int d = 0; d <= 3; ++d) {
            QCOMPARE(entity->adjacencyCount(d), 0);
        }
    }

    void keepsIdTagNameAndAttributes()
    {
        ModelFace face;
        face.setId(7);
        face.setTag("tag");
        face.setName("inlet");
        face.attributes().insert(AttributeType::MaterialId, QVariant(5));
        const ModelFace& readOnly = face;
        QCOMPARE(readOnly.id(), 7);
        QCOMPARE(readOnly.tag(), QString("tag"));
        QCOMPARE(readOnly.name(), QString("inlet"));
        QCOMPARE(readOnly.attributes().value(AttributeType::MaterialId, QVariant()), QVariant(5));
    }

    void answersTheGeometryOfAVertexFromItsPoint()
    {
        ModelVertex vertex;
        const Vector point(1, 2, 3);
        vertex.setPoint(point);
        QVERIFY(vertex.point() == point);
        QVERIFY(vertex.centroid() == point);
        QVERIFY(vertex.boundingBox() == Box(point, point));
        QVERIFY(vertex.normal() == Vector());
        QVERIFY(!vertex.isPlanar());
    }

    void answersTheGeometryOfAnEdgeAsStored()
    {
        ModelEdge edge;
        edge.setLength(2.5);
        storeBoundary(edge);
        QCOMPARE(edge.length(), 2.5);
        verifyBoundary(edge);
    }

    void answersTheGeometryOfAFaceAsStored()
    {
        ModelFace face;
        face.setArea(6.25);
        storeBoundary(face);
        QCOMPARE(face.area(), 6.25);
        verifyBoundary(face);
    }

    void answersTheGeometryOfARegionAsStored()
    {
        ModelRegion region;
        region.setVolume(9.5);
        region.setBoundingBox(Box(Vector(0, 0, 0), Vector(1, 2, 3)));
        region.setCentroid(Vector(4, 5, 6));
        QCOMPARE(region.volume(), 9.5);
        QVERIFY(region.boundingBox() == Box(Vector(0, 0, 0), Vector(1, 2, 3)));
        QVERIFY(region.centroid() == Vector(4, 5, 6));
        QVERIFY(region.normal() == Vector());
        QVERIFY(!region.isPlanar());
    }

    void listsNeighboursByDimensionInOrderOfInsertion()
    {
        TestMesh test;
        auto* face = test.addModelFace();
        face->addAdjacency(test.addModelEdge(4));
        face->addAdjacency(test.addModelRegion(9));
        face->addAdjacency(test.addModelEdge(2));
        face->addAdjacency(test.addModelFace(8));
        QCOMPARE(neighbourIds(face, 0), QList<int>());
        QCOMPARE(neighbourIds(face, 1), QList<int>({4, 2}));
        QCOMPARE(neighbourIds(face, 2), QList<int>({8}));
        QCOMPARE(neighbourIds(face, 3), QList<int>({9}));
    }

    void linksOneSideOnly()
    {
        ModelFace face;
        ModelEdge edge;
        face.addAdjacency(&edge);
        QVERIFY(face.isAdjacentTo(&edge));
        QVERIFY(!edge.isAdjacentTo(&face));
    }

    void removesTheFirstOfTwoEqualNeighbours()
    {
        ModelFace face;
        ModelEdge edge;
        ModelEdge other;
        face.addAdjacency(&edge);
        face.addAdjacency(&other);
        face.addAdjacency(&edge);
        QCOMPARE(face.adjacencyCount(1), 3);
        face.removeAdjacency(&edge);
        QCOMPARE(face.adjacencyCount(1), 2);
        QCOMPARE(face.adjacencyAt(1, 0), &other);
        QCOMPARE(face.adjacencyAt(1, 1), &edge);
        QVERIFY(face.isAdjacentTo(&edge));
        face.removeAdjacency(&edge);
        QVERIFY(!face.isAdjacentTo(&edge));
        face.removeAdjacency(&edge);
        QCOMPARE(face.adjacencyCount(1), 1);
    }

    void looksForNeighboursByAddress()
    {
        ModelFace face;
        ModelEdge edge;
        ModelEdge twin(edge);
        face.addAdjacency(&edge);
        QVERIFY(edge == twin);
        QVERIFY(!face.isAdjacentTo(&twin));
        face.removeAdjacency(&twin);
        QCOMPARE(face.adjacencyCount(1), 1);
    }

    void replacesANeighbourInItsPlace()
    {
        ModelFace face;
        ModelEdge first;
        ModelEdge second;
        ModelEdge other;
        face.addAdjacency(&first);
        face.addAdjacency(&second);
        face.addAdjacency(&first);
        QVERIFY(face.replaceAdjacency(&first, &other));
        QCOMPARE(face.adjacencyCount(1), 3);
        QCOMPARE(face.adjacencyAt(1, 0), &other);
        QCOMPARE(face.adjacencyAt(1, 1), &second);
        QCOMPARE(face.adjacencyAt(1, 2), &first);
    }

    void doesNotReplaceAStranger()
    {
        ModelFace face;
        ModelEdge edge;
        ModelEdge stranger;
        face.addAdjacency(&edge);
        QVERIFY(!face.replaceAdjacency(&stranger, &edge));
        QCOMPARE(face.adjacencyCount(1), 1);
        QCOMPARE(face.adjacencyAt(1, 0), &edge);
    }

    void leavesAReplacementOfAnotherDimensionInTheOldList()
    {
        ModelRegion region;
        ModelFace face;
        ModelEdge edge;
        region.addAdjacency(&face);
        QVERIFY(region.replaceAdjacency(&face, &edge));
        QCOMPARE(region.adjacencyCount(2), 1);
        QCOMPARE(region.adjacencyAt(2, 0), &edge);
        QCOMPARE(region.adjacencyCount(1), 0);
        QVERIFY(!region.isAdjacentTo(&edge));
    }

    void answersNullOutOfRange()
    {
        ModelRegion region;
        ModelFace face;
        region.addAdjacency(&face);
        QCOMPARE(region.adjacencyAt(2, 0), &face);
        QCOMPARE(region.adjacencyAt(2, -1), nullptr);
        QCOMPARE(region.adjacencyAt(2, region.adjacencyCount(2)), nullptr);
    }

    void walksNeighboursAsTheyWere()
    {
        ModelRegion region;
        ModelFace first;
        ModelFace second;
        region.addAdjacency(&first);
        region.addAdjacency(&second);
        QListIterator<ModelEntity*> i = region.adjacencyIterator(2);
        region.removeAdjacency(&first);
        region.addAdjacency(&first);
        QCOMPARE(i.next(), &first);
        QCOMPARE(i.next(), &second);
        QVERIFY(!i.hasNext());
    }

    void comparesIdAndDimension()
    {
        ModelFace face;
        ModelFace sameFace;
        ModelEdge edge;
        face.setId(3);
        sameFace.setId(3);
        edge.setId(3);
        QVERIFY(face == sameFace);
        QVERIFY(!(face != sameFace));
        QVERIFY(!(face == edge));
        QVERIFY(face != edge);
        QVERIFY(!(face < edge));
        QVERIFY(!(edge < face));
    }

    void ordersByIdAlone()
    {
        ModelFace face;
        ModelEdge edge;
        face.setId(2);
        edge.setId(5);
        QVERIFY(face < edge);
        QVERIFY(!(edge < face));
        QVERIFY(ModelEntity::lessThan(&face, &edge));
        QVERIFY(!ModelEntity::lessThan(&edge, &face));
        QVERIFY(!ModelEntity::lessThan(&face, &face));
    }

    void copiesMemberByMember()
    {
        ModelEdge edge;
        ModelFace face;
        face.setId(6);
        face.setTag("tag");
        face.setName("wall");
        face.attributes().insert(AttributeType::MaterialId, QVariant(5));
        storeBoundary(face);
        face.setArea(2.0);
        face.addAdjacency(&edge);
        edge.addAdjacency(&face);
        ModelFace copy(face);
        ModelFace assigned;
        assigned = face;
        for (const ModelFace* twin : {&copy, &assigned}) {
            QCOMPARE(twin->id(), 6);
            QCOMPARE(twin->tag(), QString("tag"));
            QCOMPARE(twin->name(), QString("wall"));
            QCOMPARE(twin->attributes().value(AttributeType::MaterialId, QVariant()), QVariant(5));
            verifyBoundary(*twin);
            QCOMPARE(twin->area(), 2.0);
            QCOMPARE(twin->adjacencyAt(1, 0), &edge);
        }
        copy.removeAdjacency(&edge);
        QVERIFY(face.isAdjacentTo(&edge));
        QCOMPARE(edge.adjacencyCount(2), 1);
    }

private:
    template <typename Entity>
    static void storeBoundary(Entity& entity)
    {
        entity.setBoundingBox(Box(Vector(0, 0, 0), Vector(1, 2, 3)));
        entity.setCentroid(Vector(4, 5, 6));
        entity.setNormal(Vector(0, 0, 2));
        entity.setPlanar(true);
    }

    static void verifyBoundary(const ModelEntity& entity)
    {
        QVERIFY(entity.boundingBox() == Box(Vector(0, 0, 0), Vector(1, 2, 3)));
        QVERIFY(entity.centroid() == Vector(4, 5, 6));
        QVERIFY(entity.normal() == Vector(0, 0, 2));
        QVERIFY(entity.isPlanar());
    }
};

QTEST_APPLESS_MAIN(TestModelEntity)
#include "tst_ModelEntity.moc"
