#pragma once

#include "ElementShape.h"
#include "ImportedMesh.h"

#include <span>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief The sides of all elements of one dimension, sorted by their nodes: the faces of volume
/// elements or the edges of surface elements.
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

    /// \brief All sides, those with the same nodes next to one another.
    const std::vector<Side>& sides() const { return sides_; }

    /// \brief The sides with these nodes; ascending by element.
    std::span<const Side> find(const NodeKey& key) const;

    /// \brief Calls \p action with each run of sides that have the same nodes.
    template <typename Action>
    void forEachRun(Action action) const
    {
        for (std::size_t begin = 0; begin < sides_.size();) {
            std::size_t end = begin + 1;
            while (end < sides_.size() && sides_[end].key == sides_[begin].key) {
                ++end;
            }
            action(std::span<const Side>(sides_).subspan(begin, end - begin));
            begin = end;
        }
    }

private:
    std::vector<Side> sides_;
};

} // namespace Ovra::GeoTool
