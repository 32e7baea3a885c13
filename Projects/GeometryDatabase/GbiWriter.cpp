#include "GbiWriter.h"

#include "Database.h"
#include "GbiQueries.h"
#include "GbiText.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
#include "TextBlock.h"

#include <QHash>

namespace Ovra::Geo
{

namespace
{

// What every element of a region shares, so that the attributes of a region are read once and not
// once for each of its elements.
struct RegionColumns
{
    bool isShell = false;
    int material = 0;
};

RegionColumns columnsOf(const Model& model, const ModelEntity& region)
{
    RegionColumns columns;
    columns.isShell = region.attributes().contains(AttributeType::IsShell);
    if (!columns.isShell) {
        columns.material = GbiQueries::solverMaterial(model, region);
    }
    return columns;
}

class RegionTable
{
public:
    explicit RegionTable(const Model& model)
        : model_(model)
    {
    }

    RegionColumns of(const ModelEntity* region)
    {
        const auto known = columns_.constFind(region);
        return known != columns_.cend() ? *known
                                        : *columns_.insert(region, columnsOf(model_, *region));
    }

private:
    const Model& model_;
    QHash<const ModelEntity*, RegionColumns> columns_;
};

void writeElement(TextBlock& stream, MeshEntity& element, int material)
{
    const int verticesOfQuadrilateral = 4;
    GbiText::writeElementColumns(stream, element,
                                 GbiText::shapeOf(element, verticesOfQuadrilateral), material,
                                 element.parent()->id());
    const bool inBoundaryLayer =
        GbiQueries::boolAttribute(element.attributes(), AttributeType::InBL);
    stream << ' ' << (inBoundaryLayer ? 1 : 0);
    GbiText::writeElementVertices(stream, element);
}

} // namespace

GbiWriter::GbiWriter(Database* database)
    : model_(database->model())
    , mesh_(database->mesh())
{
}

void GbiWriter::writeNodes(QTextStream& stream, double scale) const
{
    {
        const GbiText::RealPrecision precision(stream, GbiText::CoordinatePrecision);
        TextBlock lines(stream);
        for (auto walk = mesh_->iterator(0); walk.hasNext();) {
            walk.next();
            const auto* vertex = static_cast<const MeshVertex*>(walk.value());
            lines << vertex->id() << ' ';
            GbiText::writeVector(lines, vertex->point() * scale);
            lines << '\n';
        }
    }
    stream << GbiText::EndOfSection;
}

void GbiWriter::writeElements(QTextStream& stream) const
{
    {
        RegionTable regions(*model_);
        TextBlock lines(stream);
        for (auto walk = mesh_->iterator(model_->faceDimension() + 1); walk.hasNext();) {
            walk.next();
            MeshEntity* element = walk.value();
            const RegionColumns region = regions.of(element->parent());
            if (!region.isShell) {
                writeElement(lines, *element, region.material);
            }
        }
    }
    stream << GbiText::EndOfSection;
}

int GbiWriter::faceCount(QList<QList<ElementFaceData>>& lists) const
{
    qsizetype count = 0;
    for (const QList<ElementFaceData>& list : std::as_const(lists)) {
        count += list.size();
    }
    return static_cast<int>(count);
}

} // namespace Ovra::Geo
