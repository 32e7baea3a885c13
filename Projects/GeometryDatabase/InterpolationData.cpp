#include "InterpolationData.h"

namespace Ovra::Geo
{

QVariantList InterpolationData::weightList() const
{
    if (entityType == 0) {
        return {1.0};
    }
    QVariantList list;
    list.reserve(weights.size());
    for (double weight : weights) {
        list.append(weight);
    }
    return list;
}

} // namespace Ovra::Geo
