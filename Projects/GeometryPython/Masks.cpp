#include "Masks.h"

#include <algorithm>

namespace Ovra::GeoPython
{

namespace py = pybind11;

namespace
{

bool answer(const char* question, const py::handle& object)
{
    return py::module_::import("numpy.ma").attr(question)(object).cast<bool>();
}

} // namespace

bool Masks::isMaskedArray(const py::handle& object)
{
    return answer("isMaskedArray", object);
}

bool Masks::isMasked(const py::handle& object)
{
    return answer("is_masked", object);
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
