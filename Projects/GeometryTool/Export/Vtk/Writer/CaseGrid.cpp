#include "CaseGrid.h"

#include "CaseView.h"
#include "Counted.h"
#include "EntityNames.h"
#include "ExportJob.h"
#include "GridCells.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "Progress.h"

#include <algorithm>
#include <iterator>
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

namespace
{

/// \param sets how many sets of points come first, as they do among all cells of a surface
void setCells(vtkPolyData& surface, int dimension, const GridCells& cells, vtkIdType sets)
{
    const vtkIdType count = cells.cells()->GetNumberOfCells();
    const auto polygons = sets > 0 ? cells.cells(sets, count) : cells.cells();
    if (dimension == 2) {
        surface.SetPolys(polygons);
    } else {
        surface.SetLines(polygons);
    }
    if (sets > 0) {
        surface.SetVerts(cells.cells(0, sets));
    }
}

} // namespace

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

std::size_t CaseGrid::vertexCount(std::size_t face) const
{
    return view_.vertexLists(view_.faceDimension()).of(face).size();
}

/// \brief Whether a mesh face has too few vertices for a polygon, or for a line in a case without
/// regions.
bool CaseGrid::isSetOfPoints(std::size_t face) const
{
    return vertexCount(face) <= static_cast<std::size_t>(view_.faceDimension());
}

CaseGrid::Selection CaseGrid::ofSetsOfPoints(const Selection& selection) const
{
    Selection sets;
    std::copy_if(selection.begin(), selection.end(), std::back_inserter(sets),
                 [this](std::size_t face) { return isSetOfPoints(face) && vertexCount(face) > 0; });
    return sets;
}

void CaseGrid::tellOfEmptyFaces(const ExportJob& job) const
{
    const QString kind = kindName(view_.faceDimension());
    qint64 empty = 0;
    for (std::size_t i = 0; i < view_.meshEntities(view_.faceDimension()).size(); ++i) {
        empty += vertexCount(i) == 0 ? 1 : 0;
    }
    if (empty > 0) {
        job.progress.warning(
            QStringLiteral("%1: %2 left out")
                .arg(job.path,
                     counted(empty, QStringLiteral("mesh %1 without vertices is").arg(kind),
                             QStringLiteral("mesh %1s without vertices are").arg(kind))));
    }
}

vtkSmartPointer<vtkPolyData> CaseGrid::faces(const Selection& selection,
                                             const std::vector<ModelEntity*>& of)
{
    const int dimension = view_.faceDimension();
    Selection ordered = ofSetsOfPoints(selection);
    const auto sets = static_cast<vtkIdType>(ordered.size());
    std::copy_if(selection.begin(), selection.end(), std::back_inserter(ordered),
                 [this](std::size_t face) { return !isSetOfPoints(face); });
    const GridCells cells(view_, dimension, ordered, numbers_);
    auto surface = vtkSmartPointer<vtkPolyData>::New();
    surface->SetPoints(cells.points());
    setCells(*surface, dimension, cells, sets);
    fields_.addTo(*surface, dimension, ordered, cells.vertices());
    fields_.addTo(*surface->GetFieldData(), of);
    return surface;
}

} // namespace Ovra::GeoTool
