#include "CaseGrid.h"

#include "CaseView.h"
#include "GridCells.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

#include <numeric>
#include <vtkCellArray.h>
#include <vtkCellData.h>
#include <vtkIntArray.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// \param valueOf gives the integer of a mesh entity
template <typename Positions, typename ValueOf>
void addIntegers(vtkDataSetAttributes& data, const char* name,
                 const std::vector<MeshEntity*>& entities, const Positions& positions,
                 ValueOf valueOf)
{
    const auto array = vtkSmartPointer<vtkIntArray>::New();
    array->SetName(name);
    array->SetNumberOfValues(static_cast<vtkIdType>(positions.size()));
    int* place = array->GetPointer(0);
    for (const auto position : positions) {
        *place++ = valueOf(*entities[static_cast<std::size_t>(position)]);
    }
    data.AddArray(array);
}

template <typename Positions>
void addIds(vtkDataSetAttributes& data, const std::vector<MeshEntity*>& entities,
            const Positions& positions)
{
    addIntegers(data, "mesh_id", entities, positions,
                [](const MeshEntity& entity) { return entity.id(); });
    addIntegers(data, "model_id", entities, positions, [](const MeshEntity& entity) {
        return entity.parent() ? entity.parent()->id() : 0;
    });
    addIntegers(data, "model_dimension", entities, positions, [](const MeshEntity& entity) {
        return entity.parent() ? entity.parent()->dimension() : -1;
    });
}

} // namespace

vtkSmartPointer<vtkUnstructuredGrid> CaseGrid::elements() const
{
    Selection all(view_.meshEntities(view_.elementDimension()).size());
    std::iota(all.begin(), all.end(), std::size_t(0));
    return elements(all);
}

vtkSmartPointer<vtkPolyData> CaseGrid::faces() const
{
    const int dimension = view_.faceDimension();
    const std::vector<MeshEntity*>& entities = view_.meshEntities(dimension);
    Selection onFaces;
    for (std::size_t i = 0; i < entities.size(); ++i) {
        const ModelEntity* const parent = entities[i]->parent();
        if (parent && parent->dimension() == dimension) {
            onFaces.push_back(i);
        }
    }
    return faces(onFaces);
}

vtkSmartPointer<vtkUnstructuredGrid> CaseGrid::elements(const Selection& selection) const
{
    const int dimension = view_.elementDimension();
    const GridCells cells(view_, dimension, selection);
    auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
    grid->SetPoints(cells.points());
    grid->SetCells(cells.types(), cells.cells());
    addFields(*grid, dimension, selection, cells.vertices());
    return grid;
}

vtkSmartPointer<vtkPolyData> CaseGrid::faces(const Selection& selection) const
{
    const int dimension = view_.faceDimension();
    const GridCells cells(view_, dimension, selection);
    auto surface = vtkSmartPointer<vtkPolyData>::New();
    surface->SetPoints(cells.points());
    if (dimension == 2) {
        surface->SetPolys(cells.cells());
    } else {
        surface->SetLines(cells.cells());
    }
    addFields(*surface, dimension, selection, cells.vertices());
    return surface;
}

void CaseGrid::addFields(vtkDataSet& dataSet, int dimension, const Selection& cells,
                         const std::vector<int>& points) const
{
    addIds(*dataSet.GetCellData(), view_.meshEntities(dimension), cells);
    addIds(*dataSet.GetPointData(), view_.meshEntities(0), points);
}

} // namespace Ovra::GeoTool
