#pragma once

#include "FaceDoubling.h"

namespace Ovra::GeoTool
{

/// \brief Doubles the model faces between fluid and anything else, and classifies the vertices of
///        new surfaces that have no elements behind them, those of devices without mesh.
class FluidSolidSplit : public FaceDoubling
{
public:
    using FaceDoubling::FaceDoubling;

    QString run(Geo::Solver& solver) override;

private:
    void require() const;
    void requireFace(Geo::ModelEntity& face) const;
    void requireOther(Geo::ModelEntity& face, Geo::ModelEntity& fluid,
                      Geo::ModelEntity& other) const;
    void requireTwoSides(const Geo::MeshEntity& meshFace, const Geo::ModelEntity& fluid,
                         const Geo::ModelEntity& other) const;
    void settle(Geo::ModelEntity& face) const override;
};

} // namespace Ovra::GeoTool
