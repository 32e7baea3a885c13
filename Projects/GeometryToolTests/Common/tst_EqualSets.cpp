#include "EqualSets.h"

#include <QTest>

#include <algorithm>
#include <random>

using Ovra::GeoTool::EqualSets;

using Elements = std::vector<std::vector<int>>;
using Groups = std::vector<EqualSets::Group>;

namespace
{

Groups groupsOf(const Elements& elements, std::size_t vertexCount)
{
    return EqualSets::find(vertexCount, elements.size(), [&elements](std::size_t i) {
        return std::span<const int>(elements[i]);
    });
}

} // namespace

class TestEqualSets : public QObject
{
    Q_OBJECT

private slots:
    void findsGroupsInTheOrderOfTheirVertices()
    {
        const Elements elements = {{4, 5, 6, 7}, {0, 1, 2}, {7, 6, 5, 4}, {1, 2, 3},
                                   {2, 0, 1},    {5, 4},    {6, 7, 4, 5}, {4, 5}};
        QCOMPARE(groupsOf(elements, 8), Groups({{5, 7}, {1, 4}, {0, 2, 6}}));
    }

    void looksAtNoElementWithoutVertices()
    {
        QCOMPARE(groupsOf({{}, {0, 1}, {}}, 2), Groups());
        QCOMPARE(groupsOf({}, 0), Groups());
    }

    void countsRepeatedVertices()
    {
        QCOMPARE(groupsOf({{0, 0, 1}, {0, 1, 1}, {1, 0, 0}, {0, 1}}, 2), Groups({{0, 2}}));
    }

    /// Of a hundred thousand sets about one vertex some have the same hash.
    void tellsSetsOfTheSameHashApart()
    {
        std::mt19937 numbers(1);
        Elements elements;
        for (int a = 1; a < 85; ++a) {
            for (int b = a + 1; b < 85; ++b) {
                for (int c = b + 1; c < 85; ++c) {
                    elements.push_back({c, 0, a, b});
                }
            }
        }
        std::shuffle(elements.begin(), elements.end(), numbers);
        QCOMPARE(groupsOf(elements, 85), Groups());
        elements.push_back({elements[77][3], elements[77][2], elements[77][1], elements[77][0]});
        QCOMPARE(groupsOf(elements, 85), Groups({{77, static_cast<int>(elements.size()) - 1}}));
    }
};

QTEST_APPLESS_MAIN(TestEqualSets)
#include "tst_EqualSets.moc"
