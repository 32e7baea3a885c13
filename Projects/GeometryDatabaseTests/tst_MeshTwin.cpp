// The library and a mesh in the plainest code must agree on every byte, text and list.

#include "BlockCase.h"
#include "GbiWriter.h"
#include "GridMesh.h"
#include "MeshStreamCase.h"
#include "TestMesh.h"
#include "TwinMesh.h"

#include <QLocale>
#include <QTest>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>

using namespace Ovra::Geo;
using Benchmarks::BlockCase;
using Benchmarks::TwinEntity;
using Benchmarks::TwinMesh;

namespace
{

/// A database, and what it belongs to.
struct Sample
{
    std::shared_ptr<void> owner;
    Database* database = nullptr;

    Mesh& mesh() const { return *database->mesh(); }
    Model& model() const { return *database->model(); }
};

Sample sampleOf(std::shared_ptr<BlockCase> block)
{
    block->mesh().setUpwardAdjacencies();
    Database* database = &block->database();
    return {std::move(block), database};
}

Sample sampleOf(std::shared_ptr<TestMesh> mesh)
{
    Database* database = &mesh->database;
    return {std::move(mesh), database};
}

Sample nothing()
{
    return sampleOf(std::make_shared<TestMesh>());
}

Sample tetrahedra()
{
    return sampleOf(std::make_shared<BlockCase>(5));
}

Sample tetrahedraWithAllSides()
{
    auto block = std::make_shared<BlockCase>(4);
    block->addInterior();
    return sampleOf(std::move(block));
}

Sample wedgesWithGapsInIds()
{
    return sampleOf(std::make_shared<BlockCase>(4, Benchmarks::Filling::Wedges, 7));
}

/// All kinds of cells side by side, with their faces and edges, attributes of every entity in three.
Sample allKindsOfCells()
{
    auto mesh = std::make_shared<TestMesh>();
    ModelEntity* region = mesh->addModelRegion(4);
    region->attributes().insert(AttributeType::MaterialId, 9);
    ModelEntity* face = mesh->addModelFace(17);
    double place = 1;
    for (const int vertices : {4, 5, 6, 8}) {
        mesh->addUnitCell(vertices, region, face, Vector(place, 0, 1 / place));
        place += 1.1;
    }
    for (int dimension = 0; dimension <= 3; ++dimension) {
        for (auto walk = mesh->mesh().iterator(dimension); walk.hasNext();) {
            MeshEntity* entity = walk.next().value();
            if (entity->id() % 3 == 1) {
                entity->attributes().insert(AttributeType::InBL, entity->id() % 2 == 0);
                entity->attributes().insert(AttributeType::PeriodicWeights,
                                            QVariantList{0.25, entity->id()});
            }
        }
    }
    mesh->mesh().attributes().insert(AttributeType::Side, 3);
    mesh->mesh().setVersion({14, 1, 2});
    mesh->mesh().setUpwardAdjacencies();
    return sampleOf(std::move(mesh));
}

/// Parents of other dimensions and none, attributes, gaps in the ids.
Sample entitiesWithoutParents()
{
    auto mesh = std::make_shared<TestMesh>();
    StreamTesting::fillTetrahedron(*mesh);
    return sampleOf(std::move(mesh));
}

GridSpec gridSpec(GridSpec::Shape shape, bool planar)
{
    GridSpec spec;
    spec.cells = {4, 3, 3};
    spec.shape = shape;
    spec.planar = planar;
    spec.regionOf = [](int x, int, int) { return x < 2 ? 1 : 2; };
    spec.idSeed = 20131;
    return spec;
}

Sample sampleOf(const GridSpec& spec)
{
    auto grid = std::make_shared<GridMesh>(spec);
    Database* database = grid->database();
    return {std::move(grid), database};
}

Sample hexahedraWithShuffledIds()
{
    return sampleOf(gridSpec(GridSpec::Shape::Block, false));
}

Sample planarQuadrilaterals()
{
    return sampleOf(gridSpec(GridSpec::Shape::Block, true));
}

Sample planarTriangles()
{
    return sampleOf(gridSpec(GridSpec::Shape::Simplex, true));
}

/// A shell, and an element whose material is that of another region.
Sample regionsWithTheirOwnColumns()
{
    Sample sample = sampleOf(gridSpec(GridSpec::Shape::Wedge, false));
    sample.model().entity(3, 1)->attributes().insert(AttributeType::IsShell, false);
    ModelEntity* source = ModelEntity::create(3);
    source->attributes().insert(AttributeType::MaterialId, 21);
    sample.model().add(source);
    sample.model().entity(3, 2)->attributes().insert(AttributeType::FluidRegion, source->id());
    return sample;
}

double randomDouble(std::mt19937_64& random)
{
    double value = 0;
    do {
        const quint64 bits = random();
        std::memcpy(&value, &bits, sizeof value);
    } while (!std::isfinite(value));
    return value;
}

Sample pointsOfAllMagnitudes()
{
    auto mesh = std::make_shared<TestMesh>();
    std::mt19937_64 random(20131);
    constexpr int points = 3000;
    for (int i = 0; i < points; ++i) {
        mesh->addVertex({randomDouble(random), randomDouble(random), randomDouble(random)});
    }
    mesh->addVertex({0.0, -0.0, 0.5});
    mesh->addVertex({1e15, 1e16, 123456789012345678.0});
    mesh->addVertex({std::nan(""), HUGE_VAL, -HUGE_VAL});
    return sampleOf(std::move(mesh));
}

using MakeSample = Sample (*)();
using Setting = void (*)(QTextStream&);

void addSamples()
{
    QTest::addColumn<MakeSample>("make");
    QTest::newRow("nothing") << MakeSample(nothing);
    QTest::newRow("tetrahedra") << MakeSample(tetrahedra);
    QTest::newRow("tetrahedra with all sides") << MakeSample(tetrahedraWithAllSides);
    QTest::newRow("wedges with gaps in the ids") << MakeSample(wedgesWithGapsInIds);
    QTest::newRow("all kinds of cells") << MakeSample(allKindsOfCells);
    QTest::newRow("hexahedra with shuffled ids") << MakeSample(hexahedraWithShuffledIds);
    QTest::newRow("planar quadrilaterals") << MakeSample(planarQuadrilaterals);
    QTest::newRow("planar triangles") << MakeSample(planarTriangles);
    QTest::newRow("shell and fluid region") << MakeSample(regionsWithTheirOwnColumns);
    QTest::newRow("points of all magnitudes") << MakeSample(pointsOfAllMagnitudes);
}

void addSamplesOfAllFormats()
{
    addSamples();
    QTest::newRow("entities without parents") << MakeSample(entitiesWithoutParents);
}

const QList<MeshSerializer::Format> formats{MeshSerializer::Format2013, MeshSerializer::Format2014,
                                            MeshSerializer::Format2014a};

QByteArray bytesOf(const Sample& sample, MeshSerializer::Format format)
{
    return StreamTesting::binary([&](QDataStream& stream) {
        const std::unique_ptr<MeshSerializer> serializer(
            MeshSerializer::create(format, &sample.model(), &sample.mesh()));
        serializer->write(stream);
    });
}

QByteArray bytesOf(const TwinMesh& mesh, MeshSerializer::Format format)
{
    return StreamTesting::binary([&](QDataStream& stream) { mesh.write(stream, format); });
}

/// What stands in the lists of an entity, and where it is.
using Lists = QList<QList<int>>;

Lists listsOf(const MeshEntity& entity)
{
    Lists lists;
    for (int dimension = 0; dimension <= 3; ++dimension) {
        QList<int> ids = neighbourIds(&entity, dimension);
        // The order of the upward lists means nothing.
        std::sort(dimension == 0 ? ids.end() : ids.begin(), ids.end());
        lists.append(ids);
    }
    return lists;
}

Lists listsOf(const TwinEntity& entity)
{
    Lists lists;
    for (const QList<TwinEntity*>& list : entity.adjacencies) {
        QList<int> ids;
        for (const TwinEntity* neighbour : list) {
            ids.append(neighbour->id);
        }
        std::sort(lists.isEmpty() ? ids.end() : ids.begin(), ids.end());
        lists.append(ids);
    }
    return lists;
}

/// Where the two meshes differ; empty for nowhere.
QString differenceOf(Mesh& mesh, const TwinMesh& twin)
{
    for (int dimension = 0; dimension <= 3; ++dimension) {
        if (mesh.count(dimension) != twin.count(dimension)) {
            return QStringLiteral("numbers of entities of dimension %1").arg(dimension);
        }
        for (auto walk = mesh.iterator(dimension); walk.hasNext();) {
            const MeshEntity* entity = walk.next().value();
            const TwinEntity* other = twin.entity(dimension, entity->id());
            if (other == nullptr || other->parent != entity->parent() ||
                listsOf(*entity) != listsOf(*other)) {
                return QStringLiteral("entity %1 of dimension %2").arg(entity->id()).arg(dimension);
            }
        }
    }
    return QString();
}

} // namespace

Q_DECLARE_METATYPE(MakeSample)
Q_DECLARE_METATYPE(Setting)

class TestMeshTwin : public QObject
{
    Q_OBJECT

private slots:
    void sameBytesAreWritten_data() { addSamplesOfAllFormats(); }
    void sameBytesAreWritten()
    {
        QFETCH(MakeSample, make);
        const Sample sample = make();
        TwinMesh twin(&sample.model());
        twin.copy(sample.mesh());
        for (const MeshSerializer::Format format : formats) {
            QCOMPARE(bytesOf(sample, format), bytesOf(twin, format));
        }
    }

    void meshWritesTheNewestFormat_data() { addSamplesOfAllFormats(); }
    void meshWritesTheNewestFormat()
    {
        QFETCH(MakeSample, make);
        const Sample sample = make();
        TwinMesh twin(&sample.model());
        twin.copy(sample.mesh());
        const QByteArray bytes =
            StreamTesting::binary([&](QDataStream& stream) { sample.mesh().write(stream); });
        QCOMPARE(bytes, bytesOf(twin, MeshSerializer::Format2014a));
    }

    void sameIsRead_data() { addSamplesOfAllFormats(); }
    void sameIsRead()
    {
        QFETCH(MakeSample, make);
        const Sample sample = make();
        for (const MeshSerializer::Format format : formats) {
            const QByteArray bytes = bytesOf(sample, format);
            sample.mesh().clear();
            QCOMPARE(StreamTesting::readFrom(
                         bytes, [&](QDataStream& stream) { sample.mesh().read(stream); }),
                     QDataStream::Ok);
            TwinMesh twin(&sample.model());
            QCOMPARE(
                StreamTesting::readFrom(bytes, [&](QDataStream& stream) { twin.read(stream); }),
                QDataStream::Ok);
            QCOMPARE(differenceOf(sample.mesh(), twin), QString());
            QCOMPARE(bytesOf(sample, format), bytesOf(twin, format));
        }
    }

    void sameListsAreSet_data() { addSamplesOfAllFormats(); }
    void sameListsAreSet()
    {
        QFETCH(MakeSample, make);
        const Sample sample = make();
        TwinMesh twin(&sample.model());
        twin.copy(sample.mesh());
        twin.setUpwardAdjacencies();
        QCOMPARE(differenceOf(sample.mesh(), twin), QString());
        sample.mesh().clearUpwardAdjacencies();
        twin.clearUpwardAdjacencies();
        QCOMPARE(differenceOf(sample.mesh(), twin), QString());
        sample.mesh().setUpwardAdjacencies();
        twin.setUpwardAdjacencies();
        QCOMPARE(differenceOf(sample.mesh(), twin), QString());
    }

    void sameTextIsWritten_data() { addSamples(); }
    void sameTextIsWritten()
    {
        QFETCH(MakeSample, make);
        const Sample sample = make();
        TwinMesh twin(&sample.model());
        twin.copy(sample.mesh());
        const GbiWriter writer(sample.database);
        for (const Setting set : settings()) {
            for (const double scale : {1.0, 0.001}) {
                QCOMPARE(textOf(set, [&](QTextStream& s) { writer.writeNodes(s, scale); }),
                         textOf(set, [&](QTextStream& s) { twin.writeNodes(s, scale); }));
            }
            QCOMPARE(textOf(set, [&](QTextStream& s) { writer.writeElements(s); }),
                     textOf(set, [&](QTextStream& s) { twin.writeElements(s); }));
        }
    }

private:
    static QList<Setting> settings()
    {
        return {
            [](QTextStream&) {},
            [](QTextStream& stream) { stream.setLocale(QLocale(QLocale::German)); },
            [](QTextStream& stream) { stream.setNumberFlags(QTextStream::ForceSign); },
            [](QTextStream& stream) {
                stream.setRealNumberNotation(QTextStream::ScientificNotation);
            },
            [](QTextStream& stream) { stream.setFieldWidth(12); },
            [](QTextStream& stream) { stream.setIntegerBase(16); },
        };
    }

    template <typename Write>
    static QString textOf(Setting set, Write write)
    {
        return StreamTesting::text([&](QTextStream& stream) {
            set(stream);
            write(stream);
        });
    }
};

QTEST_APPLESS_MAIN(TestMeshTwin)
#include "tst_MeshTwin.moc"
