#pragma once

#include "CasePair.h"

namespace Ovra::GeoTool
{

class ValueChanges;

/// \brief Compares two models: what they are as a whole, their refinement regions, and the entities
/// that are matched, apart from their neighbours.
class ModelComparison
{
public:
    /// \param pair, differences not owned; must outlive this object
    ModelComparison(const CasePair& pair, CaseDifferences& differences);

    void run() const;

private:
    void compareWhole() const;
    void compareRefinement() const;
    void compareEntities(int dimension) const;
    void tell(DifferenceKind kind, int dimension, int inA, int inB,
              const ValueChanges& changes) const;

    const CasePair& pair_;
    CaseDifferences& differences_;
};

} // namespace Ovra::GeoTool
