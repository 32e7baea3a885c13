#include "NearTree.h"

#include <algorithm>
#include <utility>

namespace Ovra::Geo
{

namespace
{

constexpr double Unreachable = 1e12;

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
    id_ = id;
    point_ = point;
    radius_ = radius;
    maxLeft_ = 0.0;
    maxRight_ = 0.0;
}

double NearTree::distance(const NearTree* other) const
{
    return (point_ - other->point_).length();
}

void NearTree::insert(NearTree* node)
{
    NearTree* place = this;
    double reach = distance(node) + node->radius_;
    while (place->right_) {
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
    place->attach(node, reach);
}

void NearTree::attach(NearTree* node, double reach)
{
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
    Candidate found{Unreachable, 0};
    SearchStack pending;
    pending.append({this, 0.0});
    while (!pending.isEmpty()) {
        const Subtree next = pending.last();
        pending.removeLast();
        // Tested when its turn comes, not when it is put aside: what was met meanwhile may have
        // brought the best distance down.
        if (found.distance >= next.closest) {
            next.root->visit(query, &found, &pending);
        }
    }
    return found.id;
}

void NearTree::visit(const NearTree* query, Candidate* found, SearchStack* pending) const
{
    const double d = distance(query);
    if (found->distance > d) {
        *found = {d, id_};
    }
    if (right_) {
        pending->append({right_, d - maxRight_});
    }
    if (left_) {
        pending->append({left_, d - maxLeft_});
    }
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
