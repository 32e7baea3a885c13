#include "NearTree.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace Ovra::Geo
{

namespace
{

constexpr double Unreachable = 1e12;
// More than the rounding of the few operations that make a bound, relative to what goes into it.
constexpr double Rounding = 64 * std::numeric_limits<double>::epsilon();

// More than what a length loses where the squares of its components underflow.
constexpr double Underflow = 1e-160;
// Distances from here on lose nothing of note by that.
constexpr double Measurable = 1e-140;

// What the distances and bounds that come of two such lengths may be wrong by.
double inaccuracy(double d, double reach)
{
    return Rounding * (d + reach) + Underflow;
}

// By the plane halfway between two points that are \p between apart: a distance from the query that
// nothing undercuts which is nearer to the one, \p own from the query, than to the other. \p reach
// is how far such things lie from the node above. A NaN, or less than 0, where there is no bound.
double beyondPlane(double own, double other, double between, double reach)
{
    if (between < Measurable) {
        return 0.0;
    }
    const double squares = own * own + other * other + reach * reach;
    return 0.5 * (own * own - other * other - Rounding * squares) / between;
}

double beyondReach(double d, double reach)
{
    return d - reach - inaccuracy(d, reach);
}

} // namespace

NearTree::~NearTree()
{
    deleteTree(left_);
    deleteTree(right_);
}

void NearTree::set(int id, const Vector& point, double radius)
{
    deleteTree(std::exchange(left_, nullptr));
    deleteTree(std::exchange(right_, nullptr));
    warnAbove();
    id_ = id;
    point_ = point;
    radius_ = radius;
    maxLeft_ = 0.0;
    maxRight_ = 0.0;
    regular_ = true;
}

// What the nodes above know of the points below holds only for those that came in from above.
void NearTree::warnAbove()
{
    for (NearTree* node = above_; node && node->regular_; node = node->above_) {
        node->regular_ = false;
    }
}

void NearTree::insert(NearTree* node)
{
    warnAbove();
    // A reach that falls short keeps the search from points that it does not cover.
    const bool covers = node->radius_ >= 0.0;
    NearTree* place = this;
    double reach = distance(node) + node->radius_;
    while (place->right_) {
        place->regular_ = place->regular_ && covers;
        const double toLeft = node->distance(place->left_);
        const double toRight = node->distance(place->right_);
        if (toRight > toLeft) {
            place->maxLeft_ = std::max(place->maxLeft_, reach);
            place = place->left_;
            reach = toLeft + node->radius_;
        } else {
            place->maxRight_ = std::max(place->maxRight_, reach);
            place = place->right_;
            reach = toRight + node->radius_;
        }
    }
    place->regular_ = place->regular_ && covers;
    place->attach(node, reach);
}

void NearTree::attach(NearTree* node, double reach)
{
    node->above_ = this;
    if (left_) {
        right_ = node;
        maxRight_ = reach;
    } else {
        left_ = node;
        maxLeft_ = reach;
    }
}

int NearTree::nearest(const NearTree* query) const
{
    if (!query) {
        return 0;
    }
    if (!regular_) {
        return search(query, Unreachable).id;
    }
    const double known = distanceOnDescent(query);
    const double reach = std::max(maxLeft_, maxRight_);
    // What lies so little farther than the nearest point may by rounding decide what is searched.
    const Candidate found = search(query, known + inaccuracy(distance(query), 3.0 * reach));
    // Below a point that is not finite the descent may have seen what no search reaches.
    return found.distance > known ? search(query, Unreachable).id : found.id;
}

// That something lies at the known distance only keeps out what cannot be the answer: which of
// several nearest points is taken stays a matter of the order of the search.
NearTree::Candidate NearTree::search(const NearTree* query, double known) const
{
    Candidate found{Unreachable, 0};
    SearchStack pending;
    pending.append({this, distance(query), 0.0, 0.0});
    while (!pending.isEmpty()) {
        const Subtree next = pending.last();
        pending.removeLast();
        // Tested when its turn comes, not when it is put aside: what was met meanwhile may have
        // brought the best distance down.
        if (!(found.distance >= next.closest) || next.floor > std::min(found.distance, known)) {
            continue;
        }
        if (found.distance > next.distance) {
            found = {next.distance, next.root->id_};
        }
        next.root->appendSubtrees(query, next.distance, &pending);
    }
    return found;
}

double NearTree::distanceOnDescent(const NearTree* query) const
{
    const NearTree* node = this;
    double least = distance(query);
    while (node->right_) {
        const double toLeft = node->left_->distance(query);
        const double toRight = node->right_->distance(query);
        node = toRight > toLeft ? node->left_ : node->right_;
        least = std::min({least, toLeft, toRight});
    }
    return node->left_ ? std::min(least, node->left_->distance(query)) : least;
}

void NearTree::separate(Subtree* left, Subtree* right) const
{
    const double between = left_->distance(right_);
    left->floor =
        std::max(left->floor, beyondPlane(left->distance, right->distance, between, maxLeft_));
    right->floor =
        std::max(right->floor, beyondPlane(right->distance, left->distance, between, maxRight_));
}

void NearTree::appendSubtrees(const NearTree* query, double d, SearchStack* pending) const
{
    if (!left_) {
        return;
    }
    Subtree left{left_, left_->distance(query), d - maxLeft_, beyondReach(d, maxLeft_)};
    if (right_) {
        Subtree right{right_, right_->distance(query), d - maxRight_, beyondReach(d, maxRight_)};
        if (regular_) {
            separate(&left, &right);
        }
        pending->append(right);
    }
    pending->append(left);
}

QSet<int> NearTree::within(const NearTree* query) const
{
    QSet<int> result;
    QVarLengthArray<const NearTree*, 64> pending;
    pending.append(this);
    while (!pending.isEmpty()) {
        const NearTree* node = pending.last();
        pending.removeLast();
        const double reach = node->distance(query) - query->radius_;
        if (node->radius_ > reach) {
            result.insert(node->id_);
        }
        if (node->right_ && node->maxRight_ >= reach) {
            pending.append(node->right_);
        }
        if (node->left_ && node->maxLeft_ >= reach) {
            pending.append(node->left_);
        }
    }
    return result;
}

void NearTree::deleteTree(NearTree* root)
{
    // A node with a left subtree is turned below that subtree's root, until the node on top has
    // only a right one and can go: linear in time, with neither recursion nor memory of its own.
    while (root) {
        NearTree* next = root->left_;
        if (next) {
            root->left_ = std::exchange(next->right_, root);
        } else {
            next = std::exchange(root->right_, nullptr);
            delete root;
        }
        root = next;
    }
}

} // namespace Ovra::Geo
