#pragma once

#include "GeometryDatabaseExport.h"
#include "Vector.h"

#include <vector>

namespace Ovra::Geo
{

/// \brief Finds the point that lies nearest to a given one, where there is no doubt which. Not for
///        hosts.
///
/// NearTree promises which of several equally near points it takes, and pays for that. Nearly always
/// one point is nearest by more than any rounding; then every search gives the same, and this one
/// takes a fifth of the time. Where it is not, whoever asks has to ask a NearTree.
///
/// A k-d tree with buckets, after J. H. Friedman, J. L. Bentley and R. A. Finkel, "An algorithm for
/// finding best matches in logarithmic expected time", ACM Transactions on Mathematical Software 3
/// (1977), with the incremental distances of S. Arya and D. M. Mount (1993).
class OVRA_GEO_EXPORT PointTree
{
public:
    /// \brief What nearest() answers where a NearTree has to be asked.
    static constexpr int Undecided = -1;

    /// \brief A tree of \p points, which are copied. O(n log n).
    explicit PointTree(const std::vector<Vector>& points);

    /// \brief The place, in the list that the tree was made of, of the point nearest to \p query, if
    ///        it is the one that a NearTree of plain points finds, however that was filled.
    /// \return Undecided if others lie as near but for rounding, if nothing is nearer than 1e12, or if
    ///         a point is not finite
    int nearest(const Vector& query) const;

private:
    struct Point
    {
        Vector place;
        int index;
    };

    /// A part [first, end) of the points, cut in the middle across one axis, or a bucket.
    struct Range
    {
        int first;
        int end;
    };

    struct Cut
    {
        double place;
        int axis;
    };

    class Search;

    static constexpr int BucketSize = 8;

    static bool isBucket(const Range& range) { return range.end - range.first <= BucketSize; }
    static int middle(const Range& range) { return range.first + (range.end - range.first) / 2; }

    void measure();
    void arrange(const Range& all);
    int widestAxis(const Range& range) const;

    std::vector<Point> points_;
    std::vector<Cut> cuts_; ///< of the ranges, by the place of their middle
    Vector center_;
    double radius_ = 0.0; ///< about the centre, of all points; not finite if one is not
};

} // namespace Ovra::Geo
