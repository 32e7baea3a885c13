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
unsigned char typeOf(int dimension, std::size_t vertexCount)
{
    if (const CellShape* const shape = CellShape::find(dimension, static_cast<int>(vertexCount))) {
        return static_cast<unsigned char>(shape->type);
    }
    return dimension == 2 && vertexCount > 2 ? VTK_POLYGON : VTK_POLY_VERTEX;
}

} // namespace

GridCells::GridCells(const CaseView& view, int dimension, const std::vector<std::size_t>& selection)
    : view_(view)
    , dimension_(dimension)
    , vertices_(verticesOf(view, dimension, selection))
    , pointOf_(view.meshEntities(0).size())
    , cells_(vtkSmartPointer<vtkCellArray>::New())
    , types_(vtkSmartPointer<vtkUnsignedCharArray>::New())
{
    for (std::size_t point = 0; point < vertices_.size(); ++point) {
        pointOf_[static_cast<std::size_t>(vertices_[point])] = static_cast<int>(point);
    }
    fillCells(selection);
}

std::vector<int> GridCells::verticesOf(const CaseView& view, int dimension,
                                       const std::vector<std::size_t>& selection)
{
    std::vector<bool> isUsed(view.meshEntities(0).size());
    const VertexLists& lists = view.vertexLists(dimension);
    for (const std::size_t entity : selection) {
        for (const int vertex : lists.of(entity)) {
            isUsed[static_cast<std::size_t>(vertex)] = true;
        }
    }
    std::vector<int> vertices;
    for (std::size_t vertex = 0; vertex < isUsed.size(); ++vertex) {
        if (isUsed[vertex]) {
            vertices.push_back(static_cast<int>(vertex));
        }
    }
    return vertices;
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

void GridCells::fillCells(const std::vector<std::size_t>& selection)
{
    const VertexLists& lists = view_.vertexLists(dimension_);
    const auto offsets = vtkSmartPointer<vtkTypeInt64Array>::New();
    const auto connectivity = vtkSmartPointer<vtkTypeInt64Array>::New();
    offsets->SetNumberOfValues(static_cast<vtkIdType>(selection.size()) + 1);
    types_->SetNumberOfValues(static_cast<vtkIdType>(selection.size()));
    vtkIdType cell = 0;
    vtkIdType total = 0;
    for (const std::size_t entity : selection) {
        offsets->SetValue(cell++, total);
        total += static_cast<vtkIdType>(lists.of(entity).size());
    }
    offsets->SetValue(cell, total);
    connectivity->SetNumberOfValues(total);
    vtkTypeInt64* place = connectivity->GetPointer(0);
    for (std::size_t i = 0; i < selection.size(); ++i) {
        const std::span<const int> vertices = lists.of(selection[i]);
        types_->SetValue(static_cast<vtkIdType>(i), typeOf(dimension_, vertices.size()));
        place = fillCell(vertices, place);
    }
    cells_->SetData(offsets, connectivity);
}

vtkTypeInt64* GridCells::fillCell(std::span<const int> vertices, vtkTypeInt64* place) const
{
    const CellShape* const shape = CellShape::find(dimension_, static_cast<int>(vertices.size()));
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const int vertex = vertices[shape ? static_cast<std::size_t>(shape->order[i]) : i];
        *place++ = pointOf_[static_cast<std::size_t>(vertex)];
    }
    return place;
}

} // namespace Ovra::GeoTool
