#include "SolverInputCheck.h"

#include "Database.h"
#include "ElementTopology.h"
#include "EntityNames.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "ToolError.h"
#include "Utility.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

constexpr int largestStencil = 4; // what a LinkData holds

[[noreturn]] void refuse(const QString& what)
{
    throw ToolError(ExitCode::Unsuitable,
                    QStringLiteral("the case is not fit for solver input: ") + what);
}

int intOf(const AttributeMap& attributes, const AttributeType& type, int defaultValue)
{
    return attributes.value(type, defaultValue).toInt();
}

std::vector<MeshEntity*> childrenOf(const ModelEntity& entity)
{
    std::vector<MeshEntity*> children;
    auto walk = entity.childIterator();
    while (walk.hasNext()) {
        walk.next();
        children.push_back(walk.value());
    }
    std::sort(children.begin(), children.end(), MeshEntity::lessThan);
    return children;
}

std::vector<MeshEntity*> verticesOn(const ModelEntity& entity)
{
    const QSet<MeshEntity*> set = Utility::getMeshVerticesOnModelEntity(&entity);
    std::vector<MeshEntity*> vertices(set.begin(), set.end());
    std::sort(vertices.begin(), vertices.end(), MeshEntity::lessThan);
    return vertices;
}

/// Positive weights of the stencil; only these take room in the writer's record.
int linkCount(const QVariantList& weights, int vertexCount)
{
    return static_cast<int>(
        std::count_if(weights.begin(), weights.begin() + vertexCount,
                      [](const QVariant& weight) { return weight.toDouble() > 0.0; }));
}

} // namespace

SolverInputCheck::SolverInputCheck(const Database& database)
    : model_(database.model())
    , mesh_(database.mesh())
    , faceDimension_(model_->faceDimension())
    , elementDimension_(faceDimension_ + 1)
{
}

void SolverInputCheck::require(const QStringList& sections) const
{
    using Check = void (SolverInputCheck::*)() const;
    static const std::vector<std::pair<QString, Check>> checks = {
        {QStringLiteral("elements"), &SolverInputCheck::checkElements},
        {QStringLiteral("surface-connectivity"), &SolverInputCheck::checkSurfaceConnectivity},
        {QStringLiteral("periodic"), &SolverInputCheck::checkPeriodic},
        {QStringLiteral("extrusion"), &SolverInputCheck::checkExtrusion},
        {QStringLiteral("moving"), &SolverInputCheck::checkMoving},
        {QStringLiteral("rotating"), &SolverInputCheck::checkRotating}};
    for (const auto& [section, check] : checks) {
        if (sections.contains(section))
            (this->*check)();
    }
}

void SolverInputCheck::checkElements() const
{
    auto elements = mesh_->orderedIterator(elementDimension_);
    while (elements.hasNext()) {
        const MeshEntity* const element = elements.next();
        if (!element->parent())
            refuse(QStringLiteral("%1 stands on no model entity").arg(nameOf(*element)));
        requireModelReference(*element->parent(), AttributeType::FluidRegion, elementDimension_);
    }
}

void SolverInputCheck::checkSurfaceConnectivity() const
{
    auto faces = model_->orderedIterator(faceDimension_);
    while (faces.hasNext()) {
        const ModelEntity* const face = faces.next();
        if (face->adjacencyCount(elementDimension_) == 0)
            continue;
        requireModelReference(*face, AttributeType::NonExtrudedFace, faceDimension_);
        for (const MeshEntity* const child : childrenOf(*face)) {
            if (child->adjacencyCount(elementDimension_) > 2)
                refuse(
                    QStringLiteral("%1 lies between more than two elements").arg(nameOf(*child)));
        }
        for (MeshEntity* const vertex : verticesOn(*face))
            requireVertexReference(*vertex, AttributeType::ShellVertex);
    }
}

void SolverInputCheck::checkPeriodic() const
{
    auto faces = model_->orderedIterator(faceDimension_);
    while (faces.hasNext()) {
        const ModelEntity* const face = faces.next();
        if (intOf(face->attributes(), AttributeType::PeriodicPairId, 0) == 0)
            continue;
        requireKnownElements(*face, elementDimension_);
        for (MeshEntity* const vertex : verticesOn(*face))
            requireStencil(*vertex, AttributeType::PeriodicEntityType,
                           AttributeType::PeriodicEntityId, AttributeType::PeriodicWeights);
    }
}

void SolverInputCheck::checkExtrusion() const
{
    auto vertices = mesh_->orderedIterator(0);
    while (vertices.hasNext()) {
        MeshEntity* const vertex = vertices.next();
        const AttributeMap& attributes = vertex->attributes();
        if (intOf(attributes, AttributeType::ExtrudedEntityType, -1) != -1 &&
            intOf(attributes, AttributeType::ExtrudedEntityId, 0) != 0)
            requireStencil(*vertex, AttributeType::ExtrudedEntityType,
                           AttributeType::ExtrudedEntityId, AttributeType::ExtrudedWeights);
    }
    auto faces = model_->orderedIterator(2);
    while (faces.hasNext()) {
        const ModelEntity* const face = faces.next();
        const int partner = intOf(face->attributes(), AttributeType::ExtrudedFace, 0);
        if (partner == 0)
            continue;
        requireModelReference(*face, AttributeType::ExtrudedFace, 2);
        requireKnownElements(*face, 3);
        requireKnownElements(*model_->entity(2, partner), 3);
    }
}

void SolverInputCheck::checkMoving() const
{
    auto regions = model_->orderedIterator(elementDimension_);
    while (regions.hasNext()) {
        const ModelEntity* const region = regions.next();
        if (region->attributes().contains(AttributeType::MotionType) &&
            region->attributes().contains(AttributeType::OriginalMotionRegion))
            checkReplica(*region);
    }
}

void SolverInputCheck::checkReplica(const ModelEntity& region) const
{
    requireModelReference(region, AttributeType::FluidRegion, elementDimension_);
    const int originalId = intOf(region.attributes(), AttributeType::OriginalMotionRegion, 0);
    const ModelEntity* const original = model_->entity(elementDimension_, originalId);
    if (!original)
        refuse(QStringLiteral("%1 is a replica of the region %2, which does not exist")
                   .arg(nameOf(region))
                   .arg(originalId));
    if (original->childCount() < region.childCount())
        refuse(QStringLiteral("%1 is a replica with more elements than its original, %2")
                   .arg(nameOf(region), nameOf(*original)));
}

void SolverInputCheck::checkRotating() const
{
    auto regions = model_->orderedIterator(elementDimension_);
    while (regions.hasNext()) {
        const ModelEntity* const region = regions.next();
        const AttributeMap& attributes = region->attributes();
        if (attributes.value(AttributeType::MaterialType, {}).toString() !=
                QLatin1String("rotating_device") ||
            attributes.value(AttributeType::IsSuppressed, {}).toBool())
            continue;
        auto faces = region->adjacencyIterator(faceDimension_);
        while (faces.hasNext())
            checkRotor(*faces.next());
    }
}

void SolverInputCheck::checkRotor(const ModelEntity& face) const
{
    const int statorId = intOf(face.attributes(), AttributeType::StatorFace, 0);
    if (statorId == 0)
        return;
    requireModelReference(face, AttributeType::StatorFace, faceDimension_);
    for (MeshEntity* const vertex : verticesOn(face)) {
        if (intOf(vertex->attributes(), AttributeType::StatorVertex, 0) == 0)
            refuse(QStringLiteral("%1 on the rotor side %2 has no stator_vertex")
                       .arg(nameOf(*vertex), nameOf(face)));
    }
    requireOneElementEach(face);
    requireOneElementEach(*model_->entity(faceDimension_, statorId));
}

void SolverInputCheck::requireOneElementEach(const ModelEntity& face) const
{
    for (const MeshEntity* const child : childrenOf(face)) {
        if (child->adjacencyCount(elementDimension_) != 1)
            refuse(QStringLiteral("%1 on the rotor or stator side %2 has %3 elements, not one")
                       .arg(nameOf(*child), nameOf(face))
                       .arg(child->adjacencyCount(elementDimension_)));
    }
    requireKnownElements(face, elementDimension_);
}

void SolverInputCheck::requireModelReference(const ModelEntity& entity, const AttributeType& type,
                                             int dimension) const
{
    const int id = intOf(entity.attributes(), type, 0);
    if (id != 0 && !model_->entity(dimension, id))
        refuse(QStringLiteral("%1 of %2 names the %3, which does not exist")
                   .arg(type.toString(), nameOf(entity),
                        nameOf(QStringLiteral("model"), dimension, id)));
}

void SolverInputCheck::requireVertexReference(MeshEntity& vertex, const AttributeType& type) const
{
    if (!vertex.attributes().contains(type))
        return;
    const int id = intOf(vertex.attributes(), type, 0);
    if (!mesh_->entity(0, id))
        refuse(QStringLiteral("%1 of %2 names the %3, which does not exist")
                   .arg(type.toString(), nameOf(vertex), nameOf(QStringLiteral("mesh"), 0, id)));
}

void SolverInputCheck::requireStencil(MeshEntity& vertex, const AttributeType& entityType,
                                      const AttributeType& entityId,
                                      const AttributeType& weights) const
{
    const int dimension = intOf(vertex.attributes(), entityType, -1);
    const int id = intOf(vertex.attributes(), entityId, 0);
    if (dimension == 0)
        return; // the writer takes the id as it is
    const MeshEntity* const entity =
        dimension > 0 && dimension < 4 ? mesh_->entity(dimension, id) : nullptr;
    if (!entity)
        refuse(QStringLiteral("%1 lacks its %2 and %3, or they name no mesh entity")
                   .arg(nameOf(vertex), entityType.toString(), entityId.toString()));
    const QVariantList list = vertex.attributes().value(weights, {}).toList();
    const int vertexCount = entity->adjacencyCount(0);
    if (list.size() < vertexCount)
        refuse(QStringLiteral("%1 of %2 has %3 values for the %4 vertices of %5")
                   .arg(weights.toString(), nameOf(vertex))
                   .arg(list.size())
                   .arg(vertexCount)
                   .arg(nameOf(*entity)));
    if (linkCount(list, vertexCount) > largestStencil)
        refuse(QStringLiteral("%1 of %2 ties it to more than %3 vertices")
                   .arg(weights.toString(), nameOf(vertex))
                   .arg(largestStencil));
}

void SolverInputCheck::requireKnownElements(const ModelEntity& face, int elementDimension) const
{
    for (const MeshEntity* const child : childrenOf(face)) {
        auto elements = child->adjacencyIterator(elementDimension);
        while (elements.hasNext()) {
            const MeshEntity* const element = elements.next();
            if (!ElementTopology::find(element->dimension(), element->adjacencyCount(0)))
                refuse(QStringLiteral("%1 has %2 vertices, which makes no known element")
                           .arg(nameOf(*element))
                           .arg(element->adjacencyCount(0)));
        }
    }
}

} // namespace Ovra::GeoTool
