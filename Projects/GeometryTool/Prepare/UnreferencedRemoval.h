#pragma once

#include "PreparationStep.h"

#include <QHash>
#include <QSet>

namespace Ovra::GeoTool
{

/// \brief Removes mesh entities that nothing of a higher dimension uses, and keeps the surfaces of
///        devices without mesh whole.
///
/// The library keeps such a surface, but judges its vertices by their own place in the model: one
/// that stands on a model edge or nowhere goes, and the mesh face keeps a dead pointer. For the
/// time of the removal such vertices stand on the surface.
class UnreferencedRemoval : public PreparationStep
{
public:
    using PreparationStep::PreparationStep;

    QString run(Geo::Solver& solver) override;

private:
    using Shelters = QHash<Geo::MeshEntity*, Geo::ModelEntity*>;

    bool isNearDevice(const Geo::MeshEntity& entity) const;
    QSet<Geo::MeshEntity*> doomedFaces() const;
    QList<Geo::MeshEntity*> doomedVertices() const;
    Shelters sheltersFor(const QList<Geo::MeshEntity*>& vertices) const;
    void requireUnnamed(const QList<Geo::MeshEntity*>& vertices) const;
};

} // namespace Ovra::GeoTool
