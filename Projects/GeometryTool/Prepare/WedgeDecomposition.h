#pragma once

#include "PreparationStep.h"

namespace Ovra::GeoTool
{

/// \brief Wedges into tetrahedra, and the quadrilateral mesh faces that lose them into triangles.
///
/// A quadrilateral is cut along the diagonal at its vertex with the smallest id, as the elements
/// behind it are. Its triangles inherit its place in the model and its attributes, the tetrahedra
/// the sense and the attributes of their wedge.
class WedgeDecomposition : public PreparationStep
{
public:
    using PreparationStep::PreparationStep;

    void requireAtStart() const override;
    QString run(Geo::Solver& solver) override;

private:
    void requireConformity(const Geo::MeshEntity& element) const;
    void requireUndoubled(const Geo::MeshEntity& wedge) const;
    QList<Geo::MeshEntity*> elementsWith(int vertexCount) const;
    QList<Geo::MeshEntity*> unlistedTetrahedra() const;
    QList<Geo::MeshEntity*> quadrilateralsAtWedges() const;
    void cut(Geo::MeshEntity* quadrilateral) const;
    void addTriangle(Geo::MeshEntity* quadrilateral, int first, int second, int third) const;
};

} // namespace Ovra::GeoTool
