#include "FluidSolidSplit.h"

#include "Counted.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Solver.h"
#include "Utility.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

void FluidSolidSplit::require() const
{
    for (ModelEntity* face : modelFaces()) {
        requireFace(*face);
    }
}

void FluidSolidSplit::requireFace(ModelEntity& face) const
{
    const QList<ModelEntity*> regions = regionsAt(face);
    const qsizetype fluids = std::count_if(regions.begin(), regions.end(), Utility::isFluid);
    if (fluids == 0 || fluids == regions.size()) {
        return;
    }
    if (regions.size() > 2) {
        refuse(QStringLiteral("%1 lies between %2, fluid and other; only a face between two can be "
                              "split")
                   .arg(nameOf(face), counted(regions.size(), QStringLiteral("region"))));
    }
    for (const ModelEntity* region : regions) {
        requireSingleLinks(*region);
    }
    const bool firstIsFluid = Utility::isFluid(regions[0]);
    requireOther(face, *regions[firstIsFluid ? 0 : 1], *regions[firstIsFluid ? 1 : 0]);
}

// The library moves to the new vertices what is exactly "solid", and leaves the elements of
// anything else on the old ones, although the mesh faces before them go.
void FluidSolidSplit::requireOther(ModelEntity& face, ModelEntity& fluid, ModelEntity& other) const
{
    if (!isMeshed(fluid) || !isMeshed(other)) {
        return;
    }
    if (Utility::isUnmeshedDevice(&other)) {
        refuse(
            QStringLiteral("%1 is a device of a kind that has no mesh, but has %2")
                .arg(withMaterial(other), counted(other.childCount(), QStringLiteral("element"))));
    }
    if (!isOfMaterial(other, QStringLiteral("solid"))) {
        refuse(QStringLiteral("%1 lies beside the fluid %2 at %3 and is neither fluid nor "
                              "\"solid\", so that its elements would lose their surface")
                   .arg(withMaterial(other), nameOf(fluid), nameOf(face)));
    }
    for (const MeshEntity* meshFace : inIdOrder(face.childIterator())) {
        requireTwoSides(*meshFace, fluid, other);
    }
}

// One without element in the solid would get no twin, and no pairing of its vertices.
void FluidSolidSplit::requireTwoSides(const MeshEntity& meshFace, const ModelEntity& fluid,
                                      const ModelEntity& other) const
{
    const QList<MeshEntity*> elements = elementsAt(meshFace);
    const auto countIn = [&elements](const ModelEntity& region) {
        return std::count_if(
            elements.begin(), elements.end(),
            [&region](const MeshEntity* element) { return element->parent() == &region; });
    };
    if (elements.size() != 2 || countIn(fluid) != 1 || countIn(other) != 1) {
        refuse(
            QStringLiteral("%1 on %2 does not lie between one element of %3 and one of %4")
                .arg(nameOf(meshFace), nameOf(*meshFace.parent()), nameOf(fluid), nameOf(other)));
    }
}

QString FluidSolidSplit::run(Solver& solver)
{
    require();
    const QString done = doubleFaces(
        AttributeType::FluidFace, QStringLiteral("solid"),
        [&solver] { solver.splitFluidSolidFaces(); },
        QStringLiteral("between fluid and something else"),
        QStringLiteral("a region that is neither fluid nor \"solid\" touches fluid and solid"));
    Sides sides;
    for (ModelEntity* region : modelRegions()) {
        sides.insert(region, Utility::isFluid(region) ? 1 : 2);
    }
    requireApart(sides, QStringLiteral("fluid and what is not must touch along whole faces"));
    return done;
}

// Without a place in the model they would count as unreferenced, as no element uses them, and their
// removal would leave the mesh faces with dead vertices.
void FluidSolidSplit::settle(ModelEntity& face) const
{
    for (MeshEntity* meshFace : inIdOrder(face.childIterator())) {
        for (auto vertices = meshFace->adjacencyIterator(0); vertices.hasNext();) {
            MeshEntity* const vertex = vertices.next();
            if (!vertex->parent() && vertex->adjacencyCount(regionDimension()) == 0) {
                face.addChild(vertex);
            }
        }
    }
}

} // namespace Ovra::GeoTool
