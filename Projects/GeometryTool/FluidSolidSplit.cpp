#include "FluidSolidSplit.h"

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
    for (ModelEntity* face : modelFaces())
        requireFace(*face);
}

void FluidSolidSplit::requireFace(ModelEntity& face) const
{
    const QList<ModelEntity*> regions = regionsAt(face);
    const qsizetype fluids = std::count_if(regions.begin(), regions.end(), Utility::isFluid);
    if (fluids == 0 || fluids == regions.size())
        return;
    if (regions.size() > 2)
        refuse(QStringLiteral("%1 lies between %2 regions, fluid and other; only a face between "
                              "two can be split")
                   .arg(nameOf(face))
                   .arg(regions.size()));
    const bool firstIsFluid = Utility::isFluid(regions[0]);
    requireOther(face, *regions[firstIsFluid ? 0 : 1], *regions[firstIsFluid ? 1 : 0]);
}

// The library moves to the new vertices what is exactly "solid", and leaves the elements of
// anything else on the old ones, although the mesh faces before them go.
void FluidSolidSplit::requireOther(ModelEntity& face, ModelEntity& fluid, ModelEntity& other) const
{
    if (!isMeshed(fluid) || !isMeshed(other))
        return;
    if (Utility::isUnmeshedDevice(&other))
        refuse(
            QStringLiteral("%1 is a device of a kind that has no mesh, but has %2")
                .arg(withMaterial(other), counted(other.childCount(), QStringLiteral("element"))));
    if (!isOfMaterial(other, QStringLiteral("solid")))
        refuse(QStringLiteral("%1 lies beside the fluid %2 at %3 and is neither fluid nor "
                              "\"solid\", so that its elements would lose their surface")
                   .arg(withMaterial(other), nameOf(fluid), nameOf(face)));
    for (const MeshEntity* meshFace : inIdOrder(face.childIterator())) {
        if (meshFace->adjacencyCount(regionDimension()) != 2)
            refuse(QStringLiteral("%1 on %2 has %3, not one on each side")
                       .arg(nameOf(*meshFace), nameOf(face),
                            counted(meshFace->adjacencyCount(regionDimension()),
                                    QStringLiteral("element"))));
    }
}

QString FluidSolidSplit::run(Solver& solver)
{
    require();
    return doubleFaces(
        AttributeType::FluidFace, [&solver] { solver.splitFluidSolidFaces(); },
        QStringLiteral("between fluid and something else"),
        QStringLiteral("a region that is neither fluid nor \"solid\" touches fluid and solid"));
}

// Without a place in the model they would count as unreferenced, as no element uses them, and their
// removal would leave the mesh faces with dead vertices.
void FluidSolidSplit::settle(ModelEntity& face) const
{
    for (MeshEntity* meshFace : inIdOrder(face.childIterator())) {
        for (auto vertices = meshFace->adjacencyIterator(0); vertices.hasNext();) {
            MeshEntity* const vertex = vertices.next();
            if (!vertex->parent() && vertex->adjacencyCount(regionDimension()) == 0)
                face.addChild(vertex);
        }
    }
}

} // namespace Ovra::GeoTool
