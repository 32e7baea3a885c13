#include "InParallel.h"

#include <QTest>

#include <algorithm>
#include <atomic>
#include <mutex>
#include <stdexcept>
#include <utility>
#include <vector>

using Ovra::GeoTool::gatherInParallel;
using Ovra::GeoTool::inParallel;
using Ovra::GeoTool::placesInParallel;

namespace
{

using Ranges = std::vector<std::pair<std::size_t, std::size_t>>;

Ranges rangesOf(std::size_t size, std::size_t least)
{
    std::mutex mutex;
    Ranges ranges;
    inParallel(size, least, [&](std::size_t begin, std::size_t end) {
        const std::lock_guard lock(mutex);
        ranges.emplace_back(begin, end);
    });
    std::sort(ranges.begin(), ranges.end());
    return ranges;
}

} // namespace

class TestInParallel : public QObject
{
    Q_OBJECT

private slots:
    void rangesMakeUpTheWhole_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("least");
        for (const int least : {1, 3, 1000}) {
            for (const int size : {0, 1, 2, 3, 5, 7, 64, 999, 1000, 1001, 1999, 2000, 100003}) {
                QTest::addRow("%d in ranges of %d", size, least) << size << least;
            }
        }
    }

    void rangesMakeUpTheWhole()
    {
        QFETCH(int, size);
        QFETCH(int, least);
        const Ranges ranges =
            rangesOf(static_cast<std::size_t>(size), static_cast<std::size_t>(least));
        QVERIFY(!ranges.empty());
        QCOMPARE(ranges.front().first, std::size_t(0));
        QCOMPARE(ranges.back().second, static_cast<std::size_t>(size));
        for (std::size_t i = 0; i < ranges.size(); ++i) {
            QVERIFY(i == 0 || ranges[i].first == ranges[i - 1].second);
            QVERIFY(ranges.size() == 1 ||
                    ranges[i].second - ranges[i].first >= static_cast<std::size_t>(least));
        }
    }

    void fewAreOneRange() { QCOMPARE(rangesOf(1999, 1000), (Ranges{{0, 1999}})); }

    void placesAreInTheirOrder()
    {
        const auto places =
            placesInParallel(1000, 1, [](std::size_t place) { return place % 7 == 3; });
        QCOMPARE(places.size(), std::size_t(143));
        for (std::size_t i = 0; i < places.size(); ++i) {
            QCOMPARE(places[i], 7 * i + 3);
        }
        QVERIFY(placesInParallel(1000, 1, [](std::size_t) { return false; }).empty());
        QVERIFY(placesInParallel(0, 1, [](std::size_t) { return true; }).empty());
    }

    void whatIsGatheredIsInItsOrder()
    {
        const auto gathered = gatherInParallel<std::size_t>(
            1000, 1, [](std::size_t place, std::vector<std::size_t>& things) {
                things.insert(things.end(), place % 3, place);
            });
        std::vector<std::size_t> expected;
        for (std::size_t place = 0; place < 1000; ++place) {
            expected.insert(expected.end(), place % 3, place);
        }
        QCOMPARE(gathered, expected);
    }

    void throwsWhenTheOthersAreDone()
    {
        std::atomic<std::size_t> done = 0;
        const auto work = [&done](std::size_t begin, std::size_t end) {
            if (begin == 0) {
                throw std::runtime_error("the first");
            }
            done += end - begin;
        };
        const std::size_t ofFirst = rangesOf(1000, 1).front().second;
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, inParallel(1000, 1, work));
        QCOMPARE(done.load(), 1000 - ofFirst);
    }

    void throwsWhatAnyRangeDoes()
    {
        const std::size_t last = rangesOf(1000, 1).back().first;
        QVERIFY_THROWS_EXCEPTION(std::runtime_error,
                                 inParallel(1000, 1, [last](std::size_t begin, std::size_t) {
                                     if (begin == last) {
                                         throw std::runtime_error("the last");
                                     }
                                 }));
    }
};

QTEST_APPLESS_MAIN(TestInParallel)
#include "tst_InParallel.moc"
