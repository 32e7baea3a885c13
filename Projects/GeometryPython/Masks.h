#pragma once

#include <pybind11/pybind11.h>
#include <string>

/// \brief Masked arrays, whose values NumPy gives away, masked or not, to whoever asks for an array.
namespace Ovra::GeoPython::Masks
{

/// \brief Whether \p object is a masked array, be anything masked in it or not.
bool isMaskedArray(const pybind11::handle& object);

/// \brief Whether a value is masked in \p object: in an array, or a number taken out of one.
bool isMasked(const pybind11::handle& object);

/// \brief Throws TypeError, "ids of a masked array are not all known; ...", if a value is masked in
///        \p object, or in an item of it where that is a list or tuple.
/// \param what "ids"
void requireNone(const pybind11::object& object, const std::string& what);

} // namespace Ovra::GeoPython::Masks
