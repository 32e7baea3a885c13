#include "GridCells.h"

#include "CaseView.h"
#include "CellShape.h"
#include "PointNumbers.h"

#include <limits>
#include <numeric>
#include <vtkCellArray.h>
#include <vtkCellType.h>
#include <vtkDoubleArray.h>
#include <vtkIdList.h>
#include <vtkNew.h>
#include <vtkPoints.h>
#include <vtkTypeInt32Array.h>
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

GridCells::GridCells(const CaseView& view, int dimension, const std::vector<std::size_t>& selection,
                     PointNumbers& numbers)
    : view_(view)
    , dimension_(dimension)
    , vertices_(numbers.verticesOf(dimension, selection))
    , cells_(vtkSmartPointer<vtkCellArray>::New())
    , types_(vtkSmartPointer<vtkUnsignedCharArray>::New())
{
    numbers.number(vertices_);
    const std::size_t corners = cornerCount(selection);
    if (corners <= std::numeric_limits<vtkTypeInt32>::max()) { // half the bytes, mostly
        fillCells<vtkTypeInt32Array>(selection, numbers, corners);
    } else {
        fillCells<vtkTypeInt64Array>(selection, numbers, corners);
    }
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

vtkSmartPointer<vtkCellArray> GridCells::cells(vtkIdType begin, vtkIdType end) const
{
    auto some = vtkSmartPointer<vtkCellArray>::New();
    const vtkNew<vtkIdList> corners;
    for (vtkIdType cell = begin; cell < end; ++cell) {
        cells_->GetCellAtId(cell, corners);
        some->InsertNextCell(corners);
    }
    return some;
}

std::size_t GridCells::cornerCount(const std::vector<std::size_t>& selection) const
{
    const VertexLists& lists = view_.vertexLists(dimension_);
    return std::accumulate(selection.begin(), selection.end(), std::size_t(0),
                           [&lists](std::size_t count, std::size_t entity) {
                               return count + lists.of(entity).size();
                           });
}

template <typename Array>
void GridCells::fillCells(const std::vector<std::size_t>& selection, const PointNumbers& numbers,
                          std::size_t corners)
{
    const VertexLists& lists = view_.vertexLists(dimension_);
    const auto offsets = vtkSmartPointer<Array>::New();
    const auto connectivity = vtkSmartPointer<Array>::New();
    offsets->SetNumberOfValues(static_cast<vtkIdType>(selection.size()) + 1);
    types_->SetNumberOfValues(static_cast<vtkIdType>(selection.size()));
    connectivity->SetNumberOfValues(static_cast<vtkIdType>(corners));
    auto* const begin = connectivity->GetPointer(0);
    auto* place = begin;
    vtkIdType cell = 0;
    for (const std::size_t entity : selection) {
        const std::span<const int> vertices = lists.of(entity);
        types_->SetValue(cell, typeOf(dimension_, vertices.size()));
        offsets->SetValue(cell++, static_cast<typename Array::ValueType>(place - begin));
        place = fillCell(vertices, numbers, place);
    }
    offsets->SetValue(cell, static_cast<typename Array::ValueType>(place - begin));
    cells_->SetData(offsets, connectivity);
}

template <typename Number>
Number* GridCells::fillCell(std::span<const int> vertices, const PointNumbers& numbers,
                            Number* place) const
{
    const CellShape* const shape = CellShape::find(dimension_, static_cast<int>(vertices.size()));
    for (std::size_t i = 0; i < vertices.size(); ++i) {
        const int vertex = vertices[shape ? static_cast<std::size_t>(shape->order[i]) : i];
        *place++ = static_cast<Number>(numbers.of(vertex));
    }
    return place;
}

} // namespace Ovra::GeoTool
