#include "CaseView.h"
#include "ClosedCase.h"
#include "GeometryDatabaseTests/GridMesh.h"
#include "PreparationCase.h"
#include "ToolError.h"

#include <QTest>

using namespace Ovra::Geo;
using Ovra::GeoTool::CaseView;
using Ovra::GeoTool::ExitCode;
using Ovra::GeoTool::ToolError;
using Ovra::GeoTool::UpwardPositions;

namespace
{

using Lists = std::vector<std::vector<int>>;

/// \brief What the upward lists of the mesh name, by positions.
Lists listed(const CaseView& view, int dimension)
{
    Lists lists;
    for (const MeshEntity* entity : view.meshEntities(dimension)) {
        lists.emplace_back();
        for (int i = 0; i < entity->adjacencyCount(dimension + 1); ++i) {
            const int id = entity->adjacencyAt(dimension + 1, i)->id();
            lists.back().push_back(view.positions(dimension + 1).find(id));
        }
        std::sort(lists.back().begin(), lists.back().end());
    }
    return lists;
}

Lists found(const CaseView& view, int dimension)
{
    Lists lists;
    for (std::size_t i = 0; i < view.meshEntities(dimension).size(); ++i) {
        const std::span<const int> above = view.upward(dimension).of(i);
        lists.emplace_back(above.begin(), above.end());
    }
    return lists;
}

/// Faces of one, two and no elements, of vertices that are no side of an element, and of none; edges
/// within faces, across one and beside all.
void addMany(ClosedCase& c)
{
    c.addVertex(Vector(1, 1, 1));
    c.addVertex(Vector(1, 1, 0));
    c.addElement(3, {2, 3, 4, 5}, c.region);
    c.addElement(3, {1, 2, 6, 3, 4}, c.region);
    c.addElement(2, {1, 6, 4}, c.walls);
    c.addElement(2, {1, 5, 6}, c.walls);
    c.addElement(2, {}, c.walls);
    c.addElement(2, {1, 2, 6, 3}, c.face);
    for (const auto& ends : {std::initializer_list<int>{1, 2}, {1, 6}, {5, 6}, {3}, {}}) {
        c.addElement(1, ends, nullptr);
    }
}

/// 200 elements that list the same 40 vertices, and a face on every three of these.
void addFacesWithinAllElements(ClosedCase& c)
{
    std::vector<MeshEntity*> vertices;
    for (int i = 0; i < 40; ++i) {
        vertices.push_back(c.addVertex(Vector(i, i * i, 1)));
    }
    for (int i = 0; i < 200; ++i) {
        MeshEntity* const element = c.addElement(3, {}, c.region);
        for (MeshEntity* const vertex : vertices) {
            element->addAdjacency(vertex);
        }
    }
    for (int first = vertices.front()->id(); first <= vertices.back()->id(); ++first) {
        for (int second = vertices.front()->id(); second < first; ++second) {
            for (int third = vertices.front()->id(); third < second; ++third) {
                c.addElement(2, {first, second, third}, c.walls);
            }
        }
    }
}

} // namespace

class TestUpwardPositions : public QObject
{
    Q_OBJECT

private slots:
    void areWhatUpwardListsName_data()
    {
        QTest::addColumn<int>("dimension");
        QTest::newRow("elements at faces") << 2;
        QTest::newRow("faces at edges") << 1;
    }

    void areWhatUpwardListsName()
    {
        QFETCH(int, dimension);
        ClosedCase closed;
        addMany(closed);
        GridMesh grid(PreparationCase::plan({"112", "122"}, {{1, "fluid"}, {2, "solid"}}));
        for (Database* database : {&closed.database, grid.database()}) {
            database->mesh()->clearUpwardAdjacencies();
            database->mesh()->setUpwardAdjacencies();
            const CaseView view(*database);
            QVERIFY(!found(view, 2).empty());
            QCOMPARE(found(view, dimension), listed(view, dimension));
        }
    }

    void anElementThatListsAVertexTwiceIsThereOnce()
    {
        ClosedCase closed;
        closed.addElement(3, {1, 1, 2, 3}, closed.region);
        const CaseView view(closed.database);
        QCOMPARE(found(view, 2).front(), (std::vector<int>{0, 1}));
    }

    void facesOfTheSameVerticesShareWhatIsFound()
    {
        ClosedCase closed;
        for (int i = 0; i < 2000; ++i) {
            closed.addElement(3, {1, 2, 3, 4}, closed.region);
            closed.addElement(2, {3, 1, 2}, closed.walls);
        }
        const CaseView view(closed.database);
        const std::span<const int> first = view.upward(2).of(0);
        QCOMPARE(first.size(), std::size_t(2001));
        for (std::size_t face = 4; face < 2004; ++face) {
            QCOMPARE(view.upward(2).of(face).data(), first.data());
            QCOMPARE(view.upward(2).of(face).size(), first.size());
        }
    }

    void aMeshOutOfAllProportionIsDamaged()
    {
        ClosedCase closed;
        addFacesWithinAllElements(closed);
        const CaseView view(closed.database);
        try {
            view.upward(2);
            QFAIL("made lists of 200 elements for each of 9880 faces");
        } catch (const ToolError& error) {
            QCOMPARE(error.exitCode(), ExitCode::InputDamaged);
            QCOMPARE(error.text(),
                     QStringLiteral("the mesh is damaged: entities lie within one another in "
                                    "numbers that no mesher leaves, out of all proportion to its "
                                    "size, most of them about %1")
                         .arg(QStringLiteral("mesh region 2")));
        }
    }
};

QTEST_APPLESS_MAIN(TestUpwardPositions)
#include "tst_UpwardPositions.moc"
