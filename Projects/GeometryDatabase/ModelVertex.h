#pragma once

#include "ModelEntity.h"

namespace Ovra::Geo
{

/// \brief A corner of the boundary representation: a point.
class OVRA_GEO_EXPORT ModelVertex : public ModelEntity
{
public:
    ModelVertex() = default;
    ModelVertex(const ModelVertex&) = default;            ///< as that of ModelEntity
    ModelVertex& operator=(const ModelVertex&) = default; ///< as that of ModelEntity
    ~ModelVertex() override;

    int dimension() const override;
    Box boundingBox() const override;
    Vector centroid() const override;
    Vector normal() const override;
    bool isPlanar() const override;
    Vector meshCentroid() const override;
    Vector meshNormal() const override;

    /// \brief The position.
    Vector point() const { return point_; }

    /// \brief Stores the position.
    void setPoint(const Vector& point) { point_ = point; }

private:
    Vector point_;
};

} // namespace Ovra::Geo
