#include "GbiQueries.h"
#include "GbiText.h"
#include "GbiWriter.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"

#include <QDebug>

#include <algorithm>

namespace Ovra::Geo
{

namespace
{

// Extruded faces are faces of the model also where edges bound a planar one.
const int ExtrudedDimension = 2;

bool isExtruded(MeshEntity& vertex)
{
    const AttributeMap& attributes = vertex.attributes();
    return GbiQueries::intAttribute(attributes, AttributeType::ExtrudedEntityType, -1) != -1 &&
           GbiQueries::intAttribute(attributes, AttributeType::ExtrudedEntityId) != 0;
}

QList<LinkData> extrusionLinks(const Mesh& mesh)
{
    const GbiQueries::LinkAttributes names{AttributeType::ExtrudedEntityType,
                                           AttributeType::ExtrudedEntityId,
                                           AttributeType::ExtrudedWeights};
    QList<LinkData> links;
    for (auto walk = mesh.iterator(0); walk.hasNext();) {
        walk.next();
        if (isExtruded(*walk.value())) {
            links.append(GbiQueries::stencilOf(mesh, *walk.value(), names));
        }
    }
    std::sort(links.begin(), links.end());
    return links;
}

QList<ElementFaceData> pairedFaces(const Model& model, ModelEntity& face, int partnerId)
{
    qDebug() << "Found face" << face.id() << "and face" << partnerId;
    ModelEntity* partner = model.entity(ExtrudedDimension, partnerId);
    return Utility::getElementFaceDataOnModelFace(&face, partner) +
           Utility::getElementFaceDataOnModelFace(partner, &face);
}

QList<ElementFaceData> extrusionFaces(const Model& model)
{
    QList<ElementFaceData> faces;
    for (auto walk = model.iterator(ExtrudedDimension); walk.hasNext();) {
        walk.next();
        ModelEntity& face = *walk.value();
        const int partnerId =
            GbiQueries::intAttribute(face.attributes(), AttributeType::ExtrudedFace);
        if (partnerId != 0) {
            faces.append(pairedFaces(model, face, partnerId));
        }
    }
    std::sort(faces.begin(), faces.end());
    return faces;
}

} // namespace

void GbiWriter::writeExtrusionFaceList(QTextStream& stream) const
{
    GbiText::writeCount(stream, extrusionFaces_.size(), GbiText::newLine);
    for (const ElementFaceData& face : std::as_const(extrusionFaces_)) {
        GbiText::writeFace(stream, face);
        stream << (face.fluidInterface_ ? " 1" : " 0") << '\n';
    }
}

void GbiWriter::writeExtrusionNodalData(QTextStream& stream) const
{
    requireExtrusionData();
    const GbiText::RealPrecision precision(stream, GbiText::WeightPrecision);
    GbiText::writeCount(stream, extrusionLinks_.size(), GbiText::newLine);
    GbiText::writeStencils(stream, extrusionLinks_, GbiText::newLine);
}

void GbiWriter::writeGmExtrusionData(QTextStream& stream) const
{
    requireExtrusionData();
    // Stays: what hosts write behind this section relies on it.
    stream.setRealNumberPrecision(GbiText::WeightPrecision);
    GbiText::writeCount(stream, extrusionLinks_.size(), Qt::endl);
    stream << "--- i_extrusion ---" << Qt::endl;
    for (const LinkData& stencil : std::as_const(extrusionLinks_)) {
        stream << stencil.nodeId_ << ' ';
        GbiText::writeLinkIds(stream, stencil);
        stream << Qt::endl;
    }
    stream << "--- f_extrusion ---" << Qt::endl;
    for (const LinkData& stencil : std::as_const(extrusionLinks_)) {
        GbiText::writeLinkWeights(stream, stencil);
        stream << Qt::endl;
    }
    stream << "--- EFaceList ---" << Qt::endl;
    GbiText::writeCount(stream, extrusionFaces_.size(), GbiText::newLine);
    GbiText::writeFaces(stream, extrusionFaces_, Qt::endl);
}

void GbiWriter::writeSpatiallyVaryingNodalBC(QTextStream&) const {}

void GbiWriter::requireExtrusionData() const
{
    if (extrusionLinks_.isEmpty()) {
        getExtrusionData();
    }
}

void GbiWriter::getExtrusionData() const
{
    extrusionLinks_ = extrusionLinks(*mesh_);
    extrusionFaces_ = extrusionFaces(*model_);
}

} // namespace Ovra::Geo
