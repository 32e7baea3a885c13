#include "NearTreeBuilder.h"

#include "NearTree.h"

#include <algorithm>

namespace Ovra::Geo
{

NearTree* NearTreeBuilder::build()
{
    if (points_.empty()) {
        return new NearTree;
    }
    NearTree* const root = makeNode(points_.front());
    for (Point& point : points_) {
        point.reach = (point.place - root->point_).length();
    }
    dealOut(root, 1, points_.size());
    while (!pending_.empty()) {
        const Side side = pending_.back();
        pending_.pop_back();
        fill(side);
    }
    points_.clear();
    return root;
}

NearTree* NearTreeBuilder::makeNode(const Point& point)
{
    auto* node = new NearTree;
    node->set(point.id, point.place, 0.0);
    return node;
}

void NearTreeBuilder::fill(const Side& side)
{
    NearTree* const node = makeNode(points_[side.first]);
    node->above_ = side.above;
    (side.isLeft ? side.above->left_ : side.above->right_) = node;
    dealOut(node, side.first + 1, side.end);
}

void NearTreeBuilder::dealOut(NearTree* node, std::size_t first, std::size_t end)
{
    if (first == end) {
        return;
    }
    node->maxLeft_ = points_[first].reach;
    std::size_t middle = end;
    if (end - first > 1) {
        middle = part(node, first, end);
        pending_.push_back({node, false, middle, end});
    }
    pending_.push_back({node, true, first, middle}); // and so the first to be filled
}

std::size_t NearTreeBuilder::part(NearTree* node, std::size_t first, std::size_t end)
{
    const Vector left = points_[first].place;
    const Vector right = points_[first + 1].place;
    node->maxRight_ = points_[first + 1].reach;
    toTheRight_.assign(1, points_[first + 1]);
    std::size_t middle = first + 1;
    for (std::size_t i = first + 2; i < end; ++i) {
        Point point = points_[i];
        const double toLeft = (point.place - left).length();
        const double toRight = (point.place - right).length();
        double& reach = toRight > toLeft ? node->maxLeft_ : node->maxRight_;
        reach = std::max(reach, point.reach);
        if (toRight > toLeft) {
            point.reach = toLeft;
            points_[middle++] = point;
        } else {
            point.reach = toRight;
            toTheRight_.push_back(point);
        }
    }
    std::copy(toTheRight_.cbegin(), toTheRight_.cend(), points_.data() + middle);
    return middle;
}

} // namespace Ovra::Geo
