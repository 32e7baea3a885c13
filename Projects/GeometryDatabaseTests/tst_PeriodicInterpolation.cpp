#include "InterpolationCheck.h"
#include "LogCapture.h"
#include "Matrix.h"
#include "PeriodicFaces.h"
#include "Solver.h"

#include <QTest>

#include <cmath>

using namespace Ovra::Geo;

namespace
{

constexpr double Pi = 3.14159265358979323846;

Matrix modelMatrix(SurfaceMesh* surface)
{
    const QVariant value =
        surface->model()->attributes().value(AttributeType::PeriodicMatrix, QVariant());
    Matrix result;
    result(0, 0) = NAN;
    return value.canConvert<Matrix>() ? value.value<Matrix>() : result;
}

bool isClose(const Matrix& a, const QList<double>& rows)
{
    for (int i = 0; i < 9; ++i) {
        if (!(std::abs(a(i / 3, i % 3) - rows[i]) <= 1e-14)) {
            return false;
        }
    }
    return true;
}

bool hasPeriodicAttributes(SurfaceMesh* surface)
{
    auto vertices = surface->mesh()->iterator(0);
    while (vertices.hasNext()) {
        vertices.next();
        if (!vertices.value()->attributes().isEmpty()) {
            return true;
        }
    }
    return false;
}

bool isVertexLink(MeshEntity* vertex, const MeshEntity* partner)
{
    return linkOf(vertex) == InterpolationLink{0, partner->id(), {1.0}};
}

bool isLinkTo(MeshEntity* vertex, const MeshEntity* entity, const QList<double>& weights)
{
    const InterpolationLink link = linkOf(vertex);
    bool same = link.type == entity->dimension() && link.id == entity->id() &&
                link.weights.size() == weights.size();
    for (int i = 0; same && i < weights.size(); ++i) {
        same = std::abs(link.weights[i] - weights[i]) <= 1e-12;
    }
    return same;
}

} // namespace

class TestPeriodicInterpolation : public QObject
{
    Q_OBJECT

private slots:
    void modelWithoutPeriodicFacesGetsZeroTransform()
    {
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* face = surface.addFace();
        surface.addElementAt(face, {Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0)});
        face->attributes().insert(AttributeType::PeriodicSideId, 1);
        surface.mesh()->setUpwardAdjacencies();
        LogCapture log;
        Solver(surface.database()).interpolatePeriodicFaces();
        expectZeroTransform(&surface);
        QVERIFY(!hasPeriodicAttributes(&surface));
        QVERIFY(!face->attributes().contains(AttributeType::PeriodicFace));
        QCOMPARE(log.messages(), QStringList());
    }

    void emptyDatabaseGetsZeroTransform()
    {
        SurfaceMesh surface;
        Solver solver(surface.database());
        solver.interpolatePeriodicFaces();
        expectZeroTransform(&surface);
        QVERIFY(solver.isOk());
    }

    void zeroTransformReplacesAnEarlierOne()
    {
        SurfaceMesh surface;
        surface.model()->attributes().insert(AttributeType::PeriodicOrigin, Vector(1, 2, 3));
        Solver(surface.database()).interpolatePeriodicFaces();
        expectZeroTransform(&surface);
    }

    void opposedFacesGiveATranslation()
    {
        SurfaceMesh surface;
        const auto [first, second] = addOpposedSquares(&surface, Vector(0, 0, 4));
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        LogCapture log;
        Solver(surface.database()).interpolatePeriodicFaces();

        QCOMPARE(log.messages(), QStringList());
        QCOMPARE(surface.model()->attributes().count(), 6);
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicOrigin), Vector());
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicTranslation), Vector(0, 0, 4));
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicXAxis), Vector(1, 0, 0));
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicYAxis), Vector(0, 1, 0));
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicZAxis), Vector(0, 0, 1));
        QVERIFY(isClose(modelMatrix(&surface), {1, 0, 0, 0, 1, 0, 0, 0, 1}));
        QCOMPARE(first->attributes().value(AttributeType::PeriodicFace, QVariant()),
                 QVariant(second->id()));
        QCOMPARE(second->attributes().value(AttributeType::PeriodicFace, QVariant()),
                 QVariant(first->id()));
        QCOMPARE(first->attributes().value(AttributeType::PeriodicFace, QVariant()).typeId(),
                 static_cast<int>(QMetaType::Int));
        // Matching meshes: every vertex lands on its partner.
        const QList<MeshVertex*> a = squareCorners(first);
        const QList<MeshVertex*> b = squareCorners(second);
        for (int i = 0; i < 4; ++i) {
            QVERIFY(isVertexLink(a[i], b[i]));
            QVERIFY(isVertexLink(b[i], a[i]));
            QCOMPARE(a[i]->attributes().count(), 3);
        }
    }

    void verticesLandInsideOnEdgesAndOnVertices()
    {
        // The second face is one large triangle below; the first has its vertices within it.
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* first = surface.addFace();
        ModelEntity* second = surface.addFace();
        MeshEntity* large =
            surface.addElementAt(second, {Vector(0, 0, 0), Vector(0, 4, 0), Vector(4, 0, 0)});
        const QList<MeshVertex*> below = SurfaceMesh::verticesOf(large);
        // The mean of the four vertices is that of the large triangle's, and the normals are
        // opposed.
        MeshVertex* corner = surface.addVertex(Vector(4, 0, 1));
        MeshVertex* inside = surface.addVertex(Vector(1, 2, 1));
        MeshVertex* onEdge = surface.addVertex(Vector(1, 0, 1));
        const Vector rest = (16.0 / 3.0) * Vector(1, 1, 0) + Vector(0, 0, 4) - corner->point() -
                            inside->point() - onEdge->point();
        MeshVertex* outside = surface.addVertex(rest);
        surface.addElement(first, {onEdge, corner, inside});
        surface.addElement(first, {outside, onEdge, inside});
        makePair(first, second, 3);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();

        QVERIFY(
            isClose(modelVector(&surface, AttributeType::PeriodicTranslation), Vector(0, 0, -1)));
        QVERIFY(isVertexLink(corner, below[2]));
        QVERIFY(isLinkTo(inside, large, {0.25, 0.5, 0.25}));
        QVERIFY(isLinkTo(onEdge, large, {0.75, 0.0, 0.25}));
        QCOMPARE(linkOf(onEdge).weights[1], 0.0);
        QVERIFY(isVertexLink(below[2], corner));
        // (0, 4) lies beyond all of the first mesh and is clipped to it.
        const InterpolationLink beyond = linkOf(below[1]);
        QCOMPARE(beyond.type, 2);
        QCOMPARE(surface.mesh()->entity(2, beyond.id)->parent(), first);
        QCOMPARE(beyond.weights.size(), 3);
        QVERIFY(*std::min_element(beyond.weights.begin(), beyond.weights.end()) == 0.0);
    }

    void vertexOutsideThePartnerIsTiedToTheClosestFace()
    {
        // A long strip over a short one: the corners at x = 3 lie 1 beyond the short one's end.
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* first = surface.addFace();
        ModelEntity* second = surface.addFace();
        MeshEntity* strip = surface.addElementAt(
            first, {Vector(-3, 0, 0), Vector(-3, 1, 0), Vector(3, 1, 0), Vector(3, 0, 0)});
        MeshEntity* shortStrip = surface.addElementAt(
            second, {Vector(-2, 0, 5), Vector(2, 0, 5), Vector(2, 1, 5), Vector(-2, 1, 5)});
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        for (MeshVertex* vertex : SurfaceMesh::verticesOf(strip)) {
            const InterpolationLink link = linkOf(vertex);
            QCOMPARE(link.type, 2);
            QCOMPARE(link.id, shortStrip->id());
            QCOMPARE(link.weights.size(), 4);
        }
        for (MeshVertex* vertex : SurfaceMesh::verticesOf(shortStrip)) {
            QCOMPARE(linkOf(vertex).id, strip->id());
        }
        const QList<MeshVertex*> upper = SurfaceMesh::verticesOf(shortStrip);
        QVERIFY(isLinkTo(upper[0], strip, {5.0 / 6.0, 0, 0, 1.0 / 6.0}));
    }

    void rightAngledSector()
    {
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* first = surface.addFace();
        ModelEntity* second = surface.addFace();
        MeshEntity* a = surface.addElementAt(
            first, {Vector(1, 0, 0), Vector(2, 0, 0), Vector(2, 0, 1), Vector(1, 0, 1)});
        MeshEntity* b = surface.addElementAt(
            second, {Vector(0, 1, 0), Vector(0, 1, 1), Vector(0, 2, 1), Vector(0, 2, 0)});
        QCOMPARE(a->normal(), Vector(0, -1, 0));
        QCOMPARE(b->normal(), Vector(-1, 0, 0));
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();

        QVERIFY(modelVector(&surface, AttributeType::PeriodicTranslation).isZero());
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicOrigin), Vector()));
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicXAxis), Vector(1, 0, 0)));
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicYAxis), Vector(0, 1, 0)));
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicZAxis), Vector(0, 0, 1)));
        QVERIFY(isClose(modelMatrix(&surface), {0, -1, 0, 1, 0, 0, 0, 0, 1}));
        const QList<MeshVertex*> from = SurfaceMesh::verticesOf(a);
        const QList<MeshVertex*> onto = SurfaceMesh::verticesOf(b);
        const QList<int> partner{0, 3, 2, 1};
        for (int i = 0; i < 4; ++i) {
            QVERIFY(isVertexLink(from[i], onto[partner[i]]));
            QVERIFY(isVertexLink(onto[partner[i]], from[i]));
        }
    }

    void parallelNormalsGiveAHalfTurn()
    {
        // Two squares side by side in one plane, as about the axis of a half cylinder.
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* first = surface.addFace();
        ModelEntity* second = surface.addFace();
        MeshEntity* a = surface.addElementAt(
            first, {Vector(1, 5, 0), Vector(3, 5, 0), Vector(3, 5, 2), Vector(1, 5, 2)});
        MeshEntity* b = surface.addElementAt(
            second, {Vector(-3, 5, 0), Vector(-1, 5, 0), Vector(-1, 5, 2), Vector(-3, 5, 2)});
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QVERIFY(modelVector(&surface, AttributeType::PeriodicTranslation).isZero());
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicOrigin), Vector(0, 5, 1)));
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicXAxis), Vector(1, 0, 0)));
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicYAxis), Vector(0, 1, 0)));
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicZAxis), Vector(0, 0, 1)));
        QVERIFY(isClose(modelMatrix(&surface), {-1, 0, 0, 0, -1, 0, 0, 0, 1}));
        const QList<MeshVertex*> from = SurfaceMesh::verticesOf(a);
        const QList<MeshVertex*> onto = SurfaceMesh::verticesOf(b);
        const QList<int> partner{1, 0, 3, 2};
        for (int i = 0; i < 4; ++i) {
            QVERIFY(isVertexLink(from[i], onto[partner[i]]));
            QVERIFY(isVertexLink(onto[partner[i]], from[i]));
        }
    }

    void normalsWithinThreeDegreesCountAsParallel_data()
    {
        QTest::addColumn<double>("degrees");
        QTest::addColumn<bool>("translation");
        QTest::addColumn<bool>("middle");
        // The angle between the faces; the cosine of 3 degrees is 0.998630 to six digits.
        QTest::newRow("2.9") << 2.9 << true << false;
        QTest::newRow("3.1") << 3.1 << false << false;
        QTest::newRow("176.9") << 176.9 << false << false;
        QTest::newRow("177.1") << 177.1 << false << true;
    }

    void normalsWithinThreeDegreesCountAsParallel()
    {
        QFETCH(double, degrees);
        QFETCH(bool, translation);
        QFETCH(bool, middle);
        const Vector direction(std::cos(degrees * Pi / 180.0), std::sin(degrees * Pi / 180.0), 0);
        SurfaceMesh surface;
        addPlanarPair(&surface, Vector(1, 0, 0), direction);
        const bool translated = !modelVector(&surface, AttributeType::PeriodicTranslation).isZero();
        QCOMPARE(translated, translation);
        const Vector centre = 0.5 * (1.5 * Vector(1, 0, 0) + 1.5 * direction);
        const Vector origin = modelVector(&surface, AttributeType::PeriodicOrigin);
        QCOMPARE(isClose(origin, centre, 1e-12), middle);
    }

    void normalsAtTheLimitAreNotParallel_data()
    {
        QTest::addColumn<double>("cosine");
        QTest::newRow("parallel") << 0.99863;
        QTest::newRow("opposed") << -0.99863;
    }

    void normalsAtTheLimitAreNotParallel()
    {
        QFETCH(double, cosine);
        // A direction of length 1 exactly, so that the product of the normals is the cosine.
        double sine = std::sqrt(1.0 - cosine * cosine);
        while (cosine * cosine + sine * sine < 1.0) {
            sine = std::nextafter(sine, 2.0);
        }
        QCOMPARE(std::sqrt(cosine * cosine + sine * sine), 1.0);
        SurfaceMesh surface;
        ModelEntity* first = surface.addFace(1);
        ModelEntity* second = surface.addFace(1);
        surface.addElementAt(first, {Vector(0, 0, 0), Vector(1, 0, 0)});
        surface.addElementAt(second, {Vector(0, 0, 0), Vector(cosine, sine, 0)});
        QCOMPARE(first->meshNormal() * second->meshNormal(), cosine);
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        // Neither a translation nor the middle of the faces, but the point where the lines meet.
        QVERIFY(modelVector(&surface, AttributeType::PeriodicTranslation).isZero());
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicOrigin), Vector()));
        const Matrix matrix = modelMatrix(&surface);
        QVERIFY(std::abs(matrix(0, 0) + cosine) < 1e-14);
    }

    void productOfNormalsAboveOneGivesAHalfTurn()
    {
        // Unit normals whose product is rounded to above 1: the angle between them is 0.
        double tilt = 0.0;
        double square = 0.0;
        for (int i = 1; i < 10000 && !(square > 1.0); ++i) {
            tilt = 1e-3 * i;
            Vector normal(tilt, -1, 0);
            normal.normalize();
            square = normal * normal;
        }
        QVERIFY(square > 1.0);
        SurfaceMesh surface;
        ModelEntity* first = surface.addFace(1);
        ModelEntity* second = surface.addFace(1);
        surface.addElementAt(first, {Vector(0, 0, 0), Vector(1, tilt, 0)});
        surface.addElementAt(second, {Vector(4, 0, 0), Vector(5, tilt, 0)});
        QVERIFY(first->meshNormal() * second->meshNormal() > 1.0);
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        const Matrix matrix = modelMatrix(&surface);
        QVERIFY(std::abs(matrix(0, 0) + 1.0) < 1e-14);
        QVERIFY(std::abs(matrix(0, 1)) < 1e-14);
    }

    void firstPlanarPairSuppliesTheTransformOfAll()
    {
        SurfaceMesh surface;
        const auto [a, b] = addOpposedSquares(&surface, Vector(0, 0, 4));
        const auto [c, d] = addOpposedSquares(&surface, Vector(0, 0, 5), Vector(10, 0, 0));
        const auto [e, f] = addOpposedSquares(&surface, Vector(0, 0, 6), Vector(20, 0, 0));
        makePair(a, b, 7);
        makePair(c, d, 5);
        makePair(e, f, 2);
        SurfaceMesh::setPlanar(f, false);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        // Pair 2 comes first, but one of its faces is not planar; pair 7 comes after 5.
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicTranslation), Vector(0, 0, 5));
        QVERIFY(isVertexLink(squareCorners(c)[0], squareCorners(d)[0]));
        for (const auto& [first, second] : {std::make_pair(a, b), std::make_pair(e, f)}) {
            QCOMPARE(first->attributes().value(AttributeType::PeriodicFace, 0).toInt(),
                     second->id());
            QCOMPARE(linkOf(squareCorners(first)[0]).type, 2);
        }
    }

    void withoutPlanarPairEveryPointGoesToZero()
    {
        SurfaceMesh surface;
        const auto [first, second] =
            addOpposedSquares(&surface, Vector(0, 0, 4), Vector(0.25, 0.25, -4));
        SurfaceMesh::setPlanar(first, false);
        SurfaceMesh::setPlanar(second, false);
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        expectZeroTransform(&surface);
        // All vertices of the first face are tied to the same place of the second.
        const QList<MeshVertex*> vertices = squareCorners(first);
        for (MeshVertex* vertex : vertices) {
            QVERIFY(linkOf(vertex).type >= 0);
            QVERIFY(linkOf(vertex) == linkOf(vertices.first()));
        }
        QVERIFY(second->attributes().contains(AttributeType::PeriodicFace));
    }

    void anySideButOneIsTheSecond_data()
    {
        QTest::addColumn<int>("side");
        QTest::newRow("2") << 2;
        QTest::newRow("0") << 0;
        QTest::newRow("-1") << -1;
        QTest::newRow("7") << 7;
        QTest::newRow("absent") << INT_MAX;
    }

    void anySideButOneIsTheSecond()
    {
        QFETCH(int, side);
        SurfaceMesh surface;
        const auto [first, second] = addOpposedSquares(&surface, Vector(0, 0, 4));
        makePair(first, second, 1);
        if (side == INT_MAX) {
            second->attributes().remove(AttributeType::PeriodicSideId);
        } else {
            second->attributes().insert(AttributeType::PeriodicSideId, side);
        }
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicTranslation), Vector(0, 0, 4));
    }

    void sideOneIsTheFirstWhateverTheIds()
    {
        SurfaceMesh surface;
        const auto [lower, upper] = addOpposedSquares(&surface, Vector(0, 0, 4));
        makePair(upper, lower, 1);
        QVERIFY(lower->id() < upper->id());
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicTranslation), Vector(0, 0, -4));
    }

    void aLaterFaceOfAPairAndSideReplacesTheEarlier()
    {
        SurfaceMesh surface;
        const auto [first, second] = addOpposedSquares(&surface, Vector(0, 0, 4));
        const auto [single, later] = addOpposedSquares(&surface, Vector(0, 0, 6));
        makePair(first, second, 1);
        makePair(first, later, 1);
        QVERIFY(second->id() < later->id());
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicTranslation), Vector(0, 0, 6));
        QCOMPARE(first->attributes().value(AttributeType::PeriodicFace, 0).toInt(), later->id());
        QCOMPARE(later->attributes().value(AttributeType::PeriodicFace, 0).toInt(), first->id());
        for (ModelEntity* face : {second, single}) {
            QVERIFY(!face->attributes().contains(AttributeType::PeriodicFace));
        }
    }

    void tiedVerticesAreLeftAlone()
    {
        SurfaceMesh surface;
        const auto [first, second] = addOpposedSquares(&surface, Vector(0, 0, 4));
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        MeshVertex* tied = squareCorners(first)[2];
        tied->attributes().insert(AttributeType::PeriodicEntityId, 77);
        MeshVertex* halfTied = squareCorners(second)[0];
        halfTied->attributes().insert(AttributeType::PeriodicEntityType, 5);
        Solver(surface.database()).interpolatePeriodicFaces();
        QCOMPARE(tied->attributes().count(), 1);
        QCOMPARE(tied->attributes().value(AttributeType::PeriodicEntityId, 0).toInt(), 77);
        QVERIFY(isVertexLink(halfTied, squareCorners(first)[0]));
    }

    void secondRunKeepsTheLinks()
    {
        SurfaceMesh surface;
        const auto [first, second] = addOpposedSquares(&surface, Vector(0, 0, 4));
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver solver(surface.database());
        solver.interpolatePeriodicFaces();
        const QList<MeshVertex*> vertices = squareCorners(first);
        QList<InterpolationLink> links;
        for (MeshVertex* vertex : vertices) {
            links.append(linkOf(vertex));
            vertex->setPoint(vertex->point() + Vector(0.3, 0.2, 0));
        }
        solver.interpolatePeriodicFaces();
        for (int i = 0; i < vertices.size(); ++i) {
            QVERIFY(linkOf(vertices[i]) == links[i]);
        }
    }

    void vertexOnTheAxisIsTiedToItself()
    {
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* first = surface.addFace();
        ModelEntity* second = surface.addFace();
        MeshVertex* low = surface.addVertex(Vector(0, 0, 0));
        MeshVertex* high = surface.addVertex(Vector(0, 0, 1));
        surface.addElement(first, {low, surface.addVertex(Vector(1, 0, 0)), high});
        surface.addElement(second, {low, high, surface.addVertex(Vector(0, 1, 0))});
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QVERIFY(isVertexLink(low, low));
        QVERIFY(isVertexLink(high, high));
    }

    void vertexOfTwoPairsFollowsTheLowerPair()
    {
        // A box that is periodic in x (pair 2) and in y (pair 1), with shared edges; the transform
        // is that of pair 1.
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* west = surface.addFace();
        ModelEntity* east = surface.addFace();
        ModelEntity* south = surface.addFace();
        ModelEntity* north = surface.addFace();
        QList<MeshVertex*> v;
        for (int i = 0; i < 8; ++i) {
            v.append(surface.addVertex(Vector(i & 1, (i >> 1) & 1, (i >> 2) & 1)));
        }
        surface.addElement(west, {v[0], v[4], v[6], v[2]});
        surface.addElement(east, {v[1], v[3], v[7], v[5]});
        surface.addElement(south, {v[0], v[1], v[5], v[4]});
        surface.addElement(north, {v[2], v[6], v[7], v[3]});
        makePair(west, east, 2);
        makePair(south, north, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicTranslation), Vector(0, 1, 0));
        for (int i = 0; i < 8; ++i) {
            QVERIFY(isVertexLink(v[i], v[i ^ 2]));
        }
    }

private:
    static void expectZeroTransform(SurfaceMesh* surface)
    {
        const AttributeMap& attributes = surface->model()->attributes();
        for (const AttributeType& type :
             {AttributeType::PeriodicOrigin, AttributeType::PeriodicTranslation,
              AttributeType::PeriodicXAxis, AttributeType::PeriodicYAxis,
              AttributeType::PeriodicZAxis}) {
            QVERIFY(attributes.contains(type));
            QCOMPARE(modelVector(surface, type), Vector());
        }
        QVERIFY(attributes.contains(AttributeType::PeriodicMatrix));
        QVERIFY(isClose(modelMatrix(surface), {0, 0, 0, 0, 0, 0, 0, 0, 0}));
        QCOMPARE(attributes.count(), 6);
    }

    /// Unit squares with opposed normals, the second moved by \a shift; of a model with a region.
    static std::pair<ModelEntity*, ModelEntity*>
    addOpposedSquares(SurfaceMesh* surface, const Vector& shift, const Vector& at = Vector())
    {
        if (!surface->model()->is3d()) {
            surface->addModelEntity(3);
        }
        ModelEntity* first = surface->addFace();
        ModelEntity* second = surface->addFace();
        const QList<Vector> square{at, at + Vector(1, 0, 0), at + Vector(1, 1, 0),
                                   at + Vector(0, 1, 0)};
        surface->addElementAt(first, {square[0], square[3], square[2], square[1]});
        surface->addElementAt(
            second, {square[0] + shift, square[1] + shift, square[2] + shift, square[3] + shift});
        return {first, second};
    }

    /// The corners of one of the opposed squares, in the same order for both.
    static QList<MeshVertex*> squareCorners(const ModelEntity* face)
    {
        QSet<MeshEntity*> set = InterpolationCheck::verticesOn(face);
        QList<MeshVertex*> vertices;
        for (MeshEntity* vertex : set) {
            vertices.append(static_cast<MeshVertex*>(vertex));
        }
        std::sort(vertices.begin(), vertices.end(), [](const MeshVertex* a, const MeshVertex* b) {
            const Vector p = a->point();
            const Vector q = b->point();
            return p.y() != q.y() ? p.y() < q.y() : p.x() < q.x();
        });
        return vertices;
    }

    /// Sides of one segment from 1 to 2 along each direction, with outward normals, already
    /// interpolated.
    static void addPlanarPair(SurfaceMesh* surface, const Vector& first, const Vector& second)
    {
        ModelEntity* a = surface->addFace(1);
        ModelEntity* b = surface->addFace(1);
        surface->addElementAt(a, {first, 2.0 * first});
        surface->addElementAt(b, {2.0 * second, second});
        makePair(a, b, 1);
        surface->mesh()->setUpwardAdjacencies();
        Solver(surface->database()).interpolatePeriodicFaces();
    }
};

QTEST_APPLESS_MAIN(TestPeriodicInterpolation)
#include "tst_PeriodicInterpolation.moc"
