// The operations of the solver preparation; the fit against n log n stands in the lines named _BigO.

#include "Additions.h"
#include "AttributeType.h"
#include "BlockCase.h"
#include "FacePair.h"
#include "Floors.h"
#include "Solver.h"

#include <QLoggingCategory>
#include <QVariant>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

using Change = void (*)(BlockCase&);

// The progress texts are part of the operations, but not a terminal that shows them.
void silence()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
}

void setMaterial(BlockCase& block, int region, const char* type)
{
    block.model().entity(3, region)->attributes().insert(AttributeType::MaterialType,
                                                         QString::fromLatin1(type));
}

std::unique_ptr<BlockCase> preparedBlock(int cells, Filling filling, Change prepare)
{
    auto block = std::make_unique<BlockCase>(cells, filling);
    block->mesh().setUpwardAdjacencies();
    prepare(*block);
    return block;
}

/// What it takes to make and link what the operation has added, as counters.
void addFloor(benchmark::State& state, BlockCase& before, BlockCase& after)
{
    Additions additions(before.database(), after.database());
    state.counters["added"] = additions.count();
    if (additions.count() > 0) {
        const double floor = additions.make(before.database());
        state.counters["floor_seconds"] = floor;
        addRatio(state, "x_making_and_linking", floor);
    }
}

void measure(benchmark::State& state, Filling filling, Change prepare, Change operate)
{
    silence();
    const int cells = BlockCase::cellsFor(static_cast<int>(state.range(0)), filling);
    const auto before = preparedBlock(cells, filling, prepare);
    const auto after = preparedBlock(cells, filling, prepare);
    for (auto _ : state) {
        operate(*after);
    }
    addRates(state, before->elements());
    state.SetComplexityN(before->elements());
    addRatio(state, "x_allocation", allocationSeconds(*before));
    addFloor(state, *before, *after);
}

// One iteration, as each changes its case.
void sizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(30'000)->Arg(100'000)->Arg(300'000)->Arg(1'000'000);
    benchmark->Iterations(1)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);
}

void BM_SplitFluidSolidFaces(benchmark::State& state)
{
    measure(
        state, Filling::Tetrahedra, [](BlockCase&) {},
        [](BlockCase& block) { Solver(&block.database()).splitFluidSolidFaces(); });
}
BENCHMARK(BM_SplitFluidSolidFaces)->Apply(sizes);

void BM_ReplicateMovingRegions(benchmark::State& state)
{
    measure(
        state, Filling::Tetrahedra,
        [](BlockCase& block) {
            block.model().entity(3, 2)->attributes().insert(AttributeType::MotionType, 1);
        },
        [](BlockCase& block) { Solver(&block.database()).replicateMovingRegions(); });
}
BENCHMARK(BM_ReplicateMovingRegions)->Apply(sizes);

void BM_AddPeripheralFaces(benchmark::State& state)
{
    measure(
        state, Filling::Tetrahedra,
        [](BlockCase& block) { setMaterial(block, 2, "rotating_device"); },
        [](BlockCase& block) { Solver(&block.database()).addPeripheralFaces(); });
}
BENCHMARK(BM_AddPeripheralFaces)->Apply(sizes);

void BM_DecomposeWedgesToTets(benchmark::State& state)
{
    measure(
        state, Filling::Wedges, [](BlockCase&) {},
        [](BlockCase& block) { Solver(&block.database()).decomposeWedgesToTets(); });
}
BENCHMARK(BM_DecomposeWedgesToTets)->Apply(sizes);

// Half of the elements go first, so that half of the faces and vertices are left over.
void removeSolidElements(BlockCase& block)
{
    QList<MeshEntity*> elements;
    for (auto i = block.model().entity(3, 2)->childIterator(); i.hasNext();) {
        i.next();
        elements.append(i.value());
    }
    for (MeshEntity* element : std::as_const(elements)) {
        block.mesh().remove(element);
    }
}

void BM_RemoveUnreferencedMeshEntities(benchmark::State& state)
{
    measure(state, Filling::Tetrahedra, removeSolidElements,
            [](BlockCase& block) { Solver(&block.database()).removeUnreferencedMeshEntities(); });
}
BENCHMARK(BM_RemoveUnreferencedMeshEntities)->Apply(sizes);

using PairChange = void (*)(FacePair&);

void measurePair(benchmark::State& state, double height, PairChange prepare, PairChange operate)
{
    silence();
    const int vertices = static_cast<int>(state.range(0));
    int count = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto pair = std::make_unique<FacePair>(vertices, height);
        prepare(*pair);
        count = pair->mesh().count(0);
        state.ResumeTiming();
        operate(*pair);
        state.PauseTiming();
        pair.reset();
        state.ResumeTiming();
    }
    addRates(state, count);
    state.SetComplexityN(count);
}

void sideSizes(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Arg(10'000)->Arg(30'000)->Arg(100'000);
    benchmark->Iterations(1)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oNLogN);
}

void BM_InterpolatePeriodicFaces(benchmark::State& state)
{
    measurePair(
        state, 1.0,
        [](FacePair& pair) {
            for (int side : {1, 2}) {
                AttributeMap& attributes = pair.model().entity(2, side)->attributes();
                attributes.insert(AttributeType::PeriodicPairId, 1);
                attributes.insert(AttributeType::PeriodicSideId, side);
            }
        },
        [](FacePair& pair) { Solver(&pair.database()).interpolatePeriodicFaces(); });
}
BENCHMARK(BM_InterpolatePeriodicFaces)->Apply(sideSizes);

void BM_InterpolateExtrudedFaces(benchmark::State& state)
{
    measurePair(
        state, 0.0,
        [](FacePair& pair) {
            pair.model().entity(2, 1)->attributes().insert(AttributeType::ExtrudedFace, 2);
        },
        [](FacePair& pair) { Solver(&pair.database()).interpolateExtrudedFaces(); });
}
BENCHMARK(BM_InterpolateExtrudedFaces)->Apply(sideSizes);

} // namespace

} // namespace Benchmarks
