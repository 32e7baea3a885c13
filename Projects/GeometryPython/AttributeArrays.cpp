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
    return PySequence_Check(object.ptr()) != 0 && !py::isinstance<py::str>(object) &&
           !py::isinstance<py::bytes>(object);
}

std::size_t depth(const py::object& object)
{
    std::size_t levels = 0;
    py::object inner = object;
    while (isColumn(inner) && py::len(inner) > 0) {
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
    const std::size_t ofOne = !isSequence(type)                                ? 0
                              : AttributeRule::of(type).value == Value::Matrix ? 2
                                                                               : 1;
    return ofOne > 0 && depth(object) == ofOne;
}

std::vector<QVariant> column(const py::object& object, const AttributeType& type, std::size_t count)
{
    Arrays::requireCount(static_cast<py::ssize_t>(py::len(object)), count, "value");
    std::vector<QVariant> values;
    values.reserve(count);
    for (const py::handle each : object) {
        values.push_back(valueFrom(each, type));
    }
    return values;
}

template <typename Number>
void setNumbers(const std::vector<AttributeMap*>& maps, const AttributeType& type,
                const py::array& array)
{
    const py::array_t<Number, py::array::c_style | py::array::forcecast> numbers(array);
    const Number* number = numbers.data();
    for (AttributeMap* const map : maps) {
        map->insert(type, QVariant(*number++));
    }
}

bool isShort(qlonglong value)
{
    return value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
}

/// NumPy's integers have 64 bits where nobody says otherwise; the library's have 32.
void setWholes(const std::vector<AttributeMap*>& maps, const AttributeType& type,
               const py::array& array)
{
    const py::array_t<qlonglong, py::array::c_style | py::array::forcecast> numbers(array);
    const bool mustBeShort = AttributeRule::of(type).value == Value::Integer;
    const qlonglong* number = numbers.data();
    if (mustBeShort && !std::all_of(number, number + numbers.size(), isShort)) {
        PyErr_SetString(PyExc_OverflowError, "a value does not fit into 32 bits");
        throw py::error_already_set();
    }
    for (AttributeMap* const map : maps) {
        map->insert(type,
                    isShort(*number) ? QVariant(static_cast<int>(*number)) : QVariant(*number));
        ++number;
    }
}

/// The road of large arrays, without an object of Python for each value.
bool setAtOnce(const std::vector<AttributeMap*>& maps, const AttributeType& type,
               const py::object& object)
{
    if (!py::isinstance<py::array>(object)) {
        return false;
    }
    const auto array = py::reinterpret_borrow<py::array>(object);
    const char kind = array.dtype().kind();
    const Value rule = AttributeRule::of(type).value;
    if (array.ndim() != 1 || static_cast<std::size_t>(array.size()) != maps.size()) {
        return false;
    }
    if (kind == 'i' && (rule == Value::Integer || rule == Value::Any)) {
        setWholes(maps, type, array);
    } else if ((kind == 'f' && (rule == Value::Real || rule == Value::Any)) ||
               (kind == 'i' && rule == Value::Real)) {
        setNumbers<double>(maps, type, array);
    } else if (kind == 'b' && (rule == Value::Boolean || rule == Value::Any)) {
        setNumbers<bool>(maps, type, array);
    } else {
        return false;
    }
    return true;
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

void AttributeArrays::set(const std::vector<AttributeMap*>& maps, const AttributeType& type,
                          const py::object& object)
{
    if (isOneForAll(object, type)) {
        const QVariant value = valueFrom(object, type);
        for (AttributeMap* const map : maps) {
            map->insert(type, value);
        }
        return;
    }
    if (setAtOnce(maps, type, object)) {
        return;
    }
    const std::vector<QVariant> values = column(object, type, maps.size());
    for (std::size_t i = 0; i < maps.size(); ++i) {
        maps[i]->insert(type, values[i]);
    }
}

} // namespace Ovra::GeoPython
