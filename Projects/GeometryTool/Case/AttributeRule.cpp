#include "AttributeRule.h"

#include "Matrix.h"
#include "Vector.h"

#include <QMap>
#include <QVariant>

#include <algorithm>
#include <limits>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Value = AttributeRule::Value;
using Names = AttributeRule::Names;

const std::vector<AttributeRule>& rules()
{
    static const std::vector<AttributeRule> table = {
        {AttributeType::CaseFaces, Value::IntegerList, Names::ModelFace},
        {AttributeType::ColdFaces, Value::IntegerList, Names::ModelFace},
        {AttributeType::CoordinateSystem, Value::Integer},
        {AttributeType::ExtrudedEntityId, Value::Integer},
        {AttributeType::ExtrudedEntityType, Value::Integer},
        {AttributeType::ExtrudedFace, Value::Integer, Names::ModelFace},
        {AttributeType::ExtrudedWeights, Value::RealList},
        {AttributeType::FluidFace, Value::Integer, Names::ModelFace},
        {AttributeType::FluidRegion, Value::Integer, Names::ModelRegion},
        {AttributeType::HotFaces, Value::IntegerList, Names::ModelFace},
        {AttributeType::InBL, Value::Boolean},
        {AttributeType::IsShell, Value::Boolean},
        {AttributeType::IsSuppressed, Value::Boolean},
        {AttributeType::MaterialId, Value::Integer},
        {AttributeType::MaterialType, Value::Text},
        {AttributeType::MeshByExtrusion, Value::Boolean},
        {AttributeType::NewMotionRegion, Value::Integer, Names::ModelRegion},
        {AttributeType::NewMotionVertex, Value::Integer, Names::MeshVertex},
        {AttributeType::NewShellFace, Value::Integer, Names::ModelFace, std::nullopt},
        {AttributeType::NonExtrudedFace, Value::Integer, Names::ModelFace},
        {AttributeType::OriginalMotionRegion, Value::Integer, Names::ModelRegion, std::nullopt},
        {AttributeType::OriginalMotionVertex, Value::Integer, Names::MeshVertex},
        {AttributeType::OriginalShellFace, Value::Integer, Names::ModelFace, -1},
        {AttributeType::PeriodicEntityId, Value::Integer},
        {AttributeType::PeriodicEntityType, Value::Integer},
        {AttributeType::PeriodicFace, Value::Integer, Names::ModelFace},
        {AttributeType::PeriodicMatrix, Value::Matrix},
        {AttributeType::PeriodicOrigin, Value::Vector},
        {AttributeType::PeriodicPairId, Value::Integer},
        {AttributeType::PeriodicSideId, Value::Integer},
        {AttributeType::PeriodicTranslation, Value::Vector},
        {AttributeType::PeriodicWeights, Value::RealList},
        {AttributeType::PeriodicXAxis, Value::Vector},
        {AttributeType::PeriodicYAxis, Value::Vector},
        {AttributeType::PeriodicZAxis, Value::Vector},
        {AttributeType::RotorFace, Value::Integer, Names::ModelFace},
        {AttributeType::RotorVertex, Value::Integer, Names::MeshVertex},
        {AttributeType::ShellVertex, Value::Integer, Names::MeshVertex, std::nullopt},
        {AttributeType::SolidFace, Value::Integer, Names::ModelFace},
        {AttributeType::StatorFace, Value::Integer, Names::ModelFace},
        {AttributeType::StatorVertex, Value::Integer, Names::MeshVertex},
        {AttributeType::VisualScaleFactor, Value::Real}};
    return table;
}

bool isInteger(const QVariant& variant)
{
    constexpr int smallest = std::numeric_limits<int>::min();
    constexpr int largest = std::numeric_limits<int>::max();
    switch (variant.typeId()) {
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return variant.toLongLong() >= smallest && variant.toLongLong() <= largest;
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return variant.toULongLong() <= static_cast<qulonglong>(largest);
    default:
        return false;
    }
}

bool isReal(const QVariant& variant)
{
    return variant.typeId() == QMetaType::Double || variant.typeId() == QMetaType::Float ||
           isInteger(variant);
}

bool isBoolean(const QVariant& variant)
{
    return variant.typeId() == QMetaType::Bool ||
           (isInteger(variant) && (variant.toInt() == 0 || variant.toInt() == 1));
}

bool isListOf(const QVariant& variant, bool (*isElement)(const QVariant&))
{
    if (variant.typeId() != QMetaType::QVariantList) {
        return false;
    }
    const QVariantList list = variant.toList();
    return std::all_of(list.begin(), list.end(), isElement);
}

} // namespace

const AttributeRule& AttributeRule::of(const AttributeType& type)
{
    static const AttributeRule any;
    static const QMap<AttributeType, const AttributeRule*> byType = [] {
        QMap<AttributeType, const AttributeRule*> map;
        for (const AttributeRule& rule : rules()) {
            map.insert(rule.type, &rule);
        }
        return map;
    }();
    return *byType.value(type, &any);
}

const std::vector<AttributeRule>& AttributeRule::naming()
{
    static const std::vector<AttributeRule> found = [] {
        std::vector<AttributeRule> some;
        std::copy_if(rules().begin(), rules().end(), std::back_inserter(some),
                     [](const AttributeRule& rule) { return rule.names != Names::Nothing; });
        return some;
    }();
    return found;
}

bool AttributeRule::accepts(const QVariant& variant) const
{
    switch (value) {
    case Value::Integer:
        return isInteger(variant);
    case Value::Boolean:
        return isBoolean(variant);
    case Value::Real:
        return isReal(variant);
    case Value::Text:
        return variant.typeId() == QMetaType::QString;
    case Value::IntegerList:
        return isListOf(variant, isInteger);
    case Value::RealList:
        return isListOf(variant, isReal);
    case Value::Vector:
        return variant.metaType() == QMetaType::fromType<Vector>();
    case Value::Matrix:
        return variant.metaType() == QMetaType::fromType<Matrix>();
    default:
        return true;
    }
}

QString AttributeRule::expectation() const
{
    static const QMap<Value, QString> texts{
        {Value::Any, QStringLiteral("any value")},
        {Value::Integer, QStringLiteral("an integer")},
        {Value::Boolean, QStringLiteral("true or false")},
        {Value::Real, QStringLiteral("a number")},
        {Value::Text, QStringLiteral("a text")},
        {Value::IntegerList, QStringLiteral("a list of integers")},
        {Value::RealList, QStringLiteral("a list of numbers")},
        {Value::Vector, QStringLiteral("a vector")},
        {Value::Matrix, QStringLiteral("a matrix")}};
    return texts.value(value);
}

} // namespace Ovra::GeoTool
