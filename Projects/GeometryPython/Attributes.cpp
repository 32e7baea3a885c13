#include "Attributes.h"

#include "AttributeMap.h"
#include "Values.h"

#include <utility>
#include <vector>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;

namespace
{

AttributeType presentType(const Attributes& attributes, const py::str& tag)
{
    const AttributeType type = attributeType(tag);
    if (!attributes.get().contains(type)) {
        PyErr_SetObject(PyExc_KeyError, tag.ptr());
        throw py::error_already_set();
    }
    return type;
}

/// Without what a file of a later release has under a tag unknown here: that is kept, and has no name.
QList<AttributeType> typesOf(const Attributes& attributes)
{
    QList<AttributeType> types = attributes.get().types();
    types.removeAll(AttributeType());
    return types;
}

py::list tagsOf(const Attributes& attributes)
{
    py::list tags;
    for (const AttributeType& type : typesOf(attributes)) {
        tags.append(toPython(type.toString()));
    }
    return tags;
}

py::dict dictOf(const Attributes& attributes)
{
    py::dict dict;
    for (const AttributeType& type : typesOf(attributes)) {
        dict[toPython(type.toString())] = toPython(attributes.get().value(type, {}));
    }
    return dict;
}

bool contains(const Attributes& attributes, const py::object& tag)
{
    if (!py::isinstance<py::str>(tag)) {
        return false;
    }
    const AttributeType type = AttributeType::fromString(textFrom(tag));
    return type.isValid() && attributes.get().contains(type);
}

/// All values are converted ahead of the first that is set, so that a refusal leaves all as it was.
void update(const Attributes& attributes, const py::object& others, const py::kwargs& more)
{
    const py::dict all(others);
    all.attr("update")(**more);
    std::vector<std::pair<AttributeType, QVariant>> values;
    for (const auto& [tag, value] : all) {
        if (!py::isinstance<py::str>(tag)) {
            throw py::type_error("a tag is a text, and not " + py::repr(tag).cast<std::string>());
        }
        const AttributeType type = attributeType(py::reinterpret_borrow<py::str>(tag));
        values.emplace_back(type, valueFrom(value, type));
    }
    AttributeMap& map = attributes.get();
    for (const auto& [type, value] : values) {
        map.insert(type, value);
    }
}

} // namespace

void bindAttributes(py::module_& module)
{
    py::class_<OpaqueValue>(module, "OpaqueValue",
                            "An attribute's value that has no counterpart in Python.\n\n"
                            "It can be kept, and set again.")
        .def("__repr__", [](const OpaqueValue& opaque) {
            return "<OpaqueValue of type " + std::string(opaque.value.typeName()) + ">";
        });

    py::class_<Attributes>(
        module, "Attributes",
        "The attributes of an entity, a model or a mesh: a mutable mapping from tags to values.\n\n"
        "Tags are those of the vocabulary, see attribute_tags(); setting another raises KeyError. "
        "As of\n"
        "any mapping, others are just not there when they are looked up: `in` is False, and get() "
        "gives "
        "its\n"
        "default. Where the type of a value is fixed, setting another raises TypeError. Values are "
        "bool,\n"
        "int, float, str, bytes, list, dict, Vector and Matrix.")
        .def("__len__", [](const Attributes& self) { return typesOf(self).size(); })
        .def("__iter__", [](const Attributes& self) { return py::iter(tagsOf(self)); })
        .def("__contains__", &contains)
        .def("__getitem__",
             [](const Attributes& self, const py::str& tag) {
                 return toPython(self.get().value(presentType(self, tag), {}));
             })
        .def("__setitem__",
             [](const Attributes& self, const py::str& tag, const py::object& value) {
                 const AttributeType type = attributeType(tag);
                 const QVariant converted = valueFrom(value, type); // which may run any Python
                 self.get().insert(type, converted);
             })
        .def("__delitem__", [](const Attributes& self,
                               const py::str& tag) { self.get().remove(presentType(self, tag)); })
        .def("update", &update, py::arg("others") = py::tuple(), py::pos_only(),
             "Sets several attributes, of a mapping, of pairs or by keywords: all of them, or none "
             "where\n"
             "one is refused.")
        .def("__repr__", [](const Attributes& self) {
            return "<Attributes of " + self.owner + ": " +
                   py::repr(dictOf(self)).cast<std::string>() + ">";
        });
}

} // namespace Ovra::GeoPython
