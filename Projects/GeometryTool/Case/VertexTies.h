#pragma once

#include "AttributeType.h"
#include "Vector.h"

#include <QList>
#include <QString>

namespace Ovra::Geo
{
class Mesh;
class MeshEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief The attributes that tie a mesh vertex to a mesh entity on a partner face.
class VertexTies
{
public:
    static VertexTies periodic();
    static VertexTies extruded();

    /// \brief Number of vertices in \p mesh that carry any of the attributes.
    qint64 count(const Geo::Mesh& mesh) const;

    /// \brief Takes the attributes off all vertices of \p mesh.
    /// \return how many vertices had any
    qint64 clear(Geo::Mesh& mesh) const;

    const Geo::AttributeType& dimensionType() const { return entityType_; }
    const Geo::AttributeType& idType() const { return entityId_; }
    const Geo::AttributeType& weightsType() const { return weights_; }

    /// \brief Whether \p vertex carries any of the attributes.
    bool isTied(Geo::MeshEntity& vertex) const;

    /// \brief How many weights a tie to \p entity has: one for each of its vertices, and one for a
    ///        vertex itself.
    static qsizetype weightCount(const Geo::MeshEntity& entity);

    /// \brief What is wrong with the weights of \p vertex for \p entity: too few or too many, not
    ///        finite, negative, or not 1 in sum.
    /// \return empty if nothing is
    QString weightFault(Geo::MeshEntity& vertex, const Geo::MeshEntity& entity) const;

    /// \brief What is wrong with the tie of \p vertex: a missing attribute, an entity that is not
    ///        there, or its weights.
    /// \return empty if nothing is
    QString fault(const Geo::Mesh& mesh, Geo::MeshEntity& vertex) const;

    /// \brief Ties \p vertex to \p entity.
    /// \param vertex  its tie is replaced if it has one
    /// \param entity  a mesh edge or face
    /// \param weights one for each vertex of \p entity, in the order of its vertex list
    void set(Geo::MeshEntity& vertex, const Geo::MeshEntity& entity,
             const QList<double>& weights) const;

    /// \brief The entity that a faultless tie names.
    const Geo::MeshEntity& entityOf(const Geo::Mesh& mesh, Geo::MeshEntity& vertex) const;

    /// \brief The place that a faultless tie stands for: the weighted vertices of its entity.
    Geo::Vector placeOf(const Geo::Mesh& mesh, Geo::MeshEntity& vertex) const;

private:
    VertexTies(const Geo::AttributeType& entityType, const Geo::AttributeType& entityId,
               const Geo::AttributeType& weights);

    Geo::AttributeType entityType_;
    Geo::AttributeType entityId_;
    Geo::AttributeType weights_;
};

/// \brief Length of the longest side of a mesh entity; 0 for a vertex.
double longestEdge(const Geo::MeshEntity& entity);

} // namespace Ovra::GeoTool
