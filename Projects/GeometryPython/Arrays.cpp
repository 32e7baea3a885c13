#include "Arrays.h"

#include "ElementTopology.h"
#include "Masks.h"
#include "MeshVertex.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <unordered_set>

namespace Ovra::GeoPython
{

namespace py = pybind11;
using namespace Ovra::Geo;
using GeoTool::ElementTopology;

namespace
{

using Reals = py::array_t<double, py::array::c_style | py::array::forcecast>;
using Wholes = py::array_t<qint64, py::array::c_style | py::array::forcecast>;

py::array anyArray(const py::object& object)
{
    const py::array array = py::array::ensure(object);
    if (!array) {
        throw py::type_error("an array of numbers is needed, and not " +
                             py::repr(object).cast<std::string>());
    }
    return array;
}

bool isOfKind(const py::array& array, const char* kinds)
{
    return array.size() == 0 || std::string(kinds).find(array.dtype().kind()) != std::string::npos;
}

/// Larger ones would come out negative.
void requireWithinInt64(const py::array& array)
{
    if (array.dtype().kind() != 'u' || array.dtype().itemsize() < 8) {
        return;
    }
    const py::array_t<quint64, py::array::c_style | py::array::forcecast> values(array);
    const quint64 largest = std::numeric_limits<qint64>::max();
    const auto isLarger = [](quint64 value) { return value > largest; };
    if (std::any_of(values.data(), values.data() + values.size(), isLarger)) {
        PyErr_SetString(PyExc_OverflowError, "an id does not fit into 32 bits");
        throw py::error_already_set();
    }
}

Wholes wholeArray(const py::object& object)
{
    const py::array array = anyArray(object);
    if (!isOfKind(array, "iu")) {
        throw py::type_error("an array of integers is needed, and not of " +
                             py::str(array.dtype()).cast<std::string>());
    }
    Masks::requireNone(object, "ids");
    requireWithinInt64(array);
    return Wholes(array);
}

int shortened(qint64 value)
{
    if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
        PyErr_SetString(PyExc_OverflowError, (std::to_string(value) + " is no id").c_str());
        throw py::error_already_set();
    }
    return static_cast<int>(value);
}

void requireOneDimension(const py::array& array)
{
    if (array.ndim() != 1) {
        throw py::value_error("ids are an array of one dimension");
    }
}

std::vector<int> shortened(const Wholes& values)
{
    std::vector<int> ids(static_cast<std::size_t>(values.size()));
    std::transform(values.data(), values.data() + values.size(), ids.begin(),
                   [](qint64 value) { return shortened(value); });
    return ids;
}

Reals pointArray(const py::object& object)
{
    const py::array array = anyArray(object);
    if (!isOfKind(array, "fiu") || array.ndim() != 2 || array.shape(1) != 3) {
        throw py::value_error("points are an array of n x 3 numbers");
    }
    Masks::requireNone(object, "points");
    Reals points(array);
    const double* const end = points.data() + points.size();
    const double* const bad =
        std::find_if(points.data(), end, [](double value) { return !std::isfinite(value); });
    if (bad != end) {
        throw py::value_error("row " + std::to_string((bad - points.data()) / 3) +
                              " of the points is not finite");
    }
    return points;
}

std::string counted(std::size_t count, const std::string& singular, const std::string& plural)
{
    return std::to_string(count) + ' ' + (count == 1 ? singular : plural);
}

Vector pointAt(const Reals& points, std::size_t row)
{
    const double* const first = points.data() + 3 * row;
    return {first[0], first[1], first[2]};
}

const ElementTopology& topologyOf(const std::string& kind)
{
    std::string known;
    for (const ElementTopology& topology : ElementTopology::all()) {
        if (topology.dimension > 0 && kind == topology.name) {
            return topology;
        }
        known += (known.empty() ? "" : ", ") + std::string(topology.name);
    }
    throw py::value_error("there is no kind of element \"" + kind + "\"; there are " + known);
}

std::string kindOf(const MeshEntity& entity)
{
    const ElementTopology* const topology =
        ElementTopology::find(entity.dimension(), entity.adjacencyCount(0));
    return topology ? topology->name : "unknown";
}

/// Of an array that is filled in one walk, and cut at its end to the rows that were.
py::ssize_t mostRows(const MeshEntities& view)
{
    return static_cast<py::ssize_t>(view.most());
}

/// Throws Gone ahead of a change of each, which would else be left halfway.
void requireAllThere(const MeshEntities& view)
{
    if (view.selection) {
        view.forEach([](const MeshEntity&) {});
    }
}

/// A file may hold elements of any number of vertices, which the library has no geometry for.
void requireShape(const MeshEntity& entity)
{
    const int dimension = entity.dimension();
    if (dimension > 0 && !ElementTopology::find(dimension, entity.adjacencyCount(0))) {
        throw py::value_error(entityText("mesh", dimension, entity.id()) + " has " +
                              std::to_string(entity.adjacencyCount(0)) +
                              " vertices, as no kind of element does");
    }
}

/// Ids that were asked for: positive, each once, none taken; or none, for the next free ones.
std::vector<int> newIds(const CasePointer& state, int dimension, const py::object& object,
                        std::size_t count)
{
    if (object.is_none()) {
        return {};
    }
    std::vector<int> ids = Arrays::idsFrom(object); // which may run any Python
    const Mesh& mesh = state->mesh();
    Arrays::requireCount(static_cast<py::ssize_t>(ids.size()), count, "id");
    std::unordered_set<int> seen;
    for (const int id : ids) {
        if (id <= 0) {
            throw py::value_error(std::to_string(id) + " is no id; ids begin at 1");
        }
        if (mesh.entity(dimension, id) != nullptr || !seen.insert(id).second) {
            throw py::value_error(entityText("mesh", dimension, id) + " is there already");
        }
    }
    return ids;
}

/// Adds \p count entities that \p make makes of their row.
template <typename Make>
MeshEntities addAll(const CasePointer& state, int dimension, std::size_t count,
                    const std::vector<int>& ids, Make make)
{
    Mesh& mesh = state->mesh();
    state->meshWillChange();
    std::vector<int> added;
    added.reserve(count);
    for (std::size_t row = 0; row < count; ++row) {
        MeshEntity* const entity = make(row);
        if (!ids.empty()) {
            entity->setId(ids[row]);
        }
        mesh.add(entity);
        added.push_back(entity->id());
    }
    return selected<MeshSide>(state, dimension, std::move(added));
}

MeshEntity* vertexOf(const Mesh& mesh, qint64 id)
{
    MeshEntity* const vertex = mesh.entity(0, shortened(id));
    if (vertex == nullptr) {
        throw py::value_error("there is no mesh vertex " + std::to_string(id));
    }
    return vertex;
}

std::vector<MeshEntity*> verticesOf(const Mesh& mesh, const Wholes& ids)
{
    std::vector<MeshEntity*> vertices(static_cast<std::size_t>(ids.size()));
    std::transform(ids.data(), ids.data() + ids.size(), vertices.begin(),
                   [&mesh](qint64 id) { return vertexOf(mesh, id); });
    return vertices;
}

std::vector<ModelEntity*> parentsOf(const Model& model, const Wholes& ids, int dimension,
                                    std::size_t count)
{
    const bool isOneForAll = ids.ndim() == 0;
    if (!isOneForAll) {
        Arrays::requireCount(ids.size(), count, "parent");
    }
    std::vector<ModelEntity*> parents(count);
    for (std::size_t i = 0; i < count; ++i) {
        const int id = shortened(ids.data()[isOneForAll ? 0 : i]);
        parents[i] = id == 0 ? nullptr : model.entity(dimension, id);
        if (id != 0 && parents[i] == nullptr) {
            throw py::value_error("there is no " + entityText("model", dimension, id));
        }
    }
    return parents;
}

} // namespace

void Arrays::requireCount(py::ssize_t given, std::size_t needed, const std::string& what)
{
    const auto count = static_cast<std::size_t>(given);
    if (count != needed) {
        throw py::value_error(counted(count, what + " is", what + "s are") + " given for " +
                              counted(needed, "entity", "entities"));
    }
}

std::vector<int> Arrays::idsFrom(const py::object& object)
{
    const bool areOfView =
        py::isinstance<py::array_t<int>>(object) && !Masks::isMaskedArray(object);
    if (areOfView) {
        const auto ids = py::array_t<int, py::array::c_style>::ensure(object);
        requireOneDimension(ids);
        return {ids.data(), ids.data() + ids.size()};
    }
    const Wholes values = wholeArray(object);
    requireOneDimension(values);
    return shortened(values);
}

std::vector<int> Arrays::chosen(const std::vector<int>& all, const py::object& object)
{
    const py::array array = anyArray(object);
    if (array.dtype().kind() != 'b' || array.ndim() != 1) {
        return idsFrom(object);
    }
    Arrays::requireCount(array.size(), all.size(), "truth value");
    const py::array_t<bool, py::array::c_style | py::array::forcecast> truths(
        Masks::isMaskedArray(object) ? object.attr("filled")(false) : py::object(array));
    std::vector<int> ids;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (truths.data()[i]) {
            ids.push_back(all[i]);
        }
    }
    return ids;
}

py::array_t<double> Arrays::centroids(const MeshEntities& view)
{
    py::array_t<double> result({mostRows(view), py::ssize_t{3}});
    double* place = result.mutable_data();
    view.forEach([&place, isOfVertices = view.dimension == 0](const MeshEntity& entity) {
        requireShape(entity);
        const Vector point =
            isOfVertices ? static_cast<const MeshVertex&>(entity).point() : entity.centroid();
        *place++ = point.x();
        *place++ = point.y();
        *place++ = point.z();
    });
    result.resize({(place - result.data()) / 3, py::ssize_t{3}});
    return result;
}

void Arrays::setPoints(const MeshEntities& view, const py::object& object)
{
    if (view.dimension != 0) {
        throw py::type_error("elements lie where their vertices do; set the coordinates of these");
    }
    const Reals points = pointArray(object);
    requireAllThere(view);
    Arrays::requireCount(points.shape(0), view.count(), "point");
    view.forEach([&points, row = std::size_t{0}](MeshEntity& vertex) mutable {
        static_cast<MeshVertex&>(vertex).setPoint(pointAt(points, row++));
    });
}

py::dict Arrays::kinds(const MeshEntities& view)
{
    std::map<std::string, int> counts;
    view.forEach([&counts](const MeshEntity& entity) { ++counts[kindOf(entity)]; });
    py::dict result;
    for (const auto& [kind, count] : counts) {
        result[py::str(kind)] = count;
    }
    return result;
}

MeshEntities Arrays::ofKind(const MeshEntities& view, const std::string& kind)
{
    const ElementTopology& topology = topologyOf(kind);
    const bool canBeThere = topology.dimension == view.dimension;
    if (canBeThere && !view.selection) {
        return {view.state, view.dimension,
                std::make_shared<Selection<MeshSide>>(view.state, view.dimension,
                                                      topology.vertexCount)};
    }
    std::vector<int> ids;
    view.forEach([&](const MeshEntity& entity) {
        if (canBeThere && entity.adjacencyCount(0) == topology.vertexCount) {
            ids.push_back(entity.id());
        }
    });
    return selected<MeshSide>(view.state, view.dimension, std::move(ids));
}

py::array_t<int> Arrays::connectivity(const MeshEntities& view)
{
    const py::ssize_t most = mostRows(view);
    py::array_t<int> result(py::array::ShapeContainer{0, 0});
    int* place = nullptr;
    int width = 0;
    view.forEach([&](const MeshEntity& element) {
        if (place == nullptr) {
            width = element.adjacencyCount(0);
            result = py::array_t<int>({most, py::ssize_t{width}});
            place = result.mutable_data();
        }
        if (element.adjacencyCount(0) != width) {
            throw py::value_error("the elements are of more than one kind; ask of_kind() first");
        }
        for (int i = 0; i < width; ++i) {
            *place++ = element.adjacencyAt(0, i)->id();
        }
    });
    if (width > 0) {
        result.resize({(place - result.data()) / width, py::ssize_t{width}});
    }
    return result;
}

py::tuple Arrays::parents(const MeshEntities& view)
{
    py::array_t<qint8> dimensions(mostRows(view));
    py::array_t<int> ids(mostRows(view));
    py::ssize_t row = 0;
    view.forEach([&row, dimensionAt = dimensions.mutable_data(),
                  idAt = ids.mutable_data()](const MeshEntity& entity) {
        const ModelEntity* const parent = entity.parent();
        dimensionAt[row] = parent ? static_cast<qint8>(parent->dimension()) : qint8{-1};
        idAt[row++] = parent ? parent->id() : 0;
    });
    dimensions.resize({row});
    ids.resize({row});
    return py::make_tuple(dimensions, ids);
}

void Arrays::classify(const MeshEntities& view, const py::object& object, int dimension)
{
    requireDimension(dimension);
    const Wholes ids = wholeArray(object);
    if (ids.ndim() > 1) {
        throw py::value_error("parents are one id, or an array of one dimension");
    }
    const std::vector<MeshEntity*> entities = view.entities();
    const std::vector<ModelEntity*> parents =
        parentsOf(view.state->model(), ids, dimension, entities.size());
    for (std::size_t i = 0; i < entities.size(); ++i) {
        if (parents[i] != nullptr) {
            parents[i]->addChild(entities[i]);
        } else if (ModelEntity* const former = entities[i]->parent()) {
            former->removeChild(entities[i]);
        }
    }
}

MeshEntities Arrays::addVertices(const CasePointer& state, const py::object& object,
                                 const py::object& idObject)
{
    const Reals points = pointArray(object);
    const auto count = static_cast<std::size_t>(points.shape(0));
    const std::vector<int> ids = newIds(state, 0, idObject, count);
    return addAll(state, 0, count, ids, [&points](std::size_t row) {
        auto* const vertex = new MeshVertex;
        vertex->setPoint(pointAt(points, row));
        return vertex;
    });
}

MeshEntities Arrays::addElements(const CasePointer& state, const std::string& kind,
                                 const py::object& object, const py::object& idObject)
{
    const ElementTopology& topology = topologyOf(kind);
    const Wholes rows = wholeArray(object);
    if (rows.ndim() != 2 || rows.shape(1) != topology.vertexCount) {
        throw py::value_error("vertices of " + std::string(topology.plural) +
                              " are an array of n x " + std::to_string(topology.vertexCount) +
                              " ids");
    }
    const auto count = static_cast<std::size_t>(rows.shape(0));
    const std::vector<int> ids = newIds(state, topology.dimension, idObject, count);
    const std::vector<MeshEntity*> vertices = verticesOf(state->mesh(), rows);
    const auto width = static_cast<std::size_t>(topology.vertexCount);
    state->meshGrew();
    return addAll(state, topology.dimension, count, ids, [&](std::size_t row) {
        MeshEntity* const element = MeshEntity::create(topology.dimension);
        for (std::size_t i = 0; i < width; ++i) {
            element->addAdjacency(vertices[row * width + i]);
        }
        return element;
    });
}

} // namespace Ovra::GeoPython
