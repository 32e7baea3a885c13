#pragma once

#include "PreparationStep.h"

namespace Ovra::GeoTool
{

class Progress;

/// \brief Ties the vertices of extruded faces to the partner face, anew where they were tied.
class ExtrudedInterpolation : public PreparationStep
{
public:
    /// \param progress for warnings; must outlive this object
    ExtrudedInterpolation(Geo::Database& database, Progress& progress);

    void requireAtStart() const override;
    QString run(Geo::Solver& solver) override;

private:
    QList<Geo::ModelEntity*> extrudedFaces() const;
    Geo::ModelEntity* partnerOf(const Geo::ModelEntity& face) const;
    QList<Geo::MeshEntity*> verticesOnPairs() const;
    void requireSearchable() const;
    void requireWeights(double tolerance) const;
    qint64 drawCloser(double tolerance) const;
    void warnOfMisses() const;

    Progress& progress_;
};

} // namespace Ovra::GeoTool
