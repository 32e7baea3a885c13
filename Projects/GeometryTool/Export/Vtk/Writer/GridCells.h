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

/// \brief Points and cells of some mesh entities of one dimension, as VTK has them.
class GridCells
{
public:
    /// \param selection positions in CaseView::meshEntities(dimension)
    GridCells(const CaseView& view, int dimension, const std::vector<std::size_t>& selection);

    /// \brief The vertices of some mesh entities, ascending: positions in CaseView::meshEntities(0).
    static std::vector<int> verticesOf(const CaseView& view, int dimension,
                                       const std::vector<std::size_t>& selection);

    vtkSmartPointer<vtkPoints> points() const;
    vtkSmartPointer<vtkCellArray> cells() const { return cells_; }
    vtkSmartPointer<vtkUnsignedCharArray> types() const { return types_; }

    /// \brief Of each point, the position in CaseView::meshEntities(0); ascending.
    const std::vector<int>& vertices() const { return vertices_; }

private:
    std::size_t cornerCount(const std::vector<std::size_t>& selection) const;
    template <typename Array>
    void fillCells(const std::vector<std::size_t>& selection, std::size_t corners);
    template <typename Number>
    Number* fillCell(std::span<const int> vertices, Number* place) const;

    const CaseView& view_;
    int dimension_;
    std::vector<int> vertices_;
    std::vector<int> pointOf_; ///< by position of the vertex, where it is a point
    vtkSmartPointer<vtkCellArray> cells_;
    vtkSmartPointer<vtkUnsignedCharArray> types_;
};

} // namespace Ovra::GeoTool
