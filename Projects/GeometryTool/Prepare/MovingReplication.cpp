#include "MovingReplication.h"

#include "CopyDescription.h"
#include "Counted.h"
#include "EntityNames.h"
#include "IntAttribute.h"
#include "Mesh.h"
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

bool isMoving(const ModelEntity* region)
{
    return region->attributes().contains(AttributeType::MotionType);
}

bool isReplica(const ModelEntity* region)
{
    return region->attributes().contains(AttributeType::OriginalMotionRegion);
}

} // namespace

void MovingReplication::requireAtStart() const
{
    for (ModelEntity* region : movingRegions()) {
        requireSingleLinks(*region);
        requireUnsplit(*region);
        requireStillFluid(*region);
    }
}

QList<ModelEntity*> MovingReplication::movingRegions() const
{
    QList<ModelEntity*> regions = modelRegions();
    regions.removeIf(
        [](const ModelEntity* region) { return !isMoving(region) || isReplica(region); });
    return regions;
}

void MovingReplication::requireUnsplit(const ModelEntity& region) const
{
    for (auto faces = region.adjacencyIterator(faceDimension()); faces.hasNext();) {
        const ModelEntity* const face = faces.next();
        if (face->attributes().contains(AttributeType::FluidFace)) {
            refuse(QStringLiteral("%1 moves, but has been split from its fluid already, at %2; "
                                  "moving regions must be replicated before faces are split")
                       .arg(nameOf(region), nameOf(*face)));
        }
    }
}

// A moving fluid will not do: once it is replicated itself, it is fluid for nobody else.
void MovingReplication::requireStillFluid(ModelEntity& region) const
{
    const QSet<ModelEntity*> neighbours = Utility::getAdjacentRegions(&region, &model());
    const bool found =
        std::any_of(neighbours.begin(), neighbours.end(), [](const ModelEntity* other) {
            return isOfMaterial(*other, QStringLiteral("fluid")) && !isMoving(other) &&
                   intOf(other->attributes(), AttributeType::NewMotionRegion) == 0 &&
                   !other->attributes().value(AttributeType::IsSuppressed, {}).toBool();
        });
    if (!found) {
        refuse(QStringLiteral("%1 moves, but no region beside it is plain fluid at rest that could "
                              "take its place")
                   .arg(withMaterial(region)));
    }
}

QString MovingReplication::run(Solver& solver)
{
    requireAtStart();
    const QList<ModelEntity*> regions = movingRegions();
    if (regions.isEmpty()) {
        return QString();
    }
    const int elements = mesh().count(regionDimension());
    const int meshFaces = mesh().count(faceDimension());
    const int vertices = mesh().count(0);
    solver.replicateMovingRegions();
    refreshUpwardLists();
    describeReplicas(regions);
    return QStringLiteral("%1 replicated, with %2, %3 and %4")
        .arg(counted(regions.size(), QStringLiteral("moving region")),
             counted(mesh().count(regionDimension()) - elements, QStringLiteral("new element")),
             counted(mesh().count(faceDimension()) - meshFaces, QStringLiteral("new mesh face")),
             counted(mesh().count(0) - vertices, QStringLiteral("new vertex")));
}

/// Nothing links the faces of a replica to those of its original but their position.
void MovingReplication::describeReplicas(const QList<ModelEntity*>& originals) const
{
    const QString suffix = QStringLiteral("replica");
    CopyDescription ofRegions(model(), regionDimension());
    CopyDescription ofFaces(model(), faceDimension());
    for (const ModelEntity* original : originals) {
        ModelEntity* const replica = model().entity(
            regionDimension(), intOf(original->attributes(), AttributeType::NewMotionRegion));
        ofRegions.describe(*original, *replica, suffix);
        for (int i = 0; i < original->adjacencyCount(faceDimension()); ++i) {
            ofFaces.describe(*original->adjacencyAt(faceDimension(), i),
                             *replica->adjacencyAt(faceDimension(), i), suffix);
        }
    }
}

} // namespace Ovra::GeoTool
