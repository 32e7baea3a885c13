#include "SurfaceMesh.h"
#include "Utility.h"

#include <QTest>

#include <cmath>
#include <limits>
#include <random>

using namespace Ovra::Geo;

Q_DECLARE_METATYPE(QList<double>)

namespace
{

constexpr double Tolerance = 1e-6;

const QList<Vector> UnitSquare{Vector(0, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0), Vector(0, 1, 0)};
const QList<Vector> Triangle{Vector(0, 0, 0), Vector(1, 0, 0), Vector(0, 1, 0)};
const QList<Vector> Edge{Vector(0, 0, 0), Vector(1, 0, 0)};

/// One mesh entity with the points given on a model face of its own.
class Element
{
public:
    explicit Element(const QList<Vector>& points)
        : entity_(surface_.addElementAt(surface_.addFace(points.size() == 2 ? 1 : 2), points))
    {
    }

    MeshEntity* entity() const { return entity_; }

    QList<double> weights(const Vector& point, double tolerance = Tolerance) const
    {
        const auto weights = Utility::computeWeights(point, entity_, tolerance);
        return QList<double>(weights.cbegin(), weights.cend());
    }

    bool contains(const Vector& point) const { return Utility::containsPoint(point, entity_); }

private:
    SurfaceMesh surface_;
    MeshEntity* entity_;
};

double distanceBetween(const Vector& point, const Vector& first, const Vector& second)
{
    MeshVertex a;
    MeshVertex b;
    a.setPoint(first);
    b.setPoint(second);
    return Utility::distanceTo(point, &a, &b);
}

double sumOf(const QList<double>& values)
{
    double sum = 0.0;
    for (double value : values) {
        sum += value;
    }
    return sum;
}

Vector combined(const QList<double>& weights, const QList<Vector>& points)
{
    Vector result;
    for (int i = 0; i < points.size(); ++i) {
        result += weights[i] * points[i];
    }
    return result;
}

bool allNan(const QList<double>& values)
{
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isnan(v); });
}

bool anyNan(const QList<double>& values)
{
    return std::any_of(values.begin(), values.end(), [](double v) { return std::isnan(v); });
}

} // namespace

class TestPointLocation : public QObject
{
    Q_OBJECT

private slots:
    void exactWeights_data()
    {
        QTest::addColumn<QList<Vector>>("points");
        QTest::addColumn<Vector>("point");
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<QList<double>>("expected");
        using W = QList<double>;
        QTest::newRow("on edge 0") << Triangle << Vector(0.25, 0, 0) << 1e-6 << W{0.75, 0.25, 0};
        QTest::newRow("on edge 2") << Triangle << Vector(0, 0.25, 0) << 1e-6 << W{0.75, 0, 0.25};
        QTest::newRow("middle of the square")
            << UnitSquare << Vector(0.5, 0.5, 0) << 1e-6 << W{0.25, 0.25, 0.25, 0.25};
        QTest::newRow("on the square's last edge")
            << UnitSquare << Vector(0, 0.25, 0) << 1e-6 << W{0.75, 0, 0, 0.25};
        QTest::newRow("far beyond a corner") << Triangle << Vector(-1, -1, 0) << 1e-6 << W{1, 0, 0};
        QTest::newRow("edge") << Edge << Vector(0.25, 0, 0) << 1e-6 << W{0.75, 0.25};
        QTest::newRow("edge, near the first end") << Edge << Vector(1e-7, 0, 0) << 1e-6 << W{1, 0};
        QTest::newRow("edge, near the second end")
            << Edge << Vector(1 - 1e-7, 0, 0) << 1e-6 << W{0, 1};
        QTest::newRow("edge, on the first end") << Edge << Vector(0, 0, 0) << 1e-6 << W{1, 0};
        // The snap is strict: 0.25 of the summed distance is not below it.
        QTest::newRow("edge, at the snap") << Edge << Vector(0.25, 0, 0) << 0.25 << W{0.75, 0.25};
        QTest::newRow("edge, below the snap") << Edge << Vector(0.25, 0, 0) << 0.2501 << W{1, 0};
        QTest::newRow("edge, both ends below the snap")
            << Edge << Vector(0.75, 0, 0) << 0.8 << W{1, 0};
        QTest::newRow("edge, no tolerance, on an end") << Edge << Vector(0, 0, 0) << 0.0 << W{1, 0};
        QTest::newRow("edge, beyond the second end")
            << Edge << Vector(2, 0, 0) << 1e-6 << W{1.0 / 3.0, 2.0 / 3.0};
        QTest::newRow("edge seen from the side")
            << Edge << Vector(0, 0.75, 0) << 1e-6 << W{1.25 / 2.0, 0.75 / 2.0};
        // On a side of a polygon the snap is the same.
        QTest::newRow("side, at the snap")
            << Triangle << Vector(0.25, 0, 0) << 0.25 << W{0.75, 0.25, 0};
        QTest::newRow("side, below the snap")
            << Triangle << Vector(0.25, 0, 0) << 0.2501 << W{1, 0, 0};
        QTest::newRow("side, below the snap of the second end")
            << Triangle << Vector(0.75, 0, 0) << 0.2501 << W{0, 1, 0};
        QTest::newRow("last side, below the snap of its end")
            << Triangle << Vector(0, 0.25, 0) << 0.2501 << W{1, 0, 0};
    }

    void exactWeights()
    {
        QFETCH(QList<Vector>, points);
        QFETCH(Vector, point);
        QFETCH(double, tolerance);
        QFETCH(QList<double>, expected);
        const QList<double> weights = Element(points).weights(point, tolerance);
        QCOMPARE(weights.size(), expected.size());
        for (int i = 0; i < expected.size(); ++i) {
            QVERIFY2(std::abs(weights[i] - expected[i]) <= 1e-15 * std::abs(expected[i]),
                     qPrintable(QString("weight %1 is %2").arg(i).arg(weights[i], 0, 'g', 17)));
        }
    }

    void roundedWeights_data()
    {
        QTest::addColumn<QList<Vector>>("points");
        QTest::addColumn<Vector>("point");
        QTest::addColumn<QList<double>>("expected");
        using W = QList<double>;
        QTest::newRow("square") << UnitSquare << Vector(0.25, 0.25, 0)
                                << W{0.57295, 0.17705, 0.07295, 0.17705};
        QTest::newRow("square, off the plane")
            << UnitSquare << Vector(0.25, 0.25, 0.1) << W{0.55947, 0.18120, 0.07812, 0.18120};
        QTest::newRow("square, below the plane")
            << UnitSquare << Vector(0.25, 0.25, -0.1) << W{0.55947, 0.18120, 0.07812, 0.18120};
        QTest::newRow("outside edge 0")
            << Triangle << Vector(0.25, -0.1, 0) << W{0.73754, 0.26246, 0};
        QTest::newRow("inside the triangle") << Triangle << Vector(0.2, 0.3, 0) << W{0.5, 0.2, 0.3};
    }

    void roundedWeights()
    {
        QFETCH(QList<Vector>, points);
        QFETCH(Vector, point);
        QFETCH(QList<double>, expected);
        const QList<double> weights = Element(points).weights(point);
        QCOMPARE(weights.size(), expected.size());
        for (int i = 0; i < expected.size(); ++i) {
            QVERIFY2(std::abs(weights[i] - expected[i]) <= 0.5e-5,
                     qPrintable(QString("weight %1 is %2").arg(i).arg(weights[i], 0, 'g', 17)));
        }
    }

    void orientationOfThePolygonDoesNotMatter()
    {
        const QList<Vector> reversed{UnitSquare[3], UnitSquare[2], UnitSquare[1], UnitSquare[0]};
        const Vector point(0.25, 0.3, 0);
        const QList<double> weights = Element(UnitSquare).weights(point);
        const QList<double> mirrored = Element(reversed).weights(point);
        for (int i = 0; i < 4; ++i) {
            QVERIFY(std::abs(weights[i] - mirrored[3 - i]) < 1e-14);
        }
    }

    void firstEdgeThatPassesWins()
    {
        // Within so large a tolerance the point lies on two sides.
        const Vector point(0.25, 0.25, 0);
        const double near = std::sqrt(0.125);
        const double far = std::sqrt(0.625);
        const QList<double> weights = Element(UnitSquare).weights(point, 0.26);
        QCOMPARE(weights, QList<double>({far / (near + far), near / (near + far), 0.0, 0.0}));
        const QList<Vector> turned{UnitSquare[3], UnitSquare[0], UnitSquare[1], UnitSquare[2]};
        const QList<double> other = Element(turned).weights(point, 0.26);
        QCOMPARE(other, QList<double>({near / (near + far), far / (near + far), 0.0, 0.0}));
    }

    void heightOverEdgeIsStrict()
    {
        // The point is 0.25 of the side away from it.
        const Vector point(0.375, 0.25, 0);
        const double first = point.length();
        const double second = (UnitSquare[1] - point).length();
        const QList<double> onEdge{second / (first + second), first / (first + second), 0.0, 0.0};
        QVERIFY(std::abs(Element(UnitSquare).weights(point, 0.25)[0] - onEdge[0]) > 0.001);
        QCOMPARE(Element(UnitSquare).weights(point, 0.2501), onEdge);
    }

    void edgeSeenUnderARightAngleIsNotTaken()
    {
        // Every side is within the tolerance, none is seen under an obtuse angle, and then all
        // weights are below the tolerance.
        QVERIFY(allNan(Element(UnitSquare).weights(Vector(0.5, 0.5, 0), 0.6)));
        const QList<double> obtuse = Element(UnitSquare).weights(Vector(0.5, 0.4999, 0), 0.6);
        QCOMPARE(obtuse, QList<double>({1.0, 0.0, 0.0, 0.0}));
    }

    void smallWeightsAreDroppedAndTheRestScaled()
    {
        const QList<double> full = Element(UnitSquare).weights(Vector(0.25, 0.25, 0), 1e-6);
        const QList<double> dropped = Element(UnitSquare).weights(Vector(0.25, 0.25, 0), 0.08);
        QCOMPARE(dropped[2], 0.0);
        const double rest = full[0] + full[1] + full[3];
        for (int i : {0, 1, 3}) {
            QVERIFY(std::abs(dropped[i] - full[i] / rest) < 1e-14);
        }
        QVERIFY(std::abs(sumOf(dropped) - 1.0) < 1e-15);
    }

    void toleranceAboveAllWeightsGivesNotANumber()
    {
        QVERIFY(allNan(Element(UnitSquare).weights(Vector(0.5, 0.5, 0), 0.3)));
    }

    void cornerGivesNotANumber()
    {
        for (const Vector& corner : UnitSquare) {
            QVERIFY(anyNan(Element(UnitSquare).weights(corner)));
        }
    }

    void lineOfAnEdgeBeyondItsEndGivesNotANumber()
    {
        QVERIFY(anyNan(Element(Triangle).weights(Vector(2, 0, 0))));
        QVERIFY(anyNan(Element(Triangle).weights(Vector(-1, 0, 0))));
    }

    void weightsAreOneForEachVertexInItsOrder()
    {
        const QList<Vector> turned{Triangle[2], Triangle[0], Triangle[1]};
        const QList<double> weights = Element(turned).weights(Vector(0.2, 0.3, 0));
        const QList<double> expected{0.3, 0.5, 0.2};
        QCOMPARE(weights.size(), 3);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(std::abs(weights[i] - expected[i]) < 1e-14);
        }
    }

    void polygonOfFiveVerticesIsServedToo()
    {
        const QList<Vector> pentagon{Vector(0, 0, 0), Vector(2, 0, 0), Vector(3, 1, 0),
                                     Vector(1, 3, 0), Vector(-1, 1, 0)};
        const Vector point(0.7, 1.1, 0);
        const QList<double> weights = Element(pentagon).weights(point);
        QCOMPARE(weights.size(), 5);
        QVERIFY((combined(weights, pentagon) - point).length() < 1e-14);
    }

    void weightsReproducePointsInsideConvexPolygons_data()
    {
        QTest::addColumn<QList<Vector>>("points");
        QTest::newRow("triangle") << Triangle;
        QTest::newRow("sliver") << QList<Vector>{Vector(0, 0, 0), Vector(1, 0, 0),
                                                 Vector(0.4, 0.01, 0)};
        QTest::newRow("square") << UnitSquare;
        QTest::newRow("trapezium")
            << QList<Vector>{Vector(0, 0, 0), Vector(4, 0, 0), Vector(3, 1, 0), Vector(1, 1, 0)};
        QTest::newRow("tilted") << QList<Vector>{Vector(1, 2, 3), Vector(2, 2, 5), Vector(2, 4, 6),
                                                 Vector(1, 4, 4)};
    }

    void weightsReproducePointsInsideConvexPolygons()
    {
        QFETCH(QList<Vector>, points);
        const Element element(points);
        std::mt19937 engine(3);
        std::uniform_real_distribution<double> share(0.01, 1.0);
        for (int n = 0; n < 500; ++n) {
            QList<double> shares;
            for (int i = 0; i < points.size(); ++i) {
                shares.append(share(engine));
            }
            const Vector point = combined(shares, points) / sumOf(shares);
            const QList<double> weights = element.weights(point, 1e-12);
            QVERIFY((combined(weights, points) - point).length() < 1e-11);
            QVERIFY(std::abs(sumOf(weights) - 1.0) < 1e-14);
            QVERIFY(*std::min_element(weights.begin(), weights.end()) >= 0.0);
            QVERIFY(element.contains(point));
        }
    }

    void containment_data()
    {
        QTest::addColumn<QList<Vector>>("points");
        QTest::addColumn<Vector>("point");
        QTest::addColumn<bool>("inside");
        QTest::newRow("inside") << UnitSquare << Vector(0.3, 0.4, 0) << true;
        QTest::newRow("on a side") << UnitSquare << Vector(0.5, 0, 0) << true;
        QTest::newRow("on the last side") << UnitSquare << Vector(0, 0.5, 0) << true;
        QTest::newRow("on a corner") << UnitSquare << Vector(1, 1, 0) << true;
        QTest::newRow("outside") << UnitSquare << Vector(1.5, 0.5, 0) << false;
        QTest::newRow("outside the last side") << UnitSquare << Vector(-0.01, 0.5, 0) << false;
        QTest::newRow("just outside") << UnitSquare << Vector(0.5, -1e-15, 0) << false;
        QTest::newRow("above the middle") << UnitSquare << Vector(0.5, 0.5, 0.4) << true;
        QTest::newRow("beyond a side on its line") << Triangle << Vector(2, 0, 0) << false;
        QTest::newRow("clockwise")
            << QList<Vector>{Triangle[0], Triangle[2], Triangle[1]} << Vector(0.2, 0.2, 0) << true;
        QTest::newRow("edge") << Edge << Vector(0.5, 0, 0) << true;
        QTest::newRow("edge, first end") << Edge << Vector(0, 0, 0) << false;
        QTest::newRow("edge, second end") << Edge << Vector(1, 0, 0) << false;
        QTest::newRow("edge, beyond") << Edge << Vector(1.25, 0, 0) << false;
        QTest::newRow("edge, beside") << Edge << Vector(0.5, 0.25, 0) << true;
        QTest::newRow("edge, right angle") << Edge << Vector(0.5, 0.5, 0) << false;
    }

    void containment()
    {
        QFETCH(QList<Vector>, points);
        QFETCH(Vector, point);
        QTEST(Element(points).contains(point), "inside");
    }

    void distanceToASegment_data()
    {
        QTest::addColumn<Vector>("point");
        QTest::addColumn<double>("distance");
        QTest::newRow("beside") << Vector(2, 3, 0) << 3.0;
        QTest::newRow("on it") << Vector(2, 0, 0) << 0.0;
        QTest::newRow("beyond the second end") << Vector(7, 4, 0) << 5.0;
        QTest::newRow("before the first end") << Vector(-3, 0, 4) << 5.0;
        QTest::newRow("square to the second end") << Vector(4, 0, 2) << 2.0;
        QTest::newRow("square to the first end") << Vector(0, 0, -2) << 2.0;
        QTest::newRow("on an end") << Vector(4, 0, 0) << 0.0;
        QTest::newRow("just beyond the second end") << Vector(4.125, 0, 0) << 0.125;
        QTest::newRow("just before the first end") << Vector(-0.125, 0, 0) << 0.125;
    }

    void distanceToASegment()
    {
        QFETCH(Vector, point);
        QFETCH(double, distance);
        QCOMPARE(distanceBetween(point, Vector(0, 0, 0), Vector(4, 0, 0)), distance);
        QCOMPARE(distanceBetween(point, Vector(4, 0, 0), Vector(0, 0, 0)), distance);
    }

    void distanceToASegmentWithoutLengthIsNotANumber()
    {
        QVERIFY(std::isnan(distanceBetween(Vector(1, 2, 3), Vector(5, 5, 5), Vector(5, 5, 5))));
    }

    void enclosingFaceIsTheFirstInTheVertexList()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        MeshVertex* centre = surface.addVertex(Vector(0, 0, 0));
        MeshVertex* east = surface.addVertex(Vector(1, 0, 0));
        MeshVertex* north = surface.addVertex(Vector(0, 1, 0));
        MeshVertex* west = surface.addVertex(Vector(-1, 0, 0));
        MeshEntity* right = surface.addElement(face, {centre, east, north});
        MeshEntity* left = surface.addElement(face, {centre, north, west});
        centre->addAdjacency(left);
        centre->addAdjacency(right);
        const auto enclosing = [&](const Vector& point) {
            return Utility::findEnclosingMeshFace(point, centre, face);
        };
        QCOMPARE(enclosing(Vector(0.2, 0.2, 0)), right);
        QCOMPARE(enclosing(Vector(-0.2, 0.2, 0)), left);
        QCOMPARE(enclosing(Vector(0, 0.5, 0)), left);
        QCOMPARE(enclosing(Vector(0, -0.5, 0)), nullptr);
    }

    void facesAreToldApartByTheIdOfTheirParent()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace(2, 7);
        ModelEntity* other = surface.addFace(2, 8);
        ModelEntity* region = surface.addModelEntity(3, 7);
        MeshEntity* onOther = surface.addElementAt(other, Triangle);
        const QList<MeshVertex*> v = SurfaceMesh::verticesOf(onOther);
        MeshEntity* inRegion = MeshEntity::create(2);
        for (MeshVertex* vertex : v) {
            inRegion->addAdjacency(vertex);
        }
        surface.mesh()->add(inRegion);
        MeshEntity* unclassified = MeshEntity::create(2);
        unclassified->addAdjacency(v[0]);
        surface.mesh()->add(unclassified);
        v[0]->addAdjacency(unclassified);
        v[0]->addAdjacency(onOther);
        v[0]->addAdjacency(inRegion);
        const Vector point(0.2, 0.2, 0);

        QCOMPARE(Utility::findEnclosingMeshFace(point, v[0], face), nullptr);
        QCOMPARE(Utility::findClosestMeshFace(point, v[0], face), nullptr);
        QCOMPARE(Utility::findEnclosingMeshFace(point, v[0], other), onOther);
        QCOMPARE(Utility::findClosestMeshFace(point, v[0], other), onOther);
        region->addChild(inRegion);
        QCOMPARE(Utility::findEnclosingMeshFace(point, v[0], face), inRegion);
        QCOMPARE(Utility::findClosestMeshFace(point, v[0], face), inRegion);
    }

    void searchesOfAPlanarModelFindEdges()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace(1);
        MeshVertex* middle = surface.addVertex(Vector(0, 0, 0));
        MeshEntity* left = surface.addElement(face, {surface.addVertex(Vector(-1, 0, 0)), middle});
        MeshEntity* right = surface.addElement(face, {middle, surface.addVertex(Vector(1, 0, 0))});
        surface.mesh()->setUpwardAdjacencies();
        QCOMPARE(Utility::findEnclosingMeshFace(Vector(-0.4, 0, 0), middle, face), left);
        QCOMPARE(Utility::findEnclosingMeshFace(Vector(0.4, 0, 0), middle, face), right);
        QCOMPARE(Utility::findEnclosingMeshFace(Vector(0, 0, 0), middle, face), nullptr);
        QCOMPARE(Utility::findClosestMeshFace(Vector(2, 1, 0), middle, face), right);
        QCOMPARE(Utility::findClosestMeshFace(Vector(-2, 1, 0), middle, face), left);
    }

    void closestFaceMeasuresTheTwoEdgesAtTheVertex()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        MeshVertex* corner = surface.addVertex(Vector(0, 0, 0));
        MeshVertex* a = surface.addVertex(Vector(2, 0, 0));
        MeshVertex* b = surface.addVertex(Vector(2, 2, 0));
        MeshVertex* c = surface.addVertex(Vector(0, 2, 0));
        MeshVertex* d = surface.addVertex(Vector(-2, 1, 0));
        MeshEntity* square = surface.addElement(face, {b, c, corner, a});
        MeshEntity* triangle = surface.addElement(face, {corner, c, d});
        surface.mesh()->setUpwardAdjacencies();
        const auto closest = [&](const Vector& point) {
            return Utility::findClosestMeshFace(point, corner, face);
        };
        QCOMPARE(closest(Vector(1, -0.5, 0)), square);
        QCOMPARE(closest(Vector(-1, 0.2, 0)), triangle);
        // Right beside the far edge of the square, whose two edges at the corner are 1.9 away.
        QCOMPARE(closest(Vector(-1.9, 1.9, 0)), triangle);
        // The shared edge is nearest: the face that the vertex lists first.
        QCOMPARE(closest(Vector(0, 1, 0)), corner->adjacencyAt(2, 0));
    }

    void closestFaceOfATieIsTheFirst()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        MeshVertex* corner = surface.addVertex(Vector(0, 0, 0));
        MeshVertex* shared = surface.addVertex(Vector(0, 1, 0));
        MeshEntity* left =
            surface.addElement(face, {corner, shared, surface.addVertex(Vector(-1, 0, 0))});
        MeshEntity* right =
            surface.addElement(face, {shared, corner, surface.addVertex(Vector(1, 0, 0))});
        MeshVertex* other = surface.addVertex(Vector(0, 0, 0));
        corner->addAdjacency(right);
        corner->addAdjacency(left);
        QCOMPARE(Utility::findClosestMeshFace(Vector(0, 0.5, 0.1), corner, face), right);
        corner->removeAdjacency(right);
        corner->addAdjacency(right);
        QCOMPARE(Utility::findClosestMeshFace(Vector(0, 0.5, 0.1), corner, face), left);
        QCOMPARE(Utility::findClosestMeshFace(Vector(0, 0.5, 0.1), other, face), nullptr);
    }

    void closestFaceFindsTheVertexByItsId()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        MeshEntity* triangle = surface.addElementAt(face, Triangle);
        const QList<MeshVertex*> v = SurfaceMesh::verticesOf(triangle);
        MeshVertex twin;
        twin.setId(v[1]->id());
        twin.setPoint(v[1]->point());
        twin.addAdjacency(triangle);
        QCOMPARE(Utility::findClosestMeshFace(Vector(1, -1, 0), &twin, face), triangle);
        MeshVertex stranger;
        stranger.setId(999);
        stranger.addAdjacency(triangle);
        QCOMPARE(Utility::findClosestMeshFace(Vector(1, -1, 0), &stranger, face), nullptr);
    }

    void closestFaceOutOfReachIsNone()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        MeshEntity* triangle = surface.addElementAt(face, Triangle);
        surface.mesh()->setUpwardAdjacencies();
        MeshVertex* corner = SurfaceMesh::verticesOf(triangle)[0];
        QCOMPARE(Utility::findClosestMeshFace(Vector(0, -1e10, 0), corner, face), nullptr);
        QCOMPARE(Utility::findClosestMeshFace(Vector(0, -9.9e9, 0), corner, face), triangle);
    }

    void modelVertexOnFaceIsFoundByItsExactPoint()
    {
        SurfaceMesh surface;
        ModelEntity* face = surface.addFace();
        ModelEntity* stranger = surface.addModelEntity(0);
        QList<ModelVertex*> vertices;
        for (const Vector& point : {Vector(1, 0, 0), Vector(1, 2, 3), Vector(1, 2, 3)}) {
            auto* vertex = static_cast<ModelVertex*>(surface.addModelEntity(0));
            vertex->setPoint(point);
            face->addAdjacency(vertex);
            vertices.append(vertex);
        }
        QVERIFY(stranger);
        QCOMPARE(Utility::findModelVertexOnFace(Vector(1, 2, 3), face), vertices[1]);
        QCOMPARE(Utility::findModelVertexOnFace(Vector(1, -0.0, 0), face), vertices[0]);
        QCOMPARE(Utility::findModelVertexOnFace(Vector(1, 2, 3 + 1e-15), face), nullptr);
        QCOMPARE(Utility::findModelVertexOnFace(Vector(0, 0, 0), face), nullptr);
    }
};

QTEST_APPLESS_MAIN(TestPointLocation)
#include "tst_PointLocation.moc"
