#include "WedgeIndirection.h"

#include "Assertion.h"

namespace Ovra::Geo
{

void WedgeIndirection::setIndex(int i)
{
    OVRA_GEO_ASSERT(i >= 0 && i < 6, "i >= 0 && i < 6", "Projects/GeometryDatabase/Solver");
    index_ = i;
}

int WedgeIndirection::at(int indirectIndex) const
{
    OVRA_GEO_ASSERT(indirectIndex >= 0 && indirectIndex < 6,
                    "indirectIndex >= 0 && indirectIndex < 6", "Projects/GeometryDatabase/Solver");
    return table_[index_][indirectIndex];
}

} // namespace Ovra::Geo
