#include "InterpolationCheck.h"
#include "LogCapture.h"
#include "Matrix.h"
#include "Solver.h"
#include "SurfaceMesh.h"

#include <QTest>

#include <cmath>

using namespace Ovra::Geo;

Q_DECLARE_METATYPE(PatchSpec)

namespace
{

constexpr double Pi = 3.14159265358979323846;

void makePair(ModelEntity* first, ModelEntity* second, int pairId)
{
    first->attributes().insert(AttributeType::PeriodicPairId, pairId);
    first->attributes().insert(AttributeType::PeriodicSideId, 1);
    second->attributes().insert(AttributeType::PeriodicPairId, pairId);
    second->attributes().insert(AttributeType::PeriodicSideId, 2);
}

Vector modelVector(SurfaceMesh* surface, const AttributeType& type)
{
    const QVariant value = surface->model()->attributes().value(type, QVariant("none"));
    return value.canConvert<Vector>() ? value.value<Vector>() : Vector(NAN, NAN, NAN);
}

Matrix modelMatrix(SurfaceMesh* surface)
{
    const QVariant value =
        surface->model()->attributes().value(AttributeType::PeriodicMatrix, QVariant());
    Matrix result;
    result(0, 0) = NAN;
    return value.canConvert<Matrix>() ? value.value<Matrix>() : result;
}

bool isClose(const Vector& a, const Vector& b, double tolerance = 1e-14)
{
    return (a - b).length() <= tolerance;
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

InterpolationLink linkOf(MeshEntity* vertex)
{
    return LinkAttributes::periodic().of(vertex);
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

/// An orthonormal frame in space: the axis of a sector and the direction of its first side.
struct Frame
{
    Vector origin;
    Vector radial;
    Vector across;
    Vector axis;

    Vector at(double radius, double angle, double height) const
    {
        return origin + radius * (std::cos(angle) * radial + std::sin(angle) * across) +
               height * axis;
    }

    /// Turned about the axis; the height stays.
    Vector turned(const Vector& point, double angle) const
    {
        const Vector d = point - origin;
        const double x = d * radial;
        const double y = d * across;
        return origin + (std::cos(angle) * x - std::sin(angle) * y) * radial +
               (std::sin(angle) * x + std::cos(angle) * y) * across + (d * axis) * axis;
    }
};

Frame tiltedFrame()
{
    Frame frame;
    frame.origin = Vector(3, -2, 5);
    frame.axis = Vector(1, 2, 2) / 3.0;
    frame.radial = Vector(2, 1, -2) / 3.0;
    frame.across = frame.axis ^ frame.radial;
    return frame;
}

const QList<std::pair<const char*, PatchSpec::Cells>> CellKinds{
    {"rising", PatchSpec::Cells::Rising},
    {"falling", PatchSpec::Cells::Falling},
    {"alternating", PatchSpec::Cells::Alternating},
    {"quadrilaterals", PatchSpec::Cells::Quads},
};

/// Columns for two meshes that don't match, of every kind of cell.
void addMeshRows(const char* name, const std::function<void(QTestData&)>& fill)
{
    for (const auto& [kind, cells] : CellKinds) {
        fill(QTest::addRow("%s, %s", name, kind)
             << PatchSpec{9, 7, cells, 0.0, 1}
             << PatchSpec{13, 12, PatchSpec::Cells::Falling, 0.0, 2} << false);
        fill(QTest::addRow("%s, %s, jittered", name, kind)
             << PatchSpec{11, 17, cells, 0.25, 3}
             << PatchSpec{16, 12, PatchSpec::Cells::Rising, 0.25, 4} << true);
    }
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

    void landingOnAVertexHasARelativeBound_data()
    {
        QTest::addColumn<double>("offset");
        QTest::addColumn<bool>("onVertex");
        // The corner lies 1000 from the zero point: the bound is 0.001 and a little more.
        QTest::newRow("within") << 0.0009 << true;
        QTest::newRow("beyond") << 0.0011 << false;
    }

    void landingOnAVertexHasARelativeBound()
    {
        QFETCH(double, offset);
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* first = surface.addFace();
        ModelEntity* second = surface.addFace();
        const Vector away(1000, 0, 0);
        const Vector shift(-offset, 0, 0);
        MeshEntity* a =
            surface.addElementAt(first, {away, away + Vector(-1, 1, 0), away + Vector(-1, -1, 0)});
        // The vertices move against each other by as much, so that the centroid stays.
        MeshEntity* b = surface.addElementAt(second, {away + Vector(0, 0, 1) + shift,
                                                      away + Vector(-1, -1, 1) - 0.5 * shift,
                                                      away + Vector(-1, 1, 1) - 0.5 * shift});
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        const InterpolationLink link = linkOf(SurfaceMesh::verticesOf(a)[0]);
        QTEST(link.type == 0, "onVertex");
        QCOMPARE(link.id, link.type == 0 ? SurfaceMesh::verticesOf(b)[0]->id() : b->id());
    }

    void translatedMeshes_data()
    {
        QTest::addColumn<PatchSpec>("first");
        QTest::addColumn<PatchSpec>("second");
        QTest::addColumn<bool>("jittered");
        addMeshRows("translated", [](QTestData&) {});
        QTest::newRow("large, jittered")
            << PatchSpec{40, 33, PatchSpec::Cells::Alternating, 0.2, 5}
            << PatchSpec{37, 41, PatchSpec::Cells::Rising, 0.2, 6} << true;
    }

    void translatedMeshes()
    {
        QFETCH(PatchSpec, first);
        QFETCH(PatchSpec, second);
        QFETCH(bool, jittered);
        const Frame frame = tiltedFrame();
        const Vector shift = 7.0 * frame.across + 0.5 * frame.radial - 0.25 * frame.axis;
        const auto place = [&](double u, double v) { return frame.at(1 + 2 * u, 0, 2 * v); };
        second.flipped = true;
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* a = surface.addFace();
        ModelEntity* b = surface.addFace();
        addPatch(&surface, a, first, place);
        addPatch(&surface, b, second, [&](double u, double v) { return place(u, v) + shift; });
        makePair(a, b, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QVERIFY(isClose(modelVector(&surface, AttributeType::PeriodicTranslation), shift, 1e-12));
        expectPairOfPatches(
            &surface, a, b, [&](const Vector& p) { return p + shift; },
            [&](const Vector& p) { return p - shift; }, jittered);
    }

    void rotatedMeshes_data()
    {
        QTest::addColumn<PatchSpec>("first");
        QTest::addColumn<PatchSpec>("second");
        QTest::addColumn<bool>("jittered");
        QTest::addColumn<double>("degrees");
        QTest::addColumn<bool>("inwards");
        for (const double degrees : {5.0, 30.0, 90.0, 120.0, 170.0, 180.0}) {
            const QByteArray name = QByteArray::number(degrees) + " degrees";
            addMeshRows(name.constData(), [&](QTestData& row) { row << degrees << false; });
        }
        addMeshRows("inward normals", [](QTestData& row) { row << 72.0 << true; });
        QTest::newRow("large, jittered")
            << PatchSpec{40, 33, PatchSpec::Cells::Alternating, 0.2, 5}
            << PatchSpec{37, 41, PatchSpec::Cells::Quads, 0.2, 6} << true << 40.0 << false;
    }

    void rotatedMeshes()
    {
        QFETCH(PatchSpec, first);
        QFETCH(PatchSpec, second);
        QFETCH(bool, jittered);
        QFETCH(double, degrees);
        QFETCH(bool, inwards);
        const Frame frame = tiltedFrame();
        const double angle = degrees * Pi / 180.0;
        const auto place = [&](double u, double v) { return frame.at(1 + 2 * u, 0, 2 * v); };
        first.flipped = inwards;
        second.flipped = !inwards;
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* a = surface.addFace();
        ModelEntity* b = surface.addFace();
        addPatch(&surface, a, first, place);
        addPatch(&surface, b, second,
                 [&](double u, double v) { return frame.turned(place(u, v), angle); });
        makePair(a, b, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QVERIFY(modelVector(&surface, AttributeType::PeriodicTranslation).isZero());
        const Vector axis = modelVector(&surface, AttributeType::PeriodicZAxis);
        QVERIFY(std::abs(std::abs(axis * frame.axis) - 1.0) < 1e-12);
        expectPairOfPatches(
            &surface, a, b, [&](const Vector& p) { return frame.turned(p, angle); },
            [&](const Vector& p) { return frame.turned(p, -angle); }, jittered);
    }

    void planarModels_data()
    {
        QTest::addColumn<int>("segments");
        QTest::addColumn<int>("otherSegments");
        QTest::addColumn<double>("degrees");
        for (const double degrees : {0.0, 20.0, 45.0, 90.0, 135.0, 180.0}) {
            QTest::addRow("%g degrees, matching", degrees) << 8 << 8 << degrees;
            QTest::addRow("%g degrees", degrees) << 9 << 14 << degrees;
            QTest::addRow("%g degrees, one segment", degrees) << 1 << 5 << degrees;
            QTest::addRow("%g degrees, many", degrees) << 301 << 250 << degrees;
        }
    }

    void planarModels()
    {
        QFETCH(int, segments);
        QFETCH(int, otherSegments);
        QFETCH(double, degrees);
        Frame frame;
        frame.origin = Vector(2, 1, 0);
        frame.radial = Vector(0.6, 0.8, 0);
        frame.across = Vector(-0.8, 0.6, 0);
        frame.axis = Vector(0, 0, 1);
        const double angle = degrees * Pi / 180.0;
        const Vector shift = degrees == 0.0 ? 3.0 * frame.across : Vector();
        const auto there = [&](const Vector& p) { return frame.turned(p, angle) + shift; };
        const auto back = [&](const Vector& p) { return frame.turned(p - shift, -angle); };
        SurfaceMesh surface;
        ModelEntity* a = surface.addFace(1);
        ModelEntity* b = surface.addFace(1);
        const Vector start = frame.at(1, 0, 0);
        const Vector end = frame.at(4, 0, 0);
        const double jitter = segments == otherSegments ? 0.0 : 0.3;
        addLine(&surface, a, segments, jitter, 8, start, end);
        addLine(&surface, b, otherSegments, jitter, 9, there(end), there(start));
        makePair(a, b, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QCOMPARE(modelVector(&surface, AttributeType::PeriodicTranslation).isZero(),
                 degrees != 0.0);
        InterpolationCheck check(&surface, LinkAttributes::periodic(), 1e-5);
        check.run(a, b, there);
        check.run(b, a, back);
        QCOMPARE(check.fault(), QString());
        QCOMPARE(check.fallbacks(), 0);
        QCOMPARE(check.vertices(), segments + otherSegments + 2);
        QVERIFY(check.onVertices() >= 4);
        QVERIFY(segments != otherSegments || check.onVertices() == check.vertices());
    }

    void linksAreTheSameInEveryRun()
    {
        // Many places are as near to four vertices; memory addresses and hash order differ.
        QCOMPARE(linksOfAGrid(), linksOfAGrid());
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

    static void expectPairOfPatches(SurfaceMesh* surface, ModelEntity* first, ModelEntity* second,
                                    const std::function<Vector(const Vector&)>& there,
                                    const std::function<Vector(const Vector&)>& back, bool jittered)
    {
        InterpolationCheck check(surface, LinkAttributes::periodic(), 1e-5);
        check.run(first, second, there);
        check.run(second, first, back);
        QCOMPARE(check.fault(), QString());
        QCOMPARE(check.vertices(), surface->mesh()->count(0));
        // The corners of the patches at least.
        QVERIFY(check.onVertices() >= 8);
        // In grids of right-angled triangles and rectangles the nearest vertex is one of the
        // element that holds the place.
        const int bound = jittered ? check.vertices() / 20 : 0;
        QVERIFY2(check.fallbacks() <= bound,
                 qPrintable(QString("%1 of %2").arg(check.fallbacks()).arg(check.vertices())));
    }

    static QStringList linksOfAGrid()
    {
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* first = surface.addFace();
        ModelEntity* second = surface.addFace();
        const auto place = [](double u, double v) { return Vector(12 * u, 12 * v, 0); };
        PatchSpec spec{12, 12, PatchSpec::Cells::Alternating, 0.0, 1};
        addPatch(&surface, first, spec, place);
        spec.columns = spec.rows = 24;
        spec.flipped = true;
        addPatch(&surface, second, spec,
                 [&](double u, double v) { return place(u, v) - Vector(0, 0, 3); });
        makePair(first, second, 1);
        surface.mesh()->setUpwardAdjacencies();
        Solver(surface.database()).interpolatePeriodicFaces();
        QStringList result;
        auto vertices = surface.mesh()->orderedIterator(0);
        while (vertices.hasNext()) {
            const InterpolationLink link = linkOf(vertices.next());
            result.append(QString("%1 %2").arg(link.type).arg(link.id));
            for (double weight : link.weights) {
                result.last() += QString(" %1").arg(weight, 0, 'g', 17);
            }
        }
        return result;
    }
};

QTEST_APPLESS_MAIN(TestPeriodicInterpolation)
#include "tst_PeriodicInterpolation.moc"
