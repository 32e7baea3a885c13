// Derived adjacency and ids.

#include "BlockCase.h"
#include "Floors.h"
#include "Mesh.h"

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

void BM_SetUpwardAdjacencies(benchmark::State& state)
{
    BlockCase& block = sharedBlock(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        block.mesh().clearUpwardAdjacencies();
        const qint64 before = allocatedBytes();
        state.ResumeTiming();
        block.mesh().setUpwardAdjacencies();
        state.counters["memory_per_element"] =
            static_cast<double>(allocatedBytes() - before) / block.elements();
    }
    addRates(state, block.entities());
    addRatio(state, "x_allocation", allocationSeconds(block));
}
BENCHMARK(BM_SetUpwardAdjacencies)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);

void BM_Renumber(benchmark::State& state)
{
    const int dimension = static_cast<int>(state.range(0));
    const int cells = BlockCase::cellsFor(static_cast<int>(state.range(1)));
    int count = 0;
    double floor = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto block = std::make_unique<BlockCase>(cells, Filling::Tetrahedra, 2);
        count = block->mesh().count(dimension);
        state.ResumeTiming();
        block->mesh().renumber(dimension);
        state.PauseTiming();
        floor = floor > 0 ? floor : allocationSeconds(*block);
        block.reset();
        state.ResumeTiming();
    }
    addRates(state, count);
    addRatio(state, "x_allocation", floor);
}
BENCHMARK(BM_Renumber)
    ->ArgsProduct({{0, 3}, {100'000, 1'000'000}})
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

void BM_MeshMemory(benchmark::State& state)
{
    const int cells = BlockCase::cellsFor(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const qint64 before = allocatedBytes();
        BlockCase block(cells);
        const double elements = block.elements();
        state.counters["memory_per_element"] =
            static_cast<double>(allocatedBytes() - before) / elements;
        block.mesh().setUpwardAdjacencies();
        state.counters["with_upward_lists"] =
            static_cast<double>(allocatedBytes() - before) / elements;
    }
}
BENCHMARK(BM_MeshMemory)
    ->Arg(100'000)
    ->Arg(1'000'000)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Benchmarks
