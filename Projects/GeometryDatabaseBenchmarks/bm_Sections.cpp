// The sections of the solver input that every case has.

#include "BlockCase.h"
#include "Floors.h"
#include "GbiWriter.h"
#include "Mesh.h"

#include <QBuffer>
#include <QTextStream>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

using Section = void (*)(const GbiWriter&, QTextStream&);

void writeSection(benchmark::State& state, Section section, qint64 records, BlockCase& block)
{
    qint64 size = 0;
    for (auto _ : state) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        QTextStream stream(&buffer);
        section(GbiWriter(&block.database()), stream);
        stream.flush();
        size = buffer.size();
    }
    addRates(state, records, size);
    addRatio(state, "x_plain_write", plainWriteSeconds(size));
}

void BM_WriteNodes(benchmark::State& state)
{
    BlockCase& block = sharedBlock(static_cast<int>(state.range(0)));
    writeSection(
        state,
        [](const GbiWriter& writer, QTextStream& stream) { writer.writeNodes(stream, 0.001); },
        block.mesh().count(0), block);
}
BENCHMARK(BM_WriteNodes)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void BM_WriteElements(benchmark::State& state)
{
    BlockCase& block = sharedBlock(static_cast<int>(state.range(0)));
    writeSection(
        state, [](const GbiWriter& writer, QTextStream& stream) { writer.writeElements(stream); },
        block.elements(), block);
}
BENCHMARK(BM_WriteElements)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void BM_WritePartSurfaces(benchmark::State& state)
{
    BlockCase& block = sharedBlock(static_cast<int>(state.range(0)));
    writeSection(
        state,
        [](const GbiWriter& writer, QTextStream& stream) {
            writer.writePartSurfaces(stream, 0.001);
        },
        2, block);
}
BENCHMARK(BM_WritePartSurfaces)->Arg(100'000)->Arg(1'000'000);

void BM_WriteSurfaceConnectivity(benchmark::State& state)
{
    BlockCase& block = sharedBlock(static_cast<int>(state.range(0)));
    writeSection(
        state,
        [](const GbiWriter& writer, QTextStream& stream) {
            writer.writeSurfaceConnectivity(stream, 0.001);
        },
        block.mesh().count(2), block);
}
BENCHMARK(BM_WriteSurfaceConnectivity)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Benchmarks
