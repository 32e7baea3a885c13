#include "MeshSerializer2013.h"
#include "MeshSerializer2014.h"
#include "MeshSerializer2014a.h"
#include "MeshStreamCase.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

using namespace Ovra::Geo;
using namespace StreamTesting;

namespace
{

// An empty mesh in format 2013 behind the given header.
QByteArray emptyMesh(const char* header)
{
    return hex(header) + QByteArray(4 + 4 * 4, '\0');
}

QByteArray tetrahedron(MeshSerializer::Format format)
{
    TestMesh mesh;
    fillTetrahedron(mesh);
    return written(mesh, format);
}

void addFormatRows()
{
    QTest::addColumn<MeshSerializer::Format>("format");
    QTest::newRow("2013") << MeshSerializer::Format2013;
    QTest::newRow("2014") << MeshSerializer::Format2014;
    QTest::newRow("2014a") << MeshSerializer::Format2014a;
}

} // namespace

Q_DECLARE_METATYPE(Ovra::Geo::MeshSerializer::Format)

class TestMeshRead : public QObject
{
    Q_OBJECT

private slots:
    void createsTheSerializerOfAFormat()
    {
        TestMesh mesh;
        const auto create = [&](int format) {
            return std::unique_ptr<MeshSerializer>(MeshSerializer::create(
                static_cast<MeshSerializer::Format>(format), &mesh.model(), &mesh.mesh()));
        };
        QVERIFY(dynamic_cast<MeshSerializer2013*>(create(1).get()) != nullptr);
        QVERIFY(dynamic_cast<MeshSerializer2014*>(create(2).get()) != nullptr);
        QVERIFY(dynamic_cast<MeshSerializer2014a*>(create(3).get()) != nullptr);
        QVERIFY(create(0) == nullptr);
        QVERIFY(create(4) == nullptr);
        QVERIFY(create(12) == nullptr);
        QVERIFY(create(-1) == nullptr);
    }

    void recognisesTheHeader_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Version>("version");
        QTest::newRow("format 1") << emptyMesh("00000001 0000000E 00000001 00000002")
                                  << Version(14, 1, 2);
        QTest::newRow("format 2") << emptyMesh("00000002 0000000E 00000001 00000002")
                                  << Version(14, 1, 2);
        QTest::newRow("format 3") << hex("00000003 0000000E 00000001 00000002 00000000 FFFF") +
                                         hex("00000000 FFFFFFFF").repeated(4)
                                  << Version(14, 1, 2);
        QTest::newRow("old, 12") << emptyMesh("0000000C 00000003 00000004") << Version(12, 3, 4);
        QTest::newRow("old, lowest")
            << emptyMesh("0000000A 00000003 00000004") << Version(10, 3, 4);
        QTest::newRow("old, highest")
            << emptyMesh("0000000E 00000003 00000004") << Version(14, 3, 4);
    }

    void recognisesTheHeader()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Version, version);
        TestMesh mesh;
        QDataStream stream(bytes);
        mesh.mesh().read(stream);
        QCOMPARE(stream.status(), QDataStream::Ok);
        QCOMPARE(stream.version(), 12);
        QVERIFY(stream.atEnd());
        QCOMPARE(mesh.mesh().version(), version);
        QVERIFY(mesh.mesh().isEmpty());
    }

    void refusesOtherFormats_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("0") << hex("00000000");
        QTest::newRow("4") << hex("00000004");
        QTest::newRow("9") << hex("00000009");
        QTest::newRow("15") << hex("0000000F");
        QTest::newRow("negative") << hex("FFFFFFFF");
    }

    void refusesOtherFormats()
    {
        QFETCH(QByteArray, format);
        TestMesh mesh;
        fillTriangle(mesh);
        const QByteArray before = written(mesh, MeshSerializer::Format2013);
        QCOMPARE(readInto(mesh, format + tetrahedron(MeshSerializer::Format2013).mid(4)),
                 QDataStream::ReadCorruptData);
        QCOMPARE(mesh.mesh().version(), Version(14, 1, 2));
        QCOMPARE(written(mesh, MeshSerializer::Format2013).toHex(), before.toHex());
        QCOMPARE(mesh.mesh().entity(0, 1)->adjacencyCount(1), 1);
    }

    void goesThereAndBack_data() { addFormatRows(); }

    void goesThereAndBack()
    {
        QFETCH(MeshSerializer::Format, format);
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, tetrahedron(format)), QDataStream::Ok);
        QCOMPARE(written(mesh, MeshSerializer::Format2013).toHex(),
                 tetrahedron(MeshSerializer::Format2013).toHex());
        QCOMPARE(neighbourIds(mesh.mesh().entity(2, 5), 3), QList<int>{3});
        QCOMPARE(mesh.model().entity(3, 14)->childCount(), 1);
    }

    void readsFromASequentialDevice_data() { addFormatRows(); }

    void readsFromASequentialDevice()
    {
        QFETCH(MeshSerializer::Format, format);
        TestMesh mesh;
        addModel(mesh);
        SequentialDevice device(tetrahedron(format));
        QDataStream stream(&device);
        mesh.mesh().read(stream);
        QCOMPARE(stream.status(), QDataStream::Ok);
        QCOMPARE(written(mesh, format).size(), tetrahedron(format).size());
    }

    void honoursByteOrderAndPrecision()
    {
        TestMesh mesh;
        fillTetrahedron(mesh);
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setByteOrder(QDataStream::LittleEndian);
        out.setFloatingPointPrecision(QDataStream::SinglePrecision);
        mesh.mesh().write(out);
        QVERIFY(bytes.startsWith(hex("03000000 0E000000")));
        QCOMPARE(out.byteOrder(), QDataStream::LittleEndian);
        QCOMPARE(out.floatingPointPrecision(), QDataStream::SinglePrecision);

        TestMesh copy;
        addModel(copy);
        QDataStream in(bytes);
        in.setByteOrder(QDataStream::LittleEndian);
        in.setFloatingPointPrecision(QDataStream::SinglePrecision);
        copy.mesh().read(in);
        QCOMPARE(in.status(), QDataStream::Ok);
        QCOMPARE(in.byteOrder(), QDataStream::LittleEndian);
        QCOMPARE(in.floatingPointPrecision(), QDataStream::SinglePrecision);
        QCOMPARE(written(copy, MeshSerializer::Format2013).toHex(),
                 tetrahedron(MeshSerializer::Format2013).toHex());
    }

    void leavesTheVersionOfTheStreamToWhoCallsASerializer()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        const QByteArray bytes = binary(
            [&](QDataStream& stream) {
                MeshSerializer2013(&mesh.model(), &mesh.mesh()).write(stream);
                QCOMPARE(stream.version(), int(QDataStream::Qt_6_0));
            },
            QDataStream::Qt_6_0);
        QCOMPARE(bytes.toHex(), written(mesh, MeshSerializer::Format2013).toHex());
    }

    void printsTheOldestFormat()
    {
        TestMesh mesh;
        fillTetrahedron(mesh);
        QCOMPARE(text([&](QTextStream& stream) { mesh.mesh().write(stream); }),
                 printed(mesh, MeshSerializer::Format2013));
    }

    void readsAFile()
    {
        QTemporaryDir directory;
        QFile file(directory.filePath("tetrahedron"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(tetrahedron(MeshSerializer::Format2014a));
        file.close();
        TestMesh mesh;
        addModel(mesh);
        mesh.mesh().read(file.fileName().toStdWString().c_str());
        QCOMPARE(mesh.mesh().count(0), 4);
        QCOMPARE(mesh.mesh().count(3), 1);
    }

    void passesOverAFileThatDoesNotOpen()
    {
        Messages messages;
        TestMesh mesh;
        fillTriangle(mesh);
        mesh.mesh().read(L"/no/such/directory/mesh");
        mesh.mesh().read(QDir::tempPath().toStdWString().c_str());
        mesh.mesh().read(L"");
        QCOMPARE(mesh.mesh().count(0), 3);
        QCOMPARE(mesh.mesh().version(), Version(14, 1, 2));
        QVERIFY2(Messages::isEmpty(), qPrintable(Messages::join()));
    }

    void addsToWhatIsThere_data() { addFormatRows(); }

    void addsToWhatIsThere()
    {
        QFETCH(MeshSerializer::Format, format);
        TestMesh mesh;
        addModel(mesh);
        auto* vertex = mesh.addVertex({5, 5, 5}, 100, mesh.model().entity(0, 11));
        mesh.mesh().attributes().insert(AttributeType::MaterialId, 1);
        QCOMPARE(readInto(mesh, tetrahedron(format)), QDataStream::Ok);
        QCOMPARE(mesh.mesh().count(0), 5);
        QCOMPARE(mesh.mesh().entity(0, 100), vertex);
        QCOMPARE(mesh.model().entity(0, 11)->childCount(), 2);
        QVERIFY(!mesh.mesh().attributes().contains(AttributeType::MaterialId));
    }

    // Mesh::add() tells no one of the entity that it drops, so that the test deletes it.
    void replacesAnEntityOfTheSameId()
    {
        TestMesh mesh;
        addModel(mesh);
        const std::unique_ptr<MeshEntity> dropped(mesh.addVertex({5, 5, 5}, 7));
        QCOMPARE(readInto(mesh, tetrahedron(MeshSerializer::Format2014a)), QDataStream::Ok);
        QCOMPARE(mesh.mesh().count(0), 4);
        QVERIFY(mesh.mesh().entity(0, 7) != dropped.get());
    }

    void readsIdsInAnyOrder()
    {
        QByteArray bytes = hex("00000001 00000000 00000000 00000000 00000000 00000006");
        for (char id : QByteArray("\x09\x03\x0A\x04\x01\x0B")) {
            bytes += QByteArray(3, '\0') + id + hex("FFFFFFFF") + QByteArray(32, '\0');
        }
        TestMesh mesh;
        QCOMPARE(readInto(mesh, bytes + QByteArray(12, '\0')), QDataStream::Ok);
        QCOMPARE(mesh.mesh().count(0), 6);
    }

    void refusesAnIdThatOccurredBefore_data()
    {
        QTest::addColumn<QByteArray>("ids");
        QTest::addColumn<int>("count");
        QTest::newRow("at once") << hex("01 01 02 03 04 05") << 1;
        QTest::newRow("in a run") << hex("01 02 03 04 02 06") << 4;
        QTest::newRow("start of a run") << hex("05 06 07 05 02 01") << 3;
        QTest::newRow("out of order") << hex("09 03 0A 03 01 02") << 3;
        QTest::newRow("in an earlier run") << hex("01 02 05 06 09 02") << 5;
        QTest::newRow("last of all") << hex("01 02 05 06 09 09") << 5;
    }

    void refusesAnIdThatOccurredBefore()
    {
        QFETCH(QByteArray, ids);
        QFETCH(int, count);
        QByteArray bytes = hex("00000001 00000000 00000000 00000000 00000000 00000006");
        for (char id : ids) {
            bytes += QByteArray(3, '\0') + id + hex("FFFFFFFF") + QByteArray(32, '\0');
        }
        TestMesh mesh;
        QCOMPARE(readInto(mesh, bytes + QByteArray(12, '\0')), QDataStream::ReadCorruptData);
        QCOMPARE(mesh.mesh().count(0), count);
    }

    void readsNothingFromAFailedStream()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        QDataStream stream(tetrahedron(MeshSerializer::Format2014a));
        stream.setVersion(QDataStream::Qt_5_0);
        stream.setStatus(QDataStream::ReadPastEnd);
        mesh.mesh().setVersion(Version(1, 2, 3));
        mesh.mesh().read(stream);
        QCOMPARE(stream.status(), QDataStream::ReadPastEnd);
        QCOMPARE(stream.device()->pos(), 0);
        QCOMPARE(stream.version(), int(QDataStream::Qt_5_0));
        QCOMPARE(mesh.mesh().version(), Version(1, 2, 3));
        QCOMPARE(mesh.mesh().entity(0, 1)->adjacencyCount(1), 1);
    }
    void readsBackElementsOfAnyNumberOfVertices_data()
    {
        QTest::addColumn<int>("format");
        QTest::addColumn<int>("vertexCount");
        for (const int format : {1, 2, 3}) {
            for (const int vertexCount : {0, 1, 33, 1000}) {
                QTest::addRow("format %d, %d vertices", format, vertexCount)
                    << format << vertexCount;
            }
        }
    }

    void readsBackElementsOfAnyNumberOfVertices()
    {
        QFETCH(int, format);
        QFETCH(int, vertexCount);
        TestMesh mesh;
        TestMesh::Vertices vertices;
        for (int i = 0; i < vertexCount; ++i) {
            vertices.append(mesh.addVertex(Vector(i, 0, 0)));
        }
        for (int dimension = 1; dimension <= 3; ++dimension) {
            mesh.addElement(dimension, vertices);
        }
        TestMesh copy;
        QCOMPARE(readInto(copy, written(mesh, static_cast<MeshSerializer::Format>(format))),
                 QDataStream::Ok);
        for (int dimension = 1; dimension <= 3; ++dimension) {
            QCOMPARE(neighbourIds(copy.mesh().entity(dimension, 1), 0), sortedIds(vertices));
        }
        const int above = vertexCount > 0 ? 1 : 0;
        QCOMPARE(copy.mesh().entity(1, 1)->adjacencyCount(2), above);
        QCOMPARE(copy.mesh().entity(2, 1)->adjacencyCount(3), above);
    }

    void readsElementsThatRepeatAVertex()
    {
        constexpr int Count = 100000;
        TestMesh mesh;
        auto* vertex = mesh.addVertex({0, 0, 0});
        const QList<MeshVertex*> often(Count, vertex);
        mesh.addElement(1, often);
        mesh.addElement(2, often);
        TestMesh copy;
        QCOMPARE(readInto(copy, written(mesh, MeshSerializer::Format2014)), QDataStream::Ok);
        QCOMPARE(copy.mesh().entity(0, 1)->adjacencyCount(1), Count);
        QCOMPARE(neighbourIds(copy.mesh().entity(1, 1), 2), QList<int>{1});
    }

    // The conforming subdivision of one tetrahedron by the cuts of two of its edges: all vertices have
    // very many neighbours, and no other sound mesh has as many for its size.
    void readsTetrahedraBetweenTwoLines_data()
    {
        QTest::addColumn<int>("cuts");
        QTest::newRow("few") << 20;
        QTest::newRow("some") << 40;
        QTest::newRow("many") << 90;
    }

    void readsTetrahedraBetweenTwoLines()
    {
        QFETCH(int, cuts);
        TestMesh mesh;
        QList<MeshVertex*> a;
        QList<MeshVertex*> b;
        for (int i = 0; i <= cuts; ++i) {
            a.append(mesh.addVertex({double(i), 0, 0}));
            b.append(mesh.addVertex({0, double(i), 1}));
        }
        for (int i = 0; i <= cuts; ++i) {
            for (int j = 0; j <= cuts; ++j) {
                mesh.addElement(1, {a[i], b[j]});
                if (i < cuts) {
                    mesh.addElement(2, {a[i], a[i + 1], b[j]});
                }
                if (j < cuts) {
                    mesh.addElement(2, {a[i], b[j], b[j + 1]});
                }
                if (i < cuts && j < cuts) {
                    mesh.addElement(3, {a[i], a[i + 1], b[j], b[j + 1]});
                }
            }
        }
        TestMesh copy;
        QCOMPARE(readInto(copy, written(mesh, MeshSerializer::Format2014a)), QDataStream::Ok);
        mesh.mesh().setUpwardAdjacencies();
        for (int dimension = 1; dimension <= 2; ++dimension) {
            for (auto walk = mesh.mesh().iterator(dimension); walk.hasNext();) {
                const MeshEntity* expected = walk.next().value();
                const MeshEntity* actual = copy.mesh().entity(dimension, expected->id());
                QCOMPARE(actual->adjacencyCount(dimension + 1),
                         expected->adjacencyCount(dimension + 1));
            }
        }
    }

    void readsBackNegativeIds_data()
    {
        QTest::addColumn<int>("format");
        QTest::newRow("2013") << 1;
        QTest::newRow("2014") << 2;
        QTest::newRow("2014a") << 3;
    }

    void readsBackNegativeIds()
    {
        QFETCH(int, format);
        TestMesh mesh;
        const int lowest = std::numeric_limits<int>::min();
        auto* a = mesh.addVertex({0, 0, 0}, lowest);
        auto* b = mesh.addVertex({1, 0, 0}, -1);
        a->attributes().insert(AttributeType::Side, 3);
        b->attributes().insert(AttributeType::Side, 4);
        mesh.addElement(1, {b, a}, nullptr, -7);
        TestMesh copy;
        QCOMPARE(readInto(copy, written(mesh, static_cast<MeshSerializer::Format>(format))),
                 QDataStream::Ok);
        QCOMPARE(neighbourIds(copy.mesh().entity(1, -7), 0), (QList<int>{-1, lowest}));
        MeshEntity* const lowestCopy = copy.mesh().entity(0, lowest);
        QCOMPARE(lowestCopy->attributes().value(AttributeType::Side, QVariant()), QVariant(3));
    }
};

QTEST_APPLESS_MAIN(TestMeshRead)
#include "tst_MeshRead.moc"
