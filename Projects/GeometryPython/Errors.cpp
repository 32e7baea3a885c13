#include "Bindings.h"
#include "CaseState.h"
#include "ToolError.h"

#include <new>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using GeoTool::ExitCode;
using GeoTool::ToolError;

namespace
{

/// The classes are written in Python, where they can have bases of Python's own.
void raise(const char* className, const char* text)
{
    const py::object type = py::module_::import("ovrageo.errors").attr(className);
    PyErr_SetString(type.ptr(), text);
}

const char* classOf(ExitCode exitCode)
{
    switch (exitCode) {
    case ExitCode::Usage:
        return "UsageError";
    case ExitCode::InputMissing:
        return "MissingFileError";
    case ExitCode::InputDamaged:
        return "DamagedFileError";
    case ExitCode::OutputFailed:
        return "OutputError";
    case ExitCode::Unsuitable:
        return "UnsuitableError";
    default:
        return "Error";
    }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): as pybind11 calls it
void translate(std::exception_ptr thrown)
{
    try {
        if (thrown) {
            std::rethrow_exception(thrown);
        }
    } catch (const ToolError& error) {
        raise(classOf(error.exitCode()), error.what());
    } catch (const Gone& error) {
        raise("GoneError", error.what());
    } catch (const Busy& error) {
        raise("BusyError", error.what());
    }
}

} // namespace

void bindErrors(py::module_&)
{
    py::register_exception_translator(&translate);
}

} // namespace Ovra::GeoPython
