#include "MeshEdge.h"
#include "MeshFace.h"
#include "MeshVertex.h"
#include "NeighbourList.h"
#include "NeighbourTable.h"

#include <QTest>

#include <random>
#include <vector>

using namespace Ovra::Geo;

namespace
{

using Entities = QList<MeshEntity*>;

class Strangers
{
public:
    explicit Strangers(size_t count)
        : vertices_(count)
    {
    }

    MeshEntity* at(qsizetype index) { return &vertices_.at(static_cast<size_t>(index)); }

    Entities first(qsizetype count)
    {
        Entities entities;
        for (qsizetype i = 0; i < count; ++i) {
            entities.append(at(i));
        }
        return entities;
    }

private:
    std::vector<MeshVertex> vertices_;
};

void fill(NeighbourList& list, const Entities& entities)
{
    for (MeshEntity* entity : entities) {
        list.append(entity);
    }
}

} // namespace

class TestNeighbourList : public QObject
{
    Q_OBJECT

private slots:
    void takesOnePointer() { QCOMPARE(sizeof(NeighbourList), sizeof(void*)); }

    void keepsTheOrder_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {0, 1, 3, 4, 5, 63, 64, 65, 1000}) {
            QTest::addRow("%d", count) << count;
        }
    }

    void keepsTheOrder()
    {
        QFETCH(int, count);
        Strangers strangers(1000);
        EmbeddedNeighbours<4> room;
        NeighbourList inElement(room.block);
        NeighbourList alone;
        const Entities expected = strangers.first(count);
        fill(inElement, expected);
        fill(alone, expected);
        QCOMPARE(inElement.snapshot(), expected);
        QCOMPARE(alone.snapshot(), expected);
        QCOMPARE(NeighbourList(inElement).snapshot(), expected);
    }

    void behavesAsAList_data()
    {
        QTest::addColumn<int>("most");
        QTest::newRow("short") << 5;
        QTest::newRow("long") << 200;
    }

    void behavesAsAList()
    {
        QFETCH(int, most);
        Strangers strangers(20);
        EmbeddedNeighbours<4> room;
        NeighbourList list(room.block);
        Entities expected;
        std::mt19937 random(3);
        for (int step = 0; step < 5000; ++step) {
            MeshEntity* entity = strangers.at(static_cast<qsizetype>(random() % 20));
            const NeighbourList before = list;
            const Entities expectedBefore = expected;
            if (expected.size() < most && random() % 2 == 0) {
                list.append(entity);
                expected.append(entity);
            } else if (!expected.isEmpty() && random() % 3 == 0) {
                const auto index = static_cast<qsizetype>(random()) % expected.size();
                list.replace(index, entity);
                expected[index] = entity;
            } else {
                list.removeOne(entity);
                expected.removeOne(entity);
            }
            QCOMPARE(list.indexOf(entity), expected.indexOf(entity));
            QCOMPARE(list.snapshot(), expected);
            QCOMPARE(before.snapshot(), expectedBefore);
        }
    }

    void sharesLongLists()
    {
        Strangers strangers(100);
        NeighbourList list;
        fill(list, strangers.first(100));
        NeighbourList copy;
        copy = list;
        QCOMPARE(copy.begin(), list.begin());
        QVERIFY(copy.isCopyOf(list));
        list.clear();
        QCOMPARE(copy.snapshot(), strangers.first(100));
        const NeighbourList another = copy;
        copy.append(strangers.at(0));
        QVERIFY(!copy.isCopyOf(another));
        QCOMPARE(another.snapshot(), strangers.first(100));
        QCOMPARE(copy.size(), 101);
    }

    void snapshotsStayWhatTheyWere()
    {
        Strangers strangers(8);
        NeighbourList list;
        fill(list, strangers.first(3));
        QList<Entities> snapshots;
        QList<Entities> expected;
        for (int i = 3; i < 8; ++i) {
            snapshots.append(list.snapshot());
            expected.append(strangers.first(i));
            list.append(strangers.at(i));
        }
        QCOMPARE(snapshots, expected);
        snapshots[0].append(strangers.at(0));
        QCOMPARE(snapshots.at(1), expected.at(1));
    }

    void isEmptyAfterClear()
    {
        Strangers strangers(5);
        EmbeddedNeighbours<4> room;
        NeighbourList list(room.block);
        for (const int count : {2, 5}) {
            fill(list, strangers.first(count));
            list.clear();
            QVERIFY(list.isEmpty());
            QCOMPARE(list.snapshot(), Entities());
        }
    }

    void reservesOnce()
    {
        Strangers strangers(10);
        NeighbourList list;
        list.reserve(10);
        list.append(strangers.at(0));
        const auto* const place = list.begin();
        fill(list, strangers.first(9));
        QCOMPARE(list.begin(), place);
    }

    void tableHoldsAsManyAsItPromises()
    {
        std::vector<MeshVertex> vertices(2 * NeighbourTable::Most);
        NeighbourTable table;
        for (std::size_t i = 0; i < NeighbourTable::Most; ++i) {
            QVERIFY(table.insert(&vertices[2 * i]));
        }
        for (std::size_t i = 0; i < NeighbourTable::Most; ++i) {
            QVERIFY(!table.insert(&vertices[2 * i]));
            QVERIFY(table.contains(&vertices[2 * i]));
            QVERIFY(!table.contains(&vertices[2 * i + 1]));
        }
    }

    // Lists of a length for each way of looking up, in which every entry stands twice.
    void commonNeighbours_data()
    {
        QTest::addColumn<int>("count");
        for (const int count : {0, 1, 4, 5, 30, 64, 65, 200}) {
            QTest::addRow("%d", count) << count;
        }
    }

    void commonNeighbours()
    {
        QFETCH(int, count);
        std::vector<MeshFace> faces(static_cast<std::size_t>(3 * count));
        MeshVertex a;
        MeshVertex b;
        QSet<MeshEntity*> expected;
        for (int i = 0; i < count; ++i) {
            for (int twice = 0; twice < 2; ++twice) {
                a.addAdjacency(&faces[static_cast<std::size_t>(i)]);
                a.addAdjacency(&faces[static_cast<std::size_t>(count + i)]);
                b.addAdjacency(&faces[static_cast<std::size_t>(3 * count - 1 - i)]);
                b.addAdjacency(&faces[static_cast<std::size_t>(count + i)]);
            }
            expected.insert(&faces[static_cast<std::size_t>(count + i)]);
        }
        MeshEdge edge;
        edge.addAdjacency(&a);
        edge.addAdjacency(&b);
        QCOMPARE(MeshEntity::getUpwardAdjacencies(&edge, 2), expected);
        edge.setUpwardAdjacencies();
        QCOMPARE(edge.adjacencyCount(2), count);
    }
};

QTEST_APPLESS_MAIN(TestNeighbourList)
#include "tst_NeighbourList.moc"
