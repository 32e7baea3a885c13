#include "Values.h"

#include "AttributeRule.h"
#include "Masks.h"

#include <cmath>
#include <functional>
#include <limits>
#include <string>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;
using GeoTool::AttributeRule;

namespace
{

py::object valueClass(const char* name)
{
    return py::module_::import("ovrageo.values").attr(name);
}

/// Imported once and never let go: at the interpreter's end it is too late for that.
py::object& vectorClass()
{
    static auto* const found = new py::object(valueClass("Vector"));
    return *found;
}

py::object& matrixClass()
{
    static auto* const found = new py::object(valueClass("Matrix"));
    return *found;
}

py::object& boxClass()
{
    static auto* const found = new py::object(valueClass("Box"));
    return *found;
}

py::list listOf(const QVariantList& values)
{
    py::list list;
    for (const QVariant& value : values) {
        list.append(toPython(value));
    }
    return list;
}

py::dict dictOf(const QVariantMap& values)
{
    py::dict dict;
    for (auto each = values.begin(); each != values.end(); ++each) {
        dict[toPython(each.key())] = toPython(each.value());
    }
    return dict;
}

/// An array has an index too, if it is one of a single integer.
bool isInteger(const py::handle& object)
{
    return !PyBool_Check(object.ptr()) && PyIndex_Check(object.ptr()) != 0 &&
           PySequence_Check(object.ptr()) == 0;
}

/// NumPy's own is no bool, and neither an integer.
bool isBoolean(const py::handle& object)
{
    const auto name = py::type::handle_of(object).attr("__name__").cast<std::string>();
    return PyBool_Check(object.ptr()) || name == "bool_" || name == "bool";
}

/// What is masked would be taken for NaN.
bool isReal(const py::handle& object)
{
    return PyFloat_Check(object.ptr()) || isInteger(object) ||
           (py::hasattr(object, "__float__") && !isBoolean(object) &&
            !py::isinstance<py::str>(object) && !Masks::isMasked(object));
}

bool isList(const py::handle& object)
{
    return PySequence_Check(object.ptr()) && !py::isinstance<py::str>(object) &&
           !py::isinstance<py::bytes>(object) && !py::isinstance<py::dict>(object);
}

qlonglong longFrom(const py::handle& object)
{
    const auto index = py::reinterpret_steal<py::object>(PyNumber_Index(object.ptr()));
    if (!index) {
        throw py::error_already_set();
    }
    const qlonglong value = PyLong_AsLongLong(index.ptr());
    if (value == -1 && PyErr_Occurred()) {
        throw py::error_already_set();
    }
    return value;
}

double doubleFrom(const py::handle& object)
{
    const double value = PyFloat_AsDouble(object.ptr());
    if (value == -1.0 && PyErr_Occurred()) {
        throw py::error_already_set();
    }
    return value;
}

[[noreturn]] void raise(PyObject* type, const std::string& text)
{
    PyErr_SetString(type, text.c_str());
    throw py::error_already_set();
}

int intFrom(const py::handle& object)
{
    const qlonglong value = longFrom(object);
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
        raise(PyExc_OverflowError, std::to_string(value) + " does not fit into 32 bits");
    }
    return static_cast<int>(value);
}

QVariant anyFrom(const py::handle& object);

/// A list may hold itself.
class RecursionGuard
{
public:
    RecursionGuard()
    {
        if (Py_EnterRecursiveCall(" in the value of an attribute") != 0) {
            throw py::error_already_set();
        }
    }
    ~RecursionGuard() { Py_LeaveRecursiveCall(); }
    RecursionGuard(const RecursionGuard&) = delete;
    RecursionGuard& operator=(const RecursionGuard&) = delete;
};

QVariant listFrom(const py::handle& object,
                  const std::function<QVariant(const py::handle&)>& convert)
{
    const RecursionGuard guard;
    QVariantList list;
    for (const py::handle item : object) {
        list.append(convert(item));
    }
    return list;
}

Matrix matrixFrom(const py::handle& object)
{
    const py::tuple rows =
        isList(object) ? py::tuple(py::reinterpret_borrow<py::object>(object)) : py::tuple();
    if (rows.size() != 3) {
        throw py::type_error("a matrix is a sequence of 3 rows of 3 numbers");
    }
    Matrix matrix;
    int row = 0;
    for (const py::handle each : rows) {
        matrix.setRow(row++, vectorFrom(each));
    }
    return matrix;
}

QVariant wholeFrom(const py::handle& object)
{
    const qlonglong value = longFrom(object);
    const bool isShort =
        value >= std::numeric_limits<int>::min() && value <= std::numeric_limits<int>::max();
    return isShort ? QVariant(static_cast<int>(value)) : QVariant(value);
}

QVariant mapFrom(const py::dict& dict)
{
    const RecursionGuard guard;
    QVariantMap map;
    for (const auto& [key, value] : dict) {
        map.insert(textFrom(py::cast<py::str>(key)), anyFrom(value));
    }
    return map;
}

QVariant bytesFrom(const py::bytes& bytes)
{
    const std::string content = bytes;
    return QByteArray(content.data(), static_cast<qsizetype>(content.size()));
}

/// By what the object is, for attributes that the library only passes on.
QVariant anyFrom(const py::handle& object)
{
    if (object.is_none()) {
        return {};
    }
    if (isBoolean(object)) {
        return object.cast<bool>();
    }
    if (isInteger(object)) {
        return wholeFrom(object);
    }
    if (py::isinstance<py::str>(object)) {
        return textFrom(py::reinterpret_borrow<py::str>(object));
    }
    if (py::isinstance<py::bytes>(object)) {
        return bytesFrom(py::reinterpret_borrow<py::bytes>(object));
    }
    if (py::isinstance<py::dict>(object)) {
        return mapFrom(py::reinterpret_borrow<py::dict>(object));
    }
    if (py::isinstance(object, vectorClass())) {
        return vectorFrom(object);
    }
    if (py::isinstance(object, matrixClass())) {
        return matrixFrom(object);
    }
    if (isList(object)) {
        return listFrom(object, anyFrom);
    }
    if (isReal(object)) {
        return doubleFrom(object);
    }
    throw py::type_error("no attribute can hold " + py::repr(object).cast<std::string>());
}

bool isListOf(const py::handle& object, bool (*isItem)(const py::handle&))
{
    return isList(object) && std::all_of(py::iter(object), py::iterator::sentinel(),
                                         [isItem](const py::handle& item) { return isItem(item); });
}

bool fits(const py::handle& object, AttributeRule::Value kind)
{
    switch (kind) {
    case AttributeRule::Value::Integer:
        return isInteger(object);
    case AttributeRule::Value::Boolean:
        return isBoolean(object);
    case AttributeRule::Value::Real:
        return isReal(object);
    case AttributeRule::Value::Text:
        return py::isinstance<py::str>(object);
    case AttributeRule::Value::Any:
        return true;
    case AttributeRule::Value::IntegerList:
        return isListOf(object, isInteger);
    case AttributeRule::Value::RealList:
        return isListOf(object, isReal);
    default:
        return isList(object);
    }
}

QVariant convert(const py::handle& object, AttributeRule::Value kind)
{
    switch (kind) {
    case AttributeRule::Value::Integer:
        return intFrom(object);
    case AttributeRule::Value::Real:
        return doubleFrom(object);
    case AttributeRule::Value::IntegerList:
        return listFrom(object, intFrom);
    case AttributeRule::Value::RealList:
        return listFrom(object, doubleFrom);
    case AttributeRule::Value::Vector:
        return vectorFrom(object);
    case AttributeRule::Value::Matrix:
        return matrixFrom(object);
    default:
        return anyFrom(object);
    }
}

} // namespace

py::object toPython(const Vector& vector)
{
    return vectorClass()(vector.x(), vector.y(), vector.z());
}

py::object toPython(const Matrix& matrix)
{
    const auto row = [&matrix](int index) {
        return toPython(Vector(matrix(index, 0), matrix(index, 1), matrix(index, 2)));
    };
    return matrixClass()(row(0), row(1), row(2));
}

py::object toPython(const Box& box)
{
    return boxClass()(toPython(box.minimum()), toPython(box.maximum()));
}

py::str toPython(const QString& text)
{
    // UTF-16 with lone surrogates has no UTF-8 form; Python's own decoder can keep them.
    int order = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? -1 : 1;
    PyObject* const decoded = PyUnicode_DecodeUTF16(
        reinterpret_cast<const char*>(text.utf16()),
        text.size() * static_cast<Py_ssize_t>(sizeof(char16_t)), "surrogatepass", &order);
    if (decoded == nullptr) {
        throw py::error_already_set();
    }
    return py::reinterpret_steal<py::str>(decoded);
}

py::object toPython(const QVariant& value)
{
    if (!value.isValid()) {
        return py::none();
    }
    if (value.metaType() == QMetaType::fromType<Vector>()) {
        return toPython(value.value<Vector>());
    }
    if (value.metaType() == QMetaType::fromType<Matrix>()) {
        return toPython(value.value<Matrix>());
    }
    switch (value.typeId()) {
    case QMetaType::Bool:
        return py::bool_(value.toBool());
    case QMetaType::Int:
    case QMetaType::Short:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return py::int_(value.toLongLong());
    case QMetaType::UInt:
    case QMetaType::UShort:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return py::int_(value.toULongLong());
    case QMetaType::Double:
    case QMetaType::Float:
        return py::float_(value.toDouble());
    case QMetaType::QString:
        return toPython(value.toString());
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return py::bytes(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return listOf(value.toList());
    case QMetaType::QVariantMap:
        return dictOf(value.toMap());
    default:
        return py::cast(OpaqueValue{value});
    }
}

Vector vectorFrom(const py::handle& object)
{
    const py::tuple numbers =
        isList(object) ? py::tuple(py::reinterpret_borrow<py::object>(object)) : py::tuple();
    if (numbers.size() != 3) {
        throw py::type_error("a point or direction is a sequence of 3 numbers, and not " +
                             py::repr(object).cast<std::string>());
    }
    Vector vector;
    int component = 0;
    for (const py::handle each : numbers) {
        const double value = doubleFrom(each);
        if (!std::isfinite(value)) {
            throw py::value_error("a point or direction takes finite numbers alone");
        }
        vector[component++] = value;
    }
    return vector;
}

Box boxFrom(const py::handle& object)
{
    if (!isList(object) || py::len(object) != 2) {
        throw py::type_error("a box is a sequence of its smallest and its largest corner");
    }
    const auto corners = py::reinterpret_borrow<py::sequence>(object);
    return {vectorFrom(corners[0]), vectorFrom(corners[1])};
}

QString textFrom(const py::str& text)
{
    const auto bytes = py::reinterpret_steal<py::bytes>(
        PyUnicode_AsEncodedString(text.ptr(), "utf-16-le", "surrogatepass"));
    if (!bytes) {
        throw py::error_already_set();
    }
    const std::string content = bytes;
    QString result(static_cast<qsizetype>(content.size() / 2), Qt::Uninitialized);
    for (qsizetype i = 0; i < result.size(); ++i) {
        const auto low = static_cast<unsigned char>(content[static_cast<std::size_t>(2 * i)]);
        const auto high = static_cast<unsigned char>(content[static_cast<std::size_t>(2 * i + 1)]);
        result[i] = QChar(static_cast<ushort>(low | high << 8));
    }
    return result;
}

QVariant valueFrom(const py::handle& object, const AttributeType& type)
{
    if (py::isinstance<OpaqueValue>(object)) {
        return object.cast<OpaqueValue>().value;
    }
    const AttributeRule& rule = AttributeRule::of(type);
    if (!fits(object, rule.value)) {
        throw py::type_error(QStringLiteral("%1 takes %2, and not ")
                                 .arg(type.toString(), rule.expectation())
                                 .toStdString() +
                             py::repr(object).cast<std::string>());
    }
    return convert(object, rule.value);
}

AttributeType attributeType(const py::str& tag)
{
    const AttributeType type = AttributeType::fromString(textFrom(tag));
    if (!type.isValid()) {
        throw py::key_error("there is no attribute " + py::repr(tag).cast<std::string>() +
                            "; see ovrageo.attribute_tags()");
    }
    return type;
}

} // namespace Ovra::GeoPython
