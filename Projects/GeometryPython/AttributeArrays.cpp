#include "AttributeArrays.h"

#include "Arrays.h"
#include "AttributeMap.h"
#include "AttributeRule.h"
#include "Values.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;
using GeoTool::AttributeRule;
using Value = AttributeRule::Value;

namespace
{

using Maps = std::vector<const AttributeMap*>;

Value numberKind(const QVariant& value, const AttributeType& type)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return Value::Boolean;
    case QMetaType::Double:
    case QMetaType::Float:
        return Value::Real;
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::LongLong:
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::ULong:
        return Value::Integer;
    default:
        throw py::type_error(type.toString().toStdString() + " has values that are no numbers: " +
                             py::repr(toPython(value)).cast<std::string>());
    }
}

/// An array of truth values takes nothing else, one of integers truth values too, and one of reals all.
Value wider(Value a, Value b)
{
    const auto has = [a, b](Value kind) { return a == kind || b == kind; };
    return has(Value::Real) ? Value::Real : has(Value::Integer) ? Value::Integer : Value::Boolean;
}

/// The kind of array that holds all values.
Value commonKind(const Maps& maps, const AttributeType& type)
{
    std::optional<Value> kind;
    for (const AttributeMap* const map : maps) {
        if (map->contains(type)) {
            const Value each = numberKind(map->value(type, {}), type);
            kind = kind ? wider(*kind, each) : each;
        }
    }
    return kind.value_or(Value::Real);
}

/// Values of one kind in one walk; nothing if there are others among them.
template <typename Number>
std::optional<py::tuple> columnOf(const Maps& maps, const AttributeType& type, Value kind)
{
    const auto count = static_cast<py::ssize_t>(maps.size());
    py::array_t<Number> values(count);
    py::array_t<bool> missing(count);
    Number* value = values.mutable_data();
    bool* isMissing = missing.mutable_data();
    for (const AttributeMap* const map : maps) {
        const QVariant found = map->value(type, {});
        if (found.isValid() && wider(numberKind(found, type), kind) != kind) {
            return std::nullopt;
        }
        *isMissing++ = !found.isValid();
        *value++ = found.value<Number>();
    }
    return py::make_tuple(values, missing);
}

std::optional<py::tuple> columnOfKind(const Maps& maps, const AttributeType& type, Value kind)
{
    switch (kind) {
    case Value::Boolean:
        return columnOf<bool>(maps, type, kind);
    case Value::Integer:
        return columnOf<qlonglong>(maps, type, kind);
    default:
        return columnOf<double>(maps, type, kind);
    }
}

bool isNumber(Value kind)
{
    return kind == Value::Integer || kind == Value::Boolean || kind == Value::Real;
}

/// Attributes whose single value is a sequence, so that one of those is no column of values.
bool isSequence(const AttributeType& type)
{
    const Value kind = AttributeRule::of(type).value;
    return kind == Value::IntegerList || kind == Value::RealList || kind == Value::Vector ||
           kind == Value::Matrix;
}

bool isColumn(const py::object& object)
{
    const bool isSingle =
        py::isinstance<py::array>(object) && py::reinterpret_borrow<py::array>(object).ndim() == 0;
    return !isSingle && PySequence_Check(object.ptr()) != 0 && !py::isinstance<py::str>(object) &&
           !py::isinstance<py::bytes>(object);
}

/// How deep \p object is nested, as far as it matters: a list may hold itself.
int depth(const py::object& object)
{
    constexpr int deepest = 4;
    int levels = 0;
    py::object inner = object;
    while (levels < deepest && isColumn(inner) && py::len(inner) > 0) {
        ++levels;
        inner = inner[py::int_(0)];
    }
    return levels;
}

bool isOneForAll(const py::object& object, const AttributeType& type)
{
    if (!isColumn(object)) {
        return true;
    }
    const int ofMatrix = 2;
    const int ofOne = AttributeRule::of(type).value == Value::Matrix ? ofMatrix : 1;
    return isSequence(type) && depth(object) == ofOne;
}

std::vector<QVariant> column(const py::object& object, const AttributeType& type)
{
    std::vector<QVariant> values;
    for (const py::handle each : py::tuple(object)) { // a sequence need not be as long as it says
        if (each.is_none()) {
            throw py::type_error("None is no value for " + type.toString().toStdString() +
                                 "; give the ids of those that have one");
        }
        values.push_back(valueFrom(each, type));
    }
    return values;
}

bool isShort(qlonglong value)
{
    return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
}

QVariant variantOf(qlonglong value)
{
    return isShort(value) ? QVariant(static_cast<int>(value)) : QVariant(value);
}

QVariant variantOf(double value)
{
    return value;
}

QVariant variantOf(bool value)
{
    return value;
}

QVariant variantOf(const QVariant& value)
{
    return value;
}

template <typename Item>
const Item* itemsOf(const std::vector<Item>& items)
{
    return items.data();
}

template <typename Number, int Flags>
const Number* itemsOf(const py::array_t<Number, Flags>& items)
{
    return items.data();
}

} // namespace

py::tuple AttributeArrays::values(const Maps& maps, const AttributeType& type)
{
    const Value ofRule = AttributeRule::of(type).value;
    if (isNumber(ofRule)) {
        if (const auto column = columnOfKind(maps, type, ofRule)) {
            return *column;
        }
    }
    // Without a rule, or with a file that does not keep to it.
    return *columnOfKind(maps, type, commonKind(maps, type));
}

AttributeArrays::Values::Values(const py::object& object, const AttributeType& type)
    : type_(type)
{
    if (isOneForAll(object, type)) {
        const bool isOfArray = py::isinstance<py::array>(object) && !isColumn(object);
        values_ = valueFrom(isOfArray ? object.attr("item")() : object, type);
    } else if (!takeArray(object)) {
        values_ = column(object, type);
    }
}

/// The road of large arrays, without an object of Python for each value.
bool AttributeArrays::Values::takeArray(const py::object& object)
{
    if (!py::isinstance<py::array>(object) ||
        py::reinterpret_borrow<py::array>(object).ndim() != 1) {
        return false;
    }
    const auto array = py::reinterpret_borrow<py::array>(object);
    const char kind = array.dtype().kind();
    const Value rule = AttributeRule::of(type_).value;
    if (kind == 'i' && (rule == Value::Integer || rule == Value::Any)) {
        // NumPy's integers have 64 bits where nobody says otherwise; the library's have 32.
        const Wholes wholes(array);
        if (rule == Value::Integer &&
            !std::all_of(wholes.data(), wholes.data() + wholes.size(), isShort)) {
            PyErr_SetString(PyExc_OverflowError, "a value does not fit into 32 bits");
            throw py::error_already_set();
        }
        values_ = wholes;
    } else if ((kind == 'f' && (rule == Value::Real || rule == Value::Any)) ||
               (kind == 'i' && rule == Value::Real)) {
        values_ = Reals(array);
    } else if (kind == 'b' && (rule == Value::Boolean || rule == Value::Any)) {
        values_ = Truths(array);
    } else {
        return false;
    }
    return true;
}

void AttributeArrays::Values::setIn(const std::vector<AttributeMap*>& maps) const
{
    const auto setEach = [&](const auto& items) {
        Arrays::requireCount(static_cast<py::ssize_t>(items.size()), maps.size(), "value");
        const auto* item = itemsOf(items);
        for (AttributeMap* const map : maps) {
            map->insert(type_, variantOf(*item++));
        }
    };
    if (const auto* const value = std::get_if<QVariant>(&values_)) {
        for (AttributeMap* const map : maps) {
            map->insert(type_, *value);
        }
        return;
    }
    std::visit(
        [&](const auto& items) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(items)>, QVariant>) {
                setEach(items);
            }
        },
        values_);
}

} // namespace Ovra::GeoPython
