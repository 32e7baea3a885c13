#pragma once

#include "AttributeMap.h"
#include "AttributeType.h"
#include "ElementFaceData.h"
#include "LinkData.h"

#include <QList>

/// \file
/// \brief What several sections of the solver input ask of model and mesh.
///
/// For GbiWriter alone; nothing here is exported.

namespace Ovra::Geo
{

class Mesh;
class MeshEntity;
class Model;
class ModelEntity;

namespace GbiQueries
{

/// \brief An attribute read as an integer; \p defaultValue if it is absent.
int intAttribute(const AttributeMap& attributes, const AttributeType& type, int defaultValue = 0);

/// \brief An attribute read as a bool; false if it is absent.
bool boolAttribute(const AttributeMap& attributes, const AttributeType& type);

/// \brief The material under which the solver sees a region.
///
/// That is the region's `material_id`, or, if the region has a `fluid_region`, the `material_id` of
/// the region named there; 0 if it is absent.
/// \param model,region an entity of the dimension Model::faceDimension() + 1 of this model
int solverMaterial(const Model& model, const ModelEntity& region);

/// \brief The attributes of a mesh vertex that tie it to an entity elsewhere.
struct LinkAttributes
{
    AttributeType entityType; ///< int, the dimension of the entity
    AttributeType entityId;   ///< int, its id
    AttributeType weights;    ///< list of double, one for each of its vertices
};

/// \brief The stencil of a mesh vertex that is tied to an entity elsewhere.
///
/// A vertex tied to a vertex has that one link with weight 1, whether or not it exists. Otherwise
/// the links are those vertices of the entity that have a weight above 0, ascending by id.
/// \pre the entity exists, has at most four vertices and as many weights; what is missing or beyond
///      that is left out
LinkData stencilOf(const Mesh& mesh, MeshEntity& vertex, const LinkAttributes& names);

/// \brief Appends \p face as a face of each of its elements.
/// \param face,faces a mesh entity one dimension below elements, its upward lists set, and the result
void appendElementFaces(MeshEntity& face, QList<ElementFaceData>& faces);

} // namespace GbiQueries
} // namespace Ovra::Geo
