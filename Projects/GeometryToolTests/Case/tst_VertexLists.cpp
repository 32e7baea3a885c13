#include "Database.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "VertexLists.h"

#include <QTest>

using namespace Ovra::Geo;
using Ovra::GeoTool::IdPositions;
using Ovra::GeoTool::VertexLists;

using List = std::vector<int>;

Q_DECLARE_METATYPE(std::vector<List>)

/// The vertices of elements, whether all have as many of them or not.
class TestVertexLists : public QObject
{
    Q_OBJECT

private slots:
    void haveThePositionsOfVertices_data()
    {
        QTest::addColumn<std::vector<List>>("elements");
        QTest::newRow("none") << std::vector<List>{};
        QTest::newRow("one") << std::vector<List>{{3, 1, 2, 0}};
        QTest::newRow("of one kind") << std::vector<List>{{3, 1, 2, 0}, {4, 2, 3, 1}, {0, 1, 2, 4}};
        QTest::newRow("of several kinds")
            << std::vector<List>{{3, 1, 2, 0}, {0, 1, 2, 3, 4}, {4, 2, 3, 1}};
        QTest::newRow("one without vertices") << std::vector<List>{{}};
        QTest::newRow("some without vertices") << std::vector<List>{{}, {3, 1, 2, 0}, {}};
    }

    void haveThePositionsOfVertices()
    {
        QFETCH(std::vector<List>, elements);
        Database database;
        Mesh& mesh = *database.mesh();
        std::vector<std::int64_t> ids;
        for (int i = 0; i < 5; ++i) {
            MeshEntity* const vertex = MeshEntity::create(0);
            mesh.add(vertex);
            ids.push_back(vertex->id());
        }
        std::vector<MeshEntity*> entities;
        for (const List& vertices : elements) {
            entities.push_back(MeshEntity::create(3));
            for (const int vertex : vertices) {
                entities.back()->addAdjacency(
                    mesh.entity(0, static_cast<int>(ids[static_cast<std::size_t>(vertex)])));
            }
            mesh.add(entities.back());
        }
        const VertexLists lists(entities, IdPositions(ids));
        QCOMPARE(lists.size(), elements.size());
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const std::span<const int> list = lists.of(i);
            QCOMPARE(List(list.begin(), list.end()), elements[i]);
        }
    }
};

QTEST_APPLESS_MAIN(TestVertexLists)
#include "tst_VertexLists.moc"
