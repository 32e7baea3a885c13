#pragma once

#include "ComparedCase.h"
#include "EntityMatch.h"

#include <array>

namespace Ovra::GeoTool
{

/// \brief Which entity of a case B stands for which of a case A.
struct CaseMatch
{
    using Owner = EntityName::Owner;

    /// \brief Nothing is matched yet.
    CaseMatch(const ComparedCase& a, const ComparedCase& b);

    /// \brief Entities of the same id.
    static CaseMatch byId(const ComparedCase& a, const ComparedCase& b);

    EntityMatch& of(Owner owner, int dimension);
    const EntityMatch& of(Owner owner, int dimension) const;

    /// \brief Whether \p b is what stands for \p a, or both are none.
    bool areMatched(Owner owner, const EntityPosition& a, const EntityPosition& b) const;

    bool isByPlace = false; ///< whether the same id means nothing

private:
    std::array<EntityMatch, 4> model_;
    std::array<EntityMatch, 4> mesh_;
};

} // namespace Ovra::GeoTool
