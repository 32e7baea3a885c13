#pragma once

#include <QHash>
#include <QList>

namespace Ovra::Geo
{
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Which vertex is the copy of which, read off the doubled mesh faces.
///
/// The library forgets the pairs of a split as soon as it is done.
class VertexCopies
{
public:
    /// \brief Pairs the vertices of the mesh on \p face with those of the mesh on \p twin.
    ///
    /// Each mesh face must have a twin, made in ascending order of their ids, with its vertices in
    /// the same order.
    void add(const Geo::ModelEntity& face, const Geo::ModelEntity& twin);

    bool isEmpty() const { return copies_.isEmpty(); }

    /// \brief The copy of \p vertex, or null.
    Geo::MeshEntity* copyOf(Geo::MeshEntity* vertex) const { return copies_.value(vertex); }

    /// \brief The vertices that have a copy, by ascending id.
    QList<Geo::MeshEntity*> originals() const;

private:
    QHash<Geo::MeshEntity*, Geo::MeshEntity*> copies_;
};

} // namespace Ovra::GeoTool
