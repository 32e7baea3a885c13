#pragma once

#include "ModelEntity.h"

namespace Ovra::Geo
{

/// \brief A volume of the boundary representation.
///
/// The geometric numbers are the host's and stored as given; the mesh values are computed from the
/// mesh on the entity and kept, see ModelEntity::meshCentroid().
class OVRA_GEO_EXPORT ModelRegion : public ModelEntity
{
public:
    ModelRegion() = default;
    ModelRegion(const ModelRegion&) = default;            ///< as that of ModelEntity
    ModelRegion& operator=(const ModelRegion&) = default; ///< as that of ModelEntity
    ~ModelRegion() override;

    int dimension() const override;
    Box boundingBox() const override;
    Vector centroid() const override;
    Vector normal() const override;
    bool isPlanar() const override;
    Vector meshCentroid() const override;
    Vector meshNormal() const override;

    /// \brief The stored volume.
    double volume() const { return volume_; }

    /// \brief Stores the volume.
    void setVolume(double volume) { volume_ = volume; }

    /// \brief Stores the bounding box.
    void setBoundingBox(const Box& boundingBox) { boundingBox_ = boundingBox; }

    /// \brief Stores the centroid.
    void setCentroid(const Vector& centroid) { centroid_ = centroid; }

private:
    Box boundingBox_;
    double volume_ = 0.0;
    Vector centroid_;
    mutable Vector meshCentroid_;
    mutable bool meshDataValid_ = false;
};

} // namespace Ovra::Geo
