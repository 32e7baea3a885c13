#pragma once

#include "IdPositions.h"
#include "UnionFind.h"
#include "VertexTies.h"

#include <QHash>

#include <functional>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Which elements have to stay in one part, so that no cut parts the two sides of a doubled
/// interface, of a shell, of a periodic or an extruded pair, or a replica from its original.
///
/// Where each mesh face has its counterpart on the other side, the elements at both stay together:
/// by the place of the vertices on doubled faces, by `shell_vertex` on shells, by a tie to a single
/// vertex on periodic and extruded faces. Elements of a replica stay with those of its original, by
/// `new_motion_vertex`. A pair that has a mesh face, or an element, without counterpart stays
/// together as a whole, with all elements at its mesh faces.
class KeptInterfaces
{
public:
    explicit KeptInterfaces(const CaseView& view);

    /// \brief The cluster of each element, numbered in the order of their first elements.
    std::vector<int> clusters();

private:
    /// The counterpart of a vertex, by position; -1 for none.
    using PartnerOf = std::function<int(int)>;

    struct Pair
    {
        const Geo::ModelEntity* first;
        const Geo::ModelEntity* second;
        PartnerOf partnerOf;
    };

    void findPairs();
    void findPeriodicPairs();
    void findExtrudedPairs();
    void findChildren(int dimension);
    void findElements();
    void join(const Pair& pair);
    void joinAll(const std::vector<int>& elements);
    std::vector<int> elementsAt(std::vector<int> some, const std::vector<int>& others,
                                int dimension) const;

    PartnerOf byPlace(const Geo::ModelEntity* other) const;
    PartnerOf byLink(const Geo::AttributeType& link) const;
    PartnerOf byTie(const VertexTies& ties) const;
    int linkedPartner(int vertex, const Geo::AttributeType& link) const;
    int tiedPartner(int vertex, const VertexTies& ties) const;

    const CaseView& view_;
    const IdPositions& vertices_; ///< by id
    std::vector<Pair> pairs_;
    QHash<const Geo::ModelEntity*, std::vector<int>> children_; ///< of the entities of the pairs
    QHash<int, std::vector<int>> elements_;                     ///< at mesh faces among them
    UnionFind joined_;
};

} // namespace Ovra::GeoTool
