#include "GbiQueries.h"

#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"

#include <QVariant>

namespace Ovra::Geo::GbiQueries
{

int intAttribute(const AttributeMap& attributes, const AttributeType& type, int defaultValue)
{
    return attributes.value(type, QVariant(defaultValue)).toInt();
}

bool boolAttribute(const AttributeMap& attributes, const AttributeType& type)
{
    return attributes.value(type, QVariant()).toBool();
}

int solverMaterial(const Model& model, const ModelEntity& region)
{
    const int fluidRegion = intAttribute(region.attributes(), AttributeType::FluidRegion);
    const ModelEntity& source =
        fluidRegion == 0 ? region : *model.entity(model.faceDimension() + 1, fluidRegion);
    return intAttribute(source.attributes(), AttributeType::MaterialId);
}

namespace
{

const int MaxLinks = 4;

void linkToVertex(LinkData& stencil, int id)
{
    stencil.linkCount_ = 1;
    stencil.linkIds_[0] = id;
    stencil.linkWeights_[0] = 1.0;
}

void linkToVerticesOf(LinkData& stencil, const MeshEntity& entity, const QVariantList& weights)
{
    QListIterator<MeshEntity*> vertices = entity.adjacencyIterator(0);
    for (const QVariant& variant : weights) {
        if (!vertices.hasNext() || stencil.linkCount_ == MaxLinks) {
            break;
        }
        const MeshEntity* vertex = vertices.next();
        const double weight = variant.toDouble();
        if (weight > 0.0) {
            const auto link = static_cast<std::size_t>(stencil.linkCount_++);
            stencil.linkIds_[link] = vertex->id();
            stencil.linkWeights_[link] = weight;
        }
    }
    stencil.sort();
}

} // namespace

LinkData stencilOf(const Mesh& mesh, MeshEntity& vertex, const LinkAttributes& names)
{
    const AttributeMap& attributes = vertex.attributes();
    const int type = intAttribute(attributes, names.entityType, -1);
    const int id = intAttribute(attributes, names.entityId);
    LinkData stencil;
    stencil.nodeId_ = vertex.id();
    if (type == 0) {
        linkToVertex(stencil, id);
    } else if (const MeshEntity* entity =
                   type >= 1 && type <= 3 ? mesh.entity(type, id) : nullptr) {
        linkToVerticesOf(stencil, *entity, attributes.value(names.weights, QVariant()).toList());
    }
    return stencil;
}

void appendElementFaces(MeshEntity& face, QList<ElementFaceData>& faces)
{
    const int elementDimension = face.dimension() + 1;
    for (int i = 0, count = face.adjacencyCount(elementDimension); i < count; ++i) {
        MeshEntity* element = face.adjacencyAt(elementDimension, i);
        ElementFaceData record;
        record.elementId_ = element->id();
        record.localFace_ = Utility::getLocalFaceIndex(&face, element);
        faces.append(record);
    }
}

} // namespace Ovra::Geo::GbiQueries
