#pragma once

#include "ModelEntity.h"

namespace Ovra::Geo
{

/// \brief A curve of the boundary representation; in a planar model it bounds the domain.
///
/// The geometric numbers are the host's and stored as given; the mesh values are computed from the
/// mesh on the entity and kept, see ModelEntity::meshCentroid().
class OVRA_GEO_EXPORT ModelEdge : public ModelEntity
{
public:
    ModelEdge() = default;
    ModelEdge(const ModelEdge&) = default;            ///< as that of ModelEntity
    ModelEdge& operator=(const ModelEdge&) = default; ///< as that of ModelEntity
    ~ModelEdge() override;

    int dimension() const override;
    Box boundingBox() const override;
    Vector centroid() const override;
    Vector normal() const override;
    bool isPlanar() const override;
    Vector meshCentroid() const override;
    Vector meshNormal() const override;

    /// \brief The stored length.
    double length() const { return length_; }

    /// \brief Stores the length.
    void setLength(double length) { length_ = length; }

    /// \brief Stores the bounding box.
    void setBoundingBox(const Box& boundingBox) { boundingBox_ = boundingBox; }

    /// \brief Stores the centroid.
    void setCentroid(const Vector& centroid) { centroid_ = centroid; }

    /// \brief Stores the normal.
    void setNormal(const Vector& normal) { normal_ = normal; }

    /// \brief Stores whether the entity is planar.
    void setPlanar(bool planar) { planar_ = planar; }

private:
    void computeMeshCentroidAndNormal() const;
    void updateMeshData() const;

    Box boundingBox_;
    double length_ = 0.0;
    Vector centroid_;
    Vector normal_;
    bool planar_ = false;
    mutable Vector meshCentroid_;
    mutable Vector meshNormal_;
    mutable bool meshDataValid_ = false;
};

} // namespace Ovra::Geo
