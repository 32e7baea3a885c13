#pragma once

#include <QByteArray>
#include <QString>

#include <benchmark/benchmark.h>
#include <functional>

/// \file
/// \brief The floors that the figures stand on, measured in the same run, and the counters made of
/// them.

namespace Benchmarks
{

class BlockCase;

/// \brief Seconds of processor time, of all threads, that \p work takes.
double processorSeconds(const std::function<void()>& work);

/// \brief Seconds of processor time of the fastest of a few runs of \p work.
double fastest(const std::function<void()>& work);

/// \brief Seconds that a plain read of the file into memory takes.
double plainReadSeconds(const QString& path);

/// \brief Seconds that a plain write of \p size bytes to a device in memory takes.
double plainWriteSeconds(qsizetype size);

/// \brief Seconds that allocating the same mesh entities with the same vertex lists takes, and
/// nothing
///        else: no table, no classification.
double allocationSeconds(BlockCase& block);

/// \brief Bytes that the process has allocated at present.
qint64 allocatedBytes();

/// \brief Adds a counter that tells how many times as long as \p floorSeconds an iteration takes.
void addRatio(benchmark::State& state, const char* name, double floorSeconds);

/// \brief Adds the rates that every benchmark reports.
/// \param entities entities treated in one iteration
/// \param bytes    bytes read or written in one iteration; 0 where none are
void addRates(benchmark::State& state, qint64 entities, qint64 bytes = 0);

} // namespace Benchmarks
