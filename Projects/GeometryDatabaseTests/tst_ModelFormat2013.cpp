#include "AttributeType.h"
#include "GermanLocale.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ModelSerializer2013.h"
#include "ModelVertex.h"
#include "RefinementRegion.h"
#include "StreamTesting.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <memory>

using namespace Ovra::Geo;
using namespace StreamTesting;

namespace
{

const char* const One = "3FF0000000000000";
const char* const Two = "4000000000000000";
const char* const Half = "3FE0000000000000";
const char* const NoNumber = "0000000000000000";
const char* const NullText = "FFFFFFFF";
const char* const None = "00000000";

// The bytes that the given pieces of hexadecimal digits make together.
template <typename... Pieces>
QByteArray joined(const Pieces&... pieces)
{
    QByteArray digits;
    (digits.append(pieces), ...);
    return QByteArray::fromHex(digits);
}

const QByteArray InvertedBox =
    QByteArray("7FEFFFFFFFFFFFFF").repeated(3) + QByteArray("FFEFFFFFFFFFFFFF").repeated(3);
const QByteArray UnitBox = QByteArray(NoNumber).repeated(3) + QByteArray(One).repeated(3);

template <typename Entity>
Entity* addTo(Model& model, int id)
{
    auto* entity = new Entity;
    entity->setId(id);
    model.add(entity);
    return entity;
}

template <typename Entity>
void link(ModelEntity* a, Entity* b)
{
    a->addAdjacency(b);
    b->addAdjacency(a);
}

// One entity of each dimension, all linked, and one attribute, one region.
void fill(Model& model)
{
    model.setVersion(Version(13, 0, 5));
    model.setBoundingBox(Box(Vector(0, 0, 0), Vector(1, 1, 1)));
    model.attributes().insert(AttributeType::CoordinateSystem, 2);
    auto* refinement = new RefinementRegion;
    refinement->setType("b");
    refinement->setFilled(true);
    refinement->addPoint(Vector(1, 2, 0.5));
    model.addRefinementRegion(refinement);

    auto* vertex = addTo<ModelVertex>(model, 4);
    vertex->setPoint(Vector(1, 2, 0.5));
    vertex->setTag("t");
    auto* edge = addTo<ModelEdge>(model, 5);
    edge->setBoundingBox(Box(Vector(0, 0, 0), Vector(1, 1, 1)));
    edge->setLength(2);
    edge->setCentroid(Vector(1, 1, 1));
    edge->setNormal(Vector(0, 0, 1));
    edge->setPlanar(true);
    edge->attributes().insert(AttributeType::Side, 1);
    auto* face = addTo<ModelFace>(model, 6);
    face->setName("n");
    face->setArea(0.5);
    auto* region = addTo<ModelRegion>(model, 7);
    region->setVolume(1);
    region->setCentroid(Vector(2, 0, 0));
    link(vertex, edge);
    link(edge, face);
    link(face, region);
    region->addAdjacency(vertex);
    region->addAdjacency(vertex);
    face->addAdjacency(face);
}

const QByteArray FilledBytes = joined(
    // header, box
    "00000001 0000000D 00000000 00000005", UnitBox,
    // one refinement region: type, filled, length, radius, lambda, centroid, vectors
    "00000001 00000002 0062 01", QByteArray(NoNumber).repeated(3 + 3 + 9),
    // one point, grid, uniform, no lambdas, extent, minimum, maximum, transMat
    "00000001", One, Two, Half, "00000000 00000000 00000000 00 00000000",
    QByteArray(NoNumber).repeated(9 + 9),
    // model attributes: coordinate_system = 2
    "00000001 00000011 636F6F7264696E6174655F73797374656D 00000002 00 00000002",
    // vertex
    "00000001 00000004 00000002 0074", NullText, None, One, Two, Half,
    // edge, with side = 1
    "00000001 00000005", NullText, NullText, "00000001 00000004 73696465 00000002 00 00000001",
    UnitBox, Two, One, One, One, NoNumber, NoNumber, One, "01",
    // face
    "00000001 00000006", NullText, "00000002 006E", None, InvertedBox, Half,
    QByteArray(NoNumber).repeated(6), "00",
    // region
    "00000001 00000007", NullText, NullText, None, InvertedBox, One, Two, NoNumber, NoNumber,
    // adjacency of the vertex to dimensions 1, 2, 3
    "00000001 00000005 00000000 00000000",
    // of the edge to 0, 2, 3
    "00000001 00000004 00000001 00000006 00000000",
    // of the face to 0, 1, 3
    "00000000 00000001 00000005 00000001 00000007",
    // of the region to 0, 1, 2
    "00000002 00000004 00000004 00000000 00000001 00000006");

const char* const FilledText = "*** Format ***\n"
                               "1\n"
                               "*** Version ***\n"
                               "13.0.5\n"
                               "*** Bounding Box ***\n"
                               "[(0, 0, 0), (1, 1, 1)]\n"
                               "*** Refinement Regions ***\n"
                               "1 count\n"
                               "b 1\n"
                               "0 0 0\n"
                               "(0, 0, 0) (0, 0, 0) (0, 0, 0) (0, 0, 0)\n"
                               "1\n"
                               "(1, 2, 0.5)\n"
                               "0 0 0\n"
                               "0\n"
                               "0\n"
                               "(0, 0, 0) (0, 0, 0) (0, 0, 0) (0, 0, 0) (0, 0, 0) (0, 0, 0)\n"
                               "*** Attributes ***\n"
                               "--- Begin Attributes ---\n"
                               "coordinate_system int 2\n"
                               "--- End Attributes ---\n"
                               "*** Entities 0 ***\n"
                               "1 count\n"
                               "*** Model Entity ***\n"
                               "0 dim\n"
                               "4 id\n"
                               "t tag\n"
                               " name\n"
                               "(1, 2, 0.5) point\n"
                               "*** Entities 1 ***\n"
                               "1 count\n"
                               "*** Model Entity ***\n"
                               "1 dim\n"
                               "5 id\n"
                               " tag\n"
                               " name\n"
                               "--- Begin Attributes ---\n"
                               "side int 1\n"
                               "--- End Attributes ---\n"
                               "[(0, 0, 0), (1, 1, 1)] box\n"
                               "2 length\n"
                               "(1, 1, 1) centroid\n"
                               "(0, 0, 1) normal\n"
                               "1 isPlanar\n"
                               "*** Entities 2 ***\n"
                               "1 count\n"
                               "*** Model Entity ***\n"
                               "2 dim\n"
                               "6 id\n"
                               " tag\n"
                               "n name\n"
                               "%BOX% box\n"
                               "0.5 area\n"
                               "(0, 0, 0) centroid\n"
                               "(0, 0, 0) normal\n"
                               "0 isPlanar\n"
                               "*** Entities 3 ***\n"
                               "1 count\n"
                               "*** Model Entity ***\n"
                               "3 dim\n"
                               "7 id\n"
                               " tag\n"
                               " name\n"
                               "%BOX% box\n"
                               "1 volume\n"
                               "(2, 0, 0) centroid\n"
                               "*** Adjacencies ***\n"
                               "--- Adjacencies for 4 ---\n"
                               "... 1 ...\n1 count\n5 id\n"
                               "... 2 ...\n0 count\n"
                               "... 3 ...\n0 count\n"
                               "--- Adjacencies for 5 ---\n"
                               "... 0 ...\n1 count\n4 id\n"
                               "... 2 ...\n1 count\n6 id\n"
                               "... 3 ...\n0 count\n"
                               "--- Adjacencies for 6 ---\n"
                               "... 0 ...\n0 count\n"
                               "... 1 ...\n1 count\n5 id\n"
                               "... 3 ...\n1 count\n7 id\n"
                               "--- Adjacencies for 7 ---\n"
                               "... 0 ...\n2 count\n4 id\n4 id\n"
                               "... 1 ...\n0 count\n"
                               "... 2 ...\n1 count\n6 id\n";

QByteArray written(Model& model)
{
    return binary([&](QDataStream& stream) { model.write(stream); });
}

QString printed(Model& model)
{
    return text([&](QTextStream& stream) { model.write(stream); });
}

QDataStream::Status readInto(Model& model, const QByteArray& bytes)
{
    return readFrom(bytes, [&](QDataStream& stream) { model.read(stream); });
}

QByteArray fileContent(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no such file");
}

// The refinement regions are not the model's to delete.
struct OwnedModel : Model
{
    ~OwnedModel() { clearRefinementRegions(); }
};

} // namespace

class TestModelFormat2013 : public QObject
{
    Q_OBJECT

private slots:
    void writesAnEmptyModel()
    {
        Model model;
        QCOMPARE(written(model).toHex(), joined("00000001 00000000 00000000 00000000", InvertedBox,
                                                None, None, QByteArray(None).repeated(4))
                                             .toHex());
    }

    void writesTheWholeModel()
    {
        OwnedModel model;
        fill(model);
        QCOMPARE(written(model).toHex(), FilledBytes.toHex());
    }

    void writesTheWholeModelAsText()
    {
        OwnedModel model;
        fill(model);
        QCOMPARE(printed(model), QString(FilledText).replace("%BOX%", Box().toString()));
    }

    void printsEmptyBlocksForTheModelButNotForEntities()
    {
        Model model;
        addTo<ModelVertex>(model, 1);
        const QString lines = printed(model);
        QVERIFY(lines.contains("*** Attributes ***\n--- Begin Attributes ---\n"
                               "--- End Attributes ---\n*** Entities 0 ***\n"));
        QCOMPARE(lines.count("--- Begin Attributes ---"), 1);
    }

    void printsTheSameInEveryLocale()
    {
        Model model;
        addTo<ModelEdge>(model, 1234567)->setLength(1234.5);
        const QString expected = printed(model);
        const GermanLocale german;
        QCOMPARE(printed(model), expected);
        QVERIFY(expected.contains("1234567 id\n"));
        QVERIFY(expected.contains("1234.5 length\n"));
    }

    void readsTheWholeModel()
    {
        OwnedModel model;
        QCOMPARE(readInto(model, FilledBytes), QDataStream::Ok);
        QCOMPARE(model.version(), Version(13, 0, 5));
        QCOMPARE(model.boundingBox(), Box(Vector(0, 0, 0), Vector(1, 1, 1)));
        QCOMPARE(model.coordinateSystem(), 2);
        QCOMPARE(model.refinementRegionCount(), 1);
        QCOMPARE(model.refinementRegion(0)->type(), "b");
        const auto* edge = static_cast<ModelEdge*>(model.entity(1, 5));
        QCOMPARE(edge->length(), 2.0);
        QVERIFY(edge->isPlanar());
        QCOMPARE(edge->attributes().value(AttributeType::Side, QVariant()).toInt(), 1);
        QCOMPARE(edge->adjacencyAt(0, 0), model.entity(0, 4));
        QCOMPARE(written(model).toHex(), FilledBytes.toHex());
    }

    void losesAdjacencyWithinADimension()
    {
        OwnedModel model;
        readInto(model, FilledBytes);
        QCOMPARE(model.entity(2, 6)->adjacencyCount(2), 0);
    }

    void writesByAscendingId()
    {
        Model model;
        for (int id : {3, 1, 2}) {
            addTo<ModelVertex>(model, id)->setPoint(Vector(id, 0, 0));
            addTo<ModelEdge>(model, id);
        }
        for (int id : {1, 2, 3}) {
            model.entity(0, id)->addAdjacency(model.entity(1, id));
        }
        const QByteArray bytes = written(model);
        const qsizetype vertices = 4 * 4 + 48 + 4 + 4 + 4;
        const qsizetype vertexSize = 4 + 4 + 4 + 4 + 24;
        const qsizetype edgeSize = 4 + 4 + 4 + 4 + 48 + 8 + 24 + 24 + 1;
        const qsizetype adjacencies = vertices + 3 * vertexSize + 4 + 3 * edgeSize + 4 + 4;
        const qsizetype adjacencySize = 4 + 4 + 4 + 4;
        for (int i = 0; i < 3; ++i) {
            const QByteArray id = QByteArray("\0\0\0", 3) + char(i + 1);
            QCOMPARE(bytes.mid(vertices + i * vertexSize, 4), id);
            QCOMPARE(bytes.mid(adjacencies + i * adjacencySize + 4, 4), id);
        }
    }

    void recognisesTheHeader_data()
    {
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<Version>("version");
        QTest::newRow("format 1") << joined("00000001 0000000D 00000000 00000005")
                                  << Version(13, 0, 5);
        QTest::newRow("old, 13") << joined("0000000D 00000000 00000005") << Version(13, 0, 5);
        QTest::newRow("old, lowest") << joined("0000000A 00000001 00000002") << Version(10, 1, 2);
        QTest::newRow("old, highest") << joined("0000000E 00000001 00000002") << Version(14, 1, 2);
        QTest::newRow("negative version")
            << joined("00000001 FFFFFFFF 00000001 00000002") << Version(-1, 1, 2);
    }

    void recognisesTheHeader()
    {
        QFETCH(QByteArray, header);
        QFETCH(Version, version);
        OwnedModel model;
        QCOMPARE(readInto(model, header + FilledBytes.mid(16)), QDataStream::Ok);
        QCOMPARE(model.version(), version);
        QCOMPARE(model.boundingBox(), Box(Vector(0, 0, 0), Vector(1, 1, 1)));
        QCOMPARE(model.count(3), 1);
    }

    void refusesOtherFormats_data()
    {
        QTest::addColumn<QByteArray>("format");
        QTest::newRow("0") << hex("00000000");
        QTest::newRow("2") << hex("00000002");
        QTest::newRow("9") << hex("00000009");
        QTest::newRow("15") << hex("0000000F");
        QTest::newRow("negative") << hex("FFFFFFFF");
        QTest::newRow("smallest") << hex("80000000");
    }

    void refusesOtherFormats()
    {
        QFETCH(QByteArray, format);
        Model model;
        model.attributes().insert(AttributeType::Side, 1);
        QCOMPARE(readInto(model, format + FilledBytes.mid(4)), QDataStream::ReadCorruptData);
        QCOMPARE(model.version(), Version(13, 0, 5));
        QVERIFY(model.isEmpty());
        QCOMPARE(model.boundingBox(), Box());
        QCOMPARE(model.attributes().count(), 1);
        QCOMPARE(model.refinementRegionCount(), 0);
    }

    void takesNegativeCountsForNone()
    {
        Model model;
        const QByteArray negative("FFFFFFFF");
        QCOMPARE(
            readInto(model, joined("00000001 00000000 00000000 00000000", InvertedBox, negative,
                                   negative, negative, negative, negative, negative)),
            QDataStream::Ok);
        QVERIFY(model.isEmpty());
        QCOMPARE(model.refinementRegionCount(), 0);
    }

    void takesNegativeAdjacencyCountsForNone()
    {
        Model model;
        QCOMPARE(readInto(model, joined("00000001 00000000 00000000 00000000", InvertedBox, None,
                                        None, "00000001 00000001", NullText, NullText, None, One,
                                        One, One, None, None, None, "FFFFFFFF 80000000 FFFFFFFE")),
                 QDataStream::Ok);
        QCOMPARE(model.entity(0, 1)->adjacencyCount(1), 0);
    }

    void handsOutIdsAboveThoseOfTheFile()
    {
        OwnedModel model;
        readInto(model, FilledBytes);
        auto* vertex = new ModelVertex;
        model.add(vertex);
        QCOMPARE(vertex->id(), 5);
    }

    void setsTheVersionOfTheStreamAndNothingElse()
    {
        OwnedModel model;
        fill(model);
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setByteOrder(QDataStream::LittleEndian);
        out.setFloatingPointPrecision(QDataStream::SinglePrecision);
        out.setVersion(QDataStream::Qt_5_0);
        model.write(out);
        QCOMPARE(out.version(), int(QDataStream::Qt_4_6));
        QCOMPARE(out.byteOrder(), QDataStream::LittleEndian);
        QCOMPARE(out.floatingPointPrecision(), QDataStream::SinglePrecision);
        QCOMPARE(bytes.first(4), hex("01000000"));

        OwnedModel copy;
        QDataStream in(bytes);
        in.setByteOrder(QDataStream::LittleEndian);
        in.setFloatingPointPrecision(QDataStream::SinglePrecision);
        copy.read(in);
        QCOMPARE(in.status(), QDataStream::Ok);
        QCOMPARE(in.version(), int(QDataStream::Qt_4_6));
        QCOMPARE(in.byteOrder(), QDataStream::LittleEndian);
        QCOMPARE(in.floatingPointPrecision(), QDataStream::SinglePrecision);
        QCOMPARE(copy.version(), Version(13, 0, 5));
        QCOMPARE(copy.boundingBox(), model.boundingBox());
        QCOMPARE(static_cast<ModelEdge*>(copy.entity(1, 5))->length(), 2.0);
    }

    void doesNotChangeTheModelByWriting()
    {
        OwnedModel model;
        fill(model);
        QCOMPARE(written(model), written(model));
    }

    void readsFromASequentialDevice()
    {
        OwnedModel model;
        SequentialDevice device(FilledBytes);
        QDataStream stream(&device);
        model.read(stream);
        QCOMPARE(stream.status(), QDataStream::Ok);
        QCOMPARE(written(model).toHex(), FilledBytes.toHex());
    }

    void readsBackAnyIdThatAddTakes()
    {
        OwnedModel model;
        for (const int id : {std::numeric_limits<int>::min(), -1, 5}) {
            auto* vertex = ModelEntity::create(0);
            vertex->setId(id);
            model.add(vertex);
            auto* edge = ModelEntity::create(1);
            edge->setId(id);
            model.add(edge);
            edge->addAdjacency(vertex);
        }
        OwnedModel copy;
        QCOMPARE(readInto(copy, written(model)), QDataStream::Ok);
        QCOMPARE(copy.count(0), 3);
        QCOMPARE(copy.entity(1, -1)->adjacencyAt(0, 0), copy.entity(0, -1));
        QCOMPARE(written(copy).toHex(), written(model).toHex());
    }

    void createsTheSerializerOfAFormat()
    {
        Model model;
        const auto create = [&](int format) {
            return std::unique_ptr<ModelSerializer>(
                ModelSerializer::create(static_cast<ModelSerializer::Format>(format), &model));
        };
        QVERIFY(dynamic_cast<ModelSerializer2013*>(create(1).get()) != nullptr);
        QVERIFY(create(0) == nullptr);
        QVERIFY(create(2) == nullptr);
        QVERIFY(create(13) == nullptr);
    }

    void writesOneFileIntoADirectory()
    {
        QTemporaryDir directory;
        OwnedModel model;
        fill(model);
        const QByteArray path = directory.path().toUtf8();
        model.write(path.constData(), "box", false);
        QCOMPARE(QDir(directory.path()).entryList(QDir::Files), QStringList{"box.geo_model"});
        QCOMPARE(fileContent(directory.filePath("box.geo_model")).toHex(), FilledBytes.toHex());

        model.write(path.constData(), "box", true);
        QCOMPARE(QDir(directory.path()).entryList(QDir::Files, QDir::Name),
                 (QStringList{"box.geo_model", "box.geo_model.txt"}));
        QCOMPARE(QString::fromUtf8(fileContent(directory.filePath("box.geo_model.txt"))),
                 printed(model));
    }

    void readsAFile()
    {
        QTemporaryDir directory;
        OwnedModel model;
        fill(model);
        model.write(directory.path().toUtf8().constData(), "box", false);
        OwnedModel copy;
        copy.read(directory.filePath("box.geo_model").toStdWString().c_str());
        QCOMPARE(written(copy).toHex(), FilledBytes.toHex());
    }

    void passesOverFilesThatDoNotOpen()
    {
        Messages messages;
        OwnedModel model;
        fill(model);
        model.read(L"/no/such/directory/file.geo_model");
        model.read(QDir::tempPath().toStdWString().c_str());
        model.read(L"");
        model.write("/no/such/directory", "file", false);
        model.write("/no/such/directory", "file", true);
        QCOMPARE(written(model).toHex(), FilledBytes.toHex());
        QVERIFY2(Messages::isEmpty(), qPrintable(Messages::join()));
    }

    void addsToWhatIsThere()
    {
        OwnedModel model;
        readInto(model, joined("00000001 00000000 00000000 00000000", UnitBox, None, None,
                               "00000001 00000009", NullText, NullText, None, One, One, One, None,
                               None, None, "00000000 00000000 00000000"));
        QCOMPARE(model.count(0), 1);
        model.attributes().insert(AttributeType::Side, 1);
        QCOMPARE(readInto(model, joined("00000001 00000000 00000000 00000000", InvertedBox, None,
                                        None, None, "00000001 00000003", NullText, NullText, None,
                                        UnitBox, QByteArray(One).repeated(7), "00", None, None,
                                        "00000000 00000000 00000000 00000000 00000000 00000000")),
                 QDataStream::Ok);
        QCOMPARE(model.count(0), 1);
        QCOMPARE(model.count(1), 1);
        QVERIFY(model.attributes().isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestModelFormat2013)
#include "tst_ModelFormat2013.moc"
