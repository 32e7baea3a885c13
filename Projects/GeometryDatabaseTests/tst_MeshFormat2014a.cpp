#include "MeshSerializer2014a.h"
#include "MeshStreamCase.h"

#include <QTest>

using namespace Ovra::Geo;
using namespace StreamTesting;

namespace
{

const QByteArray EndOfSection = hex("FFFFFFFF");
const QByteArray None = hex("00000000");

QByteArray written(TestMesh& mesh)
{
    return binary([&](QDataStream& stream) { mesh.mesh().write(stream); });
}

const QByteArray TriangleHead = hex("00000003 0000000E 00000001 00000002"
                                    // mesh attributes: side = 3
                                    "00000001 00000004 73696465 00000002 00 00000003");

// Vertices: id, parent dimension, parent id, point.
const QByteArray Vertices = hex("00000003"
                                "00000001 00000000 0000000B"
                                "0000000000000000 0000000000000000 0000000000000000"
                                "00000002 00000002 0000000D"
                                "3FF0000000000000 0000000000000000 0000000000000000"
                                "00000007 FFFFFFFF 00000000"
                                "0000000000000000 3FE0000000000000 0000000000000000");

// Edges and faces: id, parent id, vertices.
const QByteArray Edges = hex("00000001"
                             "00000004 0000000C 00000002 00000002 00000001");
const QByteArray Faces = hex("00000001"
                             "00000005 00000000 00000003 00000001 00000002 00000007");

// The triangle with the given dictionary and the given sections of vertices and faces, less their
// end marks.
QByteArray triangle(const QByteArray& dictionary, const QByteArray& vertexSection,
                    const QByteArray& faceSection)
{
    return TriangleHead + dictionary + Vertices + vertexSection + EndOfSection + Edges +
           EndOfSection + Faces + faceSection + EndOfSection + None + EndOfSection;
}

QByteArray triangle()
{
    return triangle(dictionaryBytes(),
                    hex("00000002") + dictionaryNumber(AttributeType::InBL) + hex("00000001 00 01"),
                    hex("00000005") + dictionaryNumber(AttributeType::MaterialId) +
                        hex("00000002 00 00000006") + hex("00000005") +
                        dictionaryNumber(AttributeType::Side) + hex("00000002 00 00000001"));
}

} // namespace

class TestMeshFormat2014a : public QObject
{
    Q_OBJECT

private slots:
    void writesAnEmptyMesh()
    {
        TestMesh mesh;
        QCOMPARE(written(mesh).toHex(), (hex("00000003 00000000 00000000 00000000 00000000") +
                                         dictionaryBytes() + (None + EndOfSection).repeated(4))
                                            .toHex());
    }

    void numbersTheSortedTagsFromOne()
    {
        TestMesh mesh;
        const QByteArray dictionary = written(mesh).mid(20);
        QVERIFY(dictionary.startsWith(
            hex("0001 00000011 617373656D626C795F706172745F696473 0002 0000000D")));
        QCOMPARE(dictionaryBytes().count("_"), dictionary.count("_"));
        QVERIFY(dictionaryBytes().endsWith(QByteArray("visual_scale_factor") + hex("FFFF")));
        QVERIFY(dictionaryBytes().contains(hex("004D 00000013") + "visual_scale_factor"));
    }

    void writesTheTriangle()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        QCOMPARE(written(mesh).toHex(), triangle().toHex());
        QCOMPARE(StreamTesting::written(mesh, MeshSerializer::Format2014a).toHex(),
                 triangle().toHex());
    }

    void takes36BytesForAVertexAnd28ForATetrahedron()
    {
        TestMesh mesh;
        const qsizetype empty = written(mesh).size();
        TestMesh::Vertices vertices;
        for (int i = 0; i < 4; ++i) {
            vertices.append(mesh.addVertex({}));
        }
        QCOMPARE(written(mesh).size(), empty + 4 * 36);
        mesh.addElement(3, vertices);
        QCOMPARE(written(mesh).size(), empty + 4 * 36 + 28);
    }

    void readsTheTriangle()
    {
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, triangle()), QDataStream::Ok);
        QCOMPARE(mesh.mesh().version(), Version(14, 1, 2));
        QVERIFY(mesh.mesh().entity(0, 1)->attributes().isEmpty());
        QCOMPARE(mesh.mesh().entity(2, 5)->attributes().count(), 2);
        QCOMPARE(mesh.mesh().entity(0, 2)->parent(), mesh.model().entity(2, 13));
        QCOMPARE(neighbourIds(mesh.mesh().entity(1, 4), 2), QList<int>{5});
        QCOMPARE(written(mesh).toHex(), triangle().toHex());
    }

    void goesThereAndBackInEveryDimension()
    {
        TestMesh mesh;
        fillTetrahedron(mesh);
        mesh.mesh().entity(1, 4)->attributes().insert(AttributeType::PeriodicOrigin,
                                                      Vector(1, 2, 3));
        TestMesh copy;
        addModel(copy);
        QCOMPARE(readInto(copy, written(mesh)), QDataStream::Ok);
        QCOMPARE(StreamTesting::written(copy, MeshSerializer::Format2013).toHex(),
                 StreamTesting::written(mesh, MeshSerializer::Format2013).toHex());
        QCOMPARE(neighbourIds(copy.mesh().entity(2, 5), 3), QList<int>{3});
    }

    void storesAnInvalidTypeUnderNumberZero()
    {
        TestMesh mesh;
        mesh.addVertex({})->attributes().insert(AttributeType(), 5);
        const QByteArray bytes = written(mesh);
        QVERIFY(bytes.contains(hex("00000001 0000 00000002 00 00000005 FFFFFFFF")));
        TestMesh copy;
        QCOMPARE(readInto(copy, bytes), QDataStream::Ok);
        QCOMPARE(copy.mesh().entity(0, 1)->attributes().value(AttributeType(), {}).toInt(), 5);
    }

    void readsSectionsInAnyOrder()
    {
        const QByteArray side = dictionaryNumber(AttributeType::Side);
        const QByteArray id = dictionaryNumber(AttributeType::MaterialId);
        const QByteArray section = hex("00000007") + side + hex("00000002 00 00000001") +
                                   hex("00000001") + id + hex("00000002 00 00000002") +
                                   hex("00000007") + id + hex("00000002 00 00000003") +
                                   hex("00000002") + side + hex("00000002 00 00000004");
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, triangle(dictionaryBytes(), section, QByteArray())),
                 QDataStream::Ok);
        const auto value = [&](int vertex, const AttributeType& type) {
            return mesh.mesh().entity(0, vertex)->attributes().value(type, -1).toInt();
        };
        QCOMPARE(value(7, AttributeType::Side), 1);
        QCOMPARE(value(1, AttributeType::MaterialId), 2);
        QCOMPARE(value(7, AttributeType::MaterialId), 3);
        QCOMPARE(value(2, AttributeType::Side), 4);
        QCOMPARE(mesh.mesh().entity(0, 7)->attributes().count(), 2);
    }

    void readsOtherNumbersAndAliases()
    {
        const QByteArray dictionary = hex("8000 0000000A 6D6174657269616C4964" // materialId
                                          "0007 00000004 73696465"             // side
                                          "0002 00000001 78"                   // unknown
                                          "FFFF");
        const QByteArray section = hex("00000001 0007 00000002 00 00000001"
                                       "00000001 8000 00000002 00 00000002"
                                       "00000002 0002 00000002 00 00000003"
                                       "00000007 0063 00000002 00 00000004");
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, triangle(dictionary, section, QByteArray())), QDataStream::Ok);
        const auto value = [&](int vertex, const AttributeType& type) {
            return mesh.mesh().entity(0, vertex)->attributes().value(type, -1).toInt();
        };
        QCOMPARE(value(1, AttributeType::Side), 1);
        QCOMPARE(value(1, AttributeType::MaterialId), 2);
        QCOMPARE(value(2, AttributeType()), 3);
        QCOMPARE(value(7, AttributeType()), 4);
    }

    void readsAnEmptyDictionary()
    {
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, triangle(hex("FFFF"), QByteArray(), QByteArray())),
                 QDataStream::Ok);
        QCOMPARE(mesh.mesh().count(2), 1);
    }

    void leavesEntitiesWithoutMissingParents()
    {
        TestMesh mesh;
        QCOMPARE(readInto(mesh, triangle()), QDataStream::Ok);
        for (int id : {1, 2, 7}) {
            QVERIFY(mesh.mesh().entity(0, id)->parent() == nullptr);
        }
        QVERIFY(mesh.mesh().entity(1, 4)->parent() == nullptr);
        QCOMPARE(mesh.mesh().count(2), 1);
    }

    void ignoresTheParentIdWithoutAParentDimension()
    {
        QByteArray bytes = triangle();
        bytes.replace(hex("00000007 FFFFFFFF 00000000"), hex("00000007 FFFFFFFF 0000000B"));
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, bytes), QDataStream::Ok);
        QVERIFY(mesh.mesh().entity(0, 7)->parent() == nullptr);
    }

    void refuses_data()
    {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::newRow("parent dimension 4")
            << hex("00000001 00000000 0000000B") << hex("00000001 00000004 0000000B");
        QTest::newRow("vertex id 0") << hex("00000007 FFFFFFFF") << hex("00000000 FFFFFFFF");
        QTest::newRow("vertex id twice") << hex("00000007 FFFFFFFF") << hex("00000001 FFFFFFFF");
        QTest::newRow("vertex that is not there")
            << hex("0000000C 00000002 00000002") << hex("0000000C 00000002 00000003");
        QTest::newRow("edge without vertices")
            << hex("0000000C 00000002") << hex("0000000C 00000000");
        QTest::newRow("entity of a section that is not there")
            << hex("FFFFFFFF 00000000 FFFFFFFF") << hex("00000063 00000000 FFFFFFFF");
    }

    void refuses()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QByteArray bytes = triangle();
        QCOMPARE(bytes.count(from), 1);
        bytes.replace(from, to);
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, bytes), QDataStream::ReadCorruptData);
    }

    void printsTheTriangle()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        QString expected = printed(mesh, MeshSerializer::Format2014);
        QVERIFY(expected.startsWith("*** Format ***\n2\n"));
        expected.replace(15, 1, "3");
        QCOMPARE(printed(mesh, MeshSerializer::Format2014a), expected);
    }

    void leavesTheStreamAtVersion12()
    {
        TestMesh mesh;
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        mesh.mesh().write(stream);
        QCOMPARE(stream.version(), 12);
    }
};

QTEST_APPLESS_MAIN(TestMeshFormat2014a)
#include "tst_MeshFormat2014a.moc"
