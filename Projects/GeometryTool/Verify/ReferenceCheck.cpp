#include "ReferenceCheck.h"

#include "AttributeMap.h"
#include "AttributeRule.h"
#include "CaseView.h"
#include "EntityNames.h"
#include "FindingSink.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QVariant>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Names = AttributeRule::Names;

/// The dimension of the model entities that an attribute of \p entity names. An extruded face is
/// paired with its like, whatever the model takes for a face.
int targetDimension(const CaseView& view, const ModelEntity& entity, const AttributeRule& rule)
{
    if (rule.type == AttributeType::ExtrudedFace) {
        return entity.dimension();
    }
    return rule.names == Names::ModelFace ? view.faceDimension() : view.elementDimension();
}

/// The ids as the library reads them: a list where one id is expected reads as 0.
QVariantList idsIn(const QVariant& value, const AttributeRule& rule)
{
    return rule.value == AttributeRule::Value::IntegerList ? value.toList()
                                                           : QVariantList{value.toInt()};
}

/// A link by \p forward has to be answered by \p back on the entity named.
template <typename Entity, typename Target>
void checkAnswer(Entity& entity, const Target& find, const AttributeType& forward,
                 const AttributeType& back, FindingSink& sink)
{
    auto* const partner = find(entity.attributes().value(forward, 0).toInt());
    if (!partner) {
        return;
    }
    const int answer = partner->attributes().value(back, 0).toInt();
    if (answer != entity.id()) {
        sink.add(FindingKind::UnansweredLink, entity, [&] {
            return QStringLiteral("names in %1 the %2, whose %3 is %4")
                .arg(forward.toString(), nameOf(*partner), back.toString())
                .arg(answer);
        });
    }
}

} // namespace

ReferenceCheck::ReferenceCheck(const CaseView& view, FindingSink& sink)
    : view_(view)
    , sink_(sink)
{
}

void ReferenceCheck::run()
{
    for (const int dimension : {view_.faceDimension(), view_.elementDimension()}) {
        for (const ModelEntity* entity : view_.modelEntities(dimension)) {
            for (const AttributeRule& rule : AttributeRule::naming()) {
                checkReference(*entity, rule.type);
            }
        }
    }
    for (const ModelEntity* face : view_.modelEntities(view_.faceDimension())) {
        checkFaceAnswers(*face);
    }
    for (const ModelEntity* region : view_.modelEntities(view_.elementDimension())) {
        checkRegionAnswers(*region);
    }
    for (MeshEntity* vertex : view_.meshEntities(0)) {
        if (vertex->attributes().isEmpty()) {
            continue;
        }
        for (const AttributeRule& rule : AttributeRule::naming()) {
            checkReference(*vertex, rule.type);
        }
        checkVertexAnswers(*vertex);
    }
}

void ReferenceCheck::checkReference(const ModelEntity& entity, const AttributeType& type)
{
    const AttributeRule& rule = AttributeRule::of(type);
    const int dimension = targetDimension(view_, entity, rule);
    if (rule.names == Names::ModelFace || rule.names == Names::ModelRegion) {
        checkIds(entity, rule, QStringLiteral("model"), dimension, view_.model());
    }
}

void ReferenceCheck::checkReference(MeshEntity& vertex, const AttributeType& type)
{
    const AttributeRule& rule = AttributeRule::of(type);
    if (rule.names == Names::MeshVertex) {
        checkIds(vertex, rule, QStringLiteral("mesh"), 0, view_.mesh());
    }
}

template <typename Entity, typename Container>
void ReferenceCheck::checkIds(Entity& entity, const AttributeRule& rule, const QString& owner,
                              int dimension, const Container& container)
{
    if (!entity.attributes().contains(rule.type)) {
        return;
    }
    const QVariantList ids = idsIn(entity.attributes().value(rule.type, {}), rule);
    for (const QVariant& each : ids) {
        const int id = each.toInt();
        if (rule.none != id && !container.entity(dimension, id)) {
            sink_.add(FindingKind::MissingEntity, entity, [&, id] {
                return QStringLiteral("names in %1 the %2, which does not exist")
                    .arg(rule.type.toString(), nameOf(owner, dimension, id));
            });
        }
    }
}

void ReferenceCheck::checkFaceAnswers(const ModelEntity& face)
{
    const auto find = [this](int id) { return view_.model().entity(view_.faceDimension(), id); };
    using T = AttributeType;
    checkAnswer(face, find, T::SolidFace, T::FluidFace, sink_);
    checkAnswer(face, find, T::FluidFace, T::SolidFace, sink_);
    checkAnswer(face, find, T::StatorFace, T::RotorFace, sink_);
    checkAnswer(face, find, T::RotorFace, T::StatorFace, sink_);
    checkAnswer(face, find, T::PeriodicFace, T::PeriodicFace, sink_);
}

void ReferenceCheck::checkRegionAnswers(const ModelEntity& region)
{
    const auto find = [this](int id) { return view_.model().entity(view_.elementDimension(), id); };
    using T = AttributeType;
    checkAnswer(region, find, T::NewMotionRegion, T::OriginalMotionRegion, sink_);
    checkAnswer(region, find, T::OriginalMotionRegion, T::NewMotionRegion, sink_);
}

/// Not the other way round: a vertex on two devices or moving regions has two copies, and names
/// one of them.
void ReferenceCheck::checkVertexAnswers(MeshEntity& vertex)
{
    const auto find = [this](int id) { return view_.mesh().entity(0, id); };
    using T = AttributeType;
    checkAnswer(vertex, find, T::StatorVertex, T::RotorVertex, sink_);
    checkAnswer(vertex, find, T::NewMotionVertex, T::OriginalMotionVertex, sink_);
}

} // namespace Ovra::GeoTool
