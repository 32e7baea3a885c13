#pragma once

#include "Vector.h"

#include <array>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief The points on one side of a plane.
struct HalfSpace
{
    Geo::Vector point;  ///< on the plane
    Geo::Vector normal; ///< of length 1, into the half-space

    double depth(const Geo::Vector& place) const { return (place - point) * normal; }
};

/// \brief What convex shapes have in common.
namespace ConvexClip
{

/// \brief The corners of a flat convex polygon in order; two make a segment.
using Polygon = std::vector<Geo::Vector>;

using Tetrahedron = std::array<Geo::Vector, 4>;

/// \brief Area of a polygon, or length of a segment or of what is left of one.
/// \param dimension 2 for an area, 1 for a length
double size(const Polygon& polygon, int dimension);

/// \brief Of length 2 * size() for a polygon, to the side from which it runs counter-clockwise; 0
/// for a segment.
Geo::Vector normal(const Polygon& polygon);

/// \brief The part of a polygon in all of \p spaces (Sutherland and Hodgman, Reentrant polygon
/// clipping, 1974); a segment keeps its line, though corners may repeat.
Polygon clipped(Polygon polygon, const std::vector<HalfSpace>& spaces);

/// \brief What bounds the column over a polygon: a half-space for each edge, upright on it, or for
/// each end of a segment.
std::vector<HalfSpace> column(const Polygon& polygon);

/// \brief What bounds a tetrahedron, whatever its orientation.
std::vector<HalfSpace> sides(const Tetrahedron& body);

/// \brief Volume of the part of a tetrahedron in all of \p spaces, by cutting it into tetrahedra.
double volume(const Tetrahedron& body, const std::vector<HalfSpace>& spaces = {});

} // namespace ConvexClip

} // namespace Ovra::GeoTool
