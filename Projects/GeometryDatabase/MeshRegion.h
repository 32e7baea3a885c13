#pragma once

#include "MeshEntity.h"

namespace Ovra::Geo
{

/// \brief A volume element: 4 vertices (tetrahedron), 5 (pyramid), 6 (wedge) or 8 (hexahedron), in
///        the node order that Utility shows.
class OVRA_GEO_EXPORT MeshRegion : public MeshEntity
{
public:
    MeshRegion()
        : MeshEntity(vertices_.block)
    {
    }
    MeshRegion(const MeshRegion&) = default;            ///< as that of MeshEntity
    MeshRegion& operator=(const MeshRegion&) = default; ///< as that of MeshEntity

    /// \brief Detaches the entity from its parent.
    ~MeshRegion() override;

    int dimension() const override;
    Box boundingBox() const override;
    Vector centroid() const override;
    Vector normal() const override;

    /// \brief The sum over the faces in the own list 2, which is empty, and the sum 0, in a mesh
    ///        that was read or built in the usual way: regions do not list their faces.
    double boundaryArea() const override;
    void removeFromAdjacencies() override;

private:
    EmbeddedNeighbours<4> vertices_;
};

} // namespace Ovra::Geo
