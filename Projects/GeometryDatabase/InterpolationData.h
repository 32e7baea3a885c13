#pragma once

#include "GeometryDatabaseExport.h"

#include <QVarLengthArray>
#include <QVariantList>

namespace Ovra::Geo
{

/// \brief The place of a point on a meshed model face: a mesh entity and the weights of its
///        vertices.
///
/// A plain record.
class OVRA_GEO_EXPORT InterpolationData
{
public:
    /// \brief The weights in the form in which a mesh vertex stores them as an attribute.
    /// \return one `double` for each weight, in order; the one value 1.0 when the entity is a
    ///         vertex
    QVariantList weightList() const;

    /// Dimension of the mesh entity: 0 for a vertex, else the face dimension of the model; -1 if
    /// not set.
    int entityType = -1;
    /// Id of the mesh entity; 0 if not set.
    int entityId = 0;
    /// One weight for each vertex of the entity, in the order of its vertex list; empty when the
    /// entity is a vertex.
    QVarLengthArray<double, 4> weights;
};

} // namespace Ovra::Geo
