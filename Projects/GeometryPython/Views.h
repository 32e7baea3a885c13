#pragma once

#include "Arrays.h"
#include "AttributeArrays.h"
#include "AttributeMap.h"
#include "Handles.h"
#include "Masks.h"
#include "Values.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Ovra::GeoPython
{

/// \brief A walk over the ids that a view had when the walk began; what is removed meanwhile is passed
///        over.
template <typename Side>
struct Walk
{
    /// \brief The next entity; throws Gone where the ids are those of other entities by now.
    pybind11::object next()
    {
        while (place < ids.size()) {
            requireEpoch<Side>(*state, epoch, "walk began");
            auto* const entity = Side::container(*state).entity(dimension, ids[place++]);
            if (entity != nullptr) {
                return wrap<Side>(state, *entity);
            }
        }
        throw pybind11::stop_iteration();
    }

    CasePointer state;
    int dimension;
    std::vector<int> ids;
    int epoch = Side::epoch(*state);
    std::size_t place = 0;
};

template <typename Side>
pybind11::array_t<int> idArray(const View<Side>& view)
{
    pybind11::array_t<int> ids(static_cast<pybind11::ssize_t>(view.count()));
    view.forEachId([place = ids.mutable_data()](int id) mutable { *place++ = id; });
    return ids;
}

template <typename Side>
pybind11::object entityAt(const View<Side>& view, int id)
{
    view.requireSameIds();
    auto* const entity = Side::container(*view.state).entity(view.dimension, id);
    if (entity == nullptr || !view.has(id)) {
        throw pybind11::key_error("there is no " + entityText(Side::noun, view.dimension, id) +
                                  (view.selection ? " in this selection" : ""));
    }
    return wrap<Side>(view.state, *entity);
}

/// \brief The same by any object of Python; throws TypeError for one that is no integer.
template <typename Side>
pybind11::object entityBy(const View<Side>& view, const pybind11::object& id)
{
    if (PyIndex_Check(id.ptr()) == 0) {
        throw pybind11::type_error("entities are asked for by id, an integer, and not by " +
                                   pybind11::repr(id).cast<std::string>());
    }
    try {
        return entityAt(view, id.cast<int>());
    } catch (const pybind11::cast_error&) { // beyond 32 bits
        throw pybind11::key_error("there is no id " + pybind11::repr(id).cast<std::string>());
    }
}

template <typename Side>
bool contains(const View<Side>& view, const pybind11::object& object)
{
    try {
        if (pybind11::isinstance<Handle<Side>>(object)) {
            const auto& handle = object.cast<const Handle<Side>&>();
            return handle.state == view.state && handle.dimension == view.dimension &&
                   handle.isThere() && contains(view, pybind11::int_(handle.id));
        }
        entityAt(view, object.cast<int>());
        return true;
    } catch (const pybind11::key_error&) {
        return false;
    } catch (const pybind11::cast_error&) {
        return false;
    }
}

/// \brief The entities of these ids; throws KeyError if one is not there.
template <typename Side>
std::vector<typename Side::Entity*> entitiesAt(const View<Side>& view, const std::vector<int>& ids)
{
    std::vector<typename Side::Entity*> entities;
    entities.reserve(ids.size());
    auto& container = Side::container(*view.state);
    for (const int id : ids) {
        entities.push_back(container.entity(view.dimension, id));
        if (entities.back() == nullptr) {
            throw pybind11::key_error("there is no " + entityText(Side::noun, view.dimension, id));
        }
    }
    return entities;
}

/// \brief Those of \p ids, which must all be of \p view's case, or those of \p view where a truth value
///        is true.
template <typename Side>
View<Side> select(const View<Side>& view, const pybind11::object& ids)
{
    std::vector<int> chosen = Arrays::chosen(view.ids(), ids);
    entitiesAt(view, chosen);
    return selected<Side>(view.state, view.dimension, std::move(chosen));
}

template <typename Entity>
std::vector<Geo::AttributeMap*> mapsOf(const std::vector<Entity*>& entities)
{
    std::vector<Geo::AttributeMap*> maps(entities.size());
    std::transform(entities.begin(), entities.end(), maps.begin(),
                   [](Entity* entity) { return &entity->attributes(); });
    return maps;
}

template <typename Side>
pybind11::object attributeOf(const View<Side>& view, const pybind11::str& tag)
{
    const std::vector<Geo::AttributeMap*> maps = mapsOf(view.entities());
    const pybind11::tuple columns =
        AttributeArrays::values({maps.begin(), maps.end()}, attributeType(tag));
    return pybind11::module_::import("numpy.ma").attr("MaskedArray")(columns[0], columns[1]);
}

/// \brief Those of \p entities for which \p values has one: all, unless it is a masked array.
template <typename Entity>
std::vector<Entity*> unmasked(const std::vector<Entity*>& entities,
                              const std::optional<pybind11::array_t<bool>>& mask)
{
    if (!mask) {
        return entities;
    }
    Arrays::requireCount(mask->size(), entities.size(), "value");
    std::vector<Entity*> chosen;
    for (std::size_t i = 0; i < entities.size(); ++i) {
        if (!mask->data()[i]) {
            chosen.push_back(entities[i]);
        }
    }
    return chosen;
}

template <typename Side>
void setAttribute(const View<Side>& view, const pybind11::str& tag, const pybind11::object& values,
                  const pybind11::object& ids)
{
    namespace py = pybind11;
    const Geo::AttributeType type = attributeType(tag);
    const auto chosen = ids.is_none() ? std::vector<int>() : Arrays::idsFrom(ids);
    std::optional<py::array_t<bool>> mask;
    py::object present = values;
    if (Masks::isMaskedArray(values)) {
        mask = py::array_t<bool>(py::module_::import("numpy.ma").attr("getmaskarray")(values));
        present = values.attr("compressed")();
    }
    const AttributeArrays::Values converted(present, type); // the last that may run any Python
    const auto entities = ids.is_none() ? view.entities() : entitiesAt(view, chosen);
    converted.setIn(mapsOf(unmasked(entities, mask)));
}

template <typename Side>
std::string countText(const View<Side>& view)
{
    try {
        return std::to_string(view.count());
    } catch (const Gone&) {
        return "gone";
    } catch (const Busy&) {
        return "busy";
    }
}

/// \brief Adds the class of views of one side, and of walks over them, to \p module.
template <typename Side>
pybind11::class_<View<Side>> bindView(pybind11::module_& module, const char* name, const char* text)
{
    namespace py = pybind11;
    using Of = View<Side>;
    py::class_<Walk<Side>>(module, (std::string("_WalkOf") + name).c_str())
        .def("__iter__", [](const py::object& self) { return self; })
        .def("__next__", &Walk<Side>::next);
    py::class_<Of> view(module, name, text);
    view.def("__len__", &Of::count)
        .def("__iter__",
             [](const Of& self) {
                 return Walk<Side>{self.state, self.dimension, self.ids()};
             })
        .def("__getitem__", &entityBy<Side>, py::arg("id"),
             "The entity of that id; KeyError without.")
        .def("__contains__", &contains<Side>)
        .def_property_readonly(
            "dimension", [](const Of& self) { return self.dimension; }, "Of the entities, 0 to 3.")
        .def_property_readonly("ids", &idArray<Side>,
                               "The ids, n int32, in the order of every other array of this view.")
        .def("select", &select<Side>, py::arg("ids"),
             "Those of the given ids, in their order, or those where an array of truth values, one "
             "for\n"
             "each, is true; one that is masked counts as false.")
        .def("attribute", &attributeOf<Side>, py::arg("tag"),
             "The values of an attribute, a masked array of int64, float64 or bool; masked where "
             "an\n"
             "entity has none. TypeError for values that are no numbers.")
        .def("set_attribute", &setAttribute<Side>, py::arg("tag"), py::arg("values"),
             py::arg("ids") = py::none(),
             "Sets an attribute of all entities, or of those of n ids: one value for all, or n of "
             "them;\n"
             "what is masked in a masked array stays as it is.")
        .def("__repr__", [name](const Of& self) {
            return '<' + std::string(name) + " of dimension " + std::to_string(self.dimension) +
                   ": " + countText(self) + '>';
        });
    return view;
}

} // namespace Ovra::GeoPython
