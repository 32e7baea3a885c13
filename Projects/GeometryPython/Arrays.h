#pragma once

#include "Handles.h"

#include <pybind11/numpy.h>
#include <string>

namespace Ovra::GeoPython
{

/// \brief Questions to many entities at once, and changes of them, as arrays of NumPy.
///
/// Arrays are copies: they outlive the case, and a change to them changes nothing in it. Whatever is
/// wrong with an argument is told ahead of any change.
namespace Arrays
{

/// \brief Throws ValueError, "2 points are given for 1 entity", where the numbers differ.
/// \param what "point"
void requireCount(pybind11::ssize_t given, std::size_t needed, const std::string& what);

/// \brief Integers of 32 bits of any array or sequence of integers; throws TypeError for numbers that
///        are none or masked, OverflowError for larger ones.
std::vector<int> idsFrom(const pybind11::object& object);

/// \brief The ids that \p object chooses: an array of them, or a truth value for each of \p all; one
///        that is masked, and so not known, chooses nothing.
std::vector<int> chosen(const std::vector<int>& all, const pybind11::object& object);

/// \brief Points, or the centroids of elements: n x 3 doubles.
pybind11::array_t<double> centroids(const MeshEntities& view);

/// \brief Moves the vertices of \p view to \p points, n x 3 finite numbers.
void setPoints(const MeshEntities& view, const pybind11::object& points);

/// \brief Number of elements by kind: {"tetrahedron": 6}; what is of no kind under "unknown".
pybind11::dict kinds(const MeshEntities& view);

/// \brief Those of \p view that are of \p kind.
MeshEntities ofKind(const MeshEntities& view, const std::string& kind);

/// \brief Ids of vertices, a row for each element; throws ValueError where the kinds differ.
pybind11::array_t<int> connectivity(const MeshEntities& view);

/// \brief Dimensions and ids of the parents, -1 and 0 for none.
pybind11::tuple parents(const MeshEntities& view);

/// \brief Classifies the entities of \p view on the model entities of \p dimension.
/// \param ids one for all, or one for each; 0 takes an entity off its parent
void classify(const MeshEntities& view, const pybind11::object& ids, int dimension);

/// \brief Adds vertices at \p points, and returns their ids.
/// \param ids None for the next free ones
MeshEntities addVertices(const CasePointer& state, const pybind11::object& points,
                         const pybind11::object& ids);

/// \brief Adds elements of \p kind whose vertices are the rows of \p vertices, and returns them.
MeshEntities addElements(const CasePointer& state, const std::string& kind,
                         const pybind11::object& vertices, const pybind11::object& ids);

} // namespace Arrays

} // namespace Ovra::GeoPython
