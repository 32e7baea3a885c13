#include "MeshSerializer2014.h"
#include "MeshStreamCase.h"

#include <QTest>

using namespace Ovra::Geo;
using namespace StreamTesting;

namespace
{

const QByteArray TriangleBytes =
    hex("00000002 0000000E 00000001 00000002"
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
        // edges: id, parent id, attributes, vertices
        "00000001"
        "00000004 0000000C 00000000 00000002 00000002 00000001"
        // faces
        "00000001"
        "00000005 00000000"
        "00000002 0000000B 6D6174657269616C5F6964 00000002 00 00000006"
        "00000004 73696465 00000002 00 00000001"
        "00000003 00000001 00000002 00000007"
        // regions
        "00000000");

QByteArray written(TestMesh& mesh)
{
    return StreamTesting::written(mesh, MeshSerializer::Format2014);
}

} // namespace

class TestMeshFormat2014 : public QObject
{
    Q_OBJECT

private slots:
    void writesAnEmptyMesh()
    {
        TestMesh mesh;
        QCOMPARE(written(mesh).toHex(), (hex("00000002") + QByteArray(12 + 4 + 16, '\0')).toHex());
    }

    void writesTheTriangle()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        QCOMPARE(written(mesh).toHex(), TriangleBytes.toHex());
    }

    void writesAnEdgeWithoutAttributes()
    {
        TestMesh mesh;
        mesh.addElement(1, {mesh.addVertex({1, 0, 0}), mesh.addVertex({})});
        QCOMPARE(written(mesh).toHex(), hex("00000002 00000000 00000000 00000000 00000000"
                                            "00000002"
                                            "00000001 FFFFFFFF 00000000 00000000"
                                            "3FF0000000000000 0000000000000000 0000000000000000"
                                            "00000002 FFFFFFFF 00000000 00000000"
                                            "0000000000000000 0000000000000000 0000000000000000"
                                            "00000001"
                                            "00000001 00000000 00000000 00000002 00000001 00000002"
                                            "00000000 00000000")
                                            .toHex());
    }

    void takes32BytesForATetrahedron()
    {
        TestMesh mesh;
        TestMesh::Vertices vertices;
        for (int i = 0; i < 4; ++i) {
            vertices.append(mesh.addVertex({}));
        }
        const qsizetype before = written(mesh).size();
        mesh.addElement(3, vertices);
        QCOMPARE(written(mesh).size(), before + 32);
    }

    void readsTheTriangle()
    {
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, TriangleBytes), QDataStream::Ok);
        QCOMPARE(mesh.mesh().version(), Version(14, 1, 2));
        QCOMPARE(mesh.mesh().entity(1, 4)->parent(), mesh.model().entity(1, 12));
        QCOMPARE(mesh.mesh().entity(0, 2)->parent(), mesh.model().entity(2, 13));
        QVERIFY(mesh.mesh().entity(2, 5)->parent() == nullptr);
        QCOMPARE(neighbourIds(mesh.mesh().entity(1, 4), 2), QList<int>{5});
        QCOMPARE(written(mesh).toHex(), TriangleBytes.toHex());
    }

    void keepsTheParentsOfATetrahedron()
    {
        TestMesh mesh;
        fillTetrahedron(mesh);
        TestMesh copy;
        addModel(copy);
        QCOMPARE(readInto(copy, written(mesh)), QDataStream::Ok);
        QCOMPARE(copy.mesh().entity(0, 8)->parent(), copy.model().entity(3, 14));
        QCOMPARE(copy.mesh().entity(3, 3)->parent(), copy.model().entity(3, 14));
        copy.model().entity(3, 14)->removeChild(copy.mesh().entity(3, 3));
        TestMesh orphan;
        addModel(orphan);
        QCOMPARE(readInto(orphan, written(copy)), QDataStream::Ok);
        QVERIFY(orphan.mesh().entity(3, 3)->parent() == nullptr);
    }

    // The parent's dimension is not stored, so that its id is looked up among the model faces.
    void losesTheDimensionOfAFacesParent()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        mesh.model().entity(3, 14)->addChild(mesh.mesh().entity(2, 5));
        const QByteArray bytes = written(mesh);
        QVERIFY(bytes.contains(hex("00000005 0000000E")));

        TestMesh copy;
        addModel(copy);
        copy.addModelFace(14);
        QCOMPARE(readInto(copy, bytes), QDataStream::Ok);
        QCOMPARE(copy.mesh().entity(2, 5)->parent(), copy.model().entity(2, 14));
    }

    void printsTheTriangle()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        QCOMPARE(printed(mesh, MeshSerializer::Format2014),
                 QString("*** Format ***\n2\n"
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
                         "4 12\n2 2 1 \n"
                         "*** Entities 2 ***\n1 count\n"
                         "5 0\n"
                         "--- Begin Attributes ---\n"
                         "material_id int 6\n"
                         "side int 1\n"
                         "--- End Attributes ---\n"
                         "3 1 2 7 \n"
                         "*** Entities 3 ***\n0 count\n"));
    }

    void refusesMissingParents_data()
    {
        QTest::addColumn<QByteArray>("parent");
        QTest::newRow("unknown") << hex("00000063");
        QTest::newRow("of another dimension") << hex("0000000B");
        QTest::newRow("negative") << hex("FFFFFFFF");
    }

    void refusesMissingParents()
    {
        QFETCH(QByteArray, parent);
        TestMesh mesh;
        addModel(mesh);
        QByteArray bytes = TriangleBytes;
        bytes.replace(hex("00000004 0000000C"), hex("00000004") + parent);
        QCOMPARE(readInto(mesh, bytes), QDataStream::ReadCorruptData);
        QCOMPARE(mesh.mesh().count(0), 3);
        QCOMPARE(mesh.mesh().count(1), 0);
        QCOMPARE(mesh.model().entity(1, 12)->childCount(), 0);
    }
};

QTEST_APPLESS_MAIN(TestMeshFormat2014)
#include "tst_MeshFormat2014.moc"
