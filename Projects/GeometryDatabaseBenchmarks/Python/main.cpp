// Arrays of the Python package against the loop over the library that does the same in C++.

#include "BlockCase.h"
#include "MeshRegion.h"
#include "MeshVertex.h"

#include <QDir>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <memory>
#include <pybind11/embed.h>
#include <pybind11/numpy.h>
#include <vector>

namespace py = pybind11;
using namespace py::literals;
using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

constexpr int elementCount = 1'000'000;
constexpr std::size_t corners = 4;

/// The same mesh on both sides, and the arrays that it is made of.
class Cases
{
public:
    Cases()
        : block_(BlockCase::cellsFor(elementCount))
    {
        const QTemporaryDir folder;
        const QByteArray path = QDir(folder.path()).filePath(QStringLiteral("case")).toLocal8Bit();
        const QByteArray directory = folder.path().toLocal8Bit();
        block_.model().write(directory.constData(), "case", false);
        const QString meshPath = QString::fromLocal8Bit(path) + QStringLiteral(".geo_mesh");
        QFile file(meshPath);
        file.open(QIODevice::WriteOnly);
        QDataStream stream(&file);
        block_.mesh().write(stream);
        file.close();
        python_ = py::module_::import("ovrageo").attr("open")(path.toStdString());
        points_ = python("mesh.vertices.coordinates");
        connectivity_ = python("mesh.regions.connectivity");
        ids_ = python("mesh.regions.ids");
        parents_ = python("mesh.regions.parents[1]");
    }

    Mesh& mesh() { return block_.mesh(); }
    Model& model() { return block_.model(); }

    /// Evaluates \p expression on the case in Python.
    py::object python(const char* expression) const
    {
        return py::eval(std::string("case.") + expression, py::globals(),
                        py::dict("case"_a = python_));
    }

    py::object pythonCase() const { return python_; }

    /// Ahead of the interpreter's end.
    void forgetPython()
    {
        python_ = {};
        points_ = {};
        connectivity_ = {};
        ids_ = {};
        parents_ = {};
    }

    const py::array_t<double>& points() const { return points_; }
    const py::array_t<int>& connectivity() const { return connectivity_; }
    const py::array_t<int>& ids() const { return ids_; }
    const py::array_t<int>& parents() const { return parents_; }

private:
    BlockCase block_;
    py::object python_;
    py::array_t<double> points_;
    py::array_t<int> connectivity_;
    py::array_t<int> ids_;
    py::array_t<int> parents_;
};

Cases* cases = nullptr;

/// Makes a value of each entity of a dimension, given with its id as a walk gives it.
template <typename ValueOf>
void loopOver(benchmark::State& state, int dimension, ValueOf valueOf)
{
    Mesh& mesh = cases->mesh();
    for (auto _ : state) {
        std::vector<decltype(valueOf(mesh.iterator(dimension).next()))> values;
        values.reserve(static_cast<std::size_t>(mesh.count(dimension)));
        for (auto walk = mesh.iterator(dimension); walk.hasNext();) {
            values.push_back(valueOf(walk.next()));
        }
        benchmark::DoNotOptimize(values.data());
    }
}

void loopCoordinates(benchmark::State& state)
{
    loopOver(state, 0, [](const auto& item) {
        return static_cast<const MeshVertex*>(item.value())->point();
    });
}

void loopConnectivity(benchmark::State& state)
{
    Mesh& mesh = cases->mesh();
    for (auto _ : state) {
        std::vector<int> ids;
        ids.reserve(corners * static_cast<std::size_t>(mesh.count(3)));
        for (auto walk = mesh.iterator(3); walk.hasNext();) {
            const MeshEntity& element = *walk.next().value();
            for (int i = 0; i < element.adjacencyCount(0); ++i) {
                ids.push_back(element.adjacencyAt(0, i)->id());
            }
        }
        benchmark::DoNotOptimize(ids.data());
    }
}

void loopParents(benchmark::State& state)
{
    loopOver(state, 3, [](const auto& item) {
        const ModelEntity* const parent = item.value()->parent();
        return std::pair(static_cast<qint8>(parent->dimension()), parent->id());
    });
}

void loopAttribute(benchmark::State& state)
{
    loopOver(state, 3, [](const auto& item) {
        const AttributeMap& attributes = item.value()->attributes();
        const QVariant value = attributes.value(AttributeType::MaterialId, {});
        return std::pair(value.toLongLong(), value.isValid());
    });
}

void loopSetAttribute(benchmark::State& state)
{
    Mesh& mesh = cases->mesh();
    const py::array_t<int>& ids = cases->ids();
    for (auto _ : state) {
        for (py::ssize_t i = 0; i < ids.size(); ++i) {
            const int id = ids.data()[i];
            mesh.entity(3, id)->attributes().insert(AttributeType::MaterialId, QVariant(id));
        }
    }
}

void loopIds(benchmark::State& state)
{
    loopOver(state, 3, [](const auto& item) { return item.key(); });
}

void loopSetCoordinates(benchmark::State& state)
{
    Mesh& mesh = cases->mesh();
    for (auto _ : state) {
        const double* point = cases->points().data();
        for (auto walk = mesh.iterator(0); walk.hasNext(); point += 3) {
            static_cast<MeshVertex*>(walk.next().value())
                ->setPoint(Vector(point[0], point[1], point[2]));
        }
    }
}

void loopClassify(benchmark::State& state)
{
    Mesh& mesh = cases->mesh();
    for (auto _ : state) {
        const int* parent = cases->parents().data();
        for (auto walk = mesh.iterator(3); walk.hasNext();) {
            cases->model().entity(3, *parent++)->addChild(walk.next().value());
        }
    }
}

void loopSetTruth(benchmark::State& state)
{
    Mesh& mesh = cases->mesh();
    for (auto _ : state) {
        for (auto walk = mesh.iterator(3); walk.hasNext();) {
            walk.next().value()->attributes().insert(AttributeType::InBL, true);
        }
    }
}

void build(Mesh& mesh)
{
    const double* point = cases->points().data();
    for (py::ssize_t i = 0; i < cases->points().shape(0); ++i, point += 3) {
        auto* const vertex = new MeshVertex;
        vertex->setPoint(Vector(point[0], point[1], point[2]));
        mesh.add(vertex);
    }
    const int* id = cases->connectivity().data();
    for (py::ssize_t i = 0; i < cases->connectivity().shape(0); ++i) {
        auto* const element = new MeshRegion;
        for (std::size_t corner = 0; corner < corners; ++corner) {
            element->addAdjacency(mesh.entity(0, *id++));
        }
        mesh.add(element);
    }
}

void loopBuild(benchmark::State& state)
{
    for (auto _ : state) {
        auto database = std::make_unique<Database>();
        build(*database->mesh());
        state.PauseTiming();
        database.reset();
        state.ResumeTiming();
    }
}

template <typename Call>
auto inPython(Call call)
{
    return [call](benchmark::State& state) {
        for (auto _ : state) {
            benchmark::DoNotOptimize(call());
        }
    };
}

void pythonBuild(benchmark::State& state)
{
    const py::object makeCase = py::module_::import("ovrageo").attr("Case");
    for (auto _ : state) {
        py::object made = makeCase();
        py::object mesh = made.attr("mesh");
        mesh.attr("add_vertices")(cases->points());
        mesh.attr("add_elements")("tetrahedron", cases->connectivity());
        state.PauseTiming();
        made.attr("close")();
        state.ResumeTiming();
    }
}

py::object setAttribute()
{
    const py::object regions = cases->pythonCase().attr("mesh").attr("regions");
    return regions.attr("set_attribute")("material_id", cases->ids(), cases->ids());
}

bool setCoordinates()
{
    const py::object mesh = cases->pythonCase().attr("mesh");
    mesh.attr("vertices").attr("coordinates") = cases->points();
    return true;
}

py::object classify()
{
    const py::object mesh = cases->pythonCase().attr("mesh");
    return mesh.attr("regions").attr("classify")(cases->parents());
}

void registerAll()
{
    const auto add = [](const char* name, auto call) {
        benchmark::RegisterBenchmark(name, call)->Unit(benchmark::kMillisecond);
    };
    const auto ask = [](const char* expression) {
        return inPython([expression] { return cases->python(expression); });
    };
    add("SetAttribute/loop", loopSetAttribute);
    add("SetAttribute/Python", inPython(setAttribute));
    add("Attribute/loop", loopAttribute);
    add("Attribute/Python", ask("mesh.regions.attribute('material_id')"));
    add("Coordinates/loop", loopCoordinates);
    add("Coordinates/Python", ask("mesh.vertices.coordinates"));
    add("Connectivity/loop", loopConnectivity);
    add("Connectivity/Python", ask("mesh.regions.connectivity"));
    add("Parents/loop", loopParents);
    add("Parents/Python", ask("mesh.regions.parents"));
    add("Ids/loop", loopIds);
    add("Ids/Python", ask("mesh.regions.ids"));
    add("OfKind/loop", loopConnectivity);
    add("OfKind/Python", ask("mesh.regions.of_kind('tetrahedron').connectivity"));
    add("SetCoordinates/loop", loopSetCoordinates);
    add("SetCoordinates/Python", inPython(setCoordinates));
    add("Classify/loop", loopClassify);
    add("Classify/Python", inPython(classify));
    add("SetTruth/loop", loopSetTruth);
    add("SetTruth/Python", ask("mesh.regions.set_attribute('in_bl', True)"));
    add("Build/loop", loopBuild);
    add("Build/Python", pythonBuild);
}

} // namespace

/// As the one that the package is for: an interpreter within a program would take the first of the path.
void startInterpreter()
{
    PyConfig config;
    PyConfig_InitPythonConfig(&config);
    PyConfig_SetBytesString(&config, &config.program_name, OVRAGEO_PYTHON);
    Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
}

} // namespace Benchmarks

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    Benchmarks::startInterpreter();
    py::module_::import("sys").attr("path").attr("insert")(0, OVRAGEO_PACKAGE);
    const auto made = std::make_unique<Benchmarks::Cases>();
    Benchmarks::cases = made.get();
    Benchmarks::registerAll();
    benchmark::RunSpecifiedBenchmarks();
    made->forgetPython();
    return Py_FinalizeEx();
}
