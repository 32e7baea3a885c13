#pragma once

#include "GeometryDatabaseExport.h"

namespace Ovra::Geo
{

class MeshEntity;

/// \brief An unordered pair of mesh entities, such as the ends of a diagonal.
///
/// Owns nothing. Entities are compared by value, see MeshEntity::operator==; both must be set
/// before any comparison.
class OVRA_GEO_EXPORT MeshEntityPair
{
public:
    /// \brief The entity with the smaller id; with equal ids the second.
    MeshEntity* smallest() const;

    /// \brief Whether both pairs hold the same two entities, in whichever order.
    bool operator==(const MeshEntityPair& other) const;

    /// \brief Compares the smallest entities alone: different pairs with the same smallest entity
    ///        are equivalent.
    bool operator<(const MeshEntityPair& other) const;

    /// \brief One entity; not owned.
    MeshEntity* first_ = nullptr;

    /// \brief The other entity; not owned.
    MeshEntity* second_ = nullptr;
};

} // namespace Ovra::Geo
