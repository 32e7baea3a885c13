#pragma once

#include "CaseDifferences.h"
#include "CaseMatch.h"
#include "Closeness.h"
#include "ComparedCase.h"

namespace Ovra::GeoTool
{

/// \brief What all comparisons of two cases share.
struct CasePair
{
    using Owner = EntityName::Owner;

    const ComparedCase& a;
    const ComparedCase& b;
    const CaseMatch& match;
    Closeness closeness;

    /// \brief What is told of the entity at position \p inA of A and \p inB of B; -1 where there is
    ///        none.
    Difference difference(Owner owner, int dimension, int inA, int inB,
                          std::vector<Change> changes = {}) const;
};

} // namespace Ovra::GeoTool
