#pragma once

#include "BodyContact.h"
#include "Box.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Finds where bodies of Gmsh's current model touch without being joined: two faces, each of
/// one body alone, that lie on one another wholly or in part.
///
/// In a model without regions, edges are looked at. Needs CadModel::isOfKernel(). Boxes, planes and kinds of
/// surfaces rule out most pairs; the kernel intersects copies of what is left, which it removes
/// again, so that the model stays as it is.
class CadContacts
{
public:
    /// \brief How far two bodies, by their numbers, may be apart or overlap and still count.
    using Reach = std::function<double(int body, int other)>;

    /// \param tolerance gaps and overlaps up to this length are no more than rounding
    explicit CadContacts(double tolerance);

    /// \brief Looks for wider gaps and overlaps too, up to \p reach and a tenth of the shortest edge
    /// of the two faces.
    /// \param pairs of faces that may have any, by numbers, the lower one first: to ask the kernel
    /// for all would take too long
    void setReach(Reach reach, std::set<std::pair<int, int>> pairs);

    /// \brief All contacts, ascending by the first number, then by the second. Each has the
    /// tolerance that it was found with, which is not much more than it takes.
    std::vector<BodyContact> find() const;

private:
    struct Side
    {
        int tag;
        int body;
        Geo::Box box;
        int kind;           ///< of the surface or curve; 0 for those that may be any
        bool flat;          ///< in a plane or on a line
        Geo::Vector point;  ///< of a flat one
        Geo::Vector normal; ///< of a plane, or direction of a line
        double radius;      ///< of a cylinder, sphere or circle; 0 for others
    };
    using Sides = std::vector<Side>;
    using Pairs = std::vector<std::pair<std::size_t, std::size_t>>; ///< positions, ascending

    Sides sides() const;
    void locate(Side& side) const;
    void locateFlat(Side& side, const std::vector<double>& parameters) const;
    Pairs pairs(const Sides& all) const;
    bool mayTouch(const Side& a, const Side& b, double tolerance) const;
    bool isInLine(const Side& a, const Side& b, double tolerance) const;
    double offset(const Side& a, const Side& b) const;
    std::vector<BodyContact> touching(const Sides& all) const;
    std::vector<BodyContact> apart(const Sides& all, const std::vector<BodyContact>& known) const;
    std::optional<BodyContact> apart(const Side& a, const Side& b) const;
    std::optional<BodyContact> within(double limit, const Side& a, const Side& b) const;
    double shortestEdge(const Side& side) const;
    std::vector<BodyContact> common(int tag, const std::vector<int>& others,
                                    double tolerance) const;

    int dimension_; ///< of the faces
    double tolerance_;
    Reach reach_;
    std::set<std::pair<int, int>> nearby_; ///< numbers of faces
};

} // namespace Ovra::GeoTool
