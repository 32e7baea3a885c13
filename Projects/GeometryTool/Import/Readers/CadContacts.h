#pragma once

#include "Box.h"

#include <cstddef>
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
    struct Contact
    {
        int face;    ///< the lower number
        int other;   ///< the higher number
        double size; ///< area or length that the two have in common
    };

    /// \param tolerance gaps and overlaps up to this length count as contact
    explicit CadContacts(double tolerance);

    /// \brief All contacts, ascending by the first number, then by the second.
    std::vector<Contact> find() const;

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

    std::vector<Side> sides() const;
    void locate(Side& side) const;
    void locateFlat(Side& side, const std::vector<double>& parameters) const;
    bool mayTouch(const Side& a, const Side& b) const;
    bool isInLine(const Side& a, const Side& b) const;
    std::vector<Contact> common(int tag, const std::vector<int>& others) const;

    int dimension_; ///< of the faces
    double tolerance_;
};

} // namespace Ovra::GeoTool
