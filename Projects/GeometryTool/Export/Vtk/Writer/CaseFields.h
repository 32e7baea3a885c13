#pragma once

#include "MeshFields.h"
#include "TwinSides.h"

#include <array>
#include <optional>

class vtkDataSet;
class vtkFieldData;

namespace Ovra::GeoTool
{

class CaseView;

/// \brief All that is known of a case besides its shape, as fields of VTK; see
/// Documentation/Export.md for the names.
class CaseFields
{
public:
    /// \param view must outlive this
    explicit CaseFields(const CaseView& view);

    /// \param cells    positions in CaseView::meshEntities(dimension)
    /// \param vertices of the points, in CaseView::meshEntities(0)
    void addTo(vtkDataSet& dataSet, int dimension, const std::vector<std::size_t>& cells,
               const std::vector<int>& vertices);

    /// \brief Adds the case's own attributes, and a table of model entities.
    void addTo(vtkFieldData& data, const std::vector<Geo::ModelEntity*>& entities);

private:
    MeshFields& fieldsOf(int dimension);
    void addCellData(vtkFieldData& data, int dimension, const std::vector<std::size_t>& cells);
    void addPointData(vtkFieldData& data, const std::vector<int>& vertices);
    void addModelTable(vtkFieldData& data, const std::vector<Geo::ModelEntity*>& entities);

    const CaseView& view_;
    TwinSides sides_;
    std::array<std::optional<MeshFields>, 4> fields_; ///< made as they are asked for
};

} // namespace Ovra::GeoTool
