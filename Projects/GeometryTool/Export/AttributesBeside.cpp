#include "AttributesBeside.h"

#include "AttributeRule.h"
#include "AttributeValue.h"
#include "CaseView.h"
#include "EntityNames.h"
#include "IntAttribute.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QJsonDocument>

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

bool isShell(const ModelEntity& region)
{
    return region.attributes().value(AttributeType::IsShell, false).toBool();
}

/// \brief Whether the vertices of the face are still linked to as many of the other.
bool areLinked(const ModelEntity& face, const ModelEntity& twin)
{
    const std::vector<MeshEntity*> vertices = CaseView::verticesOn(face);
    const auto isLinked = [](MeshEntity* vertex) {
        return vertex->attributes().contains(AttributeType::ShellVertex);
    };
    return vertices.size() == CaseView::verticesOn(twin).size() &&
           std::any_of(vertices.begin(), vertices.end(), isLinked);
}

} // namespace

AttributesBeside::AttributesBeside(const CaseView& view, const GmshFormat& format,
                                   const GroupNames& names)
    : format_(format)
    , names_(names)
    , returning_(view, format)
    , faceDimension_(view.faceDimension())
{
    model_ = attributesOf(view.model().attributes(), QStringLiteral("the model"));
    for (int d = 0; d <= view.elementDimension(); ++d) {
        addEntities(view, d);
    }
    addShells(view);
}

QByteArray AttributesBeside::text() const
{
    QJsonObject file;
    if (!model_.isEmpty()) {
        file.insert(QStringLiteral("model"), model_);
    }
    file.insert(QStringLiteral("entities"), entities_); // even if empty: there is no more to say
    if (!shells_.isEmpty()) {
        file.insert(QStringLiteral("shells"), shells_);
    }
    return QJsonDocument(file).toJson();
}

void AttributesBeside::addEntities(const CaseView& view, int dimension)
{
    for (const ModelEntity* entity : view.modelEntities(dimension)) {
        const int id = returning_.idOf(dimension, entity->id());
        if (id == 0) {
            continue;
        }
        QJsonObject entry = attributesOf(entity->attributes(), nameOf(*entity));
        addNames(*entity, entry);
        if (dimension == view.elementDimension() && !ReturningEntities::hasMesh(*entity)) {
            entry.insert(QStringLiteral("mesh"), false);
        }
        if (!entry.isEmpty()) {
            entities_.insert(QStringLiteral("%1:%2").arg(dimension).arg(id), entry);
        }
    }
}

/// The label of an entity is in no mesh format. Without a group, parts that do not hang together
/// would come back as entities of their own.
void AttributesBeside::addNames(const ModelEntity& entity, QJsonObject& entry) const
{
    const bool isGrouped =
        format_.names == GmshFormat::Names::Kept && (format_.groupsAll || !entity.name().isEmpty());
    if (!isGrouped || names_.of(entity) != entity.name()) {
        entry.insert(QStringLiteral("name"), entity.name());
    }
    if (!entity.tag().isEmpty()) {
        entry.insert(QStringLiteral("tag"), entity.tag());
    }
}

void AttributesBeside::addShells(const CaseView& view)
{
    for (const ModelEntity* region : view.modelEntities(faceDimension_ + 1)) {
        if (!isShell(*region)) {
            continue;
        }
        const ModelEntity* const face = view.model().entity(
            faceDimension_, intOf(region->attributes(), AttributeType::OriginalShellFace));
        const ModelEntity* const twin =
            face ? view.model().entity(faceDimension_,
                                       intOf(face->attributes(), AttributeType::NewShellFace))
                 : nullptr;
        if (!twin || !areLinked(*face, *twin)) {
            continue;
        }
        shells_.append(QJsonObject{
            {QStringLiteral("region"), returning_.idOf(faceDimension_ + 1, region->id())},
            {QStringLiteral("original_face"), returning_.idOf(faceDimension_, face->id())},
            {QStringLiteral("new_face"), returning_.idOf(faceDimension_, twin->id())}});
    }
}

QJsonObject AttributesBeside::attributesOf(const AttributeMap& attributes, const QString& owner)
{
    QJsonObject object;
    for (const AttributeType& type : attributes.types()) {
        const QVariant value = attributes.value(type, QVariant());
        QJsonValue json = QJsonValue::Undefined;
        if (type.isValid() && AttributeRule::of(type).accepts(value)) {
            json = AttributeValue::json(value, AttributeValue::kindOf(type));
        }
        if (json.isUndefined()) {
            unheld_.append(QStringLiteral("%1 of %2").arg(type.toString(), owner));
            continue;
        }
        json = returning(json, type);
        if (!json.isUndefined()) {
            object.insert(type.toString(), json);
        }
    }
    return object;
}

/// \brief Ids of model entities as they come back; undefined for that of one which does not.
QJsonValue AttributesBeside::returning(const QJsonValue& json, const AttributeType& type) const
{
    const AttributeRule& rule = AttributeRule::of(type);
    const bool isOfFace = rule.names == AttributeRule::Names::ModelFace;
    if (!isOfFace && rule.names != AttributeRule::Names::ModelRegion) {
        return json;
    }
    const int dimension = isOfFace ? faceDimension_ : faceDimension_ + 1;
    if (!json.isArray()) {
        const int id = returning_.idOf(dimension, json.toInt());
        return id == 0 ? QJsonValue(QJsonValue::Undefined) : QJsonValue(id);
    }
    QJsonArray ids;
    for (const QJsonValue item : json.toArray()) {
        const int id = returning_.idOf(dimension, item.toInt());
        if (id != 0) {
            ids.append(id);
        }
    }
    return ids;
}

} // namespace Ovra::GeoTool
