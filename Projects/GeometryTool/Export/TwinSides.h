#pragma once

#include <QHash>
#include <QString>

#include <cstddef>
#include <vector>

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

class CaseView;

/// \brief On which side of what the preparation has doubled the mesh lies, for each relation of
/// twinsOf(): the sides of a split, replicas and their originals, the two faces of a shell.
class TwinSides
{
public:
    static constexpr int None = 0;
    static constexpr int Original = 1;
    static constexpr int Copy = 2; ///< a vertex that both sides use has Original + Copy

    struct Relation
    {
        QString name;      ///< "solid_side"
        int dimension = 0; ///< the highest of its twins
        QHash<const Geo::ModelEntity*, int> ofModel;
        std::vector<int> ofVertices; ///< by position; of those on a twin

        /// \brief The side that mesh entities on \p parent lie on; it may be null.
        int of(const Geo::ModelEntity* parent) const { return ofModel.value(parent, None); }
    };

    explicit TwinSides(const CaseView& view);

    /// \brief By name; none in a case without twins.
    const std::vector<Relation>& relations() const { return relations_; }

    /// \brief The side of a mesh entity of \p dimension: an element that lies on no twin has that of
    /// its vertices, so that what touches a split from either side can be told apart.
    /// \param parent what it stands on, or null
    int of(const Relation& relation, const Geo::ModelEntity* parent, int dimension,
           std::size_t entity) const;

private:
    Relation& relationOf(const QString& name);
    void markVertices(Relation& relation, int dimension) const;

    const CaseView& view_;
    std::vector<Relation> relations_;
};

} // namespace Ovra::GeoTool
