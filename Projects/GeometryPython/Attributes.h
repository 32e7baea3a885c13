#pragma once

#include "CaseState.h"

#include <functional>
#include <string>

namespace Ovra::Geo
{
class AttributeMap;
}

namespace Ovra::GeoPython
{

/// \brief The attributes of something in a case, looked up at every use, as a mapping by tag.
struct Attributes
{
    std::function<Geo::AttributeMap&()> get; ///< throws Gone, or Busy
    std::string owner;
};

/// \brief Adds the class Attributes to \p module.
void bindAttributes(pybind11::module_& module);

} // namespace Ovra::GeoPython
