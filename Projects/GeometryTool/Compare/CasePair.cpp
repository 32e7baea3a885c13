#include "CasePair.h"

namespace Ovra::GeoTool
{

Difference CasePair::difference(Owner owner, int dimension, int inA, int inB,
                                std::vector<Change> changes) const
{
    Difference difference{{partOf(owner, dimension), {}, {}}, {}, std::move(changes)};
    if (inB >= 0) {
        difference.subject.inB = b.id(owner, dimension, inB);
        difference.place = b.placeOf(owner, dimension, inB);
    }
    if (inA >= 0) {
        difference.subject.inA = a.id(owner, dimension, inA);
        difference.place = a.placeOf(owner, dimension, inA);
    }
    return difference;
}

} // namespace Ovra::GeoTool
