#include "HashIterator.h"
#include "IdTable.h"

#include <QMap>
#include <QTest>

#include <limits>
#include <random>

using namespace Ovra::Geo;

namespace
{

using Table = IdTable<const int>;
using Ids = QList<int>;

constexpr int Highest = std::numeric_limits<int>::max();
constexpr int Lowest = std::numeric_limits<int>::min();

const int* entity()
{
    static const int object = 0;
    return &object;
}

Ids idsOf(const Table& table)
{
    Ids ids;
    for (IdTableWalk<const int> walk(table); walk.hasNext();) {
        ids.append(walk.next().key());
    }
    return ids;
}

Ids range(int first, int count, int step = 1)
{
    Ids ids;
    for (int i = 0; i < count; ++i) {
        ids.append(first + i * step);
    }
    return ids;
}

Ids reversed(Ids ids)
{
    std::reverse(ids.begin(), ids.end());
    return ids;
}

} // namespace

class TestIdTable : public QObject
{
    Q_OBJECT

private slots:
    void isEmptyToBeginWith()
    {
        const Table table;
        QVERIFY(table.isEmpty());
        QCOMPARE(table.size(), 0);
        QCOMPARE(table.value(1), nullptr);
        QCOMPARE(idsOf(table), Ids());
    }

    void walksAllThatWasInsertedByAscendingId_data()
    {
        QTest::addColumn<QList<int>>("ids");
        QTest::newRow("dense") << range(1, 1000);
        QTest::newRow("from far off") << range(1000000, 1000);
        QTest::newRow("downwards") << reversed(range(5, 1000));
        QTest::newRow("half in use") << range(1, 1000, 2);
        QTest::newRow("sparse") << range(1, 1000, 1000);
        QTest::newRow("two blocks, the second larger") << range(1, 10) + range(1000000, 1000);
        QTest::newRow("two blocks, the first larger") << range(1000000, 1000) + range(1, 10);
        QTest::newRow("outlier first") << Ids({Highest}) + range(1, 1000);
        QTest::newRow("outlier last") << range(1, 1000) + Ids({Highest});
        QTest::newRow("no ids of a sound case") << Ids({Lowest, -5, 0, 7, Highest, -6, 8});
        QTest::newRow("gap filled later") << range(1, 10) + range(3000, 20) + range(11, 2989);
    }

    void walksAllThatWasInsertedByAscendingId()
    {
        QFETCH(QList<int>, ids);
        Table table;
        for (const int id : ids) {
            table.insert(id, entity());
        }
        QCOMPARE(table.size(), ids.size());
        std::sort(ids.begin(), ids.end());
        QCOMPARE(idsOf(table), ids);
        for (const int id : ids) {
            QVERIFY(table.contains(id));
        }
    }

    void answersAsAMap_data()
    {
        QTest::addColumn<int>("lowest");
        QTest::addColumn<int>("highest");
        QTest::newRow("dense") << 1 << 500;
        QTest::newRow("sparse") << 1 << 100000;
        QTest::newRow("any") << Lowest << Highest;
        QTest::newRow("about zero") << -100 << 100;
    }

    void answersAsAMap()
    {
        QFETCH(int, lowest);
        QFETCH(int, highest);
        std::mt19937 random(1);
        std::uniform_int_distribution<int> ids(lowest, highest);
        const QList<int> objects(1000);
        Table table;
        QMap<int, const int*> expected;
        for (int step = 0; step < 20000; ++step) {
            const bool anyId = random() % 3 != 0 || expected.isEmpty();
            const int id = anyId ? ids(random) : expected.firstKey() + static_cast<int>(step % 700);
            if (random() % 5 < 3) {
                const int* object = &objects.at(step % 1000);
                table.insert(id, object);
                expected.insert(id, object);
            } else {
                table.remove(id);
                expected.remove(id);
            }
            QCOMPARE(table.value(id), expected.value(id, nullptr));
        }
        QCOMPARE(table.size(), expected.size());
        QCOMPARE(idsOf(table), expected.keys());
    }

    void takesTheLaterOfTwoUnderOneId()
    {
        const int later = 0;
        Table table;
        table.insert(3, entity());
        table.insert(3, &later);
        QCOMPARE(table.size(), 1);
        QCOMPARE(table.value(3), &later);
    }

    void leavesWalksAndCopiesAlone()
    {
        Table table;
        for (const int id : range(1, 100) + Ids({Highest})) {
            table.insert(id, entity());
        }
        const Table copy = table;
        IdTableWalk<const int> walk(table);
        for (const int id : range(1, 50)) {
            table.remove(id);
        }
        table.insert(200, entity());
        int visited = 0;
        for (; walk.hasNext(); ++visited) {
            QCOMPARE(walk.next().value(), entity());
        }
        QCOMPARE(visited, 101);
        QCOMPARE(idsOf(copy).size(), 101);
        QCOMPARE(idsOf(table), range(51, 50) + Ids({200, Highest}));
    }

    void givesFreeIdsFromOneOn_data()
    {
        QTest::addColumn<Ids>("taken");
        QTest::addColumn<Ids>("removed");
        QTest::newRow("none taken") << Ids() << Ids();
        QTest::newRow("below zero and the highest") << Ids{-1, Highest} << Ids();
        QTest::newRow("far below zero") << Ids{-3, Highest} << Ids();
        QTest::newRow("the lowest") << Ids{Lowest, Highest} << Ids();
        QTest::newRow("the two highest") << Ids{Highest - 1, Highest} << Ids();
        QTest::newRow("free ones below the highest")
            << range(Highest - 100, 100) + Ids{Highest} << range(Highest - 99, 99);
        QTest::newRow("few in the window") << range(1, 50) + Ids{Highest, 1051} << range(2, 48);
    }

    void givesFreeIdsFromOneOn()
    {
        QFETCH(Ids, taken);
        QFETCH(Ids, removed);
        Table table;
        for (const int id : std::as_const(taken)) {
            table.insert(id, entity());
        }
        for (const int id : std::as_const(removed)) {
            table.remove(id);
        }
        for (int given = 0; given < 1000; ++given) {
            const int id = table.freeId();
            QVERIFY(id > 0);
            QVERIFY(!table.contains(id));
            table.insert(id, entity());
        }
    }

    // A walk over all that were given before would not end in the lifetime of a test.
    void givesManyFreeIdsWhereFewAreLeft()
    {
        Table table;
        for (const int id : range(1, 1'000'000)) {
            table.insert(id, entity());
        }
        for (const int id : range(2, 999'999)) {
            table.remove(id);
        }
        table.insert(Highest, entity());
        for (int given = 1'000'001; given <= 1'400'000; ++given) {
            const int id = table.freeId();
            QVERIFY(!table.contains(id));
            QVERIFY(id > 0);
            table.insert(id, entity());
        }
        QCOMPARE(table.size(), 400'002);
    }

    void beginsAnewWhenAllIsRemoved()
    {
        Table table;
        table.insert(1000000, entity());
        table.remove(1000000);
        QVERIFY(table.isEmpty());
        table.insert(1, entity());
        QCOMPARE(idsOf(table), Ids({1}));
    }
};

QTEST_APPLESS_MAIN(TestIdTable)
#include "tst_IdTable.moc"
