#include "AttributeCheck.h"

#include "AttributeMap.h"
#include "AttributeRule.h"
#include "CaseView.h"
#include "Matrix.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Those that the library compares against, letter by letter.
const QStringList& knownMaterials()
{
    static const QStringList names = {"fluid",           "solid",          "resistance",
                                      "internal_fan",    "check_valve",    "rotating_device",
                                      "centrifugal_fan", "heat_exchanger", "heat_sink",
                                      "ecomp_2resist",   "ecomp_tec",      "led_device"};
    return names;
}

bool isFinite(const Vector& vector)
{
    return std::isfinite(vector.x()) && std::isfinite(vector.y()) && std::isfinite(vector.z());
}

bool isFinite(const Matrix& matrix)
{
    for (int i = 0; i < 9; ++i) {
        if (!std::isfinite(matrix(i / 3, i % 3))) {
            return false;
        }
    }
    return true;
}

bool isFinite(const QVariant& value, AttributeRule::Value kind)
{
    switch (kind) {
    case AttributeRule::Value::Real:
        return std::isfinite(value.toDouble());
    case AttributeRule::Value::RealList: {
        const QVariantList list = value.toList();
        return std::all_of(list.begin(), list.end(),
                           [](const QVariant& each) { return std::isfinite(each.toDouble()); });
    }
    case AttributeRule::Value::Vector:
        return isFinite(value.value<Vector>());
    case AttributeRule::Value::Matrix:
        return isFinite(value.value<Matrix>());
    default:
        return true;
    }
}

} // namespace

void AttributeCheck::run(const CaseView& view, FindingSink& sink)
{
    const auto whole = [&sink](EntityName::Owner owner) {
        return [&sink, owner](FindingKind kind, const FindingSink::Text& text) {
            sink.add(kind, EntityName(owner, EntityName::Whole, 0), std::nullopt, text);
        };
    };
    const auto of = [&sink](const auto& entity) {
        return [&sink, &entity](FindingKind kind, const FindingSink::Text& text) {
            sink.add(kind, entity, text);
        };
    };
    checkMap(view.model().attributes(), whole(EntityName::Owner::Model));
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (const ModelEntity* entity : view.modelEntities(dimension)) {
            checkMap(entity->attributes(), of(*entity));
        }
    }
    checkMap(view.mesh().attributes(), whole(EntityName::Owner::Mesh));
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (MeshEntity* entity : view.meshEntities(dimension)) {
            if (!entity->attributes().isEmpty()) {
                checkMap(entity->attributes(), of(*entity));
            }
        }
    }
}

void AttributeCheck::checkMap(const AttributeMap& map, const Report& report)
{
    const QList<AttributeType> types = map.types();
    for (const AttributeType& type : types) {
        if (type.isValid()) {
            checkValue(type, map.value(type, {}), report);
        } else {
            report(FindingKind::UnknownAttribute,
                   [] { return QStringLiteral("has an attribute whose tag is not known"); });
        }
    }
}

void AttributeCheck::checkValue(const AttributeType& type, const QVariant& value,
                                const Report& report)
{
    const AttributeRule& rule = AttributeRule::of(type);
    if (!rule.accepts(value)) {
        report(FindingKind::AttributeType, [&] {
            return QStringLiteral("has %1 of type %2; %3 is expected")
                .arg(type.toString(),
                     value.isValid() ? QLatin1String(value.typeName()) : QStringLiteral("none"),
                     rule.expectation());
        });
    } else if (!isFinite(value, rule.value)) {
        report(FindingKind::AttributeValue, [&type] {
            return QStringLiteral("has a number in %1 that is not finite").arg(type.toString());
        });
    } else if (type == AttributeType::MaterialType) {
        checkMaterial(value, report);
    }
}

void AttributeCheck::checkMaterial(const QVariant& value, const Report& report)
{
    const QString fault = materialFault(value.toString());
    if (!fault.isEmpty()) {
        report(FindingKind::UnknownMaterial, [&fault] { return fault; });
    }
}

QString AttributeCheck::materialFault(const QString& name)
{
    if (knownMaterials().contains(name)) {
        return QString();
    }
    return QStringLiteral("has the material_type \"%1\", which counts as neither fluid nor solid; "
                          "known are %2")
        .arg(name, knownMaterials().join(QStringLiteral(", ")));
}

} // namespace Ovra::GeoTool
