#pragma once

#include "ImportedMesh.h"

#include <array>
#include <compare>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief The nodes of an edge or face without regard to their order; -1 fills up.
struct NodeKey
{
    std::array<int, 4> nodes{-1, -1, -1, -1};
    auto operator<=>(const NodeKey&) const = default;
};

/// \brief Local edges and faces of the element kinds, with the volume element's faces turned
/// outwards, and the repair of the node order.
///
/// The node order is that of the face tables of Geo::Utility, which Gmsh shares:
/// \verbatim
///  tetrahedron    pyramid        wedge          hexahedron
///  0 1 2 base     0 1 2 3 base   0 1 2 base     0 1 2 3 base
///  3 apex         4 apex         3 4 5 top      4 5 6 7 top
/// \endverbatim
/// The base is numbered counter-clockwise as seen from the other nodes, so that
/// (p1 - p0) ^ (p2 - p0) points to them and the volume is positive.
class ElementShape
{
public:
    /// \brief The local faces of a volume element, outward; a triangle ends in -1.
    static const std::vector<std::array<int, 4>>& faces(int nodeCount);

    /// \brief Face \p local of a volume element as an element of its own, outward.
    static ImportedElement face(const ImportedElement& element, const std::array<int, 4>& local);

    /// \brief The edges of a surface or volume element as pairs of nodes of the mesh.
    static void edges(const ImportedElement& element, int dimension,
                      std::vector<std::array<int, 2>>& result);

    static NodeKey key(const ImportedElement& element);
    static NodeKey key(const std::array<int, 2>& edge);

    /// \brief Signed volume of a volume element; four-sided faces count as four triangles about
    /// their middle, and so alike from both sides.
    static double volume(const ImportedMesh& mesh, const ImportedElement& element);

    /// \brief Reverses the node order: the same element with the opposite sign of its volume or
    /// normal.
    static void flip(ImportedElement& element, int dimension);
};

} // namespace Ovra::GeoTool
