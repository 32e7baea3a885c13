// Gmsh, on the same mesh as binary .msh 4.1.

#include "Contender.h"
#include "StoredCase.h"

#include <QTemporaryDir>

#include <gmsh.h>

namespace Benchmarks
{

namespace
{

void initialize()
{
    static bool isInitialized = false;
    if (!isInitialized) {
        isInitialized = true;
        gmsh::initialize();
        gmsh::option::setNumber("General.Terminal", 0);
        gmsh::option::setNumber("Mesh.Binary", 1);
        gmsh::option::setNumber("Mesh.MshFileVersion", 4.1);
        gmsh::option::setNumber("Mesh.SaveAll", 1);
    }
}

void load(const QString& base)
{
    gmsh::open(StoredCase::path(base, ".msh").toStdString());
}

void read(benchmark::State& state, const QString& base)
{
    initialize();
    for (auto _ : state) {
        state.PauseTiming();
        gmsh::clear();
        state.ResumeTiming();
        load(base);
    }
    gmsh::clear();
}

void write(benchmark::State& state, const QString& base)
{
    initialize();
    load(base);
    const QTemporaryDir directory;
    for (auto _ : state) {
        gmsh::write(directory.filePath(QStringLiteral("mesh.msh")).toStdString());
    }
    gmsh::clear();
}

const ContenderRegistration registration([](const QString& base) {
    if (StoredCase::exists(base, ".msh")) {
        addRoad("Read", base, "Gmsh", [base](benchmark::State& state) { read(state, base); });
        addRoad("Write", base, "Gmsh", [base](benchmark::State& state) { write(state, base); });
    }
});

} // namespace

} // namespace Benchmarks
