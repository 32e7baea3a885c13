#pragma once

#include <QSet>

namespace Ovra::Geo
{
class Database;
class MeshEntity;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

class VertexCopies;

/// \brief Takes along what stays behind on the old vertices when a part of the mesh has moved to
///        their copies: mesh edges, shell links and the links of replicas.
class DoublingAftercare
{
public:
    /// \param database with its upward lists set after the doubling; not owned
    /// \param copies   must outlive this object
    DoublingAftercare(Geo::Database& database, const VertexCopies& copies);

    /// \brief Carries everything over; the upward lists stay in step.
    void run() const;

private:
    void carryEdges() const;
    void carryEdge(Geo::MeshEntity& edge) const;
    void carryShellLinks() const;
    void moveShellLink(Geo::MeshEntity& vertex, Geo::MeshEntity& copy) const;
    int shellPartner(Geo::MeshEntity& vertex, bool copyFirst) const;
    QSet<const Geo::ModelEntity*> shellFaces() const;
    bool liesOnShell(const Geo::MeshEntity& vertex) const;
    void carryReplicaLinks() const;
    void moveReplicaLink(Geo::MeshEntity& replica) const;

    Geo::Database& database_;
    const VertexCopies& copies_;
    int faceDimension_;
    QSet<const Geo::ModelEntity*> shellFaces_;
};

} // namespace Ovra::GeoTool
