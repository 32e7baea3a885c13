#include "IdPositions.h"

#include <QTest>

#include <algorithm>
#include <limits>
#include <vector>

using Ovra::GeoTool::IdPositions;

using Ids = std::vector<std::int64_t>;
Q_DECLARE_METATYPE(Ids)

class TestIdPositions : public QObject
{
    Q_OBJECT

private slots:
    void findsEachAndNothingElse_data()
    {
        QTest::addColumn<Ids>("ids");
        QTest::newRow("none") << Ids{};
        QTest::newRow("one") << Ids{1};
        QTest::newRow("dense") << Ids{1, 2, 3, 4, 5};
        QTest::newRow("gaps") << Ids{0, 3, 4, 11};
        QTest::newRow("far apart") << Ids{3, 7, 900000000, 2000000000};
        QTest::newRow("beyond an int") << Ids{1, 5000000000, 9000000000000};
        QTest::newRow("negative") << Ids{-7, -2, 0, 1};
    }

    void findsEachAndNothingElse()
    {
        QFETCH(Ids, ids);
        const IdPositions positions(ids);
        for (std::size_t i = 0; i < ids.size(); ++i) {
            QCOMPARE(positions.find(ids[i]), static_cast<int>(i));
        }
        Ids others = {-8, -1, 2, 6, 12, 899999999, 2000000001};
        others.push_back(std::numeric_limits<std::int64_t>::max());
        others.push_back(std::numeric_limits<std::int64_t>::min());
        for (const std::int64_t other : others) {
            const bool isThere = std::find(ids.begin(), ids.end(), other) != ids.end();
            QCOMPARE(positions.find(other) >= 0, isThere);
        }
    }

    void givesTheFirstOfEqualIds()
    {
        QCOMPARE(IdPositions(Ids{1, 2, 2, 3}).find(2), 1);
        QCOMPARE(IdPositions(Ids{1, 2000000000, 2000000000}).find(2000000000), 1);
    }
};

QTEST_APPLESS_MAIN(TestIdPositions)
#include "tst_IdPositions.moc"
