#include "Floors.h"

#include "BlockCase.h"
#include "Mesh.h"
#include "MeshVertex.h"

#include <QBuffer>
#include <QFile>

#include <algorithm>
#include <limits>
#include <malloc.h>
#include <time.h>
#include <vector>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

constexpr int floorRuns = 5;

double now()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    constexpr double nanosecond = 1e-9;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * nanosecond;
}

MeshEntity* allocateLike(MeshEntity* entity)
{
    MeshEntity* copy = MeshEntity::create(entity->dimension());
    for (auto i = entity->adjacencyIterator(0); i.hasNext();) {
        copy->addAdjacency(i.next());
    }
    return copy;
}

} // namespace

double processorSeconds(const std::function<void()>& work)
{
    const double start = now();
    work();
    return now() - start;
}

double fastest(const std::function<void()>& work)
{
    double best = std::numeric_limits<double>::max();
    for (int run = 0; run < floorRuns; ++run) {
        best = std::min(best, processorSeconds(work));
    }
    return best;
}

double plainReadSeconds(const QString& path)
{
    return fastest([&path] {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly)) {
            benchmark::DoNotOptimize(file.readAll());
        }
    });
}

double plainWriteSeconds(qsizetype size)
{
    const QByteArray bytes(size, 'x');
    return fastest([&bytes] {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        benchmark::DoNotOptimize(buffer.write(bytes));
    });
}

double allocationSeconds(BlockCase& block)
{
    double best = std::numeric_limits<double>::max();
    for (int run = 0; run < floorRuns; ++run) {
        // A walk in id order before the clock starts, so that only the allocations are timed.
        std::vector<MeshEntity*> originals;
        for (int dimension = 0; dimension < 4; ++dimension) {
            for (auto i = block.mesh().orderedIterator(dimension); i.hasNext();) {
                originals.push_back(i.next());
            }
        }
        std::vector<MeshEntity*> copies;
        copies.reserve(originals.size());
        best = std::min(best, processorSeconds([&] {
                            for (MeshEntity* entity : originals) {
                                copies.push_back(allocateLike(entity));
                            }
                        }));
        std::for_each(copies.begin(), copies.end(), [](MeshEntity* entity) { delete entity; });
    }
    return best;
}

qint64 allocatedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<qint64>(info.uordblks + info.hblkhd);
}

void addRatio(benchmark::State& state, const char* name, double floorSeconds)
{
    using benchmark::Counter;
    state.counters[name] =
        Counter(floorSeconds, Counter::kIsIterationInvariantRate | Counter::kInvert);
}

void addRates(benchmark::State& state, qint64 entities, qint64 bytes)
{
    const auto iterations = static_cast<qint64>(state.iterations());
    state.SetItemsProcessed(iterations * entities);
    if (bytes > 0) {
        state.SetBytesProcessed(iterations * bytes);
    }
}

} // namespace Benchmarks
