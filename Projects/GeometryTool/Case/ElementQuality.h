#pragma once

#include "Vector.h"

#include <QVarLengthArray>

#include <cstddef>
#include <functional>
#include <limits>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
}

namespace Ovra::GeoTool
{

class CaseView;
struct ElementTopology;

/// \brief How good one element of a mesh is.
///
/// - The measure is the length of a line, the area of a face (the fan of triangles about the first
///   vertex, by magnitude), and the signed volume of a solid: the sum, over its sides with the
///   normal outward, of the pyramids between the sides and the first vertex, a side of four
///   vertices being split into four triangles about its mean point. A tetrahedron has (p1 - p0) x
///   (p2 - p0) . (p3 - p0) / 6.
/// - An element is degenerate if the magnitude of its measure is at most 1e-12 of its longest edge
/// to
///   the power of its dimension, or if it names one vertex twice.
/// - A solid is inverted if its volume is negative and it is not degenerate. It is twisted if its
///   volume is positive and the three edges at one of its corners, in their order, span a volume
///   that is not; the apex of a pyramid, where four edges meet, is not looked at. A quadrilateral
///   is twisted if its sides cross: both diagonals split it into triangles that face opposite ways.
/// - The aspect is the longest edge over the radius 3 V / A of a solid, A being the area of its
/// sides,
///   or 2 A / P of a face, P being its perimeter, divided by that figure for the regular element
///   with all edges alike: 1 is best. Degenerate and inverted elements have none, nor have lines.
/// - An element with a number of vertices that makes no kind is unknown and has neither measure
/// nor aspect.
struct ElementQuality
{
    enum class State
    {
        Sound,
        Degenerate,
        Inverted,
        Twisted,
        Unknown
    };

    /// \brief The points of one element. On the stack: there are a million of them to judge.
    using Points = QVarLengthArray<Geo::Vector, 8>;

    ElementQuality() = default;

    ElementQuality(const ElementTopology& topology, const Points& points, bool repeatsVertex);

    /// \brief Judges \p count elements of \p dimension, 1 to 3, on all cores.
    /// \param elementAt gives the position of each in CaseView::meshEntities(dimension)
    static std::vector<ElementQuality>
    ofMany(const CaseView& view, int dimension, std::size_t count,
           const std::function<std::size_t(std::size_t)>& elementAt);

    /// \brief Signed volume of a solid, area of a face, length of a line.
    /// \pre ElementTopology knows the kind of \p element
    static double measureOf(const Geo::MeshEntity& element);

    State state = State::Unknown;
    double measure = std::numeric_limits<double>::quiet_NaN();
    double aspect = std::numeric_limits<double>::quiet_NaN(); ///< not a number if it has none
};

} // namespace Ovra::GeoTool
