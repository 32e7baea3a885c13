#pragma once

#include "BodyContact.h"
#include "Box.h"
#include "ContactReach.h"
#include "ConvexClip.h"

#include <vector>

namespace Ovra::GeoTool
{

struct ImportedMesh;

/// \brief Finds where bodies of a mesh touch without being joined: mesh faces of two bodies that
/// lie on one another wholly or in part. What CadContacts does where there is geometry.
///
/// Each pair of mesh faces whose boxes meet is clipped against one another, the one by the column
/// over the other; what they have in common counts if it lies within the reach. In a model without regions,
/// edges are looked at.
class MeshContacts
{
public:
    MeshContacts(const ImportedMesh& mesh, const ContactReach& reach);

    /// \brief All contacts, ascending by the first number, then by the second.
    std::vector<BodyContact> find() const;

    /// \brief As find(), with those too that are so narrow that nothing passes.
    std::vector<BodyContact> findAll() const;

private:
    struct Facet
    {
        int face; ///< id
        int body; ///< id
        ConvexClip::Polygon corners;
        Geo::Vector normal;
        Geo::Box box;
    };

    void addFacets();
    void addFacet(int face, int body, const ConvexClip::Polygon& corners);
    double commonSize(const Facet& a, const Facet& b) const;
    bool liesOn(const Facet& facet, const ConvexClip::Polygon& polygon, double reach) const;
    bool isWide(const BodyContact& contact) const;

    const ImportedMesh& mesh_;
    const ContactReach reach_;
    int dimension_; ///< of the faces
    std::vector<Facet> facets_;
};

} // namespace Ovra::GeoTool
