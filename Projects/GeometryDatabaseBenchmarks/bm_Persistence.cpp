// Reading and writing of every mesh format and of the model file.

#include "AttributeType.h"
#include "BlockCase.h"
#include "Floors.h"
#include "Mesh.h"
#include "MeshSerializer.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QTemporaryDir>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

const std::vector<int64_t> elementCounts{100'000, 1'000'000};
const std::vector<int64_t> formats{MeshSerializer::Format2013, MeshSerializer::Format2014,
                                   MeshSerializer::Format2014a};

void writeMesh(QIODevice* device, MeshSerializer::Format format, BlockCase& block)
{
    QDataStream stream(device);
    stream.setVersion(QDataStream::Qt_4_6);
    const std::unique_ptr<MeshSerializer> serializer(
        MeshSerializer::create(format, &block.model(), &block.mesh()));
    serializer->write(stream);
}

QString writtenMesh(const QTemporaryDir& directory, MeshSerializer::Format format, BlockCase& block)
{
    QFile file(directory.filePath(QStringLiteral("block.geo_mesh")));
    if (!file.open(QIODevice::WriteOnly)) {
        return QString();
    }
    writeMesh(&file, format, block);
    return file.fileName();
}

/// The model of the block alone, ready for its mesh.
std::unique_ptr<Database> modelOnly(BlockCase& block)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    block.model().write(out);
    QDataStream in(bytes);
    auto database = std::make_unique<Database>();
    database->model()->read(in);
    return database;
}

void readMesh(const QString& path, Database& database)
{
    QFile file(path);
    if (file.open(QIODevice::ReadOnly)) {
        QDataStream stream(&file);
        database.mesh()->read(stream);
    }
}

void BM_ReadMesh(benchmark::State& state)
{
    BlockCase& block = sharedBlock(static_cast<int>(state.range(1)));
    const QTemporaryDir directory;
    const QString path =
        writtenMesh(directory, static_cast<MeshSerializer::Format>(state.range(0)), block);
    qint64 memory = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::unique_ptr<Database> database = modelOnly(block);
        const qint64 before = allocatedBytes();
        state.ResumeTiming();
        readMesh(path, *database);
        state.PauseTiming();
        memory = allocatedBytes() - before;
        if (database->mesh()->count(3) != block.elements()) {
            state.SkipWithError("the mesh did not come back whole");
        }
        database.reset();
        state.ResumeTiming();
    }
    addRates(state, block.entities(), QFile(path).size());
    addRatio(state, "x_plain_read", plainReadSeconds(path));
    addRatio(state, "x_allocation", allocationSeconds(block));
    state.counters["memory_per_element"] = static_cast<double>(memory) / block.elements();
    state.counters["file_per_element"] = static_cast<double>(QFile(path).size()) / block.elements();
}
BENCHMARK(BM_ReadMesh)->ArgsProduct({formats, elementCounts})->Unit(benchmark::kMillisecond);

void BM_WriteMesh(benchmark::State& state)
{
    BlockCase& block = sharedBlock(static_cast<int>(state.range(1)));
    qint64 size = 0;
    for (auto _ : state) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        writeMesh(&buffer, static_cast<MeshSerializer::Format>(state.range(0)), block);
        size = buffer.size();
    }
    addRates(state, block.entities(), size);
    addRatio(state, "x_plain_write", plainWriteSeconds(size));
}
BENCHMARK(BM_WriteMesh)->ArgsProduct({formats, elementCounts})->Unit(benchmark::kMillisecond);

/// A model of many faces in a row, each between two regions.
std::unique_ptr<Model> rowOfRegions(int count)
{
    auto model = std::make_unique<Model>();
    ModelEntity* last = nullptr;
    for (int i = 0; i < count; ++i) {
        ModelEntity* region = ModelEntity::create(3);
        region->setName(QStringLiteral("region %1").arg(i));
        region->attributes().insert(AttributeType::MaterialType, QStringLiteral("solid"));
        region->attributes().insert(AttributeType::MaterialId, i);
        model->add(region);
        if (last != nullptr) {
            ModelEntity* face = ModelEntity::create(2);
            model->add(face);
            for (ModelEntity* side : {last, region}) {
                face->addAdjacency(side);
                side->addAdjacency(face);
            }
        }
        last = region;
    }
    return model;
}

QByteArray writtenModel(Model& model)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    model.write(stream);
    return bytes;
}

void BM_ReadModel(benchmark::State& state)
{
    const std::unique_ptr<Model> model = rowOfRegions(static_cast<int>(state.range(0)));
    const QByteArray bytes = writtenModel(*model);
    for (auto _ : state) {
        Model copy;
        QDataStream stream(bytes);
        copy.read(stream);
        benchmark::DoNotOptimize(copy.count(3));
    }
    addRates(state, model->count(2) + model->count(3), bytes.size());
    addRatio(state, "x_plain_write", plainWriteSeconds(bytes.size()));
}
BENCHMARK(BM_ReadModel)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

void BM_WriteModel(benchmark::State& state)
{
    const std::unique_ptr<Model> model = rowOfRegions(static_cast<int>(state.range(0)));
    qint64 size = 0;
    for (auto _ : state) {
        size = writtenModel(*model).size();
    }
    addRates(state, model->count(2) + model->count(3), size);
    addRatio(state, "x_plain_write", plainWriteSeconds(size));
}
BENCHMARK(BM_WriteModel)->Arg(1'000)->Arg(10'000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Benchmarks
