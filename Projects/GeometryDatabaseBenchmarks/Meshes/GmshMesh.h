#pragma once

#include <QString>

namespace Ovra::Geo
{
class Database;
} // namespace Ovra::Geo

/// \file
/// \brief Meshes to and from Gmsh.

namespace Benchmarks::GmshMesh
{

/// \brief Makes a cube of about \p elements tetrahedra by Gmsh's HXT, on one thread, and fills the
///        empty \p database with it: vertices numbered as the mesher left them, everything
///        classified on the 8 vertices, 12 edges, 6 faces and the region of the cube.
/// \param msh where Gmsh writes the same mesh as binary .msh 4.1
void makeCube(int elements, Ovra::Geo::Database& database, const QString& msh);

/// \brief Has Gmsh write the mesh of \p database as binary .msh 4.1.
/// \pre the mesh has edges, triangles and tetrahedra, each classified on an entity of its own
///      dimension or on none
void write(Ovra::Geo::Database& database, const QString& msh);

/// \brief Has Gmsh load a file, and nothing else.
void load(const QString& msh);

/// \brief Has Gmsh load a file and write the mesh as binary .msh 4.1, and nothing else.
void save(const QString& msh, const QString& copy);

} // namespace Benchmarks::GmshMesh
