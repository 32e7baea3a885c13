#include "PeripheralDoubling.h"

#include "Counted.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Solver.h"
#include "Utility.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

const QString rotatingDevice = QStringLiteral("rotating_device");

int elementsOn(const ModelEntity& region, const MeshEntity& meshFace)
{
    int count = 0;
    for (auto elements = meshFace.adjacencyIterator(region.dimension()); elements.hasNext();) {
        if (elements.next()->parent() == &region) {
            ++count;
        }
    }
    return count;
}

} // namespace

void PeripheralDoubling::requireAtStart() const
{
    for (const ModelEntity* device : devices()) {
        requireSingleLinks(*device);
    }
}

QList<ModelEntity*> PeripheralDoubling::devices() const
{
    QList<ModelEntity*> regions = modelRegions();
    regions.removeIf(
        [](const ModelEntity* region) { return !isOfMaterial(*region, rotatingDevice); });
    return regions;
}

QList<ModelEntity*> PeripheralDoubling::peripheralFaces(const ModelEntity& device) const
{
    QList<ModelEntity*> faces;
    for (auto walk = device.adjacencyIterator(faceDimension()); walk.hasNext();) {
        ModelEntity* const face = walk.next();
        const QList<ModelEntity*> regions = regionsAt(*face);
        if (std::any_of(regions.begin(), regions.end(), [&device](ModelEntity* region) {
                return region != &device && Utility::isFluid(region) && isMeshed(*region);
            })) {
            faces.append(face);
        }
    }
    return faces;
}

void PeripheralDoubling::require(const ModelEntity& device) const
{
    const QList<ModelEntity*> faces = peripheralFaces(device);
    if (!faces.isEmpty() && !isMeshed(device)) {
        refuse(QStringLiteral("%1 has no mesh, but the fluid beside it has")
                   .arg(withMaterial(device)));
    }
    for (const ModelEntity* face : faces) {
        requireTwoSides(device, *face);
    }
    for (const ModelEntity* face : faces) {
        requireFreeRim(device, *face);
    }
}

void PeripheralDoubling::requireTwoSides(const ModelEntity& device, const ModelEntity& face) const
{
    const QList<ModelEntity*> regions = regionsAt(face);
    if (regions.size() != 2) {
        refuse(QStringLiteral("%1 of %2 lies between %3, not two")
                   .arg(nameOf(face), withMaterial(device),
                        counted(regions.size(), QStringLiteral("region"))));
    }
    for (const ModelEntity* region : regions) {
        if (region != &device && isOfMaterial(*region, rotatingDevice)) {
            refuse(QStringLiteral("%1 and %2 touch at %3; there must be fluid between two rotating "
                                  "devices")
                       .arg(withMaterial(device), withMaterial(*region), nameOf(face)));
        }
    }
    for (const MeshEntity* meshFace : inIdOrder(face.childIterator())) {
        if (elementsOn(device, *meshFace) != 1 || elementsAt(*meshFace).size() != 2) {
            refuse(QStringLiteral("%1 on %2 has no element on one side of the rotating device, or "
                                  "more than one; there must be one on each")
                       .arg(nameOf(*meshFace), nameOf(face)));
        }
    }
}

void PeripheralDoubling::requireFreeRim(const ModelEntity& device, const ModelEntity& face) const
{
    QList<MeshEntity*> vertices = Utility::getMeshVerticesOnModelEntity(&face).values();
    std::sort(vertices.begin(), vertices.end(), MeshEntity::lessThan);
    for (const MeshEntity* vertex : vertices) {
        requireOneSide(device, *vertex);
    }
}

// The library moves every mesh face of the fluid about the vertex to the stator side. One that the
// fluid shares with something else takes that side's element apart from its surface.
void PeripheralDoubling::requireOneSide(const ModelEntity& device, const MeshEntity& vertex) const
{
    for (auto meshFaces = vertex.adjacencyIterator(faceDimension()); meshFaces.hasNext();) {
        const QList<ModelEntity*> regions = regionsAt(*meshFaces.next()->parent());
        const bool moves = std::any_of(regions.begin(), regions.end(), [](ModelEntity* region) {
            return Utility::isFluid(region) && !isOfMaterial(*region, rotatingDevice) &&
                   isMeshed(*region);
        });
        for (ModelEntity* region : regions) {
            if (!moves || region == &device || !isMeshed(*region)) {
                continue;
            }
            if (isOfMaterial(*region, rotatingDevice)) {
                refuse(QStringLiteral("%1 and %2 share %3; there must be fluid between two "
                                      "rotating devices")
                           .arg(withMaterial(device), withMaterial(*region), nameOf(vertex)));
            }
            if (!Utility::isFluid(region)) {
                refuse(QStringLiteral("%1 shares %2 with the rim of %3; it must be split from the "
                                      "fluid first (--split-fluid-solid)")
                           .arg(withMaterial(*region), nameOf(vertex), withMaterial(device)));
            }
        }
    }
}

QString PeripheralDoubling::run(Solver& solver)
{
    if (devices().isEmpty()) {
        return QString();
    }
    requireAtStart();
    for (const ModelEntity* device : devices()) {
        require(*device);
    }
    const QString done = doubleFaces(
        AttributeType::RotorFace, QStringLiteral("stator"),
        [&solver] { solver.addPeripheralFaces(); }, QStringLiteral("of rotating devices"),
        QStringLiteral("something other than fluid touches the rim of a rotating device"));
    requireApart(sides(), QStringLiteral("a rotating device must touch fluid along whole faces"));
    return done;
}

/// Each device turns by itself; all other fluid stays in place.
FaceDoubling::Sides PeripheralDoubling::sides() const
{
    Sides sides;
    for (ModelEntity* region : modelRegions()) {
        if (Utility::isFluid(region)) {
            sides.insert(region, isOfMaterial(*region, rotatingDevice) ? region->id() : 0);
        }
    }
    return sides;
}

} // namespace Ovra::GeoTool
