#include "MeshEntityPair.h"

#include "MeshEntity.h"

namespace Ovra::Geo
{

MeshEntity* MeshEntityPair::smallest() const
{
    return *first_ < *second_ ? first_ : second_;
}

bool MeshEntityPair::operator==(const MeshEntityPair& other) const
{
    return (*first_ == *other.first_ && *second_ == *other.second_) ||
           (*first_ == *other.second_ && *second_ == *other.first_);
}

bool MeshEntityPair::operator<(const MeshEntityPair& other) const
{
    return *smallest() < *other.smallest();
}

} // namespace Ovra::Geo
