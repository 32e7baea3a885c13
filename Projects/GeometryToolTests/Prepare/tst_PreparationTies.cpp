#include "ClosedCase.h"
#include "ModelFace.h"
#include "PreparationCase.h"
#include "ToolRun.h"
#include "VertexTies.h"

#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
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
        if (takes(meshFace->centroid())) {
            face->addChild(meshFace);
        }
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

/// How tying the extruded faces with a tolerance is refused; empty if it is not.
QString refusalWith(GridMesh& grid, double tolerance)
{
    Ovra::GeoTool::Progress progress;
    progress.setQuiet(true);
    Ovra::GeoTool::Preparation preparation(*grid.database(), progress);
    preparation.setExtrusionTolerance(tolerance);
    try {
        preparation.run(extruded);
    } catch (const Ovra::GeoTool::ToolError& error) {
        return error.text();
    }
    return QString();
}

void turnRound(const QList<MeshEntity*>& meshFaces)
{
    for (MeshEntity* meshFace : meshFaces) {
        QList<MeshEntity*> vertices = MeshChecks::neighbours(meshFace, 0);
        for (MeshEntity* vertex : vertices) {
            meshFace->removeAdjacency(vertex);
        }
        std::reverse(vertices.begin(), vertices.end());
        for (MeshEntity* vertex : vertices) {
            meshFace->addAdjacency(vertex);
        }
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
        for (MeshEntity* vertex : MeshChecks::verticesOn(channel.high)) {
            QCOMPARE(vertex->attributes().value(AttributeType::PeriodicEntityType, -1).toInt(), 0);
        }
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

    void staleExtrudedTiesAreRefused()
    {
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "fluid"}}));
        setAttribute(grid.face(1, 2), AttributeType::ExtrudedFace, partAt(grid)->id());
        QCOMPARE(prepare(*grid.database(), extruded).refusal, QString());
        grid.mesh()->add(new MeshVertex);
        QCOMPARE(prepare(*grid.database(), {"remove-unreferenced"}).refusal,
                 "vertices are tied to a partner face already, which remove-unreferenced makes "
                 "stale; --extruded must be given too, to tie them anew");
    }

    void tiesOfFacesThatAreNoPairAnyMoreAreReleased()
    {
        Channel channel;
        channel.makePeriodic();
        QCOMPARE(prepare(channel.database(), periodic).refusal, QString());
        for (ModelFace* face : {channel.low, channel.high}) {
            face->attributes().remove(AttributeType::PeriodicPairId);
        }
        QCOMPARE(prepare(channel.database(), periodic).report,
                 QStringList{"periodic: no face is periodic any more, so that vertices tied by an "
                             "earlier run are released, 18 of them"});
        for (MeshEntity* vertex : MeshChecks::sorted(channel.grid.mesh()->iterator(0))) {
            QVERIFY(!vertex->attributes().contains(AttributeType::PeriodicEntityId));
        }
        QCOMPARE(prepare(channel.database(), periodic).report,
                 QStringList{"periodic: nothing to do"});
    }

    // A model entity keeps the first answer to meshCentroid() for life: asked before the stray mesh
    // face is gone, the translation would be off by a third of its distance.
    void theTransformIsThatOfTheMeshAsItIsNow()
    {
        Channel channel;
        channel.makePeriodic();
        MeshEntity* const stray = MeshEntity::create(2);
        for (const Vector& point : {Vector(0, 50, 0), Vector(0, 50, 1), Vector(0, 51, 0)}) {
            auto* vertex = new MeshVertex;
            vertex->setPoint(point);
            channel.grid.mesh()->add(vertex);
            stray->addAdjacency(vertex);
        }
        channel.grid.mesh()->add(stray);
        channel.low->addChild(stray);
        channel.grid.mesh()->clearUpwardAdjacencies();
        channel.grid.mesh()->setUpwardAdjacencies();
        const QStringList report = prepareAll(channel.database()).report;
        QCOMPARE(report.value(4), "remove-unreferenced: 3 vertices, 0 edges and 1 face removed");
        QCOMPARE(report.value(6), "periodic: 1 periodic pair, 18 vertices tied by a translation");
        QCOMPARE(channel.grid.model()
                     ->attributes()
                     .value(AttributeType::PeriodicTranslation, {})
                     .value<Vector>(),
                 Vector(2, 0, 0));
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
        if (fault != 0 && fault != 3) {
            Channel::setSide(channel.high, fault == 1 ? 1 : 2);
        }
        if (fault == 2) {
            Channel::setSide(channel.grid.face(0, 1), 0);
        }
        if (fault == 3) {
            Channel::setSide(
                addFace(channel.grid, channel.grid.face(0, 1), [](const Vector&) { return false; }),
                2);
        }
        if (fault == 4) {
            channel.low->setPlanar(false);
        }
        const QString refusal = prepareAll(channel.database()).refusal;
        if (refusal.startsWith("the case is unsound")) {
            QFAIL("the verifier calls an unprepared pair unsound");
        }
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
        for (const int z : {0, 1, 2}) {
            channel.grid.vertexAt(2, 1, z)->setPoint(Vector(1.5, 1, z));
        }
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

    // Two corners of a mesh face in one place leave it without a plane to take weights in.
    void weightsThatAreNoNumbersAreRefused()
    {
        Channel channel;
        channel.makePeriodic();
        ModelFace* const low =
            addFace(channel.grid, channel.low, [](const Vector& place) { return place.y() > 1.0; });
        ModelFace* const high = addFace(channel.grid, channel.high,
                                        [](const Vector& place) { return place.y() > 1.0; });
        Channel::setSide(low, 1, 5);
        Channel::setSide(high, 2, 5);
        for (const int z : {0, 1, 2}) {
            channel.grid.vertexAt(2, 2, z)->setPoint(Vector(2, 1, z));
        }
        const QString refusal = prepare(channel.database(), periodic).refusal;
        QVERIFY2(refusal.contains(" on a periodic face has a weight that is no number; one "
                                  "transform, "),
                 qPrintable(refusal));
    }

    // Farther away than 1e10 the library finds no closest mesh face, and follows a null pointer.
    void facesThatAreTooFarOutAreRefused()
    {
        Channel channel;
        channel.makePeriodic();
        for (MeshEntity* vertex : MeshChecks::sorted(channel.grid.mesh()->iterator(0))) {
            static_cast<MeshVertex*>(vertex)->setPoint(1e11 * vertex->centroid());
        }
        const QString refusal = prepare(channel.database(), periodic).refusal;
        QVERIFY2(refusal.contains("lies too far out for it; 1e+09 from the origin is the limit"),
                 qPrintable(refusal));
    }

    // The two sides are bent back to face nearly the same way, far apart: their planes meet 1e10
    // away, and a turn about that line takes every vertex beyond what the library can see.
    void aTransformThatLeadsNowhereIsRefused()
    {
        constexpr double turn = 176.0 / 180.0 * 3.14159265358979323846;
        Channel channel;
        channel.makePeriodic();
        for (const int y : {0, 1, 2}) {
            for (const int z : {0, 1, 2}) {
                channel.grid.vertexAt(1, y, z)->setPoint(Vector(9e8, y, z));
                channel.grid.vertexAt(2, y, z)->setPoint(
                    Vector(8e8 - std::sin(turn) * (y - 1.0), 10.0 + std::cos(turn) * (y - 1.0), z));
            }
        }
        const QString refusal = prepare(channel.database(), periodic).refusal;
        QVERIFY2(refusal.startsWith("the periodic transform takes mesh vertex "),
                 qPrintable(refusal));
        QVERIFY2(refusal.contains(" nowhere; one transform, "), qPrintable(refusal));
    }

    void aSectorIsTiedByARotation()
    {
        Channel channel;
        channel.makePeriodic();
        bendToSector(channel, 0.5);
        QCOMPARE(prepare(channel.database(), periodic).report,
                 QStringList{"periodic: 1 periodic pair, 18 vertices tied by a rotation"});
    }

    // The library looks about the vertex next to the image. Here that is the apex (5, -1) of a flat
    // triangle; the image lies across its long side, in a triangle with a higher apex.
    void aVertexIsTiedWhereItsImageLies()
    {
        Channel channel(GridSpec::Shape::Simplex);
        channel.makePeriodic();
        flatten(channel);
        MeshVertex* const vertex = channel.grid.vertexAt(0, 0, 1);
        vertex->setPoint(Vector(0, 5, 0.1));
        channel.grid.vertexAt(0, 0, 2)->setPoint(Vector(0, 10, 7.9)); // keeps the mean
        const Outcome outcome = prepare(channel.database(), periodic);
        QCOMPARE(outcome.refusal, QString());
        QCOMPARE(outcome.report,
                 QStringList{"periodic: 1 periodic pair, 18 vertices tied by a translation, 1 of "
                             "them to mesh faces away from the nearest vertex"});
        const Vector place =
            Ovra::GeoTool::VertexTies::periodic().placeOf(*channel.grid.mesh(), *vertex);
        QVERIFY2((place - Vector(2, 5, 0.1)).length() < 1e-12, qPrintable(place.toString()));
    }

    // The translation is that between the means of the vertices: here 0.06 too far along y, and a
    // little along z, so that no image lies on the line of a side.
    void sidesWhoseVerticesAreNotSpreadAlikeAreToldOf()
    {
        Channel channel;
        channel.makePeriodic();
        for (const int z : {0, 1, 2}) {
            channel.grid.vertexAt(2, 1, z)->setPoint(Vector(2, 1.18, z == 1 ? 1.09 : z));
        }
        const QTemporaryDir directory;
        const QString name = directory.filePath("channel");
        QVERIFY(save(channel.database(), name));
        const ToolRun run = runTool({"prepare", name, "-o", name, "--periodic"});
        QVERIFY2(run.exitCode == 0, run.errors.constData());
        QCOMPARE(run.errors,
                 "ovrageo: warning: 6 vertices of periodic faces land up to 0.0767037 beside the "
                 "partner face, which is more than a twentieth of an edge there; a translation is "
                 "that between the means of the mesh vertices of both faces, which must be spread "
                 "alike\n");
    }

    // As above, but images of corners lie on the lines of sides, where there are no weights.
    void theReasonOfATranslationThatIsOffIsTold()
    {
        Channel channel;
        channel.makePeriodic();
        for (const int z : {0, 1, 2}) {
            channel.grid.vertexAt(2, 1, z)->setPoint(Vector(2, 1.18, z));
        }
        const QString refusal = prepare(channel.database(), periodic).refusal;
        QVERIFY2(refusal.endsWith(
                     " on a periodic face has a weight that is no number; one transform, that of "
                     "the first pair with planar faces, must serve all pairs, and a translation is "
                     "that between the means of the mesh vertices of both faces, which must be "
                     "spread alike"),
                 qPrintable(refusal));
    }

    void anExtrudedVertexIsTiedWhereItLies()
    {
        Channel channel(GridSpec::Shape::Simplex);
        setAttribute(channel.low, AttributeType::ExtrudedFace, channel.high->id());
        flatten(channel);
        for (const auto& [y, z] : places()) {
            const Vector point = channel.grid.vertexAt(2, y, z)->point();
            channel.grid.vertexAt(0, y, z)->setPoint(point);
        }
        MeshVertex* const vertex = channel.grid.vertexAt(0, 0, 1);
        vertex->setPoint(Vector(2, 5, 0.5));
        QCOMPARE(prepare(channel.database(), extruded).report,
                 QStringList{"extruded: 1 extruded face, 18 vertices tied, 1 of them to mesh faces "
                             "away from the nearest vertex"});
        const Vector place =
            Ovra::GeoTool::VertexTies::extruded().placeOf(*channel.grid.mesh(), *vertex);
        QVERIFY2((place - Vector(2, 5, 0.5)).length() < 1e-12, qPrintable(place.toString()));
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

    // A corner that lies just within the corner of a wider partner: its weights there are about
    // 0.91, 0.043 twice and 0.002.
    void theToleranceOfTheWeightsIsPassedOn_data()
    {
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<int>("kept");
        QTest::newRow("the library's own") << -1.0 << 3;
        QTest::newRow("finer") << 0.001 << 4;
        QTest::newRow("coarser") << 0.2 << 1;
    }

    void theToleranceOfTheWeightsIsPassedOn()
    {
        QFETCH(double, tolerance);
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "fluid"}}));
        ModelEntity* const second = partAt(grid);
        setAttribute(grid.face(1, 2), AttributeType::ExtrudedFace, second->id());
        for (MeshEntity* vertex : MeshChecks::verticesOn(second)) {
            const Vector fromMiddle = vertex->centroid() - Vector(1, 0.5, 0.5);
            static_cast<MeshVertex*>(vertex)->setPoint(Vector(1, 0.5, 0.5) + 1.1 * fromMiddle);
        }
        Ovra::GeoTool::Progress progress;
        progress.setQuiet(true);
        Ovra::GeoTool::Preparation preparation(*grid.database(), progress);
        if (tolerance > 0.0) {
            preparation.setExtrusionTolerance(tolerance);
        }
        preparation.run(extruded);
        const QVariantList weights =
            grid.vertexAt(1, 1, 0)->attributes().value(AttributeType::ExtrudedWeights, {}).toList();
        QCOMPARE(weights.size(), 4);
        QTEST(4 - static_cast<int>(weights.count(QVariant(0.0))), "kept");
    }

    void aVertexOnASideIsTiedWithoutTolerance_data()
    {
        QTest::addColumn<double>("tolerance");
        QTest::newRow("none") << 0.0;
        QTest::newRow("less than a number holds") << 5e-324;
        QTest::newRow("the least") << 1e-12;
    }

    void aVertexOnASideIsTiedWithoutTolerance()
    {
        QFETCH(double, tolerance);
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "fluid"}}));
        ModelEntity* const second = partAt(grid);
        setAttribute(grid.face(1, 2), AttributeType::ExtrudedFace, second->id());
        for (MeshEntity* vertex : MeshChecks::verticesOn(second)) {
            const Vector fromMiddle = vertex->centroid() - Vector(1, 0.5, 0.5);
            static_cast<MeshVertex*>(vertex)->setPoint(Vector(1, 0.5, 0.5) + 2 * fromMiddle);
        }
        grid.vertexAt(1, 1, 0)->setPoint(Vector(1, 0.75, -0.5));
        QCOMPARE(refusalWith(grid, tolerance), QString());
        QVariantList weights =
            grid.vertexAt(1, 1, 0)->attributes().value(AttributeType::ExtrudedWeights, {}).toList();
        std::sort(weights.begin(), weights.end(),
                  [](const QVariant& a, const QVariant& b) { return a.toDouble() < b.toDouble(); });
        QCOMPARE(weights, (QVariantList{0.0, 0.0, 0.375, 0.625}));
    }

    // A vertex in the middle of a square has four weights of a quarter.
    void aToleranceThatDropsAllWeightsIsRefused()
    {
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "fluid"}}));
        setAttribute(grid.face(1, 2), AttributeType::ExtrudedFace, partAt(grid)->id());
        grid.vertexAt(1, 1, 0)->setPoint(Vector(1, 0.5, 0.5));
        const QString refusal = refusalWith(grid, 1.0);
        QVERIFY2(refusal.endsWith(" on an extruded face has a weight that is no number; an "
                                  "--extrusion-tolerance below 0.25 does not drop all weights"),
                 qPrintable(refusal));
    }

    void partnersThatAreTooFarOutAreRefused()
    {
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "fluid"}}));
        setAttribute(grid.face(1, 2), AttributeType::ExtrudedFace, partAt(grid)->id());
        for (MeshEntity* vertex : MeshChecks::verticesOn(grid.region(2))) {
            static_cast<MeshVertex*>(vertex)->setPoint(vertex->centroid() + Vector(5e10, 0, 0));
        }
        const QString refusal = prepare(*grid.database(), extruded).refusal;
        QVERIFY2(refusal.startsWith("vertices cannot be tied to model face 4: mesh vertex "),
                 qPrintable(refusal));
        QVERIFY2(refusal.endsWith("lies too far out for it; 1e+09 from the origin is the limit"),
                 qPrintable(refusal));
    }

    // No side about it has a direction, so that none is closest: a null pointer again.
    void partnersWithoutExtentAreRefused()
    {
        PlanarCase planar;
        auto* const partner = ModelEntity::create(1);
        planar.database.model()->add(partner);
        planar.addVertex(Vector(7, 7, 0));
        planar.addVertex(Vector(7, 7, 0));
        planar.addElement(1, {5, 6}, partner);
        planar.database.mesh()->setUpwardAdjacencies();
        setAttribute(planar.edges[1], AttributeType::ExtrudedFace, partner->id());
        QCOMPARE(prepare(planar.database, extruded).refusal,
                 "vertices cannot be tied to model edge 4: mesh vertex 5 at (7, 7, 0) has no "
                 "neighbour there in another place than its own");
    }

    void extrudedWeightsThatAreNoNumbersAreRefused()
    {
        GridMesh grid(plan({"12"}, {{1, "fluid"}, {2, "fluid"}}));
        ModelEntity* const second = partAt(grid);
        setAttribute(grid.face(1, 2), AttributeType::ExtrudedFace, second->id());
        for (MeshEntity* vertex : MeshChecks::verticesOn(second)) {
            const Vector place = vertex->centroid();
            static_cast<MeshVertex*>(vertex)->setPoint(Vector(1, 0.5, place.z()));
        }
        const QString refusal = prepare(*grid.database(), extruded).refusal;
        QVERIFY2(refusal.endsWith(" on an extruded face has a weight that is no number"),
                 qPrintable(refusal));
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
    static QList<std::pair<int, int>> places()
    {
        QList<std::pair<int, int>> result;
        for (const int y : {0, 1, 2}) {
            for (const int z : {0, 1, 2}) {
                result.append({y, z});
            }
        }
        return result;
    }

    /// Makes the triangles at both ends flat, and some at the rim higher than the rest.
    static void flatten(Channel& channel)
    {
        for (const int x : {0, 1, 2}) {
            for (const auto& [y, z] : places()) {
                channel.grid.vertexAt(x, y, z)->setPoint(Vector(x, 5 * (y + z), z - y));
            }
            channel.grid.vertexAt(x, 0, 1)->setPoint(Vector(x, 5, 3));
            channel.grid.vertexAt(x, 0, 2)->setPoint(Vector(x, 10, 5));
        }
    }

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
                if (entity == old) {
                    element->replaceAdjacency(old, copy);
                }
            }
            for (MeshEntity* side : MeshChecks::sorted(grid.face(0, 2)->childIterator())) {
                side->replaceAdjacency(old, copy);
            }
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
