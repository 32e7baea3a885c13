#pragma once

#include "ImportedMesh.h"

namespace Ovra::Geo
{
class Database;
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Makes the model and the mesh of a database from an ImportedMesh.
///
/// Model entities keep their ids. Mesh vertices are numbered from 1 in the order of Gmsh's node
/// tags, mesh edges, faces and regions from 1 in the order of the entities that they lie on.
class MeshTransfer
{
public:
    /// \param database empty; outlives this object
    MeshTransfer(const ImportedMesh& mesh, Geo::Database& database);

    /// \brief Model entities with adjacency, mesh entities with their vertices and parents. The
    /// upward adjacency of the mesh is left to whoever needs it.
    void transfer();

private:
    void addModelEntities(int dimension);
    void addAdjacencies();
    void addMeshVertices();
    void addMeshElements(int dimension);
    Geo::ModelEntity* modelEntity(int dimension, int position) const;

    const ImportedMesh& mesh_;
    Geo::Database& database_;
    std::vector<Geo::MeshEntity*> vertices_;
};

} // namespace Ovra::GeoTool
