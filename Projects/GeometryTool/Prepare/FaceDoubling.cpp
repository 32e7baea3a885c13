#include "FaceDoubling.h"

#include "CopyDescription.h"
#include "Counted.h"
#include "DoublingAftercare.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "IntAttribute.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Utility.h"
#include "VertexCopies.h"
#include "VertexLists.h"

#include <QMap>

#include <vector>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

QString FaceDoubling::doubleFaces(const AttributeType& link, const QString& side,
                                  const std::function<void()>& operation, const QString& which,
                                  const QString& fault)
{
    const QList<ModelEntity*> before = facesWith(link);
    const int vertexCount = mesh().count(0);
    const int meshFaceCount = mesh().count(faceDimension());
    const qint64 sides = sideCount();
    operation();
    refreshUpwardLists();
    if (sideCount() != sides) {
        refuse(QStringLiteral("doubling the model faces %1 would take elements away from %2: %3")
                   .arg(which, counted(sides - sideCount(), QStringLiteral("mesh face")), fault));
    }

    VertexCopies copies;
    QList<ModelEntity*> added = facesWith(link);
    added.removeIf([&before](ModelEntity* face) { return before.contains(face); });
    describe(added, link, side);
    for (ModelEntity* face : added) {
        const int oldId = intOf(face->attributes(), link);
        copies.add(*model().entity(faceDimension(), oldId), *face);
        settle(*face);
    }
    DoublingAftercare(database(), copies).run();
    if (added.isEmpty()) {
        return QString();
    }
    return QStringLiteral("%1 %2 doubled, with %3 and %4")
        .arg(
            counted(added.size(), QStringLiteral("model face")), which,
            counted(mesh().count(faceDimension()) - meshFaceCount, QStringLiteral("new mesh face")),
            counted(mesh().count(0) - vertexCount, QStringLiteral("new vertex")));
}

QList<const MeshEntity*> FaceDoubling::verticesBetweenRegions() const
{
    const QList<MeshEntity*> vertices = inIdOrder(mesh().iterator(0));
    const IdPositions positions = positionsOf({vertices.begin(), vertices.end()});
    std::vector<const ModelEntity*> regions(static_cast<std::size_t>(vertices.size()));
    std::vector<bool> isBetween(regions.size());
    for (auto elements = mesh().iterator(regionDimension()); elements.hasNext();) {
        const MeshEntity& element = *elements.next().value();
        for (int i = 0; i < element.adjacencyCount(0); ++i) {
            const auto vertex =
                static_cast<std::size_t>(positions.find(element.adjacencyAt(0, i)->id()));
            isBetween[vertex] =
                isBetween[vertex] || (regions[vertex] && regions[vertex] != element.parent());
            regions[vertex] = element.parent();
        }
    }
    QList<const MeshEntity*> found;
    for (qsizetype i = 0; i < vertices.size(); ++i) {
        if (isBetween[static_cast<std::size_t>(i)]) {
            found.append(vertices.at(i));
        }
    }
    return found;
}

void FaceDoubling::requireApart(const Sides& sides, const QString& rule) const
{
    const auto isBefore = [](const ModelEntity* a, const ModelEntity* b) {
        return !b || a->id() < b->id();
    };
    for (const MeshEntity* vertex : verticesBetweenRegions()) {
        const ModelEntity* lowest = nullptr;
        const ModelEntity* other = nullptr;
        const QList<MeshEntity*> elements = elementsAt(*vertex);
        for (const MeshEntity* element : elements) {
            if (sides.contains(element->parent()) && isBefore(element->parent(), lowest)) {
                lowest = element->parent();
            }
        }
        for (const MeshEntity* element : elements) {
            if (sides.value(element->parent(), sides.value(lowest)) != sides.value(lowest) &&
                isBefore(element->parent(), other)) {
                other = element->parent();
            }
        }
        if (other) {
            refuse(QStringLiteral("%1 and %2 share %3, away from all faces between them; %4")
                       .arg(withMaterial(*lowest), withMaterial(*other), nameOf(*vertex), rule));
        }
    }
}

void FaceDoubling::settle(ModelEntity&) const {}

void FaceDoubling::describe(const QList<ModelEntity*>& added, const AttributeType& link,
                            const QString& side) const
{
    QMap<int, ModelEntity*> byOriginal;
    for (ModelEntity* face : added) {
        byOriginal.insert(intOf(face->attributes(), link), face);
    }
    CopyDescription description(model(), faceDimension());
    for (auto each = byOriginal.begin(); each != byOriginal.end(); ++each) {
        ModelEntity& original = *model().entity(faceDimension(), each.key());
        description.describe(original, **each, side);
        Utility::copyAttribute(&original, *each, AttributeType::IsShell);
    }
}

QList<ModelEntity*> FaceDoubling::facesWith(const AttributeType& link) const
{
    QList<ModelEntity*> faces = modelFaces();
    faces.removeIf([&link](const ModelEntity* face) { return !face->attributes().contains(link); });
    return faces;
}

} // namespace Ovra::GeoTool
