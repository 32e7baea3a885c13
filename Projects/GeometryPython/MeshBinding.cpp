#include "Attributes.h"
#include "Bindings.h"
#include "Views.h"

#include <array>
#include <optional>
#include <pybind11/stl.h>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;

namespace
{

struct MeshOf
{
    CasePointer state;
};

template <int Dimension>
MeshEntities viewOf(const MeshOf& self)
{
    self.state->mesh();
    return {self.state, Dimension};
}

py::object addVertex(const MeshOf& self, const py::object& point, const py::object& id)
{
    const py::object ids = id.is_none() ? id : py::object(py::make_tuple(id));
    const MeshEntities added =
        Arrays::addVertices(self.state, py::make_tuple(toPython(vectorFrom(point))), ids);
    return wrap<MeshSide>(self.state, *added.entities().front());
}

void requireUnused(const MeshHandle& handle)
{
    const MeshEntity& vertex = handle.get();
    for (int dimension = 1; dimension < 4; ++dimension) {
        if (vertex.adjacencyCount(dimension) > 0) {
            throw py::value_error(
                handle.text() + " is used by " +
                entityText("mesh", dimension, vertex.adjacencyAt(dimension, 0)->id()));
        }
    }
}

void remove(const MeshOf& self, const MeshHandle& handle)
{
    if (handle.state != self.state) {
        throw py::value_error(handle.text() + " is of another case");
    }
    MeshEntity& entity = handle.get();
    Mesh& mesh = self.state->linkedMesh();
    if (handle.dimension == 0) {
        requireUnused(handle);
    }
    self.state->meshWillChange();
    self.state->noteRemoval(&entity);
    mesh.remove(&entity);
}

void renumber(const MeshOf& self)
{
    const auto work = [](Database& database) {
        for (int dimension = 0; dimension < 4; ++dimension) {
            database.mesh()->renumber(dimension);
        }
        CaseState::keyChildrenAnew(database);
        return true;
    };
    self.state->asideOrGiveUp(
        work, "a renumbering that failed has left the case undefined; open it anew");
}

std::string representation(const MeshOf& self)
{
    const Mesh& mesh = self.state->mesh();
    std::string text = "<Mesh:";
    static constexpr std::array<const char*, 4> nouns = {" vertices", " edges", " faces",
                                                         " regions"};
    for (int dimension = 0; dimension < 4; ++dimension) {
        text += (dimension > 0 ? ", " : " ") + std::to_string(mesh.count(dimension)) +
                nouns.at(static_cast<std::size_t>(dimension));
    }
    return text + '>';
}

void bindMeshView(py::module_& module)
{
    bindView<MeshSide>(
        module, "MeshEntities",
        "Mesh entities of one dimension: a collection by id that is walked by ascending\n"
        "id. Its properties are arrays of NumPy, copies, a row for each entity.")
        .def_property(
            "coordinates", &Arrays::centroids, &Arrays::setPoints,
            "Points of vertices, n x 3 float64 in the unit of the case; of elements the means of\n"
            "their vertices, which cannot be set.")
        .def_property_readonly(
            "connectivity", &Arrays::connectivity,
            "Ids of the vertices of elements of one kind, n x k int32, in node order.")
        .def_property_readonly("kinds", &Arrays::kinds,
                               "Number of elements by kind, such as {'tetrahedron': 6}.")
        .def("of_kind", &Arrays::ofKind, py::arg("kind"), "Those of one kind.")
        .def_property_readonly(
            "parents", &Arrays::parents,
            "The classification: dimensions (int8, -1 for none) and ids (int32, 0 for\n"
            "none) of the model entities.")
        .def(
            "classify",
            [](const MeshEntities& self, const py::object& parents, std::optional<int> dimension) {
                Arrays::classify(self, parents, dimension.value_or(self.dimension));
            },
            py::arg("parents"), py::arg("dimension") = py::none(),
            "Classifies the entities on model entities, by default of their own dimension: one id "
            "for\n"
            "all or one for each, 0 for none.");
}

void bindGrowth(py::class_<MeshOf>& mesh)
{
    mesh.def("add_vertex", &addVertex, py::arg("point"), py::arg("id") = py::none(),
             "Adds a vertex, whose point is in the unit of the case, under the next free id if "
             "none is "
             "given,\n"
             "and returns it.")
        .def(
            "add_vertices",
            [](const MeshOf& self, const py::object& points, const py::object& ids) {
                return Arrays::addVertices(self.state, points, ids);
            },
            py::arg("points"), py::arg("ids") = py::none(),
            "Adds vertices at the rows of an n x 3 array, in the unit of the case, under n ids or "
            "the\n"
            "next free ones, and returns them.")
        .def(
            "add_elements",
            [](const MeshOf& self, const std::string& kind, const py::object& vertices,
               const py::object& ids) {
                return Arrays::addElements(self.state, kind, vertices, ids);
            },
            py::arg("kind"), py::arg("vertices"), py::arg("ids") = py::none(),
            "Adds elements of a kind, such as 'triangle' or 'hexahedron', whose k vertices are the "
            "rows\n"
            "of an n x k array of ids in node order, under n ids or the next free ones, and "
            "returns\n"
            "them.")
        .def("remove", &remove, py::arg("entity"),
             "Removes an entity; ValueError for a vertex that an element uses.")
        .def("renumber", &renumber,
             "Closes the gaps in the ids of all dimensions; attributes that name vertices follow.");
}

} // namespace

void bindMesh(py::module_& module)
{
    bindMeshView(module);
    py::class_<MeshOf> mesh(module, "Mesh", "The mesh of a case.");
    module.def(
        "mesh_of", [](const CasePointer& state) { return MeshOf{state}; },
        py::arg("state").none(false));
    mesh.def_property_readonly("vertices", &viewOf<0>, "The vertices.")
        .def_property_readonly("edges", &viewOf<1>, "The edges.")
        .def_property_readonly("faces", &viewOf<2>, "The faces.")
        .def_property_readonly("regions", &viewOf<3>, "The regions.")
        .def_property_readonly(
            "attributes",
            [](const MeshOf& self) {
                self.state->mesh();
                return Attributes{
                    [self]() -> AttributeMap& { return self.state->mesh().attributes(); },
                    "the mesh"};
            },
            "The attributes of the mesh as a whole.")
        .def("__repr__", &representation);
    bindGrowth(mesh);
}

} // namespace Ovra::GeoPython
