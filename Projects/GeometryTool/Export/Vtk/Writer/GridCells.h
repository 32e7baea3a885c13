#pragma once

#include <cstddef>
#include <span>
#include <vector>
#include <vtkSmartPointer.h>
#include <vtkType.h>

class vtkCellArray;
class vtkPoints;
class vtkUnsignedCharArray;

namespace Ovra::GeoTool
{

class CaseView;
class PointNumbers;

/// \brief Points and cells of some mesh entities of one dimension, as VTK has them.
class GridCells
{
public:
    /// \param selection positions in CaseView::meshEntities(dimension)
    /// \param numbers of the same view
    GridCells(const CaseView& view, int dimension, const std::vector<std::size_t>& selection,
              PointNumbers& numbers);

    vtkSmartPointer<vtkPoints> points() const;
    vtkSmartPointer<vtkCellArray> cells() const { return cells_; }

    /// \brief Those from \p begin on; \p end is not one of them.
    vtkSmartPointer<vtkCellArray> cells(vtkIdType begin, vtkIdType end) const;

    vtkSmartPointer<vtkUnsignedCharArray> types() const { return types_; }

    /// \brief Of each point, the position in CaseView::meshEntities(0); ascending.
    const std::vector<int>& vertices() const { return vertices_; }

private:
    std::size_t cornerCount(const std::vector<std::size_t>& selection) const;
    template <typename Array>
    void fillCells(const std::vector<std::size_t>& selection, const PointNumbers& numbers,
                   std::size_t corners);
    template <typename Number>
    Number* fillCell(std::span<const int> vertices, const PointNumbers& numbers,
                     Number* place) const;

    const CaseView& view_;
    int dimension_;
    std::vector<int> vertices_;
    vtkSmartPointer<vtkCellArray> cells_;
    vtkSmartPointer<vtkUnsignedCharArray> types_;
};

} // namespace Ovra::GeoTool
