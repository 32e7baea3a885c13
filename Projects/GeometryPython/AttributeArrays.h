#pragma once

#include "AttributeType.h"

#include <QVariant>

#include <pybind11/numpy.h>
#include <vector>

namespace Ovra::Geo
{
class AttributeMap;
}

namespace Ovra::GeoPython::AttributeArrays
{

/// \brief The values of \p type in \p maps as an array, int64, float64 or bool, and one that tells
///        which of them are missing.
///
/// Where the type's values are not fixed, they are int64 if all are integers. Throws TypeError for
/// values that are no numbers.
pybind11::tuple values(const std::vector<const Geo::AttributeMap*>& maps,
                       const Geo::AttributeType& type);

/// \brief Sets \p type in all of \p maps.
/// \param object one value for all, or a sequence of one for each; for attributes that are lists
///        themselves, such as a vector, a sequence of these
void set(const std::vector<Geo::AttributeMap*>& maps, const Geo::AttributeType& type,
         const pybind11::object& object);

} // namespace Ovra::GeoPython::AttributeArrays
