#pragma once

#include "CaseFields.h"
#include "PointNumbers.h"

#include <cstddef>
#include <vector>
#include <vtkSmartPointer.h>

class vtkPolyData;
class vtkUnstructuredGrid;

namespace Ovra::GeoTool
{

class CaseView;
struct ExportJob;

/// \brief The mesh of a case as data sets of VTK, with all that is known of it as fields; see
/// Documentation/Export.md for their names.
///
/// The points of a data set are the vertices that its cells use, in ascending order of ids.
class CaseGrid
{
public:
    /// \brief Positions in CaseView::meshEntities() of one dimension.
    using Selection = std::vector<std::size_t>;

    /// \param view must outlive this
    explicit CaseGrid(const CaseView& view)
        : view_(view)
        , fields_(view)
        , numbers_(view)
    {
    }

    /// \brief The elements: mesh regions, or mesh faces in a case without regions.
    vtkSmartPointer<vtkUnstructuredGrid> elements();

    /// \brief Some of the elements, in which the model entities \p of go as a table.
    vtkSmartPointer<vtkUnstructuredGrid> elements(const Selection& selection,
                                                  const std::vector<Geo::ModelEntity*>& of);

    /// \brief The points of elements(selection): positions in CaseView::meshEntities(0).
    std::vector<int> verticesOf(const Selection& selection);

    /// \brief The mesh faces that stand on a model face; mesh edges on model edges in a case
    /// without regions.
    vtkSmartPointer<vtkPolyData> faces();

    /// \brief Some of the mesh faces, in which the model entities \p of go as a table.
    ///
    /// Those with too few vertices for a polygon come first, as sets of points; a surface has no
    /// place for those without any.
    vtkSmartPointer<vtkPolyData> faces(const Selection& selection,
                                       const std::vector<Geo::ModelEntity*>& of);

    /// \brief Warns of mesh faces that faces() leaves out.
    void tellOfEmptyFaces(const ExportJob& job) const;

private:
    std::size_t vertexCount(std::size_t face) const;
    bool isSetOfPoints(std::size_t face) const;
    Selection ofSetsOfPoints(const Selection& selection) const;

    const CaseView& view_;
    CaseFields fields_;
    PointNumbers numbers_;
};

} // namespace Ovra::GeoTool
