#include "PreparationStep.h"

#include "Database.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "ToolError.h"

#include <QSet>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

PreparationStep::PreparationStep(Database& database)
    : database_(database)
{
}

PreparationStep::~PreparationStep() = default;

Model& PreparationStep::model() const
{
    return *database_.model();
}

Mesh& PreparationStep::mesh() const
{
    return *database_.mesh();
}

int PreparationStep::faceDimension() const
{
    return model().faceDimension();
}

QList<ModelEntity*> PreparationStep::modelFaces() const
{
    return inIdOrder(model().iterator(faceDimension()));
}

QList<ModelEntity*> PreparationStep::modelRegions() const
{
    return inIdOrder(model().iterator(regionDimension()));
}

QList<ModelEntity*> PreparationStep::regionsAt(const ModelEntity& face) const
{
    QList<ModelEntity*> regions;
    for (auto walk = face.adjacencyIterator(regionDimension()); walk.hasNext();) {
        regions.append(walk.next());
    }
    return regions;
}

QList<MeshEntity*> PreparationStep::elementsAt(const MeshEntity& meshFace) const
{
    const int count = meshFace.adjacencyCount(regionDimension());
    QList<MeshEntity*> elements;
    elements.reserve(count);
    for (int i = 0; i < count; ++i) {
        elements.append(meshFace.adjacencyAt(regionDimension(), i));
    }
    return elements;
}

void PreparationStep::refreshUpwardLists() const
{
    mesh().clearUpwardAdjacencies();
    mesh().setUpwardAdjacencies();
}

qint64 PreparationStep::sideCount() const
{
    qint64 count = 0;
    for (auto meshFaces = mesh().iterator(faceDimension()); meshFaces.hasNext();) {
        meshFaces.next();
        count += meshFaces.value()->adjacencyCount(regionDimension());
    }
    return count;
}

void PreparationStep::requireSingleLinks(const ModelEntity& region) const
{
    QSet<const ModelEntity*> listed;
    for (auto faces = region.adjacencyIterator(faceDimension()); faces.hasNext();) {
        const ModelEntity* const face = faces.next();
        if (listed.contains(face)) {
            refuse(QStringLiteral("%1 lists %2 more than once; it would be doubled as often")
                       .arg(nameOf(region), nameOf(*face)));
        }
        listed.insert(face);
    }
}

void PreparationStep::refuse(const QString& text)
{
    throw ToolError(ExitCode::Unsuitable, text);
}

bool PreparationStep::isMeshed(const ModelEntity& region)
{
    return region.childCount() > 0;
}

bool PreparationStep::isOfMaterial(const ModelEntity& region, const QString& type)
{
    return region.attributes().value(AttributeType::MaterialType, {}).toString() == type;
}

QString PreparationStep::withMaterial(const ModelEntity& region)
{
    const QString type = region.attributes().value(AttributeType::MaterialType, {}).toString();
    return nameOf(region) + (type.isEmpty() ? QStringLiteral(" (no material_type)")
                                            : QStringLiteral(" (material_type \"%1\")").arg(type));
}

} // namespace Ovra::GeoTool
