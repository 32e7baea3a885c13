#include "Attributes.h"
#include "Bindings.h"

#include <pybind11/numpy.h>

namespace
{

/// Classes whose instances a case makes: made in Python, their C++ part would be nothing at all.
constexpr auto madeByCases = {
    "OpaqueValue",        "Attributes", "ModelEntity",  "MeshEntity", "Model",
    "ModelEntities",      "Mesh",       "MeshEntities", "CaseState",  "_WalkOfModelEntities",
    "_WalkOfMeshEntities"};

void refuseToMake(pybind11::module_& module)
{
    const auto refuse = [](const pybind11::args&, const pybind11::kwargs&) -> pybind11::object {
        throw pybind11::type_error("a case makes it");
    };
    const auto asStatic = pybind11::module_::import("builtins").attr("staticmethod");
    for (const char* const name : madeByCases) {
        module.attr(name).attr("__new__") = asStatic(pybind11::cpp_function(refuse));
    }
}

} // namespace

PYBIND11_MODULE(_core, module)
{
    using namespace Ovra::GeoPython;
    module.doc() = "What of ovrageo is C++; import ovrageo instead.";
    module.attr("__version__") = OVRAGEO_VERSION;
    pybind11::dtype::of<int>(); // imports NumPy ahead of all walks: an import may run any Python
    bindErrors(module);
    bindAttributes(module);
    bindModelEntities(module);
    bindMeshEntities(module);
    bindCase(module);
    bindModel(module);
    bindMesh(module);
    refuseToMake(module);
}
