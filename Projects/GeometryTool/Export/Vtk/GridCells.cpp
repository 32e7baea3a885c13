#include "GridCells.h"

#include "CaseView.h"
#include "CellShape.h"

#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkPoints.h>
#include <vtkTypeInt64Array.h>
#include <vtkUnsignedCharArray.h>

namespace Ovra::GeoTool
{

namespace
{

/// What is no element still keeps its vertices and its fields.
int typeWithoutShape(int dimension, std::size_t vertexCount)
{
    return dimension == 2 && vertexCount > 2 ? VTK_POLYGON : VTK_POLY_VERTEX;
}

} // namespace

GridCells::GridCells(const CaseView& view, int dimension, const std::vector<std::size_t>& selection)
    : view_(view)
    , dimension_(dimension)
    , cells_(vtkSmartPointer<vtkCellArray>::New())
    , types_(vtkSmartPointer<vtkUnsignedCharArray>::New())
{
    choosePoints(selection);
    fillCells(selection);
}

vtkSmartPointer<vtkPoints> GridCells::points() const
{
    const auto array = vtkSmartPointer<vtkDoubleArray>::New();
    array->SetNumberOfComponents(3);
    array->SetNumberOfTuples(static_cast<vtkIdType>(vertices_.size()));
    double* place = array->GetPointer(0);
    for (const int vertex : vertices_) {
        const Geo::Vector& point = view_.points()[static_cast<std::size_t>(vertex)];
        *place++ = point.x();
        *place++ = point.y();
        *place++ = point.z();
    }
    auto points = vtkSmartPointer<vtkPoints>::New();
    points->SetData(array);
    return points;
}

void GridCells::choosePoints(const std::vector<std::size_t>& selection)
{
    pointOf_.assign(view_.meshEntities(0).size(), -1);
    const VertexLists& lists = view_.vertexLists(dimension_);
    for (const std::size_t entity : selection) {
        for (const int vertex : lists.of(entity)) {
            pointOf_[static_cast<std::size_t>(vertex)] = 0;
        }
    }
    for (std::size_t vertex = 0; vertex < pointOf_.size(); ++vertex) {
        if (pointOf_[vertex] == 0) {
            pointOf_[vertex] = static_cast<int>(vertices_.size());
            vertices_.push_back(static_cast<int>(vertex));
        }
    }
}

void GridCells::fillCells(const std::vector<std::size_t>& selection)
{
    const VertexLists& lists = view_.vertexLists(dimension_);
    std::size_t total = 0;
    for (const std::size_t entity : selection) {
        total += lists.of(entity).size();
    }
    const auto offsets = vtkSmartPointer<vtkTypeInt64Array>::New();
    const auto connectivity = vtkSmartPointer<vtkTypeInt64Array>::New();
    offsets->SetNumberOfValues(static_cast<vtkIdType>(selection.size()) + 1);
    connectivity->SetNumberOfValues(static_cast<vtkIdType>(total));
    types_->SetNumberOfValues(static_cast<vtkIdType>(selection.size()));
    vtkIdType cell = 0;
    vtkIdType place = 0;
    for (const std::size_t entity : selection) {
        const std::span<const int> vertices = lists.of(entity);
        const CellShape* const shape =
            CellShape::find(dimension_, static_cast<int>(vertices.size()));
        offsets->SetValue(cell, place);
        types_->SetValue(cell++,
                         static_cast<unsigned char>(
                             shape ? shape->type : typeWithoutShape(dimension_, vertices.size())));
        for (std::size_t i = 0; i < vertices.size(); ++i) {
            const auto vertex = static_cast<std::size_t>(
                vertices[shape ? static_cast<std::size_t>(shape->order[i]) : i]);
            connectivity->SetValue(place++, pointOf_[vertex]);
        }
    }
    offsets->SetValue(cell, place);
    cells_->SetData(offsets, connectivity);
}

} // namespace Ovra::GeoTool
