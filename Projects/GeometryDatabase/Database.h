#pragma once

#include "GeometryDatabaseExport.h"

namespace Ovra::Geo
{

class Mesh;
class Model;

/// \brief Owner of one Model and of the one Mesh that is bound to it; what a host creates first,
///        and what Solver and GbiWriter work on.
///
/// One thread at a time, for all that hangs from it.
class OVRA_GEO_EXPORT Database
{
public:
    /// \brief Creates an empty model, and an empty mesh bound to it.
    Database();

    /// \brief Deletes the mesh, then the model: mesh entities take themselves off their parents.
    ~Database();

    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    /// \brief The model, owned by the database.
    Model* model() const { return model_; }

    /// \brief The mesh, owned by the database.
    Mesh* mesh() const { return mesh_; }

    /// \brief Deletes all entities, the mesh's first; versions, attributes, the model's box and its
    ///        refinement regions stay.
    void clear();

private:
    Model* model_;
    Mesh* mesh_;
};

} // namespace Ovra::Geo
