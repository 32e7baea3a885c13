#include "CaseGrid.h"

#include "CaseView.h"
#include "GridCells.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

#include <numeric>
#include <vtkCellArray.h>
#include <vtkFieldData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkUnsignedCharArray.h>
#include <vtkUnstructuredGrid.h>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

vtkSmartPointer<vtkUnstructuredGrid> CaseGrid::elements()
{
    Selection all(view_.meshEntities(view_.elementDimension()).size());
    std::iota(all.begin(), all.end(), std::size_t(0));
    return elements(all, view_.modelEntities(view_.elementDimension()));
}

std::vector<int> CaseGrid::verticesOf(const Selection& selection)
{
    return numbers_.verticesOf(view_.elementDimension(), selection);
}

vtkSmartPointer<vtkPolyData> CaseGrid::faces()
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
    return faces(onFaces, view_.modelEntities(dimension));
}

vtkSmartPointer<vtkUnstructuredGrid> CaseGrid::elements(const Selection& selection,
                                                        const std::vector<ModelEntity*>& of)
{
    const int dimension = view_.elementDimension();
    const GridCells cells(view_, dimension, selection, numbers_);
    auto grid = vtkSmartPointer<vtkUnstructuredGrid>::New();
    grid->SetPoints(cells.points());
    grid->SetCells(cells.types(), cells.cells());
    fields_.addTo(*grid, dimension, selection, cells.vertices());
    fields_.addTo(*grid->GetFieldData(), of);
    return grid;
}

vtkSmartPointer<vtkPolyData> CaseGrid::faces(const Selection& selection,
                                             const std::vector<ModelEntity*>& of)
{
    const int dimension = view_.faceDimension();
    const GridCells cells(view_, dimension, selection, numbers_);
    auto surface = vtkSmartPointer<vtkPolyData>::New();
    surface->SetPoints(cells.points());
    if (dimension == 2) {
        surface->SetPolys(cells.cells());
    } else {
        surface->SetLines(cells.cells());
    }
    fields_.addTo(*surface, dimension, selection, cells.vertices());
    fields_.addTo(*surface->GetFieldData(), of);
    return surface;
}

} // namespace Ovra::GeoTool
