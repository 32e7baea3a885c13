#include "SidesByVertex.h"

#include <QTest>

#include <limits>
#include <utility>
#include <vector>

using Ovra::GeoTool::SidesByVertex;
using Key = SidesByVertex::Key;
using Side = SidesByVertex::Side;

namespace
{

struct Entry
{
    Key key;
    std::size_t element = 0;
    bool isRising = false;

    bool operator==(const Entry& other) const = default;
};

using Entries = std::vector<Entry>;

/// Over all entries, by the smallest vertex.
auto walk(const Entries& entries)
{
    return [&entries](auto add) {
        for (const Entry& entry : entries) {
            add(entry.key.front(), [&] { return Side(entry.key, entry.element, entry.isRising); });
        }
    };
}

Entries listOf(const Key& key, SidesByVertex::Run run)
{
    Entries list;
    for (const Side& side : run) {
        list.push_back({key, side.element(), side.isRising()});
    }
    return list;
}

std::vector<Entries> runsOf(const SidesByVertex& sides)
{
    std::vector<Entries> runs;
    sides.forEachRun(
        [&runs](const Key& key, SidesByVertex::Run run) { runs.push_back(listOf(key, run)); });
    return runs;
}

} // namespace

class TestSidesByVertex : public QObject
{
    Q_OBJECT

private slots:
    void keepsWhatASideIs()
    {
        constexpr int most = std::numeric_limits<int>::max();
        for (const Key& key : {Key{0, 1, -1, -1}, Key{0, 1, 2, -1}, Key{0, 1, 2, 3},
                               Key{7, most - 2, most - 1, most}}) {
            for (const std::size_t element : {std::size_t(0), std::size_t(most)}) {
                for (const bool isRising : {false, true}) {
                    const Side side(key, element, isRising);
                    QVERIFY(side.key(key.front()) == key);
                    QCOMPARE(side.element(), element);
                    QCOMPARE(side.isRising(), isRising);
                }
            }
        }
    }

    void runsInTheOrderOfKeysAndElements()
    {
        const Entries entries = {{{1, 2, 3, 4}, 8, true},  {{0, 5, 6, -1}, 9, false},
                                 {{1, 2, 3, -1}, 7, true}, {{1, 2, 3, 4}, 3, false},
                                 {{1, 2, 4, -1}, 1, true}, {{1, 3, -1, -1}, 0, false},
                                 {{1, 2, 3, 5}, 2, true},  {{3, 4, 5, -1}, 4, true}};
        const std::vector<Entries> expected = {{entries[1]}, {entries[2]}, {entries[3], entries[0]},
                                               {entries[6]}, {entries[4]}, {entries[5]},
                                               {entries[7]}};
        QVERIFY(runsOf(SidesByVertex(0, std::size_t(4), walk(entries))) == expected);
        const std::vector<int> counts = {1, 6, 0, 1};
        QVERIFY(runsOf(SidesByVertex(0, std::span<const int>(counts), walk(entries))) == expected);
    }

    void findsByKey()
    {
        const Entries entries = {{{6, 7, 8, 9}, 5, true},
                                 {{6, 7, 8, -1}, 4, false},
                                 {{6, 7, 8, 9}, 1, false},
                                 {{6, 8, 9, -1}, 2, true}};
        const SidesByVertex sides(6, std::size_t(2), walk(entries));
        const auto find = [&sides](const Key& key) { return listOf(key, sides.find(key)); };
        QVERIFY(find({6, 7, 8, 9}) == (Entries{entries[2], entries[0]}));
        QVERIFY(find({6, 7, 8, -1}) == Entries{entries[1]});
        QVERIFY(find({6, 8, 9, -1}) == Entries{entries[3]});
        QVERIFY(find({6, 7, 9, -1}).empty());
        QVERIFY(find({6, 9, 10, -1}).empty());
        QVERIFY(find({7, 8, 9, -1}).empty());
    }
};

QTEST_APPLESS_MAIN(TestSidesByVertex)
#include "tst_SidesByVertex.moc"
