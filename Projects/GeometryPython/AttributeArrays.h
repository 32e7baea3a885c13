#pragma once

#include "AttributeType.h"

#include <QVariant>

#include <pybind11/numpy.h>
#include <variant>
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

/// \brief Values for many entities, all converted ahead of the first that is set: what converts may run
///        any Python, which may remove the entities.
class Values
{
public:
    /// \param object one value for all, or a sequence of one for each; for attributes that are lists
    ///        themselves, such as a vector, a sequence of these
    Values(const pybind11::object& object, const Geo::AttributeType& type);

    /// \brief Sets them in \p maps; throws ValueError if they are not as many.
    void setIn(const std::vector<Geo::AttributeMap*>& maps) const;

private:
    using Wholes =
        pybind11::array_t<qlonglong, pybind11::array::c_style | pybind11::array::forcecast>;
    using Reals = pybind11::array_t<double, pybind11::array::c_style | pybind11::array::forcecast>;
    using Truths = pybind11::array_t<bool, pybind11::array::c_style | pybind11::array::forcecast>;

    bool takeArray(const pybind11::object& object);

    Geo::AttributeType type_;
    std::variant<QVariant, std::vector<QVariant>, Wholes, Reals, Truths> values_;
};

} // namespace Ovra::GeoPython::AttributeArrays
