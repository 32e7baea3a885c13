#include "IdGenerator.h"

#include <QTest>

using namespace Ovra::Geo;

class TestIdGenerator : public QObject
{
    Q_OBJECT

private slots:
    void countsUpFromOne()
    {
        IdGenerator ids;
        QCOMPARE(ids.getId(), 1);
        QCOMPARE(ids.getId(), 2);
        QCOMPARE(ids.maxId(), 2);
    }

    void reusesReturnedIdsOldestFirst()
    {
        IdGenerator ids;
        ids.setMaxId(2);
        ids.returnId(1);
        ids.returnId(2);
        QCOMPARE(ids.getId(), 1);
        QCOMPARE(ids.getId(), 2);
        QCOMPARE(ids.getId(), 3);
    }

    void handsOutTwiceWhatIsReturnedTwice()
    {
        IdGenerator ids;
        ids.setMaxId(5);
        ids.returnId(4);
        ids.returnId(4);
        QCOMPARE(ids.getId(), 4);
        QCOMPARE(ids.getId(), 4);
        QCOMPARE(ids.getId(), 6);
    }

    void followsTheDeclaredMaximumEvenDownwards()
    {
        IdGenerator ids;
        ids.setMaxId(10);
        QCOMPARE(ids.getId(), 11);
        ids.setMaxId(3);
        QCOMPARE(ids.getId(), 4);
    }

    void keepsReturnedIdsWhenAMaximumIsDeclared()
    {
        IdGenerator ids;
        ids.setMaxId(5);
        ids.returnId(3);
        ids.setMaxId(10);
        QCOMPARE(ids.getId(), 3);
        QCOMPARE(ids.getId(), 11);
    }

    void resetForgetsReturnedIds()
    {
        IdGenerator ids;
        ids.setMaxId(9);
        ids.returnId(7);
        ids.reset();
        QCOMPARE(ids.maxId(), 0);
        QCOMPARE(ids.getId(), 1);
    }

    void countsIdsInUse()
    {
        IdGenerator ids;
        ids.getId();
        ids.getId();
        ids.getId();
        ids.returnId(2);
        QCOMPARE(ids.count(), 2);
    }

    void copiesAreIndependent()
    {
        IdGenerator ids;
        ids.getId();
        ids.returnId(1);
        IdGenerator copy(ids);
        QCOMPARE(copy.getId(), 1);
        QCOMPARE(copy.getId(), 2);
        QCOMPARE(ids.maxId(), 1);
        QCOMPARE(ids.getId(), 1);
    }
};

QTEST_APPLESS_MAIN(TestIdGenerator)
#include "tst_IdGenerator.moc"
