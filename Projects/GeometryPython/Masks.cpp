#include "Masks.h"

#include <algorithm>

namespace Ovra::GeoPython
{

namespace py = pybind11;

namespace
{

/// Looked up once and never let go, as it is asked of every item of a list.
py::object& maskedArrayClass()
{
    static auto* const found = new py::object(py::module_::import("numpy.ma").attr("MaskedArray"));
    return *found;
}

} // namespace

bool Masks::isMaskedArray(const py::handle& object)
{
    return py::isinstance(object, maskedArrayClass());
}

bool Masks::isMasked(const py::handle& object)
{
    return isMaskedArray(object) &&
           py::module_::import("numpy.ma").attr("is_masked")(object).cast<bool>();
}

void Masks::requireNone(const py::object& object, const std::string& what)
{
    const bool hasItems = py::isinstance<py::list>(object) || py::isinstance<py::tuple>(object);
    const bool isMaskedWithin =
        hasItems && std::any_of(py::iter(object), py::iterator::sentinel(),
                                [](const py::handle& item) { return isMasked(item); });
    if (isMaskedWithin || isMasked(object)) {
        throw py::type_error(what + " of a masked array are not all known; give its compressed()");
    }
}

} // namespace Ovra::GeoPython
