#pragma once

#include "Contender.h"
#include "StoredCase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>

#include <map>

namespace Benchmarks
{

/// \brief The roads that the library and its twin both go, entered by addMeshRoads().
///
/// \tparam Side made of a base path, with the model read and the mesh empty; it has read(), write(),
///         setUpwardAdjacencies(), clearUpwardAdjacencies(), writeText() and clear()
template <typename Side>
class MeshRoads
{
public:
    static void read(benchmark::State& state, const QString& base)
    {
        for (auto _ : state) {
            state.PauseTiming();
            auto side = std::make_unique<Side>(base);
            state.ResumeTiming();
            const bool isRead = readMesh(base, *side);
            state.PauseTiming();
            if (!isRead) {
                state.SkipWithError("the mesh could not be read");
            }
            side.reset();
            state.ResumeTiming();
        }
    }

    static void clear(benchmark::State& state, const QString& base)
    {
        for (auto _ : state) {
            state.PauseTiming();
            Side side(base);
            readMesh(base, side);
            state.ResumeTiming();
            side.clear();
        }
    }

    static void write(benchmark::State& state, const QString& base)
    {
        Side& side = sharedMesh(base);
        toFile(state, [&side](QFile& file) {
            QDataStream stream(&file);
            side.write(stream);
        });
    }

    static void text(benchmark::State& state, const QString& base)
    {
        Side& side = sharedMesh(base);
        toFile(state, [&side](QFile& file) {
            QTextStream stream(&file);
            side.writeText(stream);
        });
    }

    static void upwardLists(benchmark::State& state, const QString& base)
    {
        Side& side = sharedMesh(base);
        for (auto _ : state) {
            state.PauseTiming();
            side.clearUpwardAdjacencies();
            state.ResumeTiming();
            side.setUpwardAdjacencies();
        }
    }

private:
    template <typename Write>
    static void toFile(benchmark::State& state, Write write)
    {
        const QTemporaryDir directory;
        QFile file(directory.filePath(QStringLiteral("file")));
        for (auto _ : state) {
            if (!file.open(QIODevice::WriteOnly)) {
                state.SkipWithError("the file could not be opened");
            }
            write(file);
            file.close();
        }
        state.counters["bytes"] = static_cast<double>(file.size());
    }

    static bool readMesh(const QString& base, Side& side)
    {
        return StoredCase::readMesh(base, [&](QDataStream& stream) { side.read(stream); });
    }

    // One for the roads that leave it as it is.
    static Side& sharedMesh(const QString& base)
    {
        static std::map<QString, std::unique_ptr<Side>> sides;
        std::unique_ptr<Side>& side = sides[base];
        if (!side) {
            side = std::make_unique<Side>(base);
            readMesh(base, *side);
        }
        return *side;
    }
};

/// \brief Enters all roads of MeshRoads.
template <typename Side>
void addMeshRoads(const QString& base, const char* contender)
{
    using Roads = MeshRoads<Side>;
    const auto add = [&](const char* road, void (*run)(benchmark::State&, const QString&)) {
        addRoad(road, base, contender, [run, base](benchmark::State& state) { run(state, base); });
    };
    add("Read", &Roads::read);
    add("Clear", &Roads::clear);
    add("Write", &Roads::write);
    add("Text", &Roads::text);
    add("UpwardLists", &Roads::upwardLists);
}

} // namespace Benchmarks
