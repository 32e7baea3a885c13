#pragma once

#include "FaceDoubling.h"

namespace Ovra::GeoTool
{

/// \brief Doubles the faces between rotating devices and the meshed fluid about them.
class PeripheralDoubling : public FaceDoubling
{
public:
    using FaceDoubling::FaceDoubling;

    void requireAtStart() const override;
    QString run(Geo::Solver& solver) override;

private:
    QList<Geo::ModelEntity*> devices() const;
    QList<Geo::ModelEntity*> peripheralFaces(const Geo::ModelEntity& device) const;
    Sides sides() const;
    void require(const Geo::ModelEntity& device) const;
    void requireTwoSides(const Geo::ModelEntity& device, const Geo::ModelEntity& face) const;
    void requireFreeRim(const Geo::ModelEntity& device, const Geo::ModelEntity& face) const;
    void requireOneSide(const Geo::ModelEntity& device, const Geo::MeshEntity& vertex) const;
};

} // namespace Ovra::GeoTool
