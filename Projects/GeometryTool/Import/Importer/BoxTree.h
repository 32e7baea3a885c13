#pragma once

#include "Box.h"

#include <array>
#include <cstddef>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Finds which of many boxes meet a given one, in a time that grows with the logarithm of
/// their number.
///
/// A binary tree of boxes, halved by the centres along the longest axis (van den Bergen, Efficient
/// collision detection of complex deformable models using AABB trees, 1997).
class BoxTree
{
public:
    explicit BoxTree(std::vector<Geo::Box> boxes);

    /// \brief Calls \p action with the position of each box that has a point in common with \p box.
    template <typename Action>
    void forEachMeeting(const Geo::Box& box, Action action) const
    {
        std::array<std::size_t, MostDepth> open{};
        std::size_t count = nodes_.empty() ? 0 : 1; // of open nodes, the root first
        while (count > 0) {
            const std::size_t at = open[--count];
            const Node& node = nodes_[at];
            if (!node.box.intersects(box)) {
                continue;
            }
            if (node.right != 0) {
                open[count++] = node.right;
                open[count++] = at + 1;
                continue;
            }
            for (std::size_t i = node.begin; i < node.end; ++i) {
                if (boxes_[order_[i]].intersects(box)) {
                    action(order_[i]);
                }
            }
        }
    }

private:
    static constexpr std::size_t MostDepth = 128; ///< halves of any number of boxes in memory fit

    struct Node
    {
        Geo::Box box;
        std::size_t begin = 0; ///< of its boxes in order_
        std::size_t end = 0;
        std::size_t right = 0; ///< position of the second half; the first is next; 0 for a leaf
    };

    void add(std::size_t begin, std::size_t end);
    void halve(const Geo::Box& box, std::size_t begin, std::size_t end);

    std::vector<Geo::Box> boxes_;
    std::vector<std::size_t> order_;
    std::vector<Node> nodes_;
};

} // namespace Ovra::GeoTool
