#pragma once

#include "PreparationStep.h"

namespace Ovra::GeoTool
{

/// \brief Closes the gaps in the ids of the mesh entities of all dimensions.
class MeshRenumbering : public PreparationStep
{
public:
    using PreparationStep::PreparationStep;

    QString run(Geo::Solver& solver) override;

private:
    QString renumber(int dimension);
};

} // namespace Ovra::GeoTool
