#pragma once

#include "Box.h"
#include "ConvexClip.h"

#include <set>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

struct ImportedElement;
struct ImportedMesh;

/// \brief Finds bodies of a mesh that lie in one another wholly or in part.
///
/// Two bodies overlap where the surface of one passes through elements of the other, or else if
/// they are the same. Elements other than simplices are taken for those about their middle.
class MeshOverlaps
{
public:
    using Pair = std::pair<int, int>; ///< positions of bodies, the lower one first

    explicit MeshOverlaps(const ImportedMesh& mesh);

    /// \brief The bodies that overlap by more than rounding, as their mesh has it: where curved
    /// bodies touch, meshes may overlap though the shapes do not.
    std::set<Pair> find() const;

    /// \brief Volume, or area in a model without regions, that the elements of two bodies have in
    /// common; 0 if it is less than rounding can make of the smaller body.
    double measure(const Pair& pair) const;

private:
    using Simplex = ConvexClip::Polygon; ///< of one corner more than it has dimensions

    void addCrossings(std::set<Pair>& pairs) const;
    void addTwins(std::set<Pair>& pairs) const;
    const std::set<int>& bodiesAt(const ImportedElement& facet) const;
    bool passesThrough(const ImportedElement& facet, const ImportedElement& element) const;
    std::vector<Simplex> simplicesOf(const ImportedElement& element) const;
    std::vector<Simplex> partsOf(const ImportedElement& element) const;
    bool isFlat(const Simplex& simplex, double extent) const;
    std::vector<HalfSpace> boundsOf(const Simplex& simplex) const;
    double common(const ImportedElement& a, const ImportedElement& b) const;
    std::vector<const ImportedElement*> elementsOf(int body, const Geo::Box& within) const;

    const ImportedMesh& mesh_;
    int dimension_; ///< of the bodies
};

} // namespace Ovra::GeoTool
