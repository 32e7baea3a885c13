#include "CaseView.h"
#include "Database.h"
#include "ElementSides.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

constexpr int Count = 200;

/// A chain of tetrahedra, each on three vertices of the one before.
std::unique_ptr<Database> chain(int count = Count)
{
    auto database = std::make_unique<Database>();
    ModelEntity* const region = ModelEntity::create(3);
    database->model()->add(region);
    for (int i = 0; i < count + 3; ++i) {
        database->mesh()->add(MeshEntity::create(0));
    }
    for (int i = 1; i <= count; ++i) {
        MeshEntity* const element = MeshEntity::create(3);
        // Of all orders, so that each vertex of an element is the smallest of some side.
        for (const int step : {i % 4, (i + 1) % 4, (i + 2) % 4, (i + 3) % 4}) {
            element->addAdjacency(database->mesh()->entity(0, i + step));
        }
        database->mesh()->add(element);
        region->addChild(element);
    }
    return database;
}

struct Run
{
    ElementSides::Key key;
    std::vector<int> elements;
    std::vector<bool> isRising;

    bool operator==(const Run& other) const = default;
};

std::vector<Run> runs(ElementSides& sides, const std::vector<ElementSides::Part>& parts)
{
    std::vector<Run> result;
    for (const ElementSides::Part& part : parts) {
        sides.collect(part);
        for (int vertex = part.begin; vertex < part.end; ++vertex) {
            sides.forEachRun(vertex, [&](const ElementSides::Key& key, ElementSides::Run run) {
                Run found{key, {}, {}};
                for (const ElementSides::Side& side : run) {
                    found.elements.push_back(sides.elementOf(side).id());
                    found.isRising.push_back(side.isRising());
                }
                result.push_back(found);
                const ElementSides::Run again = sides.find(key);
                QVERIFY(again.data() == run.data() && again.size() == run.size());
            });
        }
    }
    return result;
}

} // namespace

class TestElementSides : public QObject
{
    Q_OBJECT

private slots:
    void areInOnePartIfFew();
    void areInPartsOfAboutTheSameSizeIfMany();
    void areTheSameInPartsAsInOne();
    void areTheSameOnSeveralCores();
    void haveAPartWithoutAMesh();
};

void TestElementSides::areInOnePartIfFew()
{
    const auto database = chain();
    const CaseView view(*database);
    const ElementSides sides(view);
    const auto& parts = sides.parts();
    QCOMPARE(parts.size(), std::size_t{1});
    QCOMPARE(parts.front().begin, 0);
    QCOMPARE(parts.front().end, Count + 3);
}

void TestElementSides::areInPartsOfAboutTheSameSizeIfMany()
{
    const auto database = chain();
    const CaseView view(*database);
    ElementSides sides(view, 4 * Count - 1);
    const auto& parts = sides.parts();
    constexpr int count = 16;
    QCOMPARE(parts.size(), std::size_t{count});
    QCOMPARE(parts.front().begin, 0);
    QCOMPARE(parts.back().end, Count + 3);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        QVERIFY(i == 0 || parts[i].begin == parts[i - 1].end);
        qsizetype size = 0;
        for (const Run& run : runs(sides, {parts[i]})) {
            size += qsizetype(run.elements.size());
        }
        QVERIFY2(std::abs(size - 4 * Count / count) <= 12, qPrintable(QString::number(size)));
    }
}

void TestElementSides::areTheSameInPartsAsInOne()
{
    const auto database = chain();
    const CaseView view(*database);
    ElementSides all(view);
    ElementSides divided(view, 0);
    const std::vector<Run> whole = runs(all, all.parts());
    const std::vector<Run> inParts = runs(divided, divided.parts());
    // Each tetrahedron shares one side with the next.
    QCOMPARE(whole.size(), std::size_t{4 * Count - (Count - 1)});
    QVERIFY(whole == inParts);
    QCOMPARE(std::count_if(whole.begin(), whole.end(),
                           [](const Run& run) { return run.elements.size() == 2; }),
             Count - 1);
}

void TestElementSides::areTheSameOnSeveralCores()
{
    constexpr int count = 40000;
    const auto database = chain(count);
    const CaseView view(*database);
    ElementSides all(view);
    ElementSides divided(view, 0);
    const std::vector<Run> whole = runs(all, all.parts());
    QCOMPARE(whole.size(), std::size_t{4 * count - (count - 1)});
    QVERIFY(runs(divided, divided.parts()) == whole);
    // Parts may be asked for in any order, and more than once.
    const auto& parts = divided.parts();
    const std::vector<Run> last = runs(divided, {parts.back()});
    QVERIFY(std::equal(last.rbegin(), last.rend(), whole.rbegin()));
    const std::vector<Run> first = runs(divided, {parts.front()});
    QVERIFY(std::equal(first.begin(), first.end(), whole.begin()));
    QVERIFY(runs(divided, {parts.front()}) == first);
}

void TestElementSides::haveAPartWithoutAMesh()
{
    Database database;
    const CaseView view(database);
    ElementSides sides(view);
    const auto& parts = sides.parts();
    QCOMPARE(parts.size(), std::size_t{1});
    QVERIFY(runs(sides, parts).empty());
}

QTEST_APPLESS_MAIN(TestElementSides)
#include "tst_ElementSides.moc"
