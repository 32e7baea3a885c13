#pragma once

#include "ModelEntity.h"

namespace Ovra::Geo
{

/// \brief A surface of the boundary representation; in a planar model it is a domain.
///
/// The geometric numbers are the host's and stored as given; the mesh values are computed from the
/// mesh on the entity and kept, see ModelEntity::meshCentroid().
class OVRA_GEO_EXPORT ModelFace : public ModelEntity
{
public:
    ModelFace() = default;
    ModelFace(const ModelFace&) = default;            ///< as that of ModelEntity
    ModelFace& operator=(const ModelFace&) = default; ///< as that of ModelEntity
    ~ModelFace() override;

    int dimension() const override;
    Box boundingBox() const override;
    Vector centroid() const override;
    Vector normal() const override;
    bool isPlanar() const override;
    Vector meshCentroid() const override;
    Vector meshNormal() const override;

    /// \brief The stored area.
    double area() const { return area_; }

    /// \brief Stores the area.
    void setArea(double area) { area_ = area; }

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
    double area_ = 0.0;
    Vector centroid_;
    Vector normal_;
    bool planar_ = false;
    mutable Vector meshCentroid_;
    mutable Vector meshNormal_;
    mutable bool meshDataValid_ = false;
};

} // namespace Ovra::Geo
