#include "AttributeColumn.h"

#include "AttributeMap.h"
#include "Matrix.h"
#include "Vector.h"

#include <QStringList>
#include <QVariant>

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Value = AttributeRule::Value;

/// In the order in which they are tried: an integer is a number too.
constexpr std::array<Value, 7> forms = {Value::Integer,     Value::Real,     Value::Text,
                                        Value::IntegerList, Value::RealList, Value::Vector,
                                        Value::Matrix};

QString textOf(const QVariant& variant)
{
    if (variant.typeId() == QMetaType::QVariantList) {
        QStringList items;
        for (const QVariant& item : variant.toList()) {
            items += textOf(item);
        }
        return items.join(QLatin1Char(' '));
    }
    if (variant.metaType() == QMetaType::fromType<Vector>()) {
        return variant.value<Vector>().toString();
    }
    if (variant.metaType() == QMetaType::fromType<Matrix>()) {
        return variant.value<Matrix>().toString();
    }
    return variant.canConvert<QString>()
               ? variant.toString()
               : QStringLiteral("(%1)").arg(QLatin1String(variant.typeName()));
}

std::vector<double> numbersIn(const Matrix& matrix)
{
    std::vector<double> numbers;
    numbers.reserve(9);
    for (int i = 0; i < 9; ++i) {
        numbers.push_back(matrix(i / 3, i % 3));
    }
    return numbers;
}

std::vector<double> numbersIn(const QVariantList& list)
{
    std::vector<double> numbers;
    for (const QVariant& item : list) {
        numbers.push_back(item.toDouble());
    }
    return numbers;
}

std::vector<double> numbersIn(const QVariant& variant)
{
    if (variant.metaType() == QMetaType::fromType<Vector>()) {
        const auto vector = variant.value<Vector>();
        return {vector.x(), vector.y(), vector.z()};
    }
    if (variant.metaType() == QMetaType::fromType<Matrix>()) {
        return numbersIn(variant.value<Matrix>());
    }
    return variant.typeId() == QMetaType::QVariantList ? numbersIn(variant.toList())
                                                       : std::vector<double>{variant.toDouble()};
}

} // namespace

AttributeColumn::AttributeColumn(const AttributeType& type)
    : type_(type)
{
}

void AttributeColumn::include(const QVariant& value)
{
    const Value form = narrowest(value);
    value_ = value_ == Value::Any ? form : wider(value_, form);
    longest_ = std::max(longest_, isListOf(form) ? value.toList().size() : 1);
}

AttributeColumn::Kind AttributeColumn::kind() const
{
    switch (value_) {
    case Value::Boolean:
        return Kind::Boolean;
    case Value::Integer:
        return Kind::Integer;
    case Value::IntegerList:
        return longest_ > MostComponents ? Kind::Text : Kind::Integer;
    case Value::RealList:
        return longest_ > MostComponents ? Kind::Text : Kind::Real;
    case Value::Real:
    case Value::Vector:
    case Value::Matrix:
        return Kind::Real;
    default:
        return Kind::Text;
    }
}

int AttributeColumn::components() const
{
    if (isText()) {
        return 1;
    }
    return value_ == Value::Vector ? 3 : value_ == Value::Matrix ? 9 : static_cast<int>(longest_);
}

ColumnValue AttributeColumn::valueOf(const QVariant& variant) const
{
    ColumnValue value = absent();
    if (isText()) {
        value.text = textOf(variant).toStdString();
    }
    if (!isText() || isList()) {
        const std::vector<double> numbers = numbersIn(variant);
        value.count = static_cast<int>(numbers.size());
        value.sum = std::accumulate(numbers.begin(), numbers.end(), 0.0);
        std::copy_n(numbers.begin(), std::min(numbers.size(), value.numbers.size()),
                    value.numbers.begin());
    }
    return value;
}

ColumnValue AttributeColumn::absent() const
{
    ColumnValue value;
    if (!isText()) {
        value.numbers.assign(static_cast<std::size_t>(components()),
                             kind() == Kind::Real ? std::numeric_limits<double>::quiet_NaN() : 0.0);
    }
    return value;
}

bool AttributeColumn::isListOf(Value value)
{
    return value == Value::IntegerList || value == Value::RealList;
}

AttributeColumn::Value AttributeColumn::narrowest(const QVariant& variant) const
{
    const AttributeRule& rule = AttributeRule::of(type_);
    if (rule.value != Value::Any && rule.accepts(variant)) {
        return rule.value;
    }
    if (variant.typeId() == QMetaType::Bool) {
        return Value::Boolean;
    }
    const auto found = std::find_if(forms.begin(), forms.end(), [&](Value form) {
        return AttributeRule{type_, form}.accepts(variant);
    });
    return found == forms.end() ? Value::Text : *found;
}

AttributeColumn::Value AttributeColumn::wider(Value a, Value b)
{
    const auto areAmong = [a, b](std::initializer_list<Value> values) {
        return std::find(values.begin(), values.end(), a) != values.end() &&
               std::find(values.begin(), values.end(), b) != values.end();
    };
    if (a == b) {
        return a;
    }
    if (areAmong({Value::Boolean, Value::Integer})) {
        return Value::Integer;
    }
    if (areAmong({Value::Boolean, Value::Integer, Value::Real})) {
        return Value::Real;
    }
    return areAmong({Value::IntegerList, Value::RealList}) ? Value::RealList : Value::Text;
}

void AttributeColumns::include(const AttributeMap& attributes)
{
    if (attributes.isEmpty()) {
        return;
    }
    for (const AttributeType& type : attributes.types()) {
        if (!type.isValid()) { // a tag that nobody knows cannot be asked for
            continue;
        }
        auto column =
            std::find_if(columns_.begin(), columns_.end(),
                         [&](const AttributeColumn& each) { return each.type() == type; });
        if (column == columns_.end()) {
            column = columns_.insert(column, AttributeColumn(type));
        }
        column->include(attributes.value(type, QVariant()));
    }
}

std::vector<AttributeColumn> AttributeColumns::sorted() const
{
    std::vector<AttributeColumn> columns = columns_;
    std::sort(columns.begin(), columns.end(), [](const auto& a, const auto& b) {
        return a.type().toString() < b.type().toString();
    });
    return columns;
}

} // namespace Ovra::GeoTool
