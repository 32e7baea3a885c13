#include "PointTree.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace Ovra::Geo
{

namespace
{

// As of NearTree, which takes nothing that lies farther.
constexpr double Unreachable = 1e12;

// More than what a bound of NearTree, of lengths of this size, may be wrong by: a point that is nearer
// than all others by more is found there whatever was rounded.
double inaccuracy(double length)
{
    constexpr double rounding = 64 * std::numeric_limits<double>::epsilon();
    constexpr double underflow = 1e-140; // of the squares of the components
    return rounding * length + underflow;
}

double square(double value)
{
    return value * value;
}

double squareOf(const Vector& vector)
{
    return square(vector.x()) + square(vector.y()) + square(vector.z());
}

} // namespace

/// One search: the nearest point so far, and whether another came as near.
class PointTree::Search
{
public:
    Search(const PointTree& tree, const Vector& query)
        : tree_(tree)
        , query_(query)
        , margin_(inaccuracy((query - tree.center_).length() + 3.0 * tree.radius_))
    {
        setNearest(Undecided, Unreachable);
    }

    void run(const Range& range)
    {
        if (isBucket(range)) {
            visit(range);
            return;
        }
        const Cut& cut = tree_.cuts_[static_cast<std::size_t>(middle(range))];
        const double beyond = query_[cut.axis] - cut.place;
        const Range below{range.first, middle(range)};
        const Range above{middle(range), range.end};
        run(beyond < 0.0 ? below : above);
        double& offset = offsets_[static_cast<std::size_t>(cut.axis)];
        const double former = std::exchange(offset, beyond);
        const double formerSquare =
            std::exchange(square_, square_ - square(former) + square(beyond));
        if (!(square_ >
              limit_)) { // a difference of squares may come out too small, never an answer lost
            run(beyond < 0.0 ? above : below);
        }
        offset = former;
        square_ = formerSquare;
    }

    int nearest() const { return isDoubtful_ ? Undecided : nearest_; }

private:
    void visit(const Range& range)
    {
        for (int i = range.first; i < range.end; ++i) {
            const Point& point = tree_.points_[static_cast<std::size_t>(i)];
            const double found = squareOf(point.place - query_);
            if (found <= limit_) {
                meet(point.index, std::sqrt(found));
            }
        }
    }

    void meet(int index, double distance)
    {
        if (distance < distance_) {
            isDoubtful_ = distance_ <= distance + margin_;
            setNearest(index, distance);
        } else {
            isDoubtful_ = true;
        }
    }

    void setNearest(int index, double distance)
    {
        nearest_ = index;
        distance_ = distance;
        limit_ = square(distance + 2.0 * margin_); // twice, for what is rounded here
    }

    const PointTree& tree_;
    Vector query_;
    double margin_;
    int nearest_ = Undecided;
    double distance_ = 0.0;
    double limit_ = 0.0; ///< square of the distance up to which a point changes something
    bool isDoubtful_ = false;
    std::array<double, 3> offsets_ = {}; ///< from the query to the part that is searched, by axis
    double square_ = 0.0;                ///< the sum of their squares
};

PointTree::PointTree(const std::vector<Vector>& points)
{
    points_.reserve(points.size());
    for (const Vector& point : points) {
        points_.push_back({point, static_cast<int>(points_.size())});
    }
    cuts_.resize(points_.size());
    measure();
    if (std::isfinite(radius_)) { // what is no number has no order
        arrange({0, static_cast<int>(points_.size())});
    }
}

void PointTree::measure()
{
    for (const Point& point : points_) {
        center_ += point.place / static_cast<double>(points_.size());
    }
    for (const Point& point : points_) {
        const double distance = (point.place - center_).length();
        radius_ = distance <= radius_ ? radius_ : distance; // NaN stays
        if (!std::isfinite(radius_)) {
            return;
        }
    }
}

void PointTree::arrange(const Range& all)
{
    std::vector<Range> pending = {all};
    while (!pending.empty()) {
        const Range range = pending.back();
        pending.pop_back();
        if (isBucket(range)) {
            continue;
        }
        const int axis = widestAxis(range);
        const auto cut = points_.begin() + middle(range);
        std::nth_element(
            points_.begin() + range.first, cut, points_.begin() + range.end,
            [axis](const Point& a, const Point& b) { return a.place[axis] < b.place[axis]; });
        cuts_[static_cast<std::size_t>(middle(range))] = {cut->place[axis], axis};
        pending.push_back({range.first, middle(range)});
        pending.push_back({middle(range), range.end});
    }
}

int PointTree::widestAxis(const Range& range) const
{
    Vector least = points_[static_cast<std::size_t>(range.first)].place;
    Vector most = least;
    for (int i = range.first + 1; i < range.end; ++i) {
        const Vector& place = points_[static_cast<std::size_t>(i)].place;
        for (int axis = 0; axis < 3; ++axis) {
            least[axis] = std::min(least[axis], place[axis]);
            most[axis] = std::max(most[axis], place[axis]);
        }
    }
    int widest = 0;
    (most - least).maxComponent(&widest);
    return widest;
}

int PointTree::nearest(const Vector& query) const
{
    if (points_.empty() || !std::isfinite(radius_) || !std::isfinite(squareOf(query))) {
        return Undecided;
    }
    Search search(*this, query);
    search.run({0, static_cast<int>(points_.size())});
    return search.nearest();
}

} // namespace Ovra::Geo
