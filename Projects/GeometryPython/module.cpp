#include "Attributes.h"
#include "Bindings.h"

PYBIND11_MODULE(_core, module)
{
    using namespace Ovra::GeoPython;
    module.doc() = "What of ovrageo is C++; import ovrageo instead.";
    module.attr("__version__") = OVRAGEO_VERSION;
    bindErrors(module);
    bindAttributes(module);
    bindModelEntities(module);
    bindMeshEntities(module);
    bindCase(module);
    bindModel(module);
    bindMesh(module);
}
