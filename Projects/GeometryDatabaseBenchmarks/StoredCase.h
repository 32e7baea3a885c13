#pragma once

#include "Database.h"

#include <QDataStream>
#include <QString>

#include <functional>
#include <memory>

/// \file
/// \brief The meshes of the comparison as they lie on disk: BASE.geo_model, BASE.geo_mesh and,
///        where Gmsh is there to write it, BASE.msh.

namespace Benchmarks::StoredCase
{

/// \brief The file of \p base with that \p suffix.
QString path(const QString& base, const char* suffix);

/// \brief Whether that file is there.
bool exists(const QString& base, const char* suffix);

/// \brief A database with the model of \p base, without its mesh.
std::unique_ptr<Ovra::Geo::Database> readModel(const QString& base);

/// \brief Calls read(stream) on the mesh file of \p base.
/// \return whether the stream is sound afterwards
bool readMesh(const QString& base, const std::function<void(QDataStream&)>& read);

/// \brief The database of \p base with its mesh.
std::unique_ptr<Ovra::Geo::Database> read(const QString& base);

/// \brief Writes model and mesh.
/// \return whether all of it could be written
bool write(const QString& base, Ovra::Geo::Database& database);

} // namespace Benchmarks::StoredCase
