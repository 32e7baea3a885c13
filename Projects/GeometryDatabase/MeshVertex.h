#pragma once

#include "MeshEntity.h"

namespace Ovra::Geo
{

/// \brief A mesh node: a point, and the edges, faces and regions that use it (lists 1, 2 and 3).
class OVRA_GEO_EXPORT MeshVertex : public MeshEntity
{
public:
    MeshVertex() = default;
    MeshVertex(const MeshVertex&) = default;            ///< as that of MeshEntity
    MeshVertex& operator=(const MeshVertex&) = default; ///< as that of MeshEntity

    /// \brief Detaches the entity from its parent.
    ~MeshVertex() override;

    int dimension() const override;
    Box boundingBox() const override;
    Vector centroid() const override;
    Vector normal() const override;
    double boundaryArea() const override;
    void clearUpwardAdjacencies() override;

    /// \brief The position.
    Vector point() const { return point_; }

    /// \brief Stores the position.
    void setPoint(const Vector& point) { point_ = point; }

private:
    Vector point_;
};

} // namespace Ovra::Geo
