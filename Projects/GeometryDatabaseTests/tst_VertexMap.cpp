#include "MeshVertex.h"
#include "VertexMap.h"

#include <QTest>

#include <array>

using namespace Ovra::Geo;

namespace
{

MeshVertex withId(int id)
{
    MeshVertex vertex;
    vertex.setId(id);
    return vertex;
}

} // namespace

class TestVertexMap : public QObject
{
    Q_OBJECT

private slots:
    void knowsTheCopyOfEachVertex();
    void tellsVerticesOfOneIdApart();
    void listsPairsByTheIdsOfTheVertices();
    void forgets();
};

void TestVertexMap::knowsTheCopyOfEachVertex()
{
    std::array<MeshVertex, 3> vertices = {withId(5), withId(-2), withId(2147483647)};
    std::array<MeshVertex, 3> copies;
    VertexMap map;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        QCOMPARE(map.copyOf(&vertices[i]), nullptr);
        map.insert(&vertices[i], &copies[i]);
    }
    QCOMPARE(map.size(), 3);
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        QCOMPARE(map.copyOf(&vertices[i]), &copies[i]);
    }
}

void TestVertexMap::tellsVerticesOfOneIdApart()
{
    std::array<MeshVertex, 3> vertices = {withId(7), withId(7), withId(7)};
    std::array<MeshVertex, 2> copies;
    VertexMap map;
    map.insert(&vertices[0], &copies[0]);
    QCOMPARE(map.copyOf(&vertices[1]), nullptr);
    map.insert(&vertices[1], &copies[1]);
    QCOMPARE(map.copyOf(&vertices[0]), &copies[0]);
    QCOMPARE(map.copyOf(&vertices[1]), &copies[1]);
    QCOMPARE(map.copyOf(&vertices[2]), nullptr);
    QCOMPARE(map.size(), 2);
    const QList<VertexMap::Pair> expected = {{&vertices[0], &copies[0]},
                                             {&vertices[1], &copies[1]}};
    QCOMPARE(map.pairs(), expected);
}

void TestVertexMap::listsPairsByTheIdsOfTheVertices()
{
    std::array<MeshVertex, 3> vertices = {withId(900000), withId(3), withId(1)};
    std::array<MeshVertex, 3> copies;
    VertexMap map;
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        map.insert(&vertices[i], &copies[i]);
    }
    const QList<VertexMap::Pair> expected = {
        {&vertices[2], &copies[2]}, {&vertices[1], &copies[1]}, {&vertices[0], &copies[0]}};
    QCOMPARE(map.pairs(), expected);
}

void TestVertexMap::forgets()
{
    MeshVertex vertex = withId(1);
    MeshVertex copy;
    VertexMap map;
    map.insert(&vertex, &copy);
    map.clear();
    QCOMPARE(map.size(), 0);
    QCOMPARE(map.copyOf(&vertex), nullptr);
    QVERIFY(map.pairs().isEmpty());
}

QTEST_APPLESS_MAIN(TestVertexMap)
#include "tst_VertexMap.moc"
