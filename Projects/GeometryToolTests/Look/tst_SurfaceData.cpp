#include "BareSides.h"
#include "CaseSurface.h"
#include "CaseView.h"
#include "ClosedCase.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "MortonOrder.h"
#include "PreparationCase.h"
#include "SurfaceData.h"

#include <QJsonArray>
#include <QTest>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

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
        QTest::newRow("room for the smaller") << 5 << QList<int>{1, 0} << QList<int>{0, 3} << 3;
        QTest::newRow("no room") << 2 << QList<int>{0, 0} << QList<int>{1, 3} << 0;
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
        QCOMPARE(patches.size(), 2);
        for (int i = 0; i < 2; ++i) {
            QCOMPARE(patches[i]["triangles"].toInt(), triangles[i]);
            QCOMPARE(patches[i]["leftOut"].toInt(), leftOut[i]);
        }
        QCOMPARE(data.head().value("vertices").toInt(), vertices);
        QCOMPARE(data.positions().size(), 12 * vertices);
        QCOMPARE(data.indices().size(), 12 * (triangles[0] + triangles[1]));
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
