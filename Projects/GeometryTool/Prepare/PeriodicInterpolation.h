#pragma once

#include "PeriodicTransform.h"
#include "PreparationStep.h"

#include <QMap>

#include <utility>

namespace Ovra::GeoTool
{

/// \brief Ties the vertices of periodic faces to the partner face, anew where they were tied.
class PeriodicInterpolation : public PreparationStep
{
public:
    using PreparationStep::PreparationStep;

    void requireAtStart() const override;
    QString run(Geo::Solver& solver) override;

private:
    using Pair = std::pair<Geo::ModelEntity*, Geo::ModelEntity*>;
    using Pairs = QMap<int, Pair>;

    Pairs pairs() const;
    void requireOneSense(const Pair& pair) const;
    void requirePlane(const Geo::ModelEntity& face) const;
    void requireSearchable(const Pairs& pairs) const;
    Geo::PeriodicTransform rehearse(Geo::Solver& solver, const Pairs& pairs) const;
    void requireUsable(const Pairs& pairs, const Geo::PeriodicTransform& transform) const;
    void requireTies(const Pairs& pairs, const Geo::PeriodicTransform& transform) const;
    QList<Geo::MeshEntity*> verticesOn(const Pairs& pairs) const;
};

} // namespace Ovra::GeoTool
