#pragma once

#include "VertexTies.h"

#include <unordered_map>
#include <utility>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class CaseView;
class FindingSink;

/// \brief Looks at the ties by which vertices of a face hang on the mesh of its partner: what each
/// names, and its weights.
class LinkCheck
{
public:
    /// \brief A face and the one that its vertices are tied to.
    using Pairs = std::vector<std::pair<const Geo::ModelEntity*, const Geo::ModelEntity*>>;

    /// \param view, sink not owned; must outlive this object
    LinkCheck(const VertexTies& ties, const CaseView& view, FindingSink& sink);

    /// \brief Checks all ties in the mesh. If there are any, all vertices on the faces of \p pairs
    /// must have one, to the face's partner.
    void run(const Pairs& pairs);

    /// \brief Checks what the writer of the solver input follows: the entity named, and that there
    /// are enough weights and not too many.
    /// \return the entity, or null if there was something to report
    const Geo::MeshEntity* checkTarget(Geo::MeshEntity& vertex);

private:
    using Faces = std::vector<const Geo::ModelEntity*>;

    void gather(const Pairs& pairs);
    const Geo::MeshEntity* findTarget(Geo::MeshEntity& vertex);
    bool checkWeightCount(Geo::MeshEntity& vertex, const Geo::MeshEntity& target);
    void checkWeights(Geo::MeshEntity& vertex, const Geo::MeshEntity& target);
    void checkPlace(Geo::MeshEntity& vertex, const Geo::MeshEntity& target);
    bool liesOn(const Geo::MeshEntity& target, const Faces& faces) const;

    VertexTies ties_;
    const CaseView& view_;
    FindingSink& sink_;
    std::unordered_map<const Geo::MeshEntity*, Faces> faces_;    ///< that a vertex lies on
    std::unordered_map<const Geo::MeshEntity*, Faces> partners_; ///< of those
};

} // namespace Ovra::GeoTool
