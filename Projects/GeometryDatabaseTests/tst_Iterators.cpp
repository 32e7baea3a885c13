#include "HashIterator.h"
#include "OrderedHashIterator.h"

#include <QTest>

#include <memory>
#include <numeric>
#include <vector>

using namespace Ovra::Geo;

namespace
{

// A stand-in for the entities of a container: a thousand of them, so that hash order is no id
// order.
class Table
{
public:
    Table()
        : entities_(1000)
    {
        std::iota(entities_.begin(), entities_.end(), 1);
        for (int& entity : entities_) {
            hash_.insert(entity, &entity);
        }
    }

    QHash<int, int*>& hash() { return hash_; }

private:
    std::vector<int> entities_;
    QHash<int, int*> hash_;
};

template <typename Iterator>
QList<int> idsThatFollow(Iterator iterator)
{
    QList<int> ids;
    while (iterator.hasNext()) {
        const int* const entity = iterator.next();
        ids.append(entity ? *entity : 0);
    }
    return ids;
}

QList<int> idsThatFollow(HashIterator<int, int*> iterator)
{
    QList<int> ids;
    while (iterator.hasNext()) {
        iterator.next();
        ids.append(*iterator.value());
    }
    return ids;
}

QList<int> oneTo(int count)
{
    QList<int> ids(count);
    std::iota(ids.begin(), ids.end(), 1);
    return ids;
}

} // namespace

class TestIterators : public QObject
{
    Q_OBJECT

private slots:
    void walksInTheHashsOrder()
    {
        Table table;
        HashIterator<int, int*> iterator(table.hash());
        QHashIterator<int, int*> expected(table.hash());
        while (expected.hasNext()) {
            expected.next();
            QVERIFY(iterator.hasNext());
            QCOMPARE(*iterator.peekNext(), expected.value());
            const auto item = iterator.next();
            QCOMPARE(iterator.key(), expected.key());
            QCOMPARE(iterator.value(), expected.value());
            QCOMPARE(item.key(), expected.key());
            QCOMPARE(item.value(), expected.value());
        }
        QVERIFY(!iterator.hasNext());
    }

    void walksAnEmptyHash()
    {
        const QHash<int, int*> hash;
        QVERIFY(!(HashIterator<int, int*>(hash).hasNext()));
        QVERIFY(!(OrderedHashIterator<int, int*>(&hash).hasNext()));
    }

    void yieldsWhatWasRemovedMeanwhile()
    {
        int entity = 5;
        QHash<int, int*> hash{{5, &entity}};
        HashIterator<int, int*> iterator(hash);
        hash.remove(5);
        QVERIFY(iterator.hasNext());
        iterator.next();
        QCOMPARE(iterator.key(), 5);
        QCOMPARE(iterator.value(), &entity);
    }

    void yieldsNothingThatWasAddedMeanwhile()
    {
        Table table;
        int entity = 1001;
        const HashIterator<int, int*> iterator(table.hash());
        table.hash().insert(1001, &entity);
        QCOMPARE(idsThatFollow(iterator).size(), 1000);
    }

    void survivesTheContainer()
    {
        int entity = 3;
        auto hash = std::make_unique<QHash<int, int*>>();
        hash->insert(3, &entity);
        HashIterator<int, int*> iterator(*hash);
        hash.reset();
        QCOMPARE(idsThatFollow(iterator), QList<int>({3}));
    }

    void allowsRemovalOfAllDuringTheWalk()
    {
        Table table;
        HashIterator<int, int*> iterator(table.hash());
        int visited = 0;
        while (iterator.hasNext()) {
            iterator.next();
            table.hash().remove(iterator.key());
            ++visited;
        }
        QCOMPARE(visited, 1000);
        QVERIFY(table.hash().isEmpty());
    }

    void copiesOfASnapshotGoOnAlone()
    {
        Table table;
        auto iterator = std::make_unique<HashIterator<int, int*>>(table.hash());
        iterator->next();
        HashIterator<int, int*> copy(*iterator);
        HashIterator<int, int*> assigned{QHash<int, int*>()};
        assigned = *iterator;
        const QList<int> expected = idsThatFollow(*iterator);
        iterator->next();
        iterator.reset();
        QCOMPARE(copy.key(), assigned.key());
        QCOMPARE(idsThatFollow(copy), expected);
        QCOMPARE(idsThatFollow(assigned), expected);
    }

    void startsAgain()
    {
        Table table;
        HashIterator<int, int*> iterator(table.hash());
        const QList<int> expected = idsThatFollow(iterator);
        iterator.next();
        iterator.next();
        iterator.toFront();
        QCOMPARE(idsThatFollow(iterator), expected);
    }

    void findsAValue()
    {
        Table table;
        int stranger = 0;
        HashIterator<int, int*> iterator(table.hash());
        QVERIFY(iterator.findNext(table.hash().value(700)));
        QCOMPARE(iterator.key(), 700);
        QVERIFY(!iterator.findNext(&stranger));
        QVERIFY(!iterator.hasNext());
    }

    void whatAStepGivesOutlivesTheNextStep()
    {
        Table table;
        HashIterator<int, int*> iterator(table.hash());
        const auto& first = iterator.next().value();
        const auto& firstKey = iterator.key();
        const int expected = *first;
        iterator.next();
        QCOMPARE(*first, expected);
        QCOMPARE(firstKey, expected);
    }

    void walksInTheOrderOfKeys_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QList<int>>("expected");
        QTest::newRow("three") << QList<int>({30, 2, 11}) << QList<int>({2, 11, 30});
        QTest::newRow("one") << QList<int>({7}) << QList<int>({7});
        QTest::newRow("signed") << QList<int>({1, 0, -5}) << QList<int>({-5, 0, 1});
    }

    void walksInTheOrderOfKeys()
    {
        QFETCH(QList<int>, keys);
        QHash<int, int*> hash;
        for (int& key : keys) {
            hash.insert(key, &key);
        }
        QTEST(idsThatFollow(OrderedHashIterator<int, int*>(&hash)), "expected");
    }

    void walksManyInTheOrderOfKeys()
    {
        Table table;
        QCOMPARE(idsThatFollow(OrderedHashIterator<int, int*>(&table.hash())), oneTo(1000));
    }

    void yieldsNullForWhatWasRemovedMeanwhile()
    {
        Table table;
        OrderedHashIterator<int, int*> iterator(&table.hash());
        table.hash().remove(2);
        QCOMPARE(*iterator.next(), 1);
        QCOMPARE(iterator.next(), nullptr);
        QCOMPARE(*iterator.next(), 3);
    }

    void passesOverKeysThatWereAddedMeanwhile()
    {
        Table table;
        int entity = -1;
        const OrderedHashIterator<int, int*> iterator(&table.hash());
        table.hash().insert(-1, &entity);
        QCOMPARE(idsThatFollow(iterator), oneTo(1000));
    }

    void looksValuesUpInTheLiveHash()
    {
        int first = 1;
        int second = 2;
        QHash<int, int*> hash{{7, &first}};
        OrderedHashIterator<int, int*> iterator(&hash);
        hash.insert(7, &second);
        QCOMPARE(iterator.next(), &second);
    }

    void copiesOfAnOrderedWalkGoOnAlone()
    {
        Table table;
        auto iterator = std::make_unique<OrderedHashIterator<int, int*>>(&table.hash());
        iterator->next();
        OrderedHashIterator<int, int*> copy(*iterator);
        const QHash<int, int*> other;
        OrderedHashIterator<int, int*> assigned(&other);
        assigned = *iterator;
        const OrderedHashIterator<int, int*>& same = assigned;
        assigned = same;
        iterator->next();
        iterator.reset();
        const QList<int> expected = oneTo(1000).mid(1);
        QCOMPARE(idsThatFollow(copy), expected);
        QCOMPARE(idsThatFollow(assigned), expected);
    }

    void isUsableAfterAMove()
    {
        Table table;
        OrderedHashIterator<int, int*> iterator(&table.hash());
        iterator.next();
        OrderedHashIterator<int, int*> moved(std::move(iterator));
        QCOMPARE(*moved.next(), 2);
        std::vector<OrderedHashIterator<int, int*>> many;
        many.push_back(moved);
        many.push_back(moved);
        QCOMPARE(*many[0].next(), 3);
        QCOMPARE(*many[1].next(), 3);
    }
};

QTEST_APPLESS_MAIN(TestIterators)
#include "tst_Iterators.moc"
