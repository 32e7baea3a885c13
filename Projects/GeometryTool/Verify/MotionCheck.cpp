#include "MotionCheck.h"

#include "AttributeMap.h"
#include "AttributeType.h"
#include "CaseView.h"
#include "Counted.h"
#include "EntityNames.h"
#include "FindingSink.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QVariant>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

bool isReplica(const ModelEntity& region)
{
    return region.attributes().contains(AttributeType::MotionType) &&
           region.attributes().contains(AttributeType::OriginalMotionRegion);
}

bool isTurning(const ModelEntity& region)
{
    const AttributeMap& attributes = region.attributes();
    return attributes.value(AttributeType::MaterialType, {}).toString() ==
               QLatin1String("rotating_device") &&
           !attributes.value(AttributeType::IsSuppressed, {}).toBool();
}

} // namespace

MotionCheck::MotionCheck(const CaseView& view, FindingSink& sink)
    : view_(view)
    , sink_(sink)
{
}

void MotionCheck::run()
{
    checkReplicas();
    for (const ModelEntity* region : view_.modelEntities(view_.elementDimension())) {
        if (isReplica(*region)) {
            checkReplicaVertices(*region);
        }
    }
    checkRotors();
}

void MotionCheck::checkReplicas()
{
    for (const ModelEntity* region : view_.modelEntities(view_.elementDimension())) {
        if (isReplica(*region)) {
            checkReplica(*region);
        }
    }
}

void MotionCheck::checkReplica(const ModelEntity& region)
{
    const int id = region.attributes().value(AttributeType::OriginalMotionRegion, 0).toInt();
    const ModelEntity* const original = view_.model().entity(view_.elementDimension(), id);
    if (original && original->childCount() < region.childCount()) {
        sink_.add(FindingKind::Replica, region, [&] {
            return QStringLiteral("has %1, but its original, %2, only %3")
                .arg(counted(region.childCount(), QStringLiteral("element")), nameOf(*original))
                .arg(original->childCount());
        });
    }
}

void MotionCheck::checkReplicaVertices(const ModelEntity& region)
{
    for (MeshEntity* vertex : CaseView::verticesOn(region)) {
        if (vertex->attributes().value(AttributeType::OriginalMotionVertex, 0).toInt() == 0) {
            sink_.add(FindingKind::Replica, *vertex, [&region] {
                return QStringLiteral("stands on the replica %1 without an original_motion_vertex")
                    .arg(nameOf(region));
            });
        }
    }
}

void MotionCheck::checkRotors()
{
    for (const ModelEntity* region : view_.modelEntities(view_.elementDimension())) {
        if (!isTurning(*region)) {
            continue;
        }
        auto faces = region->adjacencyIterator(view_.faceDimension());
        while (faces.hasNext()) {
            checkRotor(*faces.next());
        }
    }
}

void MotionCheck::checkRotor(const ModelEntity& face)
{
    const int id = face.attributes().value(AttributeType::StatorFace, 0).toInt();
    const ModelEntity* const stator = view_.model().entity(view_.faceDimension(), id);
    if (!stator) {
        return; // which is no rotor, or told elsewhere
    }
    for (MeshEntity* vertex : CaseView::verticesOn(face)) {
        if (vertex->attributes().value(AttributeType::StatorVertex, 0).toInt() == 0) {
            sink_.add(FindingKind::RotorSide, *vertex, [&face] {
                return QStringLiteral("stands on the rotor side %1 without a stator_vertex")
                    .arg(nameOf(face));
            });
        }
    }
    checkOneElementEach(face);
    checkOneElementEach(*stator);
}

void MotionCheck::checkOneElementEach(const ModelEntity& face)
{
    const UpwardPositions& elements = view_.upward(view_.faceDimension());
    for (const MeshEntity* child : CaseView::childrenOf(face)) {
        if (child->dimension() != view_.faceDimension()) {
            continue;
        }
        const int position = view_.positions(view_.faceDimension()).find(child->id());
        const auto count =
            static_cast<qint64>(elements.of(static_cast<std::size_t>(position)).size());
        if (count != 1) {
            sink_.add(FindingKind::RotorSide, *child, [&face, count] {
                return QStringLiteral("on the rotor or stator side %1 has %2, not one")
                    .arg(nameOf(face), counted(count, QStringLiteral("element")));
            });
        }
    }
}

} // namespace Ovra::GeoTool
