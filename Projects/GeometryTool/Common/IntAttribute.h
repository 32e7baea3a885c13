#pragma once

#include "AttributeMap.h"

#include <QVariant>

namespace Ovra::GeoTool
{

/// \brief The integer in an attribute as the library reads it: \p otherwise if there is none.
inline int intOf(const Geo::AttributeMap& attributes, const Geo::AttributeType& type,
                 int otherwise = 0)
{
    return attributes.value(type, otherwise).toInt();
}

} // namespace Ovra::GeoTool
