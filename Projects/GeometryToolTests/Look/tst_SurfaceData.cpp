#include "CaseSurface.h"
#include "CaseView.h"
#include "ClosedCase.h"
#include "SurfaceData.h"

#include <QJsonArray>
#include <QTest>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

class TestSurfaceData : public QObject
{
    Q_OBJECT

private slots:
    void leavesThePatchesOfMostPolygonsOut_data()
    {
        QTest::addColumn<int>("most");
        QTest::addColumn<QList<int>>("triangles");
        QTest::addColumn<QList<int>>("leftOut");
        QTest::addColumn<int>("vertices");
        QTest::newRow("room for all") << 4 << QList<int>{1, 3} << QList<int>{0, 0} << 4;
        QTest::newRow("one too many") << 3 << QList<int>{1, 0} << QList<int>{0, 3} << 3;
        QTest::newRow("no room") << 0 << QList<int>{0, 0} << QList<int>{1, 3} << 0;
    }

    void leavesThePatchesOfMostPolygonsOut()
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
};

QTEST_GUILESS_MAIN(TestSurfaceData)
#include "tst_SurfaceData.moc"
