#include "Attributes.h"
#include "Bindings.h"
#include "ModelVertex.h"
#include "Views.h"

#include <array>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;

namespace
{

struct ModelOf
{
    CasePointer state;
};

void requireFree(const Model& model, int dimension, int id)
{
    if (id < 0) {
        throw py::value_error("ids begin at 1");
    }
    if (id > 0 && model.entity(dimension, id) != nullptr) {
        throw py::value_error(entityText("model", dimension, id) + " is there already");
    }
}

py::object add(const ModelOf& self, int dimension, const py::str& name, int id)
{
    Model& model = self.state->model();
    requireFree(model, dimension, id);
    ModelEntity* const entity = ModelEntity::create(dimension);
    entity->setName(textFrom(name));
    entity->setId(id);
    model.add(entity);
    return wrap<ModelSide>(self.state, *entity);
}

py::object addVertex(const ModelOf& self, const py::object& point, const py::str& name, int id)
{
    const Vector place = vectorFrom(point); // ahead of any change
    const py::object vertex = add(self, 0, name, id);
    static_cast<ModelVertex&>(vertex.cast<const ModelHandle&>().get()).setPoint(place);
    return vertex;
}

/// Links may be of one direction, so that the neighbours alone do not tell who lists the entity.
void unlinkEverywhere(const Model& model, ModelEntity& entity)
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (auto walk = model.iterator(dimension); walk.hasNext();) {
            ModelEntity* const other = walk.next().value();
            while (other->isAdjacentTo(&entity)) {
                other->removeAdjacency(&entity);
            }
        }
    }
}

void declassifyFrom(const Mesh& mesh, ModelEntity& entity)
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (auto walk = mesh.iterator(dimension); walk.hasNext();) {
            MeshEntity* const child = walk.next().value();
            if (child->parent() == &entity) {
                entity.removeChild(child);
            }
        }
    }
}

void remove(const ModelOf& self, const ModelHandle& handle)
{
    if (handle.state != self.state) {
        throw py::value_error(handle.text() + " is of another case");
    }
    ModelEntity& entity = handle.get();
    unlinkEverywhere(self.state->model(), entity);
    declassifyFrom(self.state->mesh(), entity);
    self.state->noteRemoval(&entity);
    self.state->model().remove(&entity);
}

template <int Dimension>
ModelEntities viewOf(const ModelOf& self)
{
    self.state->model();
    return {self.state, Dimension};
}

std::string representation(const ModelOf& self)
{
    const Model& model = self.state->model();
    std::string text = "<Model:";
    static constexpr std::array<const char*, 4> nouns = {" vertices", " edges", " faces",
                                                         " regions"};
    for (int dimension = 0; dimension < 4; ++dimension) {
        text += (dimension > 0 ? ", " : " ") + std::to_string(model.count(dimension)) +
                nouns.at(static_cast<std::size_t>(dimension));
    }
    return text + '>';
}

void bindEntities(py::class_<ModelOf>& model)
{
    model.def_property_readonly("vertices", &viewOf<0>, "The vertices.")
        .def_property_readonly("edges", &viewOf<1>, "The edges.")
        .def_property_readonly("faces", &viewOf<2>, "The faces.")
        .def_property_readonly("regions", &viewOf<3>, "The regions.")
        .def("add_vertex", &addVertex, py::arg("point"), py::arg("name") = "", py::arg("id") = 0,
             "Adds a vertex, whose point is in the unit of the case, under the next free id if "
             "none is "
             "given,\n"
             "and returns it.")
        .def(
            "add_edge",
            [](const ModelOf& self, const py::str& name, int id) { return add(self, 1, name, id); },
            py::arg("name") = "", py::arg("id") = 0, "Adds an edge, linked with nothing yet.")
        .def(
            "add_face",
            [](const ModelOf& self, const py::str& name, int id) { return add(self, 2, name, id); },
            py::arg("name") = "", py::arg("id") = 0, "Adds a face, linked with nothing yet.")
        .def(
            "add_region",
            [](const ModelOf& self, const py::str& name, int id) { return add(self, 3, name, id); },
            py::arg("name") = "", py::arg("id") = 0, "Adds a region, linked with nothing yet.")
        .def("remove", &remove, py::arg("entity"),
             "Removes an entity, its links, and its role as the parent of mesh entities.");
}

} // namespace

void bindModel(py::module_& module)
{
    bindView<ModelSide>(module, "ModelEntities",
                        "Model entities of one dimension: a collection by id that is walked by\n"
                        "ascending id, and whose attributes are arrays of NumPy.");
    py::class_<ModelOf> model(module, "Model", "The boundary representation of a case.");
    module.def(
        "model_of", [](const CasePointer& state) { return ModelOf{state}; },
        py::arg("state").none(false));
    model
        .def_property_readonly(
            "attributes",
            [](const ModelOf& self) {
                self.state->model();
                return Attributes{
                    [self]() -> AttributeMap& { return self.state->model().attributes(); },
                    "the model"};
            },
            "The attributes of the model as a whole.")
        .def_property(
            "box", [](const ModelOf& self) { return toPython(self.state->model().boundingBox()); },
            [](const ModelOf& self, const py::object& box) {
                const Box converted = boxFrom(box);
                self.state->model().setBoundingBox(converted);
            },
            "The stored bounding box, in the unit of the case, which nothing computes.")
        .def_property_readonly(
            "is_3d", [](const ModelOf& self) { return self.state->model().is3d(); },
            "Whether there is at least one region.")
        .def("__repr__", &representation);
    bindEntities(model);
}

} // namespace Ovra::GeoPython
