// VTK's links from points to cells, for the cells of all dimensions that the mesh has: as it makes them
// unless told otherwise, and such as can be changed afterwards.

#include "Contender.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "StoredCase.h"

#include <QHash>

#include <array>
#include <vtkAbstractCellLinks.h>
#include <vtkCellType.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkUnstructuredGrid.h>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

int cellType(int dimension, int vertices)
{
    if (dimension == 1) {
        return VTK_LINE;
    }
    if (dimension == 2) {
        return vertices == 3 ? VTK_TRIANGLE : VTK_QUAD;
    }
    static const QHash<int, int> solids{
        {4, VTK_TETRA}, {5, VTK_PYRAMID}, {6, VTK_WEDGE}, {8, VTK_HEXAHEDRON}};
    return solids.value(vertices);
}

QHash<const MeshEntity*, vtkIdType> addPoints(vtkUnstructuredGrid* grid, Mesh& mesh)
{
    const vtkNew<vtkPoints> points;
    QHash<const MeshEntity*, vtkIdType> numbers;
    for (auto walk = mesh.iterator(0); walk.hasNext();) {
        const MeshEntity* vertex = walk.next().value();
        const Vector point = vertex->centroid();
        numbers.insert(vertex, points->InsertNextPoint(point.x(), point.y(), point.z()));
    }
    grid->SetPoints(points);
    return numbers;
}

void addCells(vtkUnstructuredGrid* grid, Mesh& mesh)
{
    const auto numbers = addPoints(grid, mesh);
    for (int dimension = 1; dimension <= 3; ++dimension) {
        for (auto walk = mesh.iterator(dimension); walk.hasNext();) {
            const MeshEntity* element = walk.next().value();
            const int count = element->adjacencyCount(0);
            std::array<vtkIdType, 8> points{};
            for (int i = 0; i < count; ++i) {
                points[size_t(i)] = numbers.value(element->adjacencyAt(0, i));
            }
            grid->InsertNextCell(cellType(dimension, count), count, points.data());
        }
    }
}

void buildLinks(benchmark::State& state, const QString& base, bool isEditable)
{
    const vtkNew<vtkUnstructuredGrid> grid;
    {
        const auto database = StoredCase::read(base);
        grid->AllocateEstimate(database->mesh()->count(3) * vtkIdType{2}, 4);
        addCells(grid, *database->mesh());
    }
    for (auto _ : state) {
        state.PauseTiming();
        const vtkNew<vtkUnstructuredGrid> copy; // which has no links yet
        copy->ShallowCopy(grid);
        copy->SetEditable(isEditable);
        state.ResumeTiming();
        copy->BuildLinks();
        state.PauseTiming();
        benchmark::DoNotOptimize(copy.Get());
        state.ResumeTiming();
    }
}

const ContenderRegistration registration([](const QString& base) {
    addRoad("UpwardLists", base, "VTK",
            [base](benchmark::State& state) { buildLinks(state, base, false); });
    addRoad("UpwardLists", base, "VTK editable",
            [base](benchmark::State& state) { buildLinks(state, base, true); });
});

} // namespace

} // namespace Benchmarks
