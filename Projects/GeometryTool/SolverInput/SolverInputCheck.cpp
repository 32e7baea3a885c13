#include "SolverInputCheck.h"

#include "AttributeType.h"
#include "CaseFindings.h"
#include "ClassificationCheck.h"
#include "ElementCheck.h"
#include "EntityNames.h"
#include "IntAttribute.h"
#include "LinkCheck.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "MotionCheck.h"
#include "ReferenceCheck.h"
#include "SideCheck.h"
#include "ToolError.h"
#include "VertexTies.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

class Refusal : public FindingSink
{
public:
    using FindingSink::add;
    void add(FindingKind kind, const EntityName& entity, const std::optional<Vector>& place,
             const Text& text) override
    {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("the case is not fit for solver input: ") +
                            Finding{kind, entity, place, text()}.line());
    }
};

} // namespace

SolverInputCheck::SolverInputCheck(const Database& database)
    : view_(database)
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
        if (sections.contains(section)) {
            (this->*check)();
        }
    }
}

void SolverInputCheck::checkElements() const
{
    Refusal refusal;
    ReferenceCheck references(view_, refusal);
    for (const MeshEntity* element : view_.meshEntities(view_.elementDimension())) {
        if (!element->parent()) { // the writer does not mind one of another dimension
            ClassificationCheck::checkEntity(*element, refusal);
        }
        references.checkReference(*element->parent(), AttributeType::FluidRegion);
    }
}

void SolverInputCheck::checkSurfaceConnectivity() const
{
    Refusal refusal;
    ReferenceCheck references(view_, refusal);
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        if (face->adjacencyCount(view_.elementDimension()) == 0) {
            continue;
        }
        references.checkReference(*face, AttributeType::NonExtrudedFace);
        for (const MeshEntity* child : CaseView::childrenOf(*face)) {
            const int count = child->adjacencyCount(view_.elementDimension());
            SideCheck::checkElementCount(*child, static_cast<std::size_t>(count), refusal);
        }
        for (MeshEntity* vertex : CaseView::verticesOn(*face)) {
            references.checkReference(*vertex, AttributeType::ShellVertex);
        }
    }
}

/// Else the first of many vertices would be blamed for what has not been done at all.
void SolverInputCheck::requireTies() const
{
    const VertexTies ties = VertexTies::periodic();
    const ModelEntity* untied = nullptr;
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        if (intOf(face->attributes(), AttributeType::PeriodicPairId) == 0) {
            continue;
        }
        const std::vector<MeshEntity*> vertices = CaseView::verticesOn(*face);
        if (std::any_of(vertices.begin(), vertices.end(),
                        [&](MeshEntity* vertex) { return ties.isTied(*vertex); })) {
            return;
        }
        untied = untied || vertices.empty() ? untied : face;
    }
    if (untied) {
        throw ToolError(
            ExitCode::Unsuitable,
            QStringLiteral("the case is not fit for solver input: no vertex of its "
                           "periodic pairs is tied, on %1 for instance; ovrageo prepare "
                           "--periodic ties them")
                .arg(nameOf(*untied)));
    }
}

void SolverInputCheck::checkPeriodic() const
{
    requireTies();
    Refusal refusal;
    LinkCheck links(VertexTies::periodic(), view_, refusal);
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        if (intOf(face->attributes(), AttributeType::PeriodicPairId) == 0) {
            continue;
        }
        checkShapes(*face);
        for (MeshEntity* vertex : CaseView::verticesOn(*face)) {
            links.checkTarget(*vertex);
        }
    }
}

void SolverInputCheck::checkExtrusion() const
{
    Refusal refusal;
    LinkCheck links(VertexTies::extruded(), view_, refusal);
    for (MeshEntity* vertex : view_.meshEntities(0)) {
        const AttributeMap& attributes = vertex->attributes();
        if (intOf(attributes, AttributeType::ExtrudedEntityType, -1) != -1 &&
            intOf(attributes, AttributeType::ExtrudedEntityId) != 0) {
            links.checkTarget(*vertex);
        }
    }
    ReferenceCheck references(view_, refusal);
    constexpr int literalDimension = 2; // of the writer, in planar models too
    for (const ModelEntity* face : view_.modelEntities(literalDimension)) {
        const int partner = intOf(face->attributes(), AttributeType::ExtrudedFace);
        if (partner == 0) {
            continue;
        }
        references.checkReference(*face, AttributeType::ExtrudedFace);
        checkShapes(*face);
        checkShapes(*view_.model().entity(literalDimension, partner));
    }
}

void SolverInputCheck::checkMoving() const
{
    Refusal refusal;
    ReferenceCheck references(view_, refusal);
    for (const ModelEntity* region : view_.modelEntities(view_.elementDimension())) {
        references.checkReference(*region, AttributeType::FluidRegion);
        references.checkReference(*region, AttributeType::OriginalMotionRegion);
    }
    MotionCheck(view_, refusal).checkReplicas();
}

void SolverInputCheck::checkRotating() const
{
    Refusal refusal;
    ReferenceCheck references(view_, refusal);
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        references.checkReference(*face, AttributeType::StatorFace);
        const int stator = intOf(face->attributes(), AttributeType::StatorFace);
        if (stator == 0) {
            continue;
        }
        checkShapes(*face);
        checkShapes(*view_.model().entity(view_.faceDimension(), stator));
    }
    MotionCheck(view_, refusal).checkRotors();
}

void SolverInputCheck::checkShapes(const ModelEntity& face) const
{
    Refusal refusal;
    for (const MeshEntity* child : CaseView::childrenOf(face)) {
        auto elements = child->adjacencyIterator(child->dimension() + 1);
        while (elements.hasNext()) {
            ElementCheck::checkVertexCount(*elements.next(), refusal);
        }
    }
}

} // namespace Ovra::GeoTool
