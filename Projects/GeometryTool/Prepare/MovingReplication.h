#pragma once

#include "PreparationStep.h"

namespace Ovra::GeoTool
{

/// \brief Doubles each moving region: a replica that moves, and the fluid that it moves through.
class MovingReplication : public PreparationStep
{
public:
    using PreparationStep::PreparationStep;

    void requireAtStart() const override;
    QString run(Geo::Solver& solver) override;

private:
    QList<Geo::ModelEntity*> movingRegions() const;
    void requireUnsplit(const Geo::ModelEntity& region) const;
    void requireStillFluid(Geo::ModelEntity& region) const;
    void describeReplicas(const QList<Geo::ModelEntity*>& originals) const;
};

} // namespace Ovra::GeoTool
