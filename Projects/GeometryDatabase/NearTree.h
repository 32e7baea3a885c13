#pragma once

#include "GeometryDatabaseExport.h"
#include "Vector.h"

#include <QSet>
#include <QVarLengthArray>
#include <QtGlobal>

namespace Ovra::Geo
{

/// \brief Answers which of many points in space lies nearest to a given one.
///
/// A node holds one point and is a tree itself; it owns its two subtrees. The tree is not balanced:
/// its shape follows the order of insertion. Points inserted in random order give a depth, and so a
/// cost of an insertion, of O(log n); many points along one line in sorted order, or at one place,
/// give O(n). No operation recurses, so that only time depends on the depth, not the stack.
///
/// The idea is that of I. Kalantari and G. McDonald, "A data structure and an algorithm for the
/// nearest point problem", IEEE Transactions on Software Engineering 9 (1983). The search leaves
/// out subtrees by the plane between the two children as well, after J. K. Uhlmann, "Satisfying
/// general proximity/similarity queries with metric trees", Information Processing Letters 40
/// (1991).
class OVRA_GEO_EXPORT NearTree
{
public:
    /// \brief A tree of one node: id 0 at the zero point with radius 0.
    NearTree() = default;

    /// \brief Deletes both subtrees.
    ~NearTree();

    Q_DISABLE_COPY_MOVE(NearTree)

    /// \brief Makes this a tree of one node; the subtrees that it had are deleted.
    /// \param id     what a query is to return for the point
    /// \param point  the position
    /// \param radius the radius of the sphere about the point, which within() and the bounds of the
    ///               search take into account; 0.0 for a plain point. Below 0 the bounds fall
    ///               short, so that nearest() may miss the nearest point
    void set(int id, const Vector& point, double radius);

    /// \brief Adds a point below this node.
    /// \param node a new tree of one node, not null; the tree takes ownership
    void insert(NearTree* node);

    /// \brief The id of the point that lies nearest to the point of \p query.
    ///
    /// The answer is that of the plain recursion: a node before its subtrees, the left subtree
    /// before the right one, a subtree only if its reach comes as near as what was found, and of
    /// points at the same distance the one met first.
    /// \param query the node whose point is asked for, in the tree or not; its id and radius play
    ///              no part
    /// \return 0 if \p query is null or no point is nearer than 1e12
    int nearest(const NearTree* query) const;

    /// \brief The ids of all points whose sphere overlaps the sphere of \p query.
    ///
    /// Spheres that only touch do not overlap, nor do points of radius 0 that coincide.
    /// \param query a node with the centre and the radius of the sphere; not null
    QSet<int> within(const NearTree* query) const;

    /// \brief The position of this node.
    Vector point() const { return point_; }

    /// \brief The distance between the points of this node and of \p other, which is not null.
    double distance(const NearTree* other) const { return (point_ - other->point_).length(); }

private:
    struct Candidate
    {
        double distance;
        int id;
    };

    /// A subtree that waits to be searched.
    struct Subtree
    {
        const NearTree* root;
        /// From the query to the root's own point.
        double distance;
        /// The least distance of the query to anything below the root's parent on this side.
        double closest;
        /// A distance below which certainly nothing lies, whatever the rounding.
        double floor;
    };

    using SearchStack = QVarLengthArray<Subtree, 64>;

    void attach(NearTree* node, double reach);
    void warnAbove();
    Candidate search(const NearTree* query, double known) const;
    double distanceOnDescent(const NearTree* query) const;
    void separate(Subtree* left, Subtree* right) const;
    void appendSubtrees(const NearTree* query, double d, SearchStack* pending) const;
    static void deleteTree(NearTree* root);

    int id_ = 0;
    Vector point_;
    double radius_ = 0.0;
    /// The greatest distance plus radius from point_ to anything in the subtree.
    double maxLeft_ = 0.0;
    double maxRight_ = 0.0;
    /// Filled before right_, so that a node never has a right subtree alone.
    NearTree* left_ = nullptr;
    NearTree* right_ = nullptr;
    NearTree* above_ = nullptr;
    /// Whether nothing below has changed but by insertion here or above, of a radius of 0 or more.
    /// If not, neither here nor above.
    bool regular_ = true;
};

} // namespace Ovra::Geo
