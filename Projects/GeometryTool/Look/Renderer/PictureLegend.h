#pragma once

class vtkRenderer;

namespace Ovra::GeoTool
{

struct PictureData;

/// \brief Writes the legend into a column of its own, and the title above the view.
void addLegend(const PictureData& data, vtkRenderer& column);
void addTitle(const PictureData& data, vtkRenderer& view);

} // namespace Ovra::GeoTool
