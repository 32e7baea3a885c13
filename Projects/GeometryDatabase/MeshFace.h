#pragma once

#include "MeshEntity.h"

namespace Ovra::Geo
{

/// \brief A surface element: three vertices (triangle) or four (quadrilateral), in the order in
///        which they follow its boundary.
///
/// Its list 3 is filled with the regions that use all its vertices.
class OVRA_GEO_EXPORT MeshFace : public MeshEntity
{
public:
    MeshFace()
        : MeshEntity(vertices_.block)
    {
    }
    MeshFace(const MeshFace&) = default;            ///< as that of MeshEntity
    MeshFace& operator=(const MeshFace&) = default; ///< as that of MeshEntity

    /// \brief Detaches the entity from its parent.
    ~MeshFace() override;

    int dimension() const override;
    Box boundingBox() const override;
    Vector centroid() const override;

    /// \brief Unit normal of the first three vertices, right-handed about their order; zero if they
    ///        are in line.
    Vector normal() const override;

    /// \brief The area: the triangles of the fan about the first vertex, added by magnitude, so
    ///        that a fan that folds over itself comes out too large.
    double boundaryArea() const override;
    void setUpwardAdjacencies() override;
    void clearUpwardAdjacencies() override;
    void removeFromAdjacencies() override;

private:
    EmbeddedNeighbours<4> vertices_;
};

} // namespace Ovra::Geo
