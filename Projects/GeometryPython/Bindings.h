#pragma once

#include <pybind11/pybind11.h>

namespace Ovra::GeoPython
{

/// \name What module.cpp puts together
/// In this order, since the later ones name classes of the earlier ones.
/// \{
void bindErrors(pybind11::module_& module);
void bindModelEntities(pybind11::module_& module);
void bindMeshEntities(pybind11::module_& module);
void bindModel(pybind11::module_& module);
void bindMesh(pybind11::module_& module);
void bindCase(pybind11::module_& module);
/// \}

} // namespace Ovra::GeoPython
