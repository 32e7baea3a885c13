#pragma once

class vtkRenderer;

namespace Ovra::GeoTool
{

struct PictureData;

/// \brief How high the numbers at the axes are, in pixels.
int axisTextSize(const PictureData& data);

/// \brief Draws the axes along three edges of the box, with numbers at round places.
/// \pre the camera of \p renderer stands where it stays
void addAxes(const PictureData& data, vtkRenderer& renderer);

} // namespace Ovra::GeoTool
