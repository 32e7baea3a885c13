#include "GermanLocale.h"
#include "MeshSerializer2013.h"
#include "MeshStreamCase.h"

#include <QTest>

using namespace Ovra::Geo;
using namespace StreamTesting;

namespace
{

const QByteArray TriangleBytes =
    hex("00000001 0000000E 00000001 00000002"
        // mesh attributes: side = 3
        "00000001 00000004 73696465 00000002 00 00000003"
        // vertices: id, parent dimension, parent id, attributes, point
        "00000003"
        "00000001 00000000 0000000B 00000000"
        "0000000000000000 0000000000000000 0000000000000000"
        "00000002 00000002 0000000D 00000001 00000005 696E5F626C 00000001 00 01"
        "3FF0000000000000 0000000000000000 0000000000000000"
        "00000007 FFFFFFFF 00000000 00000000"
        "0000000000000000 3FE0000000000000 0000000000000000"
        // edges: id, parent dimension, parent id, attributes, vertices
        "00000001"
        "00000004 00000001 0000000C 00000000 00000002 00000002 00000001"
        // faces
        "00000001"
        "00000005 FFFFFFFF 00000000"
        "00000002 0000000B 6D6174657269616C5F6964 00000002 00 00000006"
        "00000004 73696465 00000002 00 00000001"
        "00000003 00000001 00000002 00000007"
        // regions
        "00000000");

QByteArray written(TestMesh& mesh)
{
    return StreamTesting::written(mesh, MeshSerializer::Format2013);
}

QString printed(TestMesh& mesh)
{
    return text([&](QTextStream& stream) { mesh.mesh().write(stream); });
}

// A stream of this format with the given hexadecimal digits behind the mesh attributes.
QByteArray withEntities(const char* digits)
{
    return hex("00000001 00000000 00000000 00000000 00000000") + hex(digits);
}

} // namespace

class TestMeshFormat2013 : public QObject
{
    Q_OBJECT

private slots:
    void writesAnEmptyMesh()
    {
        TestMesh mesh;
        QCOMPARE(written(mesh).toHex(),
                 withEntities("00000000 00000000 00000000 00000000").toHex());
    }

    void writesTheTriangle()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        QCOMPARE(written(mesh).toHex(), TriangleBytes.toHex());
    }

    void takes40BytesForAVertexAnd36ForATetrahedron()
    {
        TestMesh mesh;
        const qsizetype empty = written(mesh).size();
        TestMesh::Vertices vertices;
        for (int i = 0; i < 4; ++i) {
            vertices.append(mesh.addVertex({double(i), 0, 0}));
        }
        QCOMPARE(written(mesh).size(), empty + 4 * 40);
        mesh.addElement(3, vertices);
        QCOMPARE(written(mesh).size(), empty + 4 * 40 + 36);
    }

    void readsTheTriangle()
    {
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, TriangleBytes), QDataStream::Ok);
        QCOMPARE(mesh.mesh().version(), Version(14, 1, 2));
        QCOMPARE(mesh.mesh().attributes().value(AttributeType::Side, QVariant()).toInt(), 3);
        QCOMPARE(mesh.mesh().entity(0, 2)->centroid(), Vector(1, 0, 0));
        QVERIFY(mesh.mesh().entity(0, 2)->attributes().value(AttributeType::InBL, false).toBool());
        QCOMPARE(mesh.mesh().entity(1, 4)->adjacencyAt(0, 0), mesh.mesh().entity(0, 2));
        QCOMPARE(mesh.mesh().entity(1, 4)->adjacencyAt(0, 1), mesh.mesh().entity(0, 1));
        QCOMPARE(mesh.mesh().entity(2, 5)->attributes().count(), 2);
        QCOMPARE(written(mesh).toHex(), TriangleBytes.toHex());
    }

    void classifiesOnModelEntitiesOfAnyDimension()
    {
        TestMesh mesh;
        addModel(mesh);
        readInto(mesh, TriangleBytes);
        ModelEntity* face = mesh.model().entity(2, 13);
        QCOMPARE(mesh.mesh().entity(0, 2)->parent(), face);
        QCOMPARE(face->childCount(), 0);
        QCOMPARE(mesh.mesh().entity(0, 1)->parent(), mesh.model().entity(0, 11));
        QCOMPARE(mesh.model().entity(0, 11)->childCount(), 1);
        QVERIFY(mesh.mesh().entity(2, 5)->parent() == nullptr);
    }

    void keepsAFaceInARegion()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        mesh.model().entity(3, 14)->addChild(mesh.mesh().entity(2, 5));
        TestMesh copy;
        addModel(copy);
        QCOMPARE(readInto(copy, written(mesh)), QDataStream::Ok);
        QCOMPARE(copy.mesh().entity(2, 5)->parent(), copy.model().entity(3, 14));
    }

    void derivesTheUpwardLists()
    {
        TestMesh mesh;
        addModel(mesh);
        readInto(mesh, TriangleBytes);
        QCOMPARE(neighbourIds(mesh.mesh().entity(0, 1), 1), QList<int>{4});
        QCOMPARE(neighbourIds(mesh.mesh().entity(0, 7), 2), QList<int>{5});
        QCOMPARE(neighbourIds(mesh.mesh().entity(1, 4), 2), QList<int>{5});
    }

    void keepsIdsWithGaps()
    {
        TestMesh mesh;
        addModel(mesh);
        readInto(mesh, TriangleBytes);
        QCOMPARE(mesh.mesh().count(0), 3);
        QVERIFY(mesh.mesh().entity(0, 7) != nullptr);
        QCOMPARE(mesh.addVertex({})->id(), 8);
    }

    void writesByAscendingId()
    {
        TestMesh mesh;
        for (int id : {30, 2, 11}) {
            mesh.addVertex({}, id);
        }
        const QByteArray bytes = written(mesh);
        const qsizetype first = 16 + 4 + 4;
        QCOMPARE(bytes.mid(first, 4), hex("00000002"));
        QCOMPARE(bytes.mid(first + 40, 4), hex("0000000B"));
        QCOMPARE(bytes.mid(first + 80, 4), hex("0000001E"));
    }

    void printsTheTriangle()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        QCOMPARE(printed(mesh), QString("*** Format ***\n1\n"
                                        "*** Version ***\n14.1.2\n"
                                        "*** Attributes ***\n"
                                        "--- Begin Attributes ---\n"
                                        "side int 3\n"
                                        "--- End Attributes ---\n"
                                        "*** Entities 0 ***\n3 count\n"
                                        "1 0 11\n(0, 0, 0)\n"
                                        "2 2 13\n"
                                        "--- Begin Attributes ---\n"
                                        "in_bl bool true\n"
                                        "--- End Attributes ---\n"
                                        "(1, 0, 0)\n"
                                        "7 -1 0\n(0, 0.5, 0)\n"
                                        "*** Entities 1 ***\n1 count\n"
                                        "4 1 12\n2 2 1 \n"
                                        "*** Entities 2 ***\n1 count\n"
                                        "5 -1 0\n"
                                        "--- Begin Attributes ---\n"
                                        "material_id int 6\n"
                                        "side int 1\n"
                                        "--- End Attributes ---\n"
                                        "3 1 2 7 \n"
                                        "*** Entities 3 ***\n0 count\n"));
        QCOMPARE(StreamTesting::printed(mesh, MeshSerializer::Format2013), printed(mesh));
    }

    void printsATriangleOnTwoLines()
    {
        TestMesh mesh;
        mesh.addElement(2, {mesh.addVertex({}), mesh.addVertex({}), mesh.addVertex({})}, nullptr,
                        5);
        QVERIFY(printed(mesh).contains("*** Entities 2 ***\n1 count\n5 -1 0\n3 1 2 3 \n"));
    }

    void printsTheSameInEveryLocale()
    {
        TestMesh mesh;
        mesh.addVertex({1234.5, 0, 0}, 1234567);
        const QString expected = printed(mesh);
        const GermanLocale german;
        QCOMPARE(printed(mesh), expected);
        QVERIFY(expected.contains("1234567 -1 0\n(1234.5, 0, 0)\n"));
    }

    void takesNegativeCountsForNone()
    {
        TestMesh mesh;
        QCOMPARE(readInto(mesh, withEntities("FFFFFFFF 80000000 FFFFFFFF FFFFFFFF")),
                 QDataStream::Ok);
        QVERIFY(mesh.mesh().isEmpty());
    }

    void readsAnOldHeader()
    {
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, hex("0000000C 00000003 00000004") + TriangleBytes.mid(16)),
                 QDataStream::Ok);
        QCOMPARE(mesh.mesh().version(), Version(12, 3, 4));
        QCOMPARE(mesh.mesh().count(2), 1);
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("vertexCount");
        const QByteArray two = hex("00000001 FFFFFFFF 00000000 00000000") + QByteArray(24, '\0') +
                               hex("00000002 FFFFFFFF 00000000 00000000") + QByteArray(24, '\0');
        const auto vertices = [](const char* heads) {
            return withEntities("00000002") + hex(heads) + QByteArray(24, '\0');
        };
        const auto edge = [&](const char* digits) {
            return withEntities("00000002") + two + hex(digits) + QByteArray(8, '\0');
        };
        QTest::newRow("vertex id 0") << vertices("00000000 FFFFFFFF 00000000 00000000") << 0;
        QTest::newRow("parent that is not there")
            << vertices("00000001 00000001 00000063 00000000") << 0;
        QTest::newRow("parent id 0") << vertices("00000001 00000001 00000000 00000000") << 0;
        QTest::newRow("parent dimension 4") << vertices("00000001 00000004 00000001 00000000") << 0;
        QTest::newRow("parent dimension -2")
            << vertices("00000001 FFFFFFFE 00000001 00000000") << 0;
        QTest::newRow("parent dimension beyond sense")
            << vertices("00000001 7FFFFFFF 00000001 00000000") << 0;
        QTest::newRow("id that occurred before") << withEntities("00000003") + two + two << 2;
        QTest::newRow("vertex that is not there")
            << edge("00000001 00000001 FFFFFFFF 00000000 00000000 00000002 00000001 00000003") << 2;
        QTest::newRow("vertex 0")
            << edge("00000001 00000001 FFFFFFFF 00000000 00000000 00000002 00000001 00000000") << 2;
    }

    void refuses()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, vertexCount);
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, bytes), QDataStream::ReadCorruptData);
        QCOMPARE(mesh.mesh().count(0), vertexCount);
        QCOMPARE(mesh.mesh().count(1) + mesh.mesh().count(2) + mesh.mesh().count(3), 0);
    }

    void acceptsARegionWithoutVertices()
    {
        TestMesh mesh;
        QCOMPARE(readInto(mesh, withEntities("00000000 00000000 00000000 00000001"
                                             "00000001 FFFFFFFF 00000000 00000000 FFFFFFFF")),
                 QDataStream::Ok);
        QCOMPARE(mesh.mesh().count(3), 1);
    }

    void acceptsAsManyVerticesAsAnElementCanHave()
    {
        TestMesh mesh;
        const QByteArray vertex =
            hex("00000001 00000001 FFFFFFFF 00000000 00000000") + QByteArray(24, '\0');
        QCOMPARE(readInto(mesh, withEntities("") + vertex +
                                    hex("00000000 00000000 00000001"
                                        "00000001 FFFFFFFF 00000000 00000000 00000020") +
                                    hex("00000001").repeated(32)),
                 QDataStream::Ok);
        QCOMPARE(mesh.mesh().entity(3, 1)->adjacencyCount(0), 32);
    }

    void ignoresTheParentIdWithoutAParentDimension()
    {
        TestMesh mesh;
        QCOMPARE(readInto(mesh, withEntities("00000001 00000001 FFFFFFFF 00000063 00000000") +
                                    QByteArray(24 + 12, '\0')),
                 QDataStream::Ok);
        QVERIFY(mesh.mesh().entity(0, 1)->parent() == nullptr);
    }
};

QTEST_APPLESS_MAIN(TestMeshFormat2013)
#include "tst_MeshFormat2013.moc"
