#pragma once

#include "Buckets.h"
#include "ElementShape.h"
#include "ImportedMesh.h"

#include <span>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief The sides of all elements of one dimension, sorted by their nodes: the faces of volume
/// elements or the edges of surface elements.
///
/// They are put together by their smallest node and sorted there: a sort of all sides was a third
/// of the time that an import takes.
///
/// It reads the mesh once, when it is made, and keeps positions of elements.
class SideTable
{
public:
    struct Side
    {
        NodeKey key;
        int element = 0; ///< position in the elements of the table's dimension
        int local = 0;   ///< local number of the face or edge
        auto operator<=>(const Side&) const = default; // NOLINT(modernize-use-nullptr)
    };

    SideTable(const ImportedMesh& mesh, int dimension);

    /// \brief Of the sides of elements of \p dimension those whose nodes all lie on elements of one
    /// dimension less: all that can be found by one of these, and a fraction of all.
    static SideTable onElementsBelow(const ImportedMesh& mesh, int dimension);

    /// \brief All sides, those with the same nodes next to one another.
    const std::vector<Side>& sides() const { return sides_.things(); }

    /// \brief The sides with these nodes; ascending by element.
    std::span<const Side> find(const NodeKey& key) const;

    /// \brief Calls \p action with each run of sides that have the same nodes.
    template <typename Action>
    void forEachRun(Action action) const
    {
        const std::span<const Side> all(sides());
        for (std::size_t begin = 0; begin < all.size();) {
            std::size_t end = begin + 1;
            while (end < all.size() && all[end].key == all[begin].key) {
                ++end;
            }
            action(all.subspan(begin, end - begin));
            begin = end;
        }
    }

private:
    /// For each node whether sides may have it.
    using Nodes = std::vector<bool>;

    SideTable(const ImportedMesh& mesh, int dimension, const Nodes& nodes);

    template <typename Action>
    static void forEachSide(const ImportedMesh& mesh, int dimension, Action action);

    Buckets<Side> sides_; ///< by the smallest node
};

} // namespace Ovra::GeoTool
