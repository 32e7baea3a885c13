#include "Arrays.h"
#include "Attributes.h"
#include "Bindings.h"
#include "ElementTopology.h"
#include "Handles.h"
#include "MeshVertex.h"
#include "Values.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <pybind11/operators.h>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;
using GeoTool::ElementTopology;

namespace
{

using VertexHandle = HandleOf<MeshSide, 0>;

const ElementTopology* topologyOf(const MeshEntity& entity)
{
    return ElementTopology::find(entity.dimension(), entity.adjacencyCount(0));
}

/// A file may hold elements of any number of vertices, which the library has no geometry for.
MeshEntity& shaped(const MeshHandle& handle)
{
    MeshEntity& entity = handle.get();
    if (entity.dimension() > 0 && topologyOf(entity) == nullptr) {
        throw py::value_error(handle.text() + " has " + std::to_string(entity.adjacencyCount(0)) +
                              " vertices, as no kind of element does");
    }
    return entity;
}

QList<MeshEntity*> listOf(const MeshEntity& entity, int dimension)
{
    QList<MeshEntity*> list;
    for (auto walk = entity.adjacencyIterator(dimension); walk.hasNext();) {
        list.append(walk.next());
    }
    return list;
}

QList<MeshEntity*> neighboursOf(MeshEntity& entity, int dimension)
{
    if (dimension == entity.dimension()) {
        return {};
    }
    if (dimension == 0 || entity.dimension() == 0) {
        return listOf(entity, dimension);
    }
    return (dimension > entity.dimension() ? MeshEntity::getUpwardAdjacencies(&entity, dimension)
                                           : MeshEntity::getDownwardAdjacencies(&entity, dimension))
        .values();
}

py::list neighbours(const MeshHandle& handle, int dimension)
{
    requireDimension(dimension);
    MeshEntity& entity = handle.get();
    handle.state->linkedMesh();
    QList<MeshEntity*> found = neighboursOf(entity, dimension);
    if (dimension > 0) { // vertices stand in node order
        std::sort(found.begin(), found.end(), MeshEntity::lessThan);
    }
    return wrapAll<MeshSide>(handle.state, found);
}

py::object parentOf(const MeshHandle& handle)
{
    ModelEntity* const parent = handle.get().parent();
    return parent ? wrap<ModelSide>(handle.state, *parent) : py::object(py::none());
}

void setParent(const MeshHandle& handle, const py::object& parent)
{
    MeshEntity& entity = handle.get();
    if (!parent.is_none()) {
        if (!py::isinstance<ModelHandle>(parent)) {
            throw py::type_error("a parent is a model entity, or None");
        }
        const auto& model = parent.cast<const ModelHandle&>();
        if (model.state != handle.state) {
            throw py::value_error(model.text() + " is of another case");
        }
        model.get().addChild(&entity);
    } else if (entity.parent() != nullptr) {
        entity.parent()->removeChild(&entity);
    }
}

std::string representation(const MeshHandle& handle)
{
    static constexpr std::array<const char*, 4> classes = {"MeshVertex", "MeshEdge", "MeshFace",
                                                           "MeshRegion"};
    const std::string head = std::string("<") +
                             classes.at(static_cast<std::size_t>(handle.dimension)) + ' ' +
                             std::to_string(handle.id);
    if (handle.state->isClosed() || handle.state->isBusy() || !handle.isThere()) {
        return head + ", gone or busy>";
    }
    const ElementTopology* const topology = topologyOf(handle.get());
    const std::string kind =
        topology && handle.dimension > 1 ? std::string(", ") + topology->name : "";
    return head + kind + '>';
}

py::str kindOf(const MeshHandle& handle)
{
    const ElementTopology* const topology = topologyOf(handle.get());
    return handle.dimension == 0 ? "vertex" : topology ? topology->name : "unknown";
}

void bindBase(py::module_& module)
{
    py::class_<MeshHandle>(
        module, "MeshEntity",
        "An entity of the mesh: a vertex, edge, face or region, classified on a model entity.")
        .def_property_readonly(
            "id", [](const MeshHandle& self) { return self.get().id(); },
            "Number within the dimension, from 1.")
        .def_property_readonly(
            "dimension", [](const MeshHandle& self) { return self.dimension; },
            "0 for a vertex, 1 for an edge, 2 for a face, 3 for a region.")
        .def_property_readonly("kind", &kindOf,
                               "'triangle', 'tetrahedron' and so on, or 'unknown'.")
        .def_property("parent", &parentOf, &setParent,
                      "The model entity on which the entity is classified, or None.")
        .def_property_readonly(
            "attributes",
            [](const MeshHandle& self) {
                self.get();
                return Attributes{[self]() -> AttributeMap& { return self.get().attributes(); },
                                  self.text()};
            },
            "The attributes, a mutable mapping by tag.")
        .def_property_readonly(
            "vertices",
            [](const MeshHandle& self) {
                return py::tuple(wrapAll<MeshSide>(self.state, listOf(self.get(), 0)));
            },
            "The vertices of an element in its node order; none of a vertex.")
        .def(
            "neighbours", &neighbours, py::arg("dimension"),
            "The entities of that dimension that use all of this one's vertices or, below its own\n"
            "dimension, that it uses; by id, vertices in node order.")
        .def_property_readonly(
            "box", [](const MeshHandle& self) { return toPython(shaped(self).boundingBox()); },
            "The smallest box that holds the vertices, in the unit of the case.")
        .def_property_readonly(
            "centroid", [](const MeshHandle& self) { return toPython(shaped(self).centroid()); },
            "The mean of the vertices, in the unit of the case.")
        .def_property_readonly(
            "normal", [](const MeshHandle& self) { return toPython(shaped(self).normal()); },
            "Unit normal of a face, or of an edge in the xy plane; zero otherwise.")
        .def(py::self == py::self)
        .def("__hash__",
             [](const MeshHandle& self) {
                 return py::hash(py::make_tuple(reinterpret_cast<std::uintptr_t>(self.state.get()),
                                                self.dimension, self.id));
             })
        .def("__repr__", &representation);
}

void bindVertex(py::module_& module)
{
    py::class_<VertexHandle, MeshHandle>(module, "MeshVertex", "A node of the mesh: a point.")
        .def_property(
            "point",
            [](const VertexHandle& self) {
                return toPython(static_cast<MeshVertex&>(self.get()).point());
            },
            [](const VertexHandle& self, const py::object& point) {
                const Vector place = vectorFrom(point);
                static_cast<MeshVertex&>(self.get()).setPoint(place);
            },
            "The position, in the unit of the case.");
}

} // namespace

void bindMeshEntities(py::module_& module)
{
    bindBase(module);
    bindVertex(module);
    const py::class_<HandleOf<MeshSide, 1>, MeshHandle> edge(module, "MeshEdge",
                                                             "A line element: two vertices.");
    const py::class_<HandleOf<MeshSide, 2>, MeshHandle> face(
        module, "MeshFace", "A surface element: a triangle or quadrilateral.");
    const py::class_<HandleOf<MeshSide, 3>, MeshHandle> region(
        module, "MeshRegion", "A volume element: a tetrahedron, pyramid, wedge or hexahedron.");
}

} // namespace Ovra::GeoPython
