#pragma once

#include "IdPositions.h"
#include "UnionFind.h"

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
/// interface, of a shell, or of a periodic pair.
///
/// Where each mesh face has its counterpart on the other side, the elements at both stay together:
/// by the place of the vertices on doubled faces, by `shell_vertex` on shells, by a tie to a single
/// vertex on periodic faces. A pair that has a mesh face without counterpart stays together as a
/// whole, with all elements at its mesh faces.
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
    void findElements();
    void join(const Pair& pair);
    void joinAll(const std::vector<int>& elements);
    std::vector<int> elementsAt(const Geo::ModelEntity* face) const;

    PartnerOf byPlace(const Geo::ModelEntity* other) const;
    PartnerOf byShellLink() const;
    PartnerOf byTie() const;
    int shellPartner(int vertex) const;
    int tiedPartner(int vertex) const;

    const CaseView& view_;
    IdPositions vertices_; ///< by id
    std::vector<Pair> pairs_;
    QHash<const Geo::ModelEntity*, std::vector<int>> meshFaces_; ///< of the faces of the pairs
    QHash<int, std::vector<int>> elements_;                      ///< at those mesh faces
    UnionFind joined_;
};

} // namespace Ovra::GeoTool
