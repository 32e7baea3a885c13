#pragma once

#include "MeshEntity.h"

namespace Ovra::Geo
{

/// \brief A line element: two vertices, with a direction from the first to the second.
///
/// Its list 2 is filled with the faces that use both vertices.
class OVRA_GEO_EXPORT MeshEdge : public MeshEntity
{
public:
    MeshEdge()
        : MeshEntity(vertices_.block)
    {
    }
    MeshEdge(const MeshEdge&) = default;            ///< as that of MeshEntity
    MeshEdge& operator=(const MeshEdge&) = default; ///< as that of MeshEntity

    /// \brief Detaches the entity from its parent.
    ~MeshEdge() override;

    int dimension() const override;
    Box boundingBox() const override;
    Vector centroid() const override;

    /// \brief The direction turned clockwise by 90 degrees in the xy plane, of unit length; zero
    ///        for an edge along z.
    Vector normal() const override;

    /// \brief The length.
    double boundaryArea() const override;
    void setUpwardAdjacencies() override;
    void clearUpwardAdjacencies() override;
    void removeFromAdjacencies() override;

private:
    EmbeddedNeighbours<2> vertices_;
};

} // namespace Ovra::Geo
