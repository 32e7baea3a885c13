#include "FaceDoubling.h"

#include "DoublingAftercare.h"
#include "Mesh.h"
#include "Model.h"
#include "ModelEntity.h"
#include "VertexCopies.h"

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

QString FaceDoubling::doubleFaces(const AttributeType& link, const std::function<void()>& operation,
                                  const QString& which, const QString& fault)
{
    const QList<ModelEntity*> before = facesWith(link);
    const int vertexCount = mesh().count(0);
    const int meshFaceCount = mesh().count(faceDimension());
    const qint64 sides = sideCount();
    operation();
    refreshUpwardLists();
    if (sideCount() != sides)
        refuse(QStringLiteral("doubling the model faces %1 would take elements away from %2: %3")
                   .arg(which, counted(sides - sideCount(), QStringLiteral("mesh face")), fault));

    VertexCopies copies;
    QList<ModelEntity*> added = facesWith(link);
    added.removeIf([&before](ModelEntity* face) { return before.contains(face); });
    for (ModelEntity* face : added) {
        const int oldId = intOf(face->attributes(), link);
        copies.add(*model().entity(faceDimension(), oldId), *face);
        settle(*face);
    }
    DoublingAftercare(database(), copies).run();
    if (added.isEmpty())
        return QString();
    return QStringLiteral("%1 %2 doubled, with %3 and %4")
        .arg(
            counted(added.size(), QStringLiteral("model face")), which,
            counted(mesh().count(faceDimension()) - meshFaceCount, QStringLiteral("new mesh face")),
            counted(mesh().count(0) - vertexCount, QStringLiteral("new vertex"),
                    QStringLiteral("new vertices")));
}

void FaceDoubling::settle(ModelEntity&) const {}

QList<ModelEntity*> FaceDoubling::facesWith(const AttributeType& link) const
{
    QList<ModelEntity*> faces = modelFaces();
    faces.removeIf([&link](const ModelEntity* face) { return !face->attributes().contains(link); });
    return faces;
}

} // namespace Ovra::GeoTool
