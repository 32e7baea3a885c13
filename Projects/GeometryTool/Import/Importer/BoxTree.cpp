#include "BoxTree.h"

#include <algorithm>
#include <numeric>

namespace Ovra::GeoTool
{

using Geo::Box;

namespace
{

int longestAxis(const Box& box)
{
    const Geo::Vector extent = box.extent();
    int axis = 0;
    for (int i = 1; i < 3; ++i) {
        axis = extent[i] > extent[axis] ? i : axis;
    }
    return axis;
}

} // namespace

BoxTree::BoxTree(std::vector<Box> boxes)
    : boxes_(std::move(boxes))
    , order_(boxes_.size())
{
    std::iota(order_.begin(), order_.end(), std::size_t(0));
    if (!boxes_.empty()) {
        add(0, boxes_.size());
    }
}

void BoxTree::add(std::size_t begin, std::size_t end)
{
    constexpr std::size_t leaf = 8;
    Node node;
    node.begin = begin;
    node.end = end;
    for (std::size_t i = begin; i < end; ++i) {
        node.box += boxes_[order_[i]];
    }
    const std::size_t at = nodes_.size();
    nodes_.push_back(node);
    if (end - begin <= leaf) {
        return;
    }
    const std::size_t middle = begin + (end - begin) / 2;
    halve(node.box, begin, end);
    add(begin, middle);
    nodes_[at].right = nodes_.size();
    add(middle, end);
}

void BoxTree::halve(const Box& box, std::size_t begin, std::size_t end)
{
    const int axis = longestAxis(box);
    const auto at = [this](std::size_t position) {
        return order_.begin() + static_cast<std::ptrdiff_t>(position);
    };
    std::nth_element(at(begin), at(begin + (end - begin) / 2), at(end),
                     [this, axis](std::size_t a, std::size_t b) {
                         return boxes_[a].center()[axis] < boxes_[b].center()[axis];
                     });
}

} // namespace Ovra::GeoTool
