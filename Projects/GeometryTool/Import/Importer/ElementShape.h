#pragma once

#include "ElementTopology.h"
#include "ImportedMesh.h"

#include <array>
#include <compare>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief The nodes of an edge or face without regard to their order; -1 fills up.
struct NodeKey
{
    static constexpr int NoNode = -1;

    std::array<int, 4> nodes{NoNode, NoNode, NoNode, NoNode};
    auto operator<=>(const NodeKey&) const = default; // NOLINT(modernize-use-nullptr)
};

/// \brief What the import needs of the shape of elements: their sides as elements of their own,
/// their volume, and the repair of their node order.
///
/// The node order is that of ElementTopology, which Gmsh shares. The base of a volume element is
/// numbered counter-clockwise as seen from its other nodes, so that (p1 - p0) ^ (p2 - p0) points to
/// them and the volume is positive.
class ElementShape
{
public:
    /// \brief The local faces of a volume element, outward.
    static const ElementTopology::Sides& faces(int nodeCount);

    /// \brief The side of a surface or volume element with these nodes as an element of its own,
    /// outward; the element must have one.
    static ImportedElement side(const ImportedElement& element, int dimension, const NodeKey& key);

    /// \brief The edges of a surface or volume element as pairs of nodes of the mesh.
    static void edges(const ImportedElement& element, int dimension,
                      std::vector<std::array<int, 2>>& result);

    static NodeKey key(const ImportedElement& element);

    /// \brief The key of the side of an element whose local nodes are \p local.
    static NodeKey sideKey(const ImportedElement& element, const ElementTopology::Side& local);
    static NodeKey key(const std::array<int, 2>& edge);

    /// \brief Signed volume of a volume element; four-sided faces count as four triangles about
    /// their middle, and so alike from both sides.
    static double volume(const ImportedMesh& mesh, const ImportedElement& element);

    /// \brief Reverses the node order: the same element with the opposite sign of its volume or
    /// normal.
    static void flip(ImportedElement& element, int dimension);
};

} // namespace Ovra::GeoTool
