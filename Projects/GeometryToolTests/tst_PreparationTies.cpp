#include "ModelFace.h"
#include "PreparationCase.h"

#include <QTest>

#include <cmath>
#include <functional>

using namespace Ovra::Geo;
using namespace PreparationCase;

namespace
{

const QStringList periodic = {"periodic"};
const QStringList extruded = {"extruded"};

/// A model face made of the mesh faces of \p from that \p takes holds for, on region 1.
ModelFace* addFace(GridMesh& grid, ModelEntity* from,
                   const std::function<bool(const Vector&)>& takes)
{
    auto* face = new ModelFace;
    face->setPlanar(true);
    grid.model()->add(face);
    auto regions = from->adjacencyIterator(3);
    while (regions.hasNext()) {
        ModelEntity* const region = regions.next();
        region->addAdjacency(face);
        face->addAdjacency(region);
    }
    for (MeshEntity* meshFace : MeshChecks::sorted(from->childIterator())) {
        if (takes(meshFace->centroid()))
            face->addChild(meshFace);
    }
    return face;
}

/// Two layers of cells, whose ends at x = 0 and x = 2 are the model faces `low` and `high`.
struct Channel
{
    explicit Channel(GridSpec::Shape shape = GridSpec::Shape::Block)
        : grid(spec(shape))
    {
        low = addFace(grid, grid.face(0, 1), [](const Vector& place) { return place.x() == 0.0; });
        high = addFace(grid, grid.face(0, 1), [](const Vector& place) { return place.x() == 2.0; });
    }

    static GridSpec spec(GridSpec::Shape shape)
    {
        GridSpec result = plan({"11", "11"}, {{1, "fluid"}}, shape);
        result.cells[2] = 2;
        return result;
    }

    void makePeriodic()
    {
        setSide(low, 1);
        setSide(high, 2);
    }

    static void setSide(ModelEntity* face, int side, int pair = 4)
    {
        setAttribute(face, AttributeType::PeriodicPairId, pair);
        setAttribute(face, AttributeType::PeriodicSideId, side);
    }

    Database& database() { return *grid.database(); }

    GridMesh grid;
    ModelFace* low = nullptr;
    ModelFace* high = nullptr;
};

void turnRound(const QList<MeshEntity*>& meshFaces)
{
    for (MeshEntity* meshFace : meshFaces) {
        QList<MeshEntity*> vertices = MeshChecks::neighbours(meshFace, 0);
        for (MeshEntity* vertex : vertices)
            meshFace->removeAdjacency(vertex);
        std::reverse(vertices.begin(), vertices.end());
        for (MeshEntity* vertex : vertices)
            meshFace->addAdjacency(vertex);
    }
}

} // namespace

class TestPreparationTies : public QObject
{
    Q_OBJECT

private slots:
    void tiesAPeriodicPair()
    {
        Channel channel;
        channel.makePeriodic();
        QCOMPARE(prepare(channel.database(), periodic).report,
                 QStringList{"periodic: 1 periodic pair, 18 vertices tied by a translation"});
        for (MeshEntity* vertex : MeshChecks::verticesOn(channel.low)) {
            const MeshEntity* const partner = channel.grid.mesh()->entity(
                0, vertex->attributes().value(AttributeType::PeriodicEntityId, 0).toInt());
            QVERIFY(partner);
            QCOMPARE((partner->centroid() - vertex->centroid()).toString(),
                     Vector(2, 0, 0).toString());
        }
    }

    // Ties name ids that renumbering does not rewrite.
    void tiesComeAfterRenumbering()
    {
        Channel channel(GridSpec::Shape::Wedge);
        channel.makePeriodic();
        auto* lone = new MeshVertex;
        lone->setId(1000);
        channel.grid.mesh()->add(lone);
        channel.grid.mesh()->remove(lone);
        const QStringList report = prepareAll(channel.database()).report;
        QVERIFY(report.value(5).startsWith("renumber: "));
        QCOMPARE(report.value(6), "periodic: 1 periodic pair, 18 vertices tied by a translation");
        for (MeshEntity* vertex : MeshChecks::verticesOn(channel.high))
            QCOMPARE(vertex->attributes().value(AttributeType::PeriodicEntityType, -1).toInt(), 0);
    }

    // The library keeps periodic ties as they are, whatever has become of what they name.
    void tiesOfAnEarlierRunAreRenewed()
    {
        Channel channel;
        channel.makePeriodic();
        QCOMPARE(prepare(channel.database(), periodic).refusal, QString());
        MeshEntity* const vertex = *MeshChecks::verticesOn(channel.low).cbegin();
        const QVariant id = vertex->attributes().value(AttributeType::PeriodicEntityId, 0);
        vertex->attributes().insert(AttributeType::PeriodicEntityId, 7777);
        QCOMPARE(prepare(channel.database(), periodic).refusal, QString());
        QCOMPARE(vertex->attributes().value(AttributeType::PeriodicEntityId, 0), id);
    }

    void staleTiesAreRefused()
    {
        Channel channel;
        channel.makePeriodic();
        QCOMPARE(prepare(channel.database(), periodic).refusal, QString());
        QCOMPARE(prepare(channel.database(), {"renumber"}).refusal, QString()); // no gaps
        auto* lone = new MeshVertex;
        channel.grid.mesh()->add(lone);
        QCOMPARE(prepare(channel.database(), {"remove-unreferenced"}).refusal,
                 "vertices are tied to a partner face already, which remove-unreferenced makes "
                 "stale; --periodic must be given too, to tie them anew");
    }

    void incompletePairsAreRefused_data()
    {
        QTest::addColumn<int>("fault");
        QTest::addColumn<QString>("text");
        QTest::newRow("one face") << 0
                                  << "periodic pair 4 has 1 model face with periodic_side_id 1 and "
                                     "0 with another, beginning with model face 2; it must have "
                                     "one of each";
        QTest::newRow("two first sides")
            << 1
            << "periodic pair 4 has 2 model faces with periodic_side_id 1 and 0 with another, "
               "beginning with model face 2; it must have one of each";
        QTest::newRow("three faces")
            << 2
            << "periodic pair 4 has 1 model face with periodic_side_id 1 and 2 with another, "
               "beginning with model face 1; it must have one of each";
        QTest::newRow("no mesh") << 3 << "model face 4 of periodic pair 4 has no mesh";
        QTest::newRow("none is planar")
            << 4
            << "no periodic pair has two planar faces from which the transform could be told; "
               "pair 4 has model face 2 and model face 3";
    }

    void incompletePairsAreRefused()
    {
        QFETCH(int, fault);
        Channel channel;
        Channel::setSide(channel.low, 1);
        if (fault != 0 && fault != 3)
            Channel::setSide(channel.high, fault == 1 ? 1 : 2);
        if (fault == 2)
            Channel::setSide(channel.grid.face(0, 1), 0);
        if (fault == 3)
            Channel::setSide(
                addFace(channel.grid, channel.grid.face(0, 1), [](const Vector&) { return false; }),
                2);
        if (fault == 4)
            channel.low->setPlanar(false);
        const QString refusal = prepareAll(channel.database()).refusal;
        if (refusal.startsWith("the case is unsound"))
            QFAIL("the verifier calls an unprepared pair unsound");
        QTEST(refusal, "text");
    }

    // Facing opposite ways the two sides would pass for a half turn about the middle between them,
    // which fits this mesh and ties every vertex to the wrong one.
    void sidesThatFaceOppositeWaysAreRefused()
    {
        Channel channel;
        channel.makePeriodic();
        turnRound(MeshChecks::sorted(channel.high->childIterator()));
        const QString refusal = prepare(channel.database(), periodic).refusal;
        QVERIFY2(refusal.endsWith("; the mesh faces of a periodic pair must all face one way"),
                 qPrintable(refusal));
        turnRound(MeshChecks::sorted(channel.low->childIterator()));
        QCOMPARE(prepare(channel.database(), periodic).report,
                 QStringList{"periodic: 1 periodic pair, 18 vertices tied by a translation"});
    }

    void facesThatAreNotPlanarAreRefused()
    {
        Channel channel;
        channel.makePeriodic();
        for (const int z : {0, 1, 2})
            channel.grid.vertexAt(2, 1, z)->setPoint(Vector(1.5, 1, z));
        QCOMPARE(prepare(channel.database(), periodic).refusal,
                 "model face 3 is periodic and counts as planar, but its mesh faces do not face "
                 "one way");
    }

    // One transform serves all pairs: another pair that needs another one would be tied at random.
    void aPairThatTheTransformDoesNotFitIsRefused()
    {
        Channel channel;
        channel.makePeriodic();
        ModelEntity* const rest = channel.grid.face(0, 1);
        Channel::setSide(
            addFace(channel.grid, rest, [](const Vector& place) { return place.y() == 0.0; }), 1,
            5);
        Channel::setSide(
            addFace(channel.grid, rest, [](const Vector& place) { return place.y() == 2.0; }), 2,
            5);
        const QString refusal = prepare(channel.database(), periodic).refusal;
        QVERIFY2(refusal.contains("beside the partner face; one transform, "), qPrintable(refusal));
    }

    void aSectorIsTiedByARotation()
    {
        Channel channel;
        channel.makePeriodic();
        bendToSector(channel, 0.5);
        QCOMPARE(prepare(channel.database(), periodic).report,
                 QStringList{"periodic: 1 periodic pair, 18 vertices tied by a rotation"});
    }

    void tiesExtrudedFaces()
    {
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "fluid"}}));
        ModelEntity* const second = partAt(grid);
        setAttribute(grid.face(1, 2), AttributeType::ExtrudedFace, second->id());
        QCOMPARE(prepare(*grid.database(), extruded).report,
                 QStringList{"extruded: 1 extruded face, 8 vertices tied"});
        for (MeshEntity* vertex : MeshChecks::verticesOn(second)) {
            const MeshEntity* const partner = grid.mesh()->entity(
                0, vertex->attributes().value(AttributeType::ExtrudedEntityId, 0).toInt());
            QVERIFY(partner);
            QCOMPARE(partner->centroid().toString(), vertex->centroid().toString());
            QVERIFY(!MeshChecks::verticesOn(second).contains(const_cast<MeshEntity*>(partner)));
        }
    }

    void badExtrudedPairsAreRefused_data()
    {
        QTest::addColumn<int>("partner");
        QTest::addColumn<QString>("text");
        QTest::newRow("missing") << 55 << "model face 55";
        QTest::newRow("itself") << 2 << "extruded_face of model face 2 names that face itself";
        QTest::newRow("no mesh") << 4 << "model face 4 of the extruded pair 2 and 4 has no mesh";
    }

    void badExtrudedPairsAreRefused()
    {
        QFETCH(int, partner);
        QFETCH(QString, text);
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "fluid"}}));
        addFace(grid, grid.face(0, 1), [](const Vector&) { return false; });
        setAttribute(grid.face(1, 2), AttributeType::ExtrudedFace, partner);
        const QString refusal = prepareAll(*grid.database()).refusal;
        QVERIFY2(refusal.contains(text), qPrintable(refusal));
    }

private:
    /// Turns x into an angle about the z axis: the ends at x = 0 and x = 2 make a sector.
    static void bendToSector(Channel& channel, double step)
    {
        for (MeshEntity* entity : MeshChecks::sorted(channel.grid.mesh()->iterator(0))) {
            auto* vertex = static_cast<MeshVertex*>(entity);
            const Vector point = vertex->point();
            const double angle = -step * point.x();
            const double radius = 3.0 + point.y();
            vertex->setPoint(Vector(radius * std::cos(angle), radius * std::sin(angle), point.z()));
        }
    }

    /// Gives the second region a mesh and a model face of its own at the interface.
    static ModelEntity* partAt(GridMesh& grid)
    {
        auto* second = new ModelFace;
        grid.model()->add(second);
        ModelEntity* const first = grid.face(1, 2);
        ModelEntity* const region = grid.region(2);
        region->replaceAdjacency(first, second);
        first->removeAdjacency(region);
        second->addAdjacency(region);
        MeshEntity* const element = MeshChecks::sorted(region->childIterator()).first();
        MeshEntity* const meshFace = MeshEntity::create(2);
        for (MeshEntity* old :
             MeshChecks::neighbours(MeshChecks::sorted(first->childIterator()).first(), 0)) {
            auto* copy = new MeshVertex;
            copy->setPoint(old->centroid());
            grid.mesh()->add(copy);
            meshFace->addAdjacency(copy);
            for (MeshEntity* entity : MeshChecks::neighbours(element, 0)) {
                if (entity == old)
                    element->replaceAdjacency(old, copy);
            }
            for (MeshEntity* side : MeshChecks::sorted(grid.face(0, 2)->childIterator()))
                side->replaceAdjacency(old, copy);
        }
        grid.mesh()->add(meshFace);
        second->addChild(meshFace);
        grid.mesh()->clearUpwardAdjacencies();
        grid.mesh()->setUpwardAdjacencies();
        return second;
    }
};

QTEST_APPLESS_MAIN(TestPreparationTies)
#include "tst_PreparationTies.moc"
