#include "BareSides.h"
#include "CaseSurface.h"
#include "CaseView.h"
#include "ClosedCase.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "MortonOrder.h"
#include "PackedSurface.h"
#include "PreparationCase.h"
#include "SurfaceData.h"

#include <QJsonArray>
#include <QRandomGenerator>
#include <QTest>

#include <numeric>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

/// Triangles of which no two share a vertex, here and there on a face.
void addLooseTriangles(ClosedCase& closed)
{
    QRandomGenerator random(1);
    int vertex = closed.mesh()->count(0);
    for (int i = 0; i < 2000; ++i) {
        for (int corner = 0; corner < 3; ++corner) {
            closed.addVertex(
                {random.generateDouble(), random.generateDouble(), random.generateDouble()});
        }
        closed.addElement(2, {vertex + 1, vertex + 2, vertex + 3}, closed.walls);
        vertex += 3;
    }
}

} // namespace

class TestSurfaceData : public QObject
{
    Q_OBJECT

private slots:
    void cutsOffThePatchesOfMostPolygons_data()
    {
        QTest::addColumn<int>("most");
        QTest::addColumn<QList<int>>("triangles");
        QTest::addColumn<QList<int>>("leftOut");
        QTest::addColumn<int>("vertices");
        QTest::newRow("room for all") << 12 << QList<int>{1, 3} << QList<int>{0, 0} << 4;
        QTest::newRow("one too many") << 11 << QList<int>{1, 2} << QList<int>{0, 1} << 4;
        QTest::newRow("room for the smaller") << 5 << QList<int>{1} << QList<int>{0} << 3;
        QTest::newRow("no room") << 2 << QList<int>() << QList<int>() << 0;
    }

    void cutsOffThePatchesOfMostPolygons()
    {
        QFETCH(int, most);
        QFETCH(QList<int>, triangles);
        QFETCH(QList<int>, leftOut);
        QFETCH(int, vertices);
        const ClosedCase closed;
        const CaseView view(closed.database);
        const SurfaceData data(view, CaseSurface(view), static_cast<std::size_t>(most));
        const QJsonArray patches = data.head().value("patches").toArray();
        QCOMPARE(patches.size(), triangles.size());
        int shown = 0;
        for (qsizetype i = 0; i < patches.size(); ++i) {
            shown += triangles[i] + leftOut[i];
            QCOMPARE(patches[i]["triangles"].toInt(), triangles[i]);
            QCOMPARE(patches[i]["leftOut"].toInt(), leftOut[i]);
        }
        QCOMPARE(data.head().value("polygonsLeftOut").toInt(), 4 - shown);
        QCOMPARE(data.head().value("vertices").toInt(), vertices);
        QCOMPARE(data.positions().size(), 12 * vertices);
        QCOMPARE(data.indices().size(),
                 12 * std::accumulate(triangles.begin(), triangles.end(), 0));
    }

    void cutsOffTheLongestLines_data()
    {
        QTest::addColumn<int>("most");
        QTest::addColumn<QList<int>>("segments");
        QTest::addColumn<QList<int>>("triangles");
        QTest::newRow("room for all") << 16 << QList<int>{1, 2, 2} << QList<int>{1, 1};
        QTest::newRow("half a piece short") << 15 << QList<int>{1, 2, 1} << QList<int>{1, 1};
        QTest::newRow("some pieces") << 10 << QList<int>{1, 1} << QList<int>{1, 1};
        QTest::newRow("a quarter") << 8 << QList<int>{1} << QList<int>{1, 1};
        QTest::newRow("less than a piece") << 5 << QList<int>() << QList<int>{1};
        QTest::newRow("half a piece") << 1 << QList<int>() << QList<int>();
    }

    void cutsOffTheLongestLines()
    {
        QFETCH(int, most);
        QFETCH(QList<int>, segments);
        QFETCH(QList<int>, triangles);
        PlanarCase planar;
        planar.addElement(2, {1, 3, 4}, planar.faces[1]);
        const CaseView view(planar.database);
        const SurfaceData data(view, CaseSurface(view), static_cast<std::size_t>(most));
        QList<int> shown;
        for (const QJsonValue& line : data.head().value("lines").toArray()) {
            shown += line["segments"].toInt();
        }
        QCOMPARE(shown, segments);
        QCOMPARE(data.head().value("segmentsLeftOut").toInt(),
                 5 - std::accumulate(shown.begin(), shown.end(), 0));
        const QJsonArray patches = data.head().value("patches").toArray();
        QCOMPARE(patches.size(), triangles.size());
        for (qsizetype i = 0; i < patches.size(); ++i) {
            QCOMPARE(patches[i]["triangles"].toInt(), triangles[i]);
        }
    }

    void takesNoMoreThanItHasRoomFor_data()
    {
        QTest::addColumn<int>("percent");
        QTest::newRow("all") << 100;
        QTest::newRow("most") << 99;
        QTest::newRow("half") << 50;
        QTest::newRow("little") << 5;
    }

    void takesNoMoreThanItHasRoomFor()
    {
        QFETCH(int, percent);
        ClosedCase closed;
        addLooseTriangles(closed);
        const CaseView view(closed.database);
        const CaseSurface surface(view);
        const qsizetype whole = PackedSurface(view, surface, 1 << 30).size();
        const qsizetype room = whole * percent / 100;
        const PackedSurface packed(view, surface, room);
        QVERIFY(packed.size() <= room);
        QVERIFY(packed.size() > room / 3);
        int leftOut = packed.head().value("polygonsLeftOut").toInt();
        for (const QJsonValue& patch : packed.head().value("patches").toArray()) {
            leftOut += patch["leftOut"].toInt();
        }
        QCOMPARE(leftOut == 0, percent == 100);
    }

    void hasAnEmptyHeadWhereThereIsNoRoom()
    {
        const ClosedCase closed;
        const CaseView view(closed.database);
        const PackedSurface packed(view, CaseSurface(view), 10);
        QCOMPARE(packed.head().value("patches").toArray(), QJsonArray());
        QCOMPARE(packed.head().value("polygonsLeftOut").toInt(), 4);
        QCOMPARE(packed.head().value("vertices").toInt(), 0);
    }

    void looksForBareSidesWhereThereAreSome()
    {
        ClosedCase closed;
        closed.mesh()->setUpwardAdjacencies();
        QVERIFY(!mayHaveBareSides(CaseView(closed.database)));
        TinyCase tiny;
        tiny.mesh()->setUpwardAdjacencies();
        QVERIFY(mayHaveBareSides(CaseView(tiny.database)));
        GridMesh grid(PreparationCase::plan({"12"}, {{1, "fluid"}, {2, "solid"}}));
        QVERIFY(!mayHaveBareSides(CaseView(*grid.database())));
    }

    void polygonsThatLieTogetherStandTogether()
    {
        const std::vector<Vector> points = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0},
                                            {9, 9, 9}, {9, 8, 9}, {8, 9, 9}};
        const std::vector<int> mixed = {3, 4, 5, 0, 1, 2, 4, 3, 5, 1, 0, 2};
        const std::vector<int> expected = {0, 1, 2, 1, 0, 2, 3, 4, 5, 4, 3, 5};
        QCOMPARE(MortonOrder(points).sorted(mixed, 3), expected);
        const std::vector<Vector> same(6, Vector(1, 2, 3));
        QCOMPARE(MortonOrder(same).sorted(mixed, 3), mixed);
    }
};

QTEST_GUILESS_MAIN(TestSurfaceData)
#include "tst_SurfaceData.moc"
