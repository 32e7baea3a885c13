// Makes a mesh of the comparison: geometry-meshes KIND ELEMENTS BASE writes BASE.geo_model,
// BASE.geo_mesh and, with Gmsh and up to a few million elements, BASE.msh. KIND is S (structured), I
// (structured, with all edges and faces) or D (by Gmsh). geometry-meshes load FILE.msh has Gmsh load a
// file, geometry-meshes save FILE.msh COPY.msh load and write it. Exit codes: 1 for what cannot be done, 3
// if Gmsh is missing for it.

#include "BlockCase.h"
#include "StoredCase.h"
#ifdef OVRA_HAS_GMSH
#include "GmshMesh.h"
#endif

#include <QStringList>

#include <cstdio>

using namespace Ovra::Geo;

namespace
{

enum Exit
{
    Done = 0,
    Failed = 1,
    NoGmsh = 3
};

int makeBlock(bool withInterior, int elements, const QString& base)
{
    Benchmarks::BlockCase block(Benchmarks::BlockCase::cellsFor(elements));
    if (withInterior) {
        block.addInterior();
    }
    if (!Benchmarks::StoredCase::write(base, block.database())) {
        return Failed;
    }
#ifdef OVRA_HAS_GMSH
    constexpr int mostForPeers = 3'000'000;
    if (elements <= mostForPeers) {
        Benchmarks::GmshMesh::write(block.database(), Benchmarks::StoredCase::path(base, ".msh"));
    }
#endif
    return Done;
}

#ifdef OVRA_HAS_GMSH
int makeCube(int elements, const QString& base)
{
    Database database;
    Benchmarks::GmshMesh::makeCube(elements, database, Benchmarks::StoredCase::path(base, ".msh"));
    return Benchmarks::StoredCase::write(base, database) ? Done : Failed;
}

int load(const QString& file)
{
    Benchmarks::GmshMesh::load(file);
    return Done;
}

int save(const QString& file, const QString& copy)
{
    Benchmarks::GmshMesh::save(file, copy);
    return Done;
}
#else
int makeCube(int, const QString&)
{
    return NoGmsh;
}

int load(const QString&)
{
    return NoGmsh;
}

int save(const QString&, const QString&)
{
    return NoGmsh;
}
#endif

int run(const QStringList& arguments)
{
    if (arguments.size() == 2 && arguments[0] == QLatin1String("load")) {
        return load(arguments[1]);
    }
    if (arguments.size() == 3 && arguments[0] == QLatin1String("save")) {
        return save(arguments[1], arguments[2]);
    }
    if (arguments.size() != 3 || !QStringLiteral("SID").contains(arguments[0])) {
        std::fputs("geometry-meshes S|I|D ELEMENTS BASE\ngeometry-meshes load FILE.msh\n"
                   "geometry-meshes save FILE.msh COPY.msh\n",
                   stderr);
        return Failed;
    }
    const int elements = arguments[1].toInt();
    return arguments[0] == QLatin1String("D")
               ? makeCube(elements, arguments[2])
               : makeBlock(arguments[0] == QLatin1String("I"), elements, arguments[2]);
}

} // namespace

int main(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i) {
        arguments.append(QString::fromLocal8Bit(argv[i]));
    }
    return run(arguments);
}
