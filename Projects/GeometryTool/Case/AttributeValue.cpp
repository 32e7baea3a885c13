#include "AttributeValue.h"

#include "AttributeRule.h"
#include "Matrix.h"
#include "Vector.h"

#include <QJsonArray>
#include <QList>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Ovra::GeoTool
{

using namespace Geo;

namespace
{

bool isInteger(const QJsonValue& json)
{
    if (!json.isDouble()) {
        return false;
    }
    const double number = json.toDouble();
    return std::floor(number) == number && number >= std::numeric_limits<int>::min() &&
           number <= std::numeric_limits<int>::max();
}

bool isReference(const QJsonValue& json)
{
    return json.isString() || isInteger(json);
}

bool allOf(const QJsonValue& json, bool (*test)(const QJsonValue&))
{
    if (!json.isArray()) {
        return false;
    }
    const QJsonArray items = json.toArray();
    return std::all_of(items.begin(), items.end(),
                       [test](const QJsonValue& item) { return test(item); });
}

bool isNumber(const QJsonValue& json)
{
    return json.isDouble();
}

bool isTriple(const QJsonValue& json)
{
    return json.toArray().size() == 3 && allOf(json, isNumber);
}

QVariant listOfReals(const QJsonValue& json)
{
    QVariantList list;
    for (const QJsonValue item : json.toArray()) {
        list.append(item.toDouble());
    }
    return list;
}

QVariant vectorOf(const QJsonValue& json)
{
    const QJsonArray items = json.toArray();
    return Vector(items.at(0).toDouble(), items.at(1).toDouble(), items.at(2).toDouble());
}

QVariant matrixOf(const QJsonValue& json)
{
    QList<double> numbers;
    for (const QJsonValue item : json.toArray()) {
        if (item.isDouble()) {
            numbers.append(item.toDouble());
        }
        for (const QJsonValue inner : item.toArray()) {
            numbers.append(inner.toDouble());
        }
    }
    Matrix matrix;
    for (int i = 0; i < 9; ++i) {
        matrix(i / 3, i % 3) = numbers.at(i);
    }
    return matrix;
}

QVariant anyValue(const QJsonValue& json)
{
    if (json.isArray()) {
        QVariantList list;
        for (const QJsonValue item : json.toArray()) {
            list.append(anyValue(item));
        }
        return list;
    }
    if (isInteger(json)) {
        return json.toInt();
    }
    return json.toVariant();
}

bool isNumeric(const QVariant& value)
{
    static const AttributeRule real{{}, AttributeRule::Value::Real, {}, {}};
    return real.accepts(value);
}

QJsonValue number(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue(QJsonValue::Undefined);
}

/// \brief A list of what \p itemJson makes of the items; undefined if one of them is.
template <typename Items, typename ItemJson>
QJsonValue jsonList(const Items& items, ItemJson itemJson)
{
    QJsonArray array;
    for (const auto& item : items) {
        const QJsonValue json = itemJson(item);
        if (json.isUndefined()) {
            return json;
        }
        array.append(json);
    }
    return array;
}

QJsonValue jsonOfAny(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::QString:
        return value.toString();
    case QMetaType::QVariantList:
        return jsonList(value.toList(), jsonOfAny);
    default:
        return isNumeric(value) ? number(value.toDouble()) : QJsonValue(QJsonValue::Undefined);
    }
}

QJsonValue jsonOfMatrix(const Matrix& matrix)
{
    const QList<int> places{0, 1, 2, 3, 4, 5, 6, 7, 8};
    return jsonList(places, [&matrix](int i) { return number(matrix(i / 3, i % 3)); });
}

QJsonValue jsonOfVector(const Vector& vector)
{
    return jsonList(QList<double>{vector.x(), vector.y(), vector.z()}, number);
}

} // namespace

ValueKind AttributeValue::kindOf(const AttributeType& type)
{
    const AttributeRule& rule = AttributeRule::of(type);
    const bool namesFaces = rule.names == AttributeRule::Names::ModelFace;
    switch (rule.value) {
    case AttributeRule::Value::Integer:
        return namesFaces ? ValueKind::FaceId : ValueKind::Integer;
    case AttributeRule::Value::IntegerList:
        return ValueKind::FaceList;
    case AttributeRule::Value::Boolean:
        return ValueKind::Boolean;
    case AttributeRule::Value::Real:
        return ValueKind::Real;
    case AttributeRule::Value::Text:
        return ValueKind::Text;
    case AttributeRule::Value::RealList:
        return ValueKind::RealList;
    case AttributeRule::Value::Vector:
        return ValueKind::Vector;
    case AttributeRule::Value::Matrix:
        return ValueKind::Matrix;
    case AttributeRule::Value::Any:
        break;
    }
    return ValueKind::Any;
}

QJsonValue AttributeValue::json(const QVariant& value, ValueKind kind)
{
    switch (kind) {
    case ValueKind::Boolean:
        return value.toBool();
    case ValueKind::Vector:
        return jsonOfVector(value.value<Vector>());
    case ValueKind::Matrix:
        return jsonOfMatrix(value.value<Matrix>());
    default:
        break;
    }
    const QJsonValue json = jsonOfAny(value);
    return fits(json, kind) ? json : QJsonValue(QJsonValue::Undefined);
}

QString AttributeValue::expectation(ValueKind kind)
{
    static const QMap<ValueKind, QString> texts{
        {ValueKind::Any, QStringLiteral("a number, a text, true, false, or a list of these")},
        {ValueKind::Integer, QStringLiteral("an integer")},
        {ValueKind::Boolean, QStringLiteral("true or false")},
        {ValueKind::Real, QStringLiteral("a number")},
        {ValueKind::Text, QStringLiteral("a text")},
        {ValueKind::RealList, QStringLiteral("a list of numbers")},
        {ValueKind::Vector, QStringLiteral("a list of 3 numbers")},
        {ValueKind::Matrix, QStringLiteral("a list of 9 numbers or of 3 lists of 3 numbers")},
        {ValueKind::FaceId, QStringLiteral("the id of a face or the name of a group of one face")},
        {ValueKind::RegionId,
         QStringLiteral("the id of a region or the name of a group of one region")},
        {ValueKind::FaceList, QStringLiteral("a list of ids of faces and names of groups")}};
    return texts.value(kind);
}

QString AttributeValue::description(const QJsonValue& json)
{
    switch (json.type()) {
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Bool:
        return QStringLiteral("true or false");
    case QJsonValue::Double:
        return QStringLiteral("the number %1").arg(json.toDouble());
    case QJsonValue::String:
        return QStringLiteral("the text \"%1\"").arg(json.toString());
    case QJsonValue::Array:
        return QStringLiteral("a list of %1").arg(json.toArray().size());
    default:
        return QStringLiteral("an object");
    }
}

bool AttributeValue::fits(const QJsonValue& json, ValueKind kind)
{
    const qsizetype size = json.toArray().size();
    switch (kind) {
    case ValueKind::Integer:
        return isInteger(json);
    case ValueKind::Boolean:
        return json.isBool();
    case ValueKind::Real:
        return json.isDouble();
    case ValueKind::Text:
        return json.isString();
    case ValueKind::RealList:
        return allOf(json, isNumber);
    case ValueKind::Vector:
        return isTriple(json);
    case ValueKind::Matrix:
        return (size == 9 && allOf(json, isNumber)) || (size == 3 && allOf(json, isTriple));
    case ValueKind::FaceId:
    case ValueKind::RegionId:
        return isReference(json);
    case ValueKind::FaceList:
        return allOf(json, isReference);
    case ValueKind::Any:
        break;
    }
    return json.isDouble() || json.isString() || json.isBool() ||
           allOf(json, [](const QJsonValue& item) { return fits(item, ValueKind::Any); });
}

QVariant AttributeValue::convert(const QJsonValue& json, ValueKind kind)
{
    switch (kind) {
    case ValueKind::Real:
        return json.toDouble();
    case ValueKind::RealList:
        return listOfReals(json);
    case ValueKind::Vector:
        return vectorOf(json);
    case ValueKind::Matrix:
        return matrixOf(json);
    case ValueKind::FaceId:
    case ValueKind::RegionId:
    case ValueKind::FaceList:
        return QVariant();
    default:
        return anyValue(json);
    }
}

} // namespace Ovra::GeoTool
