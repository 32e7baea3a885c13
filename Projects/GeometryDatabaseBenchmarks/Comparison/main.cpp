// Compares the library with its twin and its peers on stored meshes: the arguments are their base
// paths, besides those of Google Benchmark.

#include "Contender.h"

#include <QFileInfo>

namespace Benchmarks
{

namespace
{
constexpr int repetitions = 3;
}

QList<Contender>& contenders()
{
    static QList<Contender> all;
    return all;
}

void addRoad(const char* road, const QString& base, const char* contender,
             const std::function<void(benchmark::State&)>& run)
{
    const QString name = QStringLiteral("%1/%2/%3")
                             .arg(QString::fromLatin1(road), QFileInfo(base).fileName(),
                                  QString::fromLatin1(contender));
    benchmark::RegisterBenchmark(name.toUtf8().constData(), run)
        ->Iterations(1)
        ->Repetitions(repetitions)
        ->MeasureProcessCPUTime()
        ->Unit(benchmark::kMillisecond);
}

} // namespace Benchmarks

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        for (const Benchmarks::Contender contender : Benchmarks::contenders()) {
            contender(QString::fromLocal8Bit(argv[i]));
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
