#include "GbiQueries.h"
#include "GbiText.h"
#include "GbiWriter.h"
#include "IdOrder.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "TextBlock.h"
#include "Utility.h"

#include <QVariant>

namespace Ovra::Geo
{

namespace
{

QList<const ModelEntity*> shellRegions(const Model& model)
{
    QList<const ModelEntity*> regions;
    for (auto walk = model.iterator(model.faceDimension() + 1); walk.hasNext();) {
        walk.next();
        if (GbiQueries::boolAttribute(walk.value()->attributes(), AttributeType::IsShell)) {
            regions.append(walk.value());
        }
    }
    return regions;
}

// The material of a shell element: that of the region itself, whatever its fluid region.
int ownMaterial(const ModelEntity& region)
{
    bool isNumber = false;
    const int material =
        region.attributes().value(AttributeType::MaterialId, QVariant()).toInt(&isNumber);
    return isNumber ? material : -1;
}

void writeShellElement(TextBlock& stream, const MeshEntity& element, int material, int regionId)
{
    // Not the 4 of the elements section: this is how the solver reads shells.
    const int verticesOfQuadrilateral = 5;
    GbiText::writeElementColumns(
        stream, element, GbiText::shapeOf(element, verticesOfQuadrilateral), material, regionId);
    stream << ' ' << '1';
    GbiText::writeElementVertices(stream, element);
}

void writeNodeLinks(QTextStream& stream, const ModelEntity& face)
{
    const QList<MeshEntity*> nodes = inIdOrder(Utility::getMeshVerticesOnModelEntity(&face));
    stream << face.id() << ' '
           << GbiQueries::intAttribute(face.attributes(), AttributeType::NewShellFace) << ' '
           << static_cast<int>(nodes.size()) << '\n';
    for (MeshEntity* node : nodes) {
        stream << node->id() << ' '
               << GbiQueries::intAttribute(node->attributes(), AttributeType::ShellVertex) << '\n';
    }
}

} // namespace

void GbiWriter::writeShellElements(QTextStream& stream) const
{
    {
        TextBlock lines(stream);
        for (const ModelEntity* region : shellRegions(*model_)) {
            const int material = ownMaterial(*region);
            for (const MeshEntity* element : inIdOrder(region->childIterator())) {
                writeShellElement(lines, *element, material, region->id());
            }
        }
    }
    stream << GbiText::EndOfSection;
}

void GbiWriter::writeShellRegionData(QTextStream& stream) const
{
    for (const ModelEntity* region : shellRegions(*model_)) {
        const AttributeMap& attributes = region->attributes();
        stream << region->id() << ' '
               << GbiQueries::intAttribute(attributes, AttributeType::MaterialId, -1) << ' '
               << GbiQueries::intAttribute(attributes, AttributeType::OriginalShellFace, -1)
               << '\n';
    }
    stream << GbiText::EndOfSection;
}

void GbiWriter::writeShellSurfaceNodeLinks(QTextStream& stream) const
{
    for (auto walk = model_->iterator(model_->faceDimension()); walk.hasNext();) {
        walk.next();
        if (walk.value()->attributes().contains(AttributeType::NewShellFace)) {
            writeNodeLinks(stream, *walk.value());
        }
    }
    stream << "-1 -1 -1\n";
}

} // namespace Ovra::Geo
