#include "Attributes.h"
#include "Bindings.h"
#include "Handles.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ModelVertex.h"
#include "Values.h"

#include <array>
#include <cstdint>
#include <pybind11/operators.h>
#include <pybind11/stl.h>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;

namespace
{

using VertexHandle = HandleOf<ModelSide, 0>;
using EdgeHandle = HandleOf<ModelSide, 1>;
using FaceHandle = HandleOf<ModelSide, 2>;
using RegionHandle = HandleOf<ModelSide, 3>;

/// Ahead of it comes whatever converts an object: that may run any Python, which may remove the entity.
template <typename Entity, typename Of>
Entity& as(const Of& handle)
{
    return static_cast<Entity&>(handle.get());
}

py::list neighbours(const ModelHandle& handle, int dimension)
{
    requireDimension(dimension);
    QList<ModelEntity*> list;
    for (auto walk = handle.get().adjacencyIterator(dimension); walk.hasNext();) {
        list.append(walk.next());
    }
    return wrapAll<ModelSide>(handle.state, list);
}

void requireSameCase(const ModelHandle& a, const ModelHandle& b)
{
    if (a.state != b.state) {
        throw py::value_error(b.text() + " is of another case");
    }
}

void link(const ModelHandle& handle, const py::args& others)
{
    for (const py::handle each : others) {
        if (!py::isinstance<ModelHandle>(each)) {
            throw py::type_error("model entities are linked with model entities alone");
        }
        const auto& other = each.cast<const ModelHandle&>();
        requireSameCase(handle, other);
        if (handle.dimension == other.dimension) {
            throw py::value_error(handle.text() + " and " + other.text() +
                                  " are of the same dimension");
        }
        other.get();
    }
    for (const py::handle each : others) {
        const auto& other = each.cast<const ModelHandle&>();
        if (!handle.get().isAdjacentTo(&other.get())) {
            handle.get().addAdjacency(&other.get());
        }
        if (!other.get().isAdjacentTo(&handle.get())) {
            other.get().addAdjacency(&handle.get());
        }
    }
}

void unlink(const ModelHandle& handle, const ModelHandle& other)
{
    requireSameCase(handle, other);
    handle.get().removeAdjacency(&other.get());
    other.get().removeAdjacency(&handle.get());
}

MeshEntities childrenOf(const ModelHandle& handle)
{
    std::vector<int> ids;
    ids.reserve(static_cast<std::size_t>(handle.get().childCount()));
    for (auto walk = handle.get().childIterator(); walk.hasNext();) {
        ids.push_back(walk.next().value()->id());
    }
    return selected<MeshSide>(handle.state, handle.dimension, std::move(ids));
}

std::string representation(const ModelHandle& handle)
{
    static constexpr std::array<const char*, 4> classes = {"ModelVertex", "ModelEdge", "ModelFace",
                                                           "ModelRegion"};
    const std::string head = std::string("<") +
                             classes.at(static_cast<std::size_t>(handle.dimension)) + ' ' +
                             std::to_string(handle.id);
    if (handle.state->isClosed() || handle.state->isBusy() || !handle.isThere()) {
        return head + ", gone or busy>";
    }
    const QString name = handle.get().name();
    return head + (name.isEmpty() ? "" : ' ' + py::repr(toPython(name)).cast<std::string>()) + '>';
}

void bindBase(py::module_& module)
{
    py::class_<ModelHandle>(
        module, "ModelEntity",
        "An entity of the boundary representation: a vertex, edge, face or region of the model.\n\n"
        "Geometric values are those that are stored, in the unit of the case.")
        .def_property_readonly(
            "id", [](const ModelHandle& self) { return self.get().id(); },
            "Number within the dimension, from 1.")
        .def_property_readonly(
            "dimension", [](const ModelHandle& self) { return self.dimension; },
            "0 for a vertex, 1 for an edge, 2 for a face, 3 for a region.")
        .def_property(
            "name", [](const ModelHandle& self) { return toPython(self.get().name()); },
            [](const ModelHandle& self, const py::str& name) {
                self.get().setName(textFrom(name));
            },
            "The name, which the surface sections of the solver input use.")
        .def_property(
            "tag", [](const ModelHandle& self) { return toPython(self.get().tag()); },
            [](const ModelHandle& self, const py::str& tag) { self.get().setTag(textFrom(tag)); },
            "A text of the host's.")
        .def_property_readonly(
            "attributes",
            [](const ModelHandle& self) {
                self.get();
                return Attributes{[self]() -> AttributeMap& { return self.get().attributes(); },
                                  self.text()};
            },
            "The attributes, a mutable mapping by tag.")
        .def_property_readonly("children", &childrenOf,
                               "The mesh entities of the same dimension that are classified on "
                               "this one, by id, as they\n"
                               "are now.")
        .def("neighbours", &neighbours, py::arg("dimension"),
             "The linked entities of that dimension, in the order of the list.")
        .def("link", &link,
             "Links the entity with others of the same case, in both directions, once.")
        .def("unlink", &unlink, py::arg("other"), "Takes a link away, in both directions.")
        .def_property_readonly(
            "box", [](const ModelHandle& self) { return toPython(self.get().boundingBox()); },
            "The stored bounding box, in the unit of the case.")
        .def_property_readonly(
            "centroid", [](const ModelHandle& self) { return toPython(self.get().centroid()); },
            "The stored centroid, in the unit of the case; that of a vertex is its point.")
        .def_property_readonly(
            "normal", [](const ModelHandle& self) { return toPython(self.get().normal()); },
            "The stored normal of an edge or face; zero otherwise.")
        .def_property_readonly(
            "is_planar", [](const ModelHandle& self) { return self.get().isPlanar(); },
            "Whether the edge or face is said to be planar; False otherwise.")
        .def(py::self == py::self)
        .def("__hash__",
             [](const ModelHandle& self) {
                 return py::hash(py::make_tuple(reinterpret_cast<std::uintptr_t>(self.state.get()),
                                                self.dimension, self.id));
             })
        .def("__repr__", &representation);
}

template <typename Entity, typename Class>
void bindBoxAndCentroid(Class& entityClass)
{
    using Of = typename Class::type;
    entityClass
        .def_property(
            "box", [](const Of& self) { return toPython(self.get().boundingBox()); },
            [](const Of& self, const py::object& box) {
                const auto converted = boxFrom(box);
                as<Entity>(self).setBoundingBox(converted);
            },
            "The stored bounding box, in the unit of the case.")
        .def_property(
            "centroid", [](const Of& self) { return toPython(self.get().centroid()); },
            [](const Of& self, const py::object& point) {
                const auto converted = vectorFrom(point);
                as<Entity>(self).setCentroid(converted);
            },
            "The stored centroid, in the unit of the case.");
}

template <typename Entity, typename Class>
void bindNormal(Class& entityClass)
{
    using Of = typename Class::type;
    entityClass
        .def_property(
            "normal", [](const Of& self) { return toPython(self.get().normal()); },
            [](const Of& self, const py::object& normal) {
                const auto converted = vectorFrom(normal);
                as<Entity>(self).setNormal(converted);
            },
            "The stored normal.")
        .def_property(
            "is_planar", [](const Of& self) { return self.get().isPlanar(); },
            [](const Of& self, bool planar) { as<Entity>(self).setPlanar(planar); },
            "Whether the entity is said to be planar.");
}

void bindVertex(py::module_& module)
{
    py::class_<VertexHandle, ModelHandle>(module, "ModelVertex", "A corner of the model: a point.")
        .def_property(
            "point",
            [](const VertexHandle& self) { return toPython(as<ModelVertex>(self).point()); },
            [](const VertexHandle& self, const py::object& point) {
                const auto converted = vectorFrom(point);
                as<ModelVertex>(self).setPoint(converted);
            },
            "The position, in the unit of the case.");
}

void bindEdge(py::module_& module)
{
    py::class_<EdgeHandle, ModelHandle> edge(
        module, "ModelEdge", "A curve of the model; in a planar model it bounds the domain.");
    bindBoxAndCentroid<ModelEdge>(edge);
    bindNormal<ModelEdge>(edge);
    edge.def_property(
        "length", [](const EdgeHandle& self) { return as<ModelEdge>(self).length(); },
        [](const EdgeHandle& self, double length) { as<ModelEdge>(self).setLength(length); },
        "The stored length, in the unit of the case.");
}

void bindFace(py::module_& module)
{
    py::class_<FaceHandle, ModelHandle> face(
        module, "ModelFace", "A surface of the model; in a planar model it is a domain.");
    bindBoxAndCentroid<ModelFace>(face);
    bindNormal<ModelFace>(face);
    face.def_property(
        "area", [](const FaceHandle& self) { return as<ModelFace>(self).area(); },
        [](const FaceHandle& self, double area) { as<ModelFace>(self).setArea(area); },
        "The stored area, in the square of the case's unit.");
}

void bindRegion(py::module_& module)
{
    py::class_<RegionHandle, ModelHandle> region(module, "ModelRegion", "A volume of the model.");
    bindBoxAndCentroid<ModelRegion>(region);
    region.def_property(
        "volume", [](const RegionHandle& self) { return as<ModelRegion>(self).volume(); },
        [](const RegionHandle& self, double volume) { as<ModelRegion>(self).setVolume(volume); },
        "The stored volume, in the cube of the case's unit.");
}

} // namespace

void bindModelEntities(py::module_& module)
{
    bindBase(module);
    bindVertex(module);
    bindEdge(module);
    bindFace(module);
    bindRegion(module);
}

} // namespace Ovra::GeoPython
