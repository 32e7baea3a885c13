#include "AllocationWatch.h"
#include "MeshStreamCase.h"
#include "ModelEdge.h"
#include "RefinementRegion.h"

#include <QTest>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>

using namespace Ovra::Geo;
using namespace StreamTesting;

// What a stream is promised to do, however it is damaged: reading comes to its end, prints nothing,
// takes no more memory than the bytes justify, leaves model and mesh valid, with all that was in
// them before, and says in the stream's status whether anything was wrong.

namespace
{

// Ids that no damage of a single byte of the samples makes.
constexpr int OldId = 0x0A0B0C0D;
constexpr int OldSecondId = OldId + 1;

// A model and a mesh that were there before the stream, beside the parents that the stream names.
class Target
{
public:
    Target()
    {
        addModel(mesh);
        auto* face = mesh.addModelFace(OldId);
        auto* edge = mesh.addModelEdge(OldId);
        TestMesh::link(face, edge);
        auto* a = mesh.addVertex({0, 0, 0}, OldId, face);
        auto* b = mesh.addVertex({1, 0, 0}, OldSecondId, mesh.model().entity(0, 11));
        mesh.addElement(1, {a, b}, edge, OldId);
        mesh.addElement(2, {a, b}, face, OldId);
        mesh.mesh().setUpwardAdjacencies();
    }

    ~Target() { mesh.model().clearRefinementRegions(); }

    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;

    TestMesh mesh;
};

void checkOldContent(Target& target)
{
    Model& model = target.mesh.model();
    Mesh& mesh = target.mesh.mesh();
    ModelEntity* face = model.entity(2, OldId);
    QVERIFY(face != nullptr);
    QVERIFY(face->isAdjacentTo(model.entity(1, OldId)));
    QVERIFY(model.entity(1, OldId)->isAdjacentTo(face));
    MeshEntity* edge = mesh.entity(1, OldId);
    QCOMPARE(neighbourIds(edge, 0), (QList<int>{OldId, OldSecondId}));
    QCOMPARE(edge->parent(), model.entity(1, OldId));
    QCOMPARE(mesh.entity(0, OldId)->parent(), face);
    QVERIFY(mesh.entity(0, OldId)->isAdjacentTo(edge));
    QVERIFY(edge->isAdjacentTo(mesh.entity(2, OldId)));
    QCOMPARE(model.entity(1, OldId)->childCount(), 1);
}

// The lists as they were: a read that went wrong enters nothing twice.
void checkOldUpwardLists(Target& target)
{
    Mesh& mesh = target.mesh.mesh();
    for (const int id : {OldId, OldSecondId}) {
        QCOMPARE(neighbourIds(mesh.entity(0, id), 1), QList<int>{OldId});
        QCOMPARE(neighbourIds(mesh.entity(0, id), 2), QList<int>{OldId});
    }
    QCOMPARE(neighbourIds(mesh.entity(1, OldId), 2), QList<int>{OldId});
}

void checkEntity(Target& target, MeshEntity* entity, int dimension, int id)
{
    Mesh& mesh = target.mesh.mesh();
    QCOMPARE(entity->dimension(), dimension);
    QCOMPARE(entity->id(), id);
    QVERIFY(id != 0);
    for (int other = 0; other <= 3; ++other) {
        for (int i = 0; i < entity->adjacencyCount(other); ++i) {
            MeshEntity* neighbour = entity->adjacencyAt(other, i);
            QCOMPARE(mesh.entity(other, neighbour->id()), neighbour);
            QVERIFY(dimension != 0 || neighbour->isAdjacentTo(entity));
        }
    }
    if (ModelEntity* parent = entity->parent()) {
        QCOMPARE(target.mesh.model().entity(parent->dimension(), parent->id()), parent);
    }
}

void checkMesh(Target& target, qsizetype byteCount)
{
    for (int dimension = 0; dimension <= 3; ++dimension) {
        QVERIFY(target.mesh.mesh().count(dimension) <= 2 + byteCount / 28);
        auto entities = target.mesh.mesh().iterator(dimension);
        while (entities.hasNext()) {
            entities.next();
            checkEntity(target, entities.value(), dimension, entities.key());
        }
    }
}

void checkModel(Target& target, qsizetype byteCount)
{
    Model& model = target.mesh.model();
    QVERIFY(model.refinementRegionCount() <= byteCount);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        QVERIFY(model.count(dimension) <= 2 + byteCount / 40);
        auto entities = model.iterator(dimension);
        while (entities.hasNext()) {
            entities.next();
            QCOMPARE(entities.value()->id(), entities.key());
            for (int other = 0; other <= 3; ++other) {
                for (int i = 0; i < entities.value()->adjacencyCount(other); ++i) {
                    ModelEntity* neighbour = entities.value()->adjacencyAt(other, i);
                    QCOMPARE(model.entity(other, neighbour->id()), neighbour);
                }
            }
        }
    }
}

using Reader = std::function<void(Target&, QDataStream&)>;

void readMesh(Target& target, QDataStream& stream)
{
    target.mesh.mesh().read(stream);
}

void readModel(Target& target, QDataStream& stream)
{
    target.mesh.model().read(stream);
}

// Reads the bytes and checks everything but the status, which is returned.
QDataStream::Status survive(const QByteArray& bytes, const Reader& read)
{
    Target target;
    QDataStream stream(bytes);
    Messages::clear();
    read(target, stream);
    if (!Messages::isEmpty()) {
        QTest::qFail(qPrintable(Messages::join()), __FILE__, __LINE__);
    }
    if (AllocationWatch::isExceeded()) {
        QTest::qFail("asks for memory", __FILE__, __LINE__);
    }
    checkOldContent(target);
    if (stream.status() != QDataStream::Ok) {
        checkOldUpwardLists(target);
    }
    checkMesh(target, bytes.size());
    checkModel(target, bytes.size());
    return stream.status();
}

// A model with everything that model streams can hold, and values of many types.
QByteArray modelSample()
{
    TestMesh mesh;
    Model& model = mesh.model();
    auto* region = new RefinementRegion;
    region->setType("box");
    region->addPoint({1, 2, 3});
    region->setLambdas({1, 2});
    model.addRefinementRegion(region);
    model.attributes().insert(AttributeType::PeriodicOrigin, Vector(1, 2, 3));
    model.attributes().insert(AttributeType::HotFaces, QVariantList{1, 2, 3});
    auto* vertex = mesh.addModelVertex({1, 2, 3}, 1);
    vertex->setTag("tag");
    auto* edge = mesh.addModelEdge(2);
    edge->setName("name");
    edge->attributes().insert(AttributeType::MaterialType, "solid");
    auto* face = mesh.addModelFace(3);
    auto* cell = mesh.addModelRegion(4);
    TestMesh::link(vertex, edge);
    TestMesh::link(edge, face);
    TestMesh::link(face, cell);
    const QByteArray bytes = binary([&](QDataStream& stream) { model.write(stream); });
    model.clearRefinementRegions();
    return bytes;
}

// Values of many kinds in one attribute record, nested too.
QVariant richValue()
{
    return QVariantList{1,
                        0.5,
                        "text",
                        QVariantMap{{"key", QVariantList{true}}},
                        QVariant::fromValue(QByteArrayList{"a", "b"}),
                        QStringList{"c"},
                        Vector(1, 2, 3),
                        QVariant(),
                        QDateTime::fromString("2013-02-01T01:02Z", Qt::ISODate)};
}

QByteArray meshSample(MeshSerializer::Format format)
{
    TestMesh mesh;
    fillTetrahedron(mesh);
    mesh.mesh().attributes().insert(AttributeType::Side, richValue());
    return written(mesh, format);
}

// The sample in format 2014a with a short dictionary in the place of the whole vocabulary, which
// would be most of the bytes.
QByteArray shortDictionarySample()
{
    QByteArray bytes = meshSample(MeshSerializer::Format2014a);
    const QByteArray shorter = dictionaryNumber(AttributeType::Side) + hex("00000004 73696465") +
                               dictionaryNumber(AttributeType::InBL) + hex("00000005 696E5F626C") +
                               hex("FFFF");
    return bytes.replace(dictionaryBytes(), shorter);
}

} // namespace

Q_DECLARE_METATYPE(Reader)

class TestBrokenStreams : public QObject
{
    Q_OBJECT

private:
    void addSamples()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Reader>("read");
        QTest::newRow("model") << modelSample() << Reader(readModel);
        QTest::newRow("old model")
            << modelSample().replace(0, 16, hex("0000000D 00000000 00000005")) << Reader(readModel);
        QTest::newRow("mesh 2013") << meshSample(MeshSerializer::Format2013) << Reader(readMesh);
        QTest::newRow("old mesh") << meshSample(MeshSerializer::Format2013).mid(4)
                                  << Reader(readMesh);
        QTest::newRow("mesh 2014") << meshSample(MeshSerializer::Format2014) << Reader(readMesh);
        QTest::newRow("mesh 2014a") << shortDictionarySample() << Reader(readMesh);
    }

private slots:
    void readsTheSamples_data()
    {
        addSamples();
        QTest::newRow("mesh 2014a with the whole vocabulary")
            << meshSample(MeshSerializer::Format2014a) << Reader(readMesh);
    }

    // Into an empty model, as the adjacency records of a model fit no other.
    void readsTheSamples()
    {
        QFETCH(QByteArray, bytes);
        TestMesh mesh;
        QDataStream stream(bytes);
        if (QByteArray(QTest::currentDataTag()).contains("mesh")) {
            addModel(mesh);
            mesh.mesh().read(stream);
            QCOMPARE(mesh.mesh().count(3), 1);
        } else {
            mesh.model().read(stream);
            QCOMPARE(mesh.model().count(3), 1);
        }
        QCOMPARE(stream.status(), QDataStream::Ok);
        QVERIFY(stream.atEnd());
        mesh.model().clearRefinementRegions();
    }

    void survivesTruncationAnywhere_data() { addSamples(); }

    void survivesTruncationAnywhere()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Reader, read);
        Messages messages;
        for (qsizetype size = 0; size < bytes.size(); ++size) {
            const QDataStream::Status status = survive(bytes.first(size), read);
            QVERIFY2(status != QDataStream::Ok, qPrintable(QString::number(size)));
            QVERIFY2(!QTest::currentTestFailed(), qPrintable(QString::number(size)));
        }
    }

    void survivesDamageAnywhere_data() { addSamples(); }

    void survivesDamageAnywhere()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Reader, read);
        Messages messages;
        for (qsizetype i = 0; i < bytes.size(); ++i) {
            for (const int value : {0x00, 0xFF, 0x7F, 0x80, bytes[i] ^ 1, bytes[i] ^ 16}) {
                QByteArray damaged = bytes;
                damaged[i] = static_cast<char>(value);
                survive(damaged, read);
                QVERIFY2(!QTest::currentTestFailed(),
                         qPrintable(QString("byte %1 to %2").arg(i).arg(value)));
            }
        }
    }

    // A window of damage slides over the sample, as wide as the numbers in it.
    void survivesDamagedNumbersAnywhere_data() { addSamples(); }

    void survivesDamagedNumbersAnywhere()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Reader, read);
        Messages messages;
        const QByteArrayList windows{hex("7FFFFFFF"), hex("FFFFFFFF"), hex("80000000"),
                                     hex("00000000"), hex("00000010"), hex("0000008A")};
        for (qsizetype i = 0; i + 4 <= bytes.size(); ++i) {
            for (const QByteArray& window : windows) {
                QByteArray damaged = bytes;
                survive(damaged.replace(i, 4, window), read);
                QVERIFY2(!QTest::currentTestFailed(),
                         qPrintable(QString("%1 at %2").arg(window.toHex()).arg(i)));
            }
        }
    }

    // Nothing but the count follows the header.
    void believesNoCount_data()
    {
        const QByteArray modelHead =
            hex("00000001 00000000 00000000 00000000") + QByteArray(48, '\0');
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<Reader>("read");
        QTest::newRow("model, refinement regions")
            << modelHead + hex("7FFFFFFF") << Reader(readModel);
        QTest::newRow("model, points of a region")
            << modelHead + hex("00000001 FFFFFFFF 00") + QByteArray(8 * 18, '\0') + hex("7FFFFFFF")
            << Reader(readModel);
        QTest::newRow("model, attributes")
            << modelHead + hex("00000000 7FFFFFFF") << Reader(readModel);
        QTest::newRow("model, vertices")
            << modelHead + hex("00000000 00000000 7FFFFFFF") << Reader(readModel);
        for (const char format : {'\1', '\2', '\3'}) {
            const QByteArray head = QByteArray(3, '\0') + format + QByteArray(12, '\0');
            const QByteArray dictionary = format == 3 ? hex("FFFF") : QByteArray();
            const auto row = [&](const char* name) -> QTestData& {
                return QTest::addRow("mesh %d, %s", format, name);
            };
            row("attributes") << head + hex("7FFFFFFF") << Reader(readMesh);
            row("vertices") << head + hex("00000000") + dictionary + hex("7FFFFFFF")
                            << Reader(readMesh);
        }
        QTest::newRow("mesh 1, vertices of an edge")
            << hex("00000001 00000000 00000000 00000000 00000000 00000000"
                   "00000001 00000001 FFFFFFFF 00000000 00000000 7FFFFFFF")
            << Reader(readMesh);
    }

    void believesNoCount()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Reader, read);
        Messages messages;
        QCOMPARE(survive(bytes, read), QDataStream::ReadPastEnd);
    }

    void readsNothingIntoAModelFromAFailedStream()
    {
        TestMesh mesh;
        mesh.model().attributes().insert(AttributeType::Side, 1);
        QDataStream stream(modelSample());
        stream.setStatus(QDataStream::ReadCorruptData);
        mesh.model().read(stream);
        QCOMPARE(stream.device()->pos(), 0);
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
        QVERIFY(mesh.model().isEmpty());
        QCOMPARE(mesh.model().attributes().count(), 1);
    }

    void refusesBadModelEntities_data()
    {
        QTest::addColumn<QByteArray>("vertices");
        QTest::addColumn<QByteArray>("adjacency");
        const auto vertex = [](const char* id) {
            return hex(id) + hex("FFFFFFFF FFFFFFFF 00000000") + QByteArray(24, '\0');
        };
        const QByteArray one = hex("00000001") + vertex("00000001");
        QTest::newRow("id 0") << hex("00000001") + vertex("00000000") << QByteArray(12, '\0');
        QTest::newRow("id twice") << hex("00000002") + vertex("00000001") + vertex("00000001")
                                  << QByteArray(24, '\0');
        QTest::newRow("neighbour that is not there")
            << one << hex("00000001 00000001 00000000 00000000");
        QTest::newRow("neighbour 0") << one << hex("00000001 00000000 00000000 00000000");
    }

    void refusesBadModelEntities()
    {
        QFETCH(QByteArray, vertices);
        QFETCH(QByteArray, adjacency);
        Model model;
        QDataStream stream(hex("00000001 00000000 00000000 00000000") +
                           QByteArray(48 + 4 + 4, '\0') + vertices + QByteArray(12, '\0') +
                           adjacency);
        model.read(stream);
        QCOMPARE(stream.status(), QDataStream::ReadCorruptData);
        QVERIFY(model.count(0) <= 1);
        QVERIFY(model.entity(0, 0) == nullptr);
    }

    // Nothing is wrong with the number; but the ids that follow it must not leave its range.
    void takesTheHighestIdThereIs()
    {
        TestMesh mesh;
        const QByteArray vertex = hex("7FFFFFFF FFFFFFFF FFFFFFFF 00000000") + QByteArray(24, '\0');
        QDataStream stream(hex("00000001 00000000 00000000 00000000") +
                           QByteArray(48 + 4 + 4, '\0') + hex("00000001") + vertex +
                           QByteArray(12 + 12, '\0'));
        mesh.model().read(stream);
        QCOMPARE(stream.status(), QDataStream::Ok);
        QCOMPARE(readInto(mesh, hex("00000001 00000000 00000000 00000000 00000000 00000001"
                                    "7FFFFFFF 00000000 7FFFFFFF 00000000") +
                                    QByteArray(24 + 12, '\0')),
                 QDataStream::Ok);
        const int highest = std::numeric_limits<int>::max();
        QCOMPARE(mesh.mesh().entity(0, highest)->parent(), mesh.model().entity(0, highest));
        QCOMPARE(mesh.addModelVertex({0, 0, 0})->id(), 2);
        QCOMPARE(mesh.addVertex({0, 0, 0})->id(), 2);
    }

    // Each edge has each face, and each face each region: two products of the numbers in the stream.
    void takesNoMemoryByTheProductOfElements()
    {
        constexpr qint32 Count = 50000;
        const QByteArray bytes = binary([](QDataStream& stream) {
            stream << 2 << 0 << 0 << 0 << 0 << 2;
            for (const qint32 vertex : {1, 2}) {
                stream << vertex << -1 << 0 << 0 << Vector();
            }
            for (int dimension = 1; dimension <= 3; ++dimension) {
                stream << Count;
                for (qint32 id = 1; id <= Count; ++id) {
                    stream << id << 0 << 0 << 2 << 1 << 2;
                }
            }
        });
        TestMesh mesh;
        QCOMPARE(readInto(mesh, bytes), QDataStream::Ok);
        for (const int id : {1, Count}) {
            QCOMPARE(mesh.mesh().entity(1, id)->adjacencyCount(2), Count);
            QCOMPARE(mesh.mesh().entity(2, id)->adjacencyCount(3), Count);
        }
    }

    // Edges on different vertices, all of which have all faces: what each would list is justified
    // by nothing in the stream.
    void takesNoMemoryByTheProductOfVerticesAndElements()
    {
        constexpr qint32 VertexCount = 300;
        constexpr qint32 FaceCount = 600;
        const QByteArray bytes = binary([](QDataStream& stream) {
            stream << 2 << 0 << 0 << 0 << 0 << VertexCount;
            for (qint32 vertex = 1; vertex <= VertexCount; ++vertex) {
                stream << vertex << -1 << 0 << 0 << Vector();
            }
            stream << VertexCount * (VertexCount - 1) / 2;
            qint32 edge = 0;
            for (qint32 a = 1; a <= VertexCount; ++a) {
                for (qint32 b = 1; b < a; ++b) {
                    stream << ++edge << 0 << 0 << 2 << a << b;
                }
            }
            stream << FaceCount;
            for (qint32 face = 1; face <= FaceCount; ++face) {
                stream << face << 0 << 0 << VertexCount;
                for (qint32 vertex = 1; vertex <= VertexCount; ++vertex) {
                    stream << vertex;
                }
            }
            stream << 0;
        });
        TestMesh mesh;
        QCOMPARE(readInto(mesh, bytes), QDataStream::ReadCorruptData);
        QCOMPARE(mesh.mesh().count(2), FaceCount);
        QCOMPARE(mesh.mesh().entity(0, 1)->adjacencyCount(2), FaceCount);
        qint64 entries = 0;
        for (int edge = 1; edge <= mesh.mesh().count(1); ++edge) {
            entries += mesh.mesh().entity(1, edge)->adjacencyCount(2);
        }
        QVERIFY2(entries > 0 && entries < bytes.size(), qPrintable(QString::number(entries)));
    }

    void readsTwiceWhatSharesItsNeighbours()
    {
        constexpr qint32 Count = 20000;
        const auto bytes = [](qint32 vertexCount) {
            return binary([&](QDataStream& stream) {
                stream << 2 << 0 << 0 << 0 << 0 << vertexCount;
                for (const qint32 vertex : {1, 2}) {
                    if (vertexCount > 0) {
                        stream << vertex << -1 << 0 << 0 << Vector();
                    }
                }
                for (int dimension = 1; dimension <= 3; ++dimension) {
                    stream << (vertexCount > 0 ? Count : 0);
                    for (qint32 id = 1; vertexCount > 0 && id <= Count; ++id) {
                        stream << id << 0 << 0 << 2 << 1 << 2;
                    }
                }
            });
        };
        TestMesh mesh;
        QCOMPARE(readInto(mesh, bytes(2)), QDataStream::Ok);
        QCOMPARE(readInto(mesh, bytes(0)), QDataStream::Ok);
        QCOMPARE(mesh.mesh().entity(1, Count)->adjacencyCount(2), 2 * Count);
        QCOMPARE(mesh.mesh().entity(2, Count)->adjacencyCount(3), 2 * Count);
    }

    void keepsWhatCameBeforeTheBreak()
    {
        const QByteArray bytes = meshSample(MeshSerializer::Format2013);
        TestMesh mesh;
        addModel(mesh);
        QCOMPARE(readInto(mesh, bytes.chopped(1)), QDataStream::ReadPastEnd);
        QCOMPARE(mesh.mesh().count(0), 4);
        QCOMPARE(mesh.mesh().count(1), 1);
        QCOMPARE(mesh.mesh().count(2), 1);
        QCOMPARE(mesh.mesh().count(3), 0);
        QCOMPARE(neighbourIds(mesh.mesh().entity(0, 7), 2), QList<int>{5});
        QCOMPARE(mesh.model().entity(3, 14)->childCount(), 0);
    }

    void clearsTheAttributesWhenTheHeadIsAllThereIs_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("2013") << hex("00000001");
        QTest::newRow("2014") << hex("00000002");
        QTest::newRow("2014a") << hex("00000003");
    }

    void clearsTheAttributesWhenTheHeadIsAllThereIs()
    {
        QFETCH(QByteArray, format);
        TestMesh mesh;
        fillTriangle(mesh);
        QCOMPARE(readInto(mesh, format + QByteArray(12 + 3, '\0')), QDataStream::ReadPastEnd);
        QVERIFY(mesh.mesh().attributes().isEmpty());
        QCOMPARE(neighbourIds(mesh.mesh().entity(0, 1), 1), QList<int>{4});
    }

    // The new edge stands at vertices that were there before: their lists take it in, once.
    void linksWhatCameBeforeTheBreakWithWhatWasThere()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        QCOMPARE(readInto(mesh, hex("00000002 00000000 00000000 00000000 00000000 00000000 00000002"
                                    "00000009 00000000 00000000 00000002 00000002 00000007")),
                 QDataStream::ReadPastEnd);
        QList<int> edges = neighbourIds(mesh.mesh().entity(0, 2), 1);
        std::sort(edges.begin(), edges.end());
        QCOMPARE(edges, (QList<int>{4, 9}));
        QCOMPARE(neighbourIds(mesh.mesh().entity(0, 7), 1), QList<int>{9});
        QCOMPARE(neighbourIds(mesh.mesh().entity(1, 4), 2), QList<int>{5});
        QCOMPARE(neighbourIds(mesh.mesh().entity(1, 9), 2), QList<int>{5});
    }

    // Elements keep their vertices when others take those's ids: what they share stays entered once,
    // or its removal would leave a pointer behind.
    void entersNothingTwiceAtVerticesThatWereReplaced()
    {
        TestMesh mesh;
        fillTriangle(mesh);
        const std::unique_ptr<MeshEntity> first(mesh.mesh().entity(0, 1));
        const std::unique_ptr<MeshEntity> second(mesh.mesh().entity(0, 2));
        const QByteArray record = hex("FFFFFFFF 00000000 00000000") + QByteArray(24, '\0');
        QCOMPARE(readInto(mesh, hex("00000002 00000000 00000000 00000000 00000000 00000003") +
                                    hex("00000001") + record + hex("00000002") + record),
                 QDataStream::ReadPastEnd);
        QVERIFY(mesh.mesh().entity(0, 1) != first.get());
        QCOMPARE(mesh.mesh().entity(0, 1)->adjacencyCount(1), 0);
        MeshEntity* edge = mesh.mesh().entity(1, 4);
        QCOMPARE(edge->adjacencyAt(0, 0), second.get());
        QCOMPARE(neighbourIds(second.get(), 1), QList<int>{4});
        QCOMPARE(neighbourIds(second.get(), 2), QList<int>{5});
        mesh.mesh().remove(edge);
        QCOMPARE(second->adjacencyCount(1), 0);
        mesh.mesh().remove(mesh.mesh().entity(2, 5));
        QCOMPARE(first->adjacencyCount(2), 0);
    }

    // A record that is given up must not take a namesake's place among the parent's children.
    void leavesTheChildrenOfParentsToThoseThatStay()
    {
        TestMesh mesh;
        addModel(mesh);
        auto* a = mesh.addVertex({0, 0, 0}, 1);
        auto* b = mesh.addVertex({1, 0, 0}, 2);
        auto* edge = mesh.addElement(1, {a, b}, mesh.model().entity(1, 12), 4);
        QCOMPARE(readInto(mesh, hex("00000002 00000000 00000000 00000000 00000000 00000000 00000001"
                                    "00000004 0000000C 00000000 00000002 00000001")),
                 QDataStream::ReadPastEnd);
        QCOMPARE(mesh.model().entity(1, 12)->childCount(), 1);
        QCOMPARE(mesh.mesh().entity(1, 4), edge);
        QCOMPARE(edge->parent(), mesh.model().entity(1, 12));
    }
};

QTEST_APPLESS_MAIN(TestBrokenStreams)
#include "tst_BrokenStreams.moc"
