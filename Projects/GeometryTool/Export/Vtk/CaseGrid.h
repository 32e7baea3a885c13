#pragma once

#include <cstddef>
#include <vector>
#include <vtkSmartPointer.h>

class vtkDataSet;
class vtkPolyData;
class vtkUnstructuredGrid;

namespace Ovra::GeoTool
{

class CaseView;

/// \brief The mesh of a case as data sets of VTK, with all that is known of it as fields; see
/// Documentation/Export.md for their names.
///
/// The points of a data set are the vertices that its cells use, both in ascending order of ids.
class CaseGrid
{
public:
    /// \param view must outlive this
    explicit CaseGrid(const CaseView& view)
        : view_(view)
    {
    }

    /// \brief The elements: mesh regions, or mesh faces in a case without regions.
    vtkSmartPointer<vtkUnstructuredGrid> elements() const;

    /// \brief The mesh faces that stand on a model face; mesh edges on model edges in a case
    /// without regions.
    vtkSmartPointer<vtkPolyData> faces() const;

private:
    /// Positions in CaseView::meshEntities() of the dimension in question.
    using Selection = std::vector<std::size_t>;

    vtkSmartPointer<vtkUnstructuredGrid> elements(const Selection& selection) const;
    vtkSmartPointer<vtkPolyData> faces(const Selection& selection) const;
    void addFields(vtkDataSet& dataSet, int dimension, const Selection& cells,
                   const std::vector<int>& points) const;

    const CaseView& view_;
};

} // namespace Ovra::GeoTool
