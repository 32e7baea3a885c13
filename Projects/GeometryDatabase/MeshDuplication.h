#pragma once

#include <functional>

namespace Ovra::Geo
{

class Mesh;
class MeshEntity;
class MeshVertex;
class ModelEntity;
class VertexMap;

/// \brief What the operations of Solver that double parts of a mesh have in common.
///
/// Each operation keeps its own rules on what is doubled and which side takes the copies.
class MeshDuplication
{
public:
    using VertexCopier = std::function<MeshVertex*(MeshVertex*)>; ///< gives the copy of a vertex
    using RegionTest = std::function<bool(ModelEntity*)>; ///< whether a rule holds for a region

    /// \brief Adds to \p mesh a vertex at the point of \p vertex, without parent, attributes and
    ///        adjacencies.
    static MeshVertex* addVertexCopy(Mesh* mesh, const MeshVertex* vertex);

    /// \brief Adds to \p mesh an entity like \p source, classified on \p parent, and links it with
    ///        its vertices in both directions.
    /// \param mesh,source,parent,copyOf the last gives the copy of each vertex, asked in list order
    static MeshEntity* addEntityCopy(Mesh* mesh, MeshEntity* source, ModelEntity* parent,
                                     const VertexCopier& copyOf);

    /// \brief The last element in the list of \p meshFace that is not classified on \p region, or
    ///        null.
    static MeshEntity* lastElementOutside(MeshEntity* meshFace, const ModelEntity* region);

    /// \brief Puts the elements and mesh faces of one side onto the copies of their vertices.
    ///
    /// That side's elements are those of the regions that \p takesCopies holds for; its mesh faces
    /// are those on a model face that touches such a region with a mesh.
    ///
    /// \param copies        from each vertex to its copy
    /// \param faceDimension the dimension of the mesh faces
    /// \param takesCopies   asked once for each region that stands at the vertices
    static void moveToCopies(const VertexMap& copies, int faceDimension,
                             const RegionTest& takesCopies);

    MeshDuplication() = delete;
};

} // namespace Ovra::Geo
