#include "Buckets.h"

#include <QTest>

#include <algorithm>
#include <utility>

using Ovra::GeoTool::Buckets;

namespace
{

using Entries = std::vector<std::pair<std::size_t, int>>; // bucket and thing

Buckets<int> bucketsOf(std::size_t count, const Entries& entries)
{
    return {count, [&entries](auto add) {
                for (const auto& [bucket, thing] : entries) {
                    add(bucket, thing);
                }
            }};
}

std::vector<int> listOf(std::span<const int> things)
{
    return {things.begin(), things.end()};
}

} // namespace

class TestBuckets : public QObject
{
    Q_OBJECT

private slots:
    void keepsThingsInTheirOrder()
    {
        const Buckets<int> buckets =
            bucketsOf(4, {{3, 30}, {0, 1}, {3, 10}, {0, 2}, {0, 0}, {1, 7}});
        QCOMPARE(buckets.count(), std::size_t(4));
        QCOMPARE(listOf(buckets[0]), std::vector<int>({1, 2, 0}));
        QCOMPARE(listOf(buckets[1]), std::vector<int>({7}));
        QCOMPARE(listOf(buckets[2]), std::vector<int>());
        QCOMPARE(listOf(buckets[3]), std::vector<int>({30, 10}));
        QCOMPARE(buckets.things(), std::vector<int>({1, 2, 0, 7, 30, 10}));
    }

    void canBeGivenTheirSizes()
    {
        const std::vector<int> sizes = {2, 0, 1};
        const Buckets<int> buckets(std::span<const int>(sizes), [](auto add) {
            add(2, 5);
            add(0, 9);
            add(0, 1);
        });
        QCOMPARE(buckets.count(), std::size_t(3));
        QCOMPARE(listOf(buckets[0]), std::vector<int>({9, 1}));
        QCOMPARE(listOf(buckets[1]), std::vector<int>());
        QCOMPARE(listOf(buckets[2]), std::vector<int>({5}));
    }

    void mayBeEmpty()
    {
        QCOMPARE(bucketsOf(0, {}).count(), std::size_t(0));
        QCOMPARE(listOf(bucketsOf(1, {})[0]), std::vector<int>());
        QCOMPARE(Buckets<int>().count(), std::size_t(0));
    }

    void canBeSortedEachByItself()
    {
        Buckets<int> buckets = bucketsOf(2, {{1, 9}, {0, 8}, {1, 3}, {0, 5}});
        for (std::size_t i = 0; i < buckets.count(); ++i) {
            std::sort(buckets[i].begin(), buckets[i].end());
        }
        QCOMPARE(buckets.things(), std::vector<int>({5, 8, 3, 9}));
    }
};

QTEST_APPLESS_MAIN(TestBuckets)
#include "tst_Buckets.moc"
