#pragma once

#include <QList>
#include <QString>

#include <benchmark/benchmark.h>
#include <functional>

/// \file
/// \brief The roads that are compared, and who goes them.

namespace Benchmarks
{

/// \brief Enters the benchmarks of a contender for the mesh of that base path.
using Contender = void (*)(const QString& base);

/// \brief All contenders that were built.
QList<Contender>& contenders();

/// \brief Enters a contender ahead of main.
struct ContenderRegistration
{
    explicit ContenderRegistration(Contender contender) { contenders().append(contender); }
};

/// \brief Enters the benchmark "ROAD/MESH/CONTENDER": one iteration, three repetitions, the
///        processor time of all threads.
/// \param base whose file name is the mesh's
/// \param road where nothing is timed but what stands between ResumeTiming() and PauseTiming(),
///        beginning with the first round
void addRoad(const char* road, const QString& base, const char* contender,
             const std::function<void(benchmark::State&)>& run);

} // namespace Benchmarks
