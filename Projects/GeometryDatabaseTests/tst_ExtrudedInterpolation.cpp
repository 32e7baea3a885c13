#include "InterpolationCheck.h"
#include "LogCapture.h"
#include "Solver.h"
#include "SurfaceMesh.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Ovra::Geo;

Q_DECLARE_METATYPE(PatchSpec)

namespace
{

void nameAsExtruded(ModelEntity* face, const ModelEntity* partner)
{
    face->attributes().insert(AttributeType::ExtrudedFace, partner->id());
}

InterpolationLink linkOf(MeshEntity* vertex)
{
    return LinkAttributes::extruded().of(vertex);
}

bool isVertexLink(MeshEntity* vertex, const MeshEntity* partner)
{
    return linkOf(vertex) == InterpolationLink{0, partner->id(), {1.0}};
}

QString text(const QList<InterpolationLink>& links)
{
    QString result;
    for (const InterpolationLink& link : links) {
        result += QString("%1 %2:").arg(link.type).arg(link.id);
        for (double weight : link.weights) {
            result += QString(" %1").arg(weight, 0, 'g', 17);
        }
        result += "\n";
    }
    return result;
}

QList<InterpolationLink> allLinks(SurfaceMesh* surface)
{
    QList<InterpolationLink> result;
    auto vertices = surface->mesh()->orderedIterator(0);
    while (vertices.hasNext()) {
        result.append(linkOf(vertices.next()));
    }
    return result;
}

/// One unit square on the first face; its twin on the second, with a vertex in its middle, makes
/// four triangles. They lie on each other.
struct Squares
{
    Squares()
    {
        surface.addModelEntity(3);
        first = surface.addFace();
        second = surface.addFace();
        square = surface.addElementAt(
            first, {Vector(0, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0), Vector(0, 1, 0)});
        corners = SurfaceMesh::verticesOf(square);
        for (MeshVertex* corner : corners) {
            twins.append(surface.addVertex(corner->point()));
        }
        middle = surface.addVertex(Vector(0.5, 0.25, 0));
        for (int i = 0; i < 4; ++i) {
            surface.addElement(second, {twins[i], twins[(i + 1) % 4], middle});
        }
        surface.mesh()->setUpwardAdjacencies();
    }

    SurfaceMesh surface;
    ModelEntity* first;
    ModelEntity* second;
    MeshEntity* square;
    QList<MeshVertex*> corners;
    QList<MeshVertex*> twins;
    MeshVertex* middle;
};

} // namespace

class TestExtrudedInterpolation : public QObject
{
    Q_OBJECT

private slots:
    void pairIsTiedBothWays()
    {
        Squares squares;
        nameAsExtruded(squares.first, squares.second);
        LogCapture log;
        Solver(squares.surface.database()).interpolateExtrudedFaces();

        QCOMPARE(log.messages(), QStringList{QString("Found face %1 and face %2")
                                                 .arg(squares.first->id())
                                                 .arg(squares.second->id())});
        for (int i = 0; i < 4; ++i) {
            QVERIFY(isVertexLink(squares.corners[i], squares.twins[i]));
            QVERIFY(isVertexLink(squares.twins[i], squares.corners[i]));
            QCOMPARE(squares.twins[i]->attributes().count(), 3);
        }
        const InterpolationLink link = linkOf(squares.middle);
        QCOMPARE(link.type, 2);
        QCOMPARE(link.id, squares.square->id());
        QCOMPARE(link.weights.size(), 4);
        Vector reproduced;
        for (int i = 0; i < 4; ++i) {
            reproduced += link.weights[i] * squares.corners[i]->point();
        }
        QVERIFY((reproduced - squares.middle->point()).length() < 1e-14);
        QVERIFY(squares.surface.model()->attributes().isEmpty());
    }

    void facesThatNameEachOtherAreVisitedTwice()
    {
        Squares squares;
        nameAsExtruded(squares.first, squares.second);
        Solver solver(squares.surface.database());
        solver.interpolateExtrudedFaces();
        const QString once = text(allLinks(&squares.surface));
        nameAsExtruded(squares.second, squares.first);
        LogCapture log;
        solver.interpolateExtrudedFaces();
        QStringList messages = log.messages();
        messages.sort();
        const int a = squares.first->id();
        const int b = squares.second->id();
        QCOMPARE(messages, QStringList({QString("Found face %1 and face %2").arg(a).arg(b),
                                        QString("Found face %1 and face %2").arg(b).arg(a)}));
        QCOMPARE(text(allLinks(&squares.surface)), once);
    }

    void modelWithoutExtrudedFacesLogsNothing()
    {
        Squares squares;
        squares.first->attributes().insert(AttributeType::ExtrudedFace, 0);
        LogCapture log;
        Solver solver(squares.surface.database());
        solver.interpolateExtrudedFaces();
        QCOMPARE(log.messages(), QStringList());
        QVERIFY(!LinkAttributes::extruded().anyOn(squares.middle));
        QVERIFY(solver.isOk());
    }

    void emptyDatabaseIsLeftAlone()
    {
        SurfaceMesh surface;
        LogCapture log;
        Solver(surface.database()).interpolateExtrudedFaces();
        QCOMPARE(log.messages(), QStringList());
    }

    void oldLinksAreClearedEverywhere()
    {
        Squares squares;
        MeshVertex* elsewhere = squares.surface.addVertex(Vector(9, 9, 9));
        for (MeshVertex* vertex : {elsewhere, squares.middle}) {
            vertex->attributes().insert(AttributeType::ExtrudedEntityType, 1);
            vertex->attributes().insert(AttributeType::ExtrudedEntityId, 12);
            vertex->attributes().insert(AttributeType::ExtrudedWeights, QVariantList{0.5, 0.5});
            vertex->attributes().insert(AttributeType::PeriodicEntityId, 13);
            vertex->attributes().insert(AttributeType::ShellVertex, 14);
        }
        nameAsExtruded(squares.first, squares.second);
        Solver(squares.surface.database()).interpolateExtrudedFaces();
        QVERIFY(!LinkAttributes::extruded().anyOn(elsewhere));
        QCOMPARE(elsewhere->attributes().types(), QList<AttributeType>({
                                                      AttributeType::PeriodicEntityId,
                                                      AttributeType::ShellVertex,
                                                  }));
        QCOMPARE(linkOf(squares.middle).id, squares.square->id());
    }

    void secondRunGivesTheSameLinks()
    {
        Squares squares;
        nameAsExtruded(squares.second, squares.first);
        Solver solver(squares.surface.database());
        solver.interpolateExtrudedFaces();
        const QString links = text(allLinks(&squares.surface));
        LogCapture log;
        solver.interpolateExtrudedFaces();
        QCOMPARE(text(allLinks(&squares.surface)), links);
        QCOMPARE(log.messages().size(), 1);
    }

    void secondRunFollowsAMovedVertex()
    {
        Squares squares;
        nameAsExtruded(squares.second, squares.first);
        Solver solver(squares.surface.database());
        solver.interpolateExtrudedFaces();
        const InterpolationLink before = linkOf(squares.middle);
        squares.middle->setPoint(Vector(0.25, 0.5, 0));
        solver.interpolateExtrudedFaces();
        QVERIFY(!(linkOf(squares.middle) == before));
    }

    void toleranceIsThatOfTheSolver_data()
    {
        QTest::addColumn<double>("tolerance");
        QTest::addColumn<bool>("onEdge");
        QTest::newRow("default") << 0.01 << true;
        QTest::newRow("smaller") << 0.004 << false;
        QTest::newRow("larger") << 0.02 << true;
    }

    void toleranceIsThatOfTheSolver()
    {
        QFETCH(double, tolerance);
        // The middle vertex lies 0.005 of the side inside the square's first side.
        Squares squares;
        squares.middle->setPoint(Vector(0.25, 0.005, 0));
        nameAsExtruded(squares.first, squares.second);
        Solver solver(squares.surface.database());
        QCOMPARE(solver.extrusionTolerance(), 0.01);
        solver.setExtrusionTolerance(tolerance);
        solver.interpolateExtrudedFaces();
        const InterpolationLink link = linkOf(squares.middle);
        QCOMPARE(link.weights.size(), 4);
        // On the side the weights are those of the distances to its ends.
        const double first = squares.middle->point().length();
        const double second = (squares.corners[1]->point() - squares.middle->point()).length();
        const bool onEdge = link.weights[0] == second / (first + second) &&
                            link.weights[1] == first / (first + second) && link.weights[2] == 0.0 &&
                            link.weights[3] == 0.0;
        QTEST(onEdge, "onEdge");
    }

    void landingOnAVertexHasAnAbsoluteBound_data()
    {
        QTest::addColumn<double>("offset");
        QTest::addColumn<bool>("onVertex");
        // At the zero point the relative bound has no share in it.
        QTest::newRow("within") << 0.99e-8 << true;
        QTest::newRow("beyond") << 1.01e-8 << false;
    }

    void landingOnAVertexHasAnAbsoluteBound()
    {
        QFETCH(double, offset);
        Squares squares;
        squares.twins[0]->setPoint(Vector(-offset, 0, 0));
        nameAsExtruded(squares.first, squares.second);
        Solver(squares.surface.database()).interpolateExtrudedFaces();
        const InterpolationLink link = linkOf(squares.corners[0]);
        QTEST(link.type == 0, "onVertex");
        if (link.type == 0) {
            QCOMPARE(link.id, squares.twins[0]->id());
        }
    }

    void vertexOfTwoFacesKeepsItsFirstLink()
    {
        // The faces of a lower id come first.
        Squares squares;
        ModelEntity* third = squares.surface.addFace();
        MeshEntity* far =
            squares.surface.addElement(third, {squares.surface.addVertex(Vector(0, 0, 1)),
                                               squares.surface.addVertex(Vector(1, 0, 1)),
                                               squares.surface.addVertex(Vector(1, 1, 1))});
        squares.surface.mesh()->clearUpwardAdjacencies();
        squares.surface.mesh()->setUpwardAdjacencies();
        nameAsExtruded(squares.first, squares.second);
        nameAsExtruded(third, squares.second);
        Solver(squares.surface.database()).interpolateExtrudedFaces();
        QCOMPARE(linkOf(squares.middle).id, squares.square->id());
        for (MeshVertex* vertex : SurfaceMesh::verticesOf(far)) {
            const InterpolationLink link = linkOf(vertex);
            QCOMPARE(link.type, 2);
            QCOMPARE(squares.surface.mesh()->entity(2, link.id)->parent(), squares.second);
        }
    }

    void facesAreThoseOfTheFaceDimension()
    {
        // In a planar model the attribute counts on edges only.
        SurfaceMesh surface;
        ModelEntity* region = surface.addModelEntity(2);
        region->attributes().insert(AttributeType::ExtrudedFace, 99);
        ModelEntity* first = surface.addFace(1);
        ModelEntity* second = surface.addFace(1);
        nameAsExtruded(first, second);
        MeshEntity* segment = surface.addElementAt(first, {Vector(0, 0, 0), Vector(4, 0, 0)});
        addLine(&surface, second, 4, 0.0, 1, Vector(4, 0, 0), Vector(0, 0, 0));
        surface.mesh()->setUpwardAdjacencies();
        LogCapture log;
        Solver(surface.database()).interpolateExtrudedFaces();
        QCOMPARE(
            log.messages(),
            QStringList{QString("Found face %1 and face %2").arg(first->id()).arg(second->id())});
        int inside = 0;
        for (MeshEntity* vertex : InterpolationCheck::verticesOn(second)) {
            const double x = static_cast<MeshVertex*>(vertex)->point().x();
            if (x > 0.0 && x < 4.0) {
                ++inside;
                const InterpolationLink expected{1, segment->id(), {1.0 - x / 4.0, x / 4.0}};
                QVERIFY(linkOf(vertex) == expected);
            }
        }
        QCOMPARE(inside, 3);
    }

    void meshesOnEachOther_data()
    {
        QTest::addColumn<PatchSpec>("first");
        QTest::addColumn<PatchSpec>("second");
        QTest::addColumn<double>("tolerance");
        using Cells = PatchSpec::Cells;
        for (const double tolerance : {0.01, 1e-6}) {
            QTest::addRow("triangles, %g", tolerance)
                << PatchSpec{12, 9, Cells::Rising, 0, 1} << PatchSpec{17, 14, Cells::Falling, 0, 2}
                << tolerance;
            QTest::addRow("jittered, %g", tolerance)
                << PatchSpec{12, 9, Cells::Alternating, 0.25, 3}
                << PatchSpec{17, 14, Cells::Falling, 0.25, 4} << tolerance;
            QTest::addRow("quadrilaterals, %g", tolerance)
                << PatchSpec{16, 16, Cells::Quads, 0.2, 5}
                << PatchSpec{11, 13, Cells::Rising, 0.2, 6} << tolerance;
            QTest::addRow("coarse on fine, %g", tolerance)
                << PatchSpec{2, 1, Cells::Rising, 0, 7}
                << PatchSpec{41, 37, Cells::Alternating, 0.2, 8} << tolerance;
            QTest::addRow("matching, %g", tolerance)
                << PatchSpec{20, 20, Cells::Rising, 0.3, 9}
                << PatchSpec{20, 20, Cells::Falling, 0.3, 9} << tolerance;
        }
    }

    void meshesOnEachOther()
    {
        QFETCH(PatchSpec, first);
        QFETCH(PatchSpec, second);
        QFETCH(double, tolerance);
        const auto place = [](double u, double v) {
            return Vector(1, 2, 3) + u * Vector(2, 1, -2) + v * Vector(1, 2, 2);
        };
        SurfaceMesh surface;
        surface.addModelEntity(3);
        ModelEntity* a = surface.addFace();
        ModelEntity* b = surface.addFace();
        second.flipped = true;
        addPatch(&surface, a, first, place);
        addPatch(&surface, b, second, place);
        surface.mesh()->setUpwardAdjacencies();
        nameAsExtruded(b, a);
        Solver solver(surface.database());
        solver.setExtrusionTolerance(tolerance);
        solver.interpolateExtrudedFaces();

        // Snapping to a side or a corner and dropping of weights each cost up to the tolerance.
        InterpolationCheck check(&surface, LinkAttributes::extruded(),
                                 std::max(4.0 * tolerance, 1e-5));
        const auto same = [](const Vector& point) { return point; };
        check.run(a, b, same);
        check.run(b, a, same);
        QCOMPARE(check.fault(), QString());
        QCOMPARE(check.vertices(), surface.mesh()->count(0));
        QVERIFY(check.onVertices() >= 8);
        const int bound = first.jitter > 0.0 || second.jitter > 0.0 ? check.vertices() / 20 : 0;
        QVERIFY2(check.fallbacks() <= bound,
                 qPrintable(QString("%1 of %2").arg(check.fallbacks()).arg(check.vertices())));
    }

    void planarMeshesOnEachOther()
    {
        const Vector start(1, 1, 0);
        const Vector end(5, -2, 0);
        SurfaceMesh surface;
        ModelEntity* a = surface.addFace(1);
        ModelEntity* b = surface.addFace(1);
        addLine(&surface, a, 140, 0.3, 1, start, end);
        addLine(&surface, b, 93, 0.3, 2, end, start);
        surface.mesh()->setUpwardAdjacencies();
        nameAsExtruded(a, b);
        Solver(surface.database()).interpolateExtrudedFaces();
        InterpolationCheck check(&surface, LinkAttributes::extruded(), 0.04);
        const auto same = [](const Vector& point) { return point; };
        check.run(a, b, same);
        check.run(b, a, same);
        QCOMPARE(check.fault(), QString());
        QCOMPARE(check.fallbacks(), 0);
        QVERIFY(check.onVertices() >= 4);
    }

    void longPlanarFacesNeedNoDeepStackAndNoLongTime()
    {
        // Vertices in one line, numbered along it: the worst order for the tree of nearest points.
        SurfaceMesh surface;
        ModelEntity* a = surface.addFace(1);
        ModelEntity* b = surface.addFace(1);
        addLine(&surface, a, 20000, 0.0, 1, Vector(0, 0, 0), Vector(2e4, 0, 0));
        addLine(&surface, b, 19999, 0.0, 2, Vector(0, 0, 0), Vector(2e4, 0, 0));
        surface.mesh()->setUpwardAdjacencies();
        nameAsExtruded(a, b);
        Solver(surface.database()).interpolateExtrudedFaces();
        // Vertex i of the first line lies in segment i of the second.
        for (int i : {2, 177, 6666, 10000, 16000}) {
            const InterpolationLink link = linkOf(surface.mesh()->entity(0, i + 1));
            QCOMPARE(link.type, 1);
            QCOMPARE(link.id, 20000 + i);
            const double share = 1.0 - 5e-5 * i;
            QVERIFY(std::abs(link.weights[1] - (share > 0.99 ? 1.0 : share)) < 1e-6);
        }
    }
};

QTEST_APPLESS_MAIN(TestExtrudedInterpolation)
#include "tst_ExtrudedInterpolation.moc"
