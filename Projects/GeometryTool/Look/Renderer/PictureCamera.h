#pragma once

class vtkRenderer;

namespace Ovra::GeoTool
{

struct PictureData;

/// \brief Looks at the box of the picture from its direction, as near as all of it, and the axes
/// about it, can be seen.
void placeCamera(const PictureData& data, vtkRenderer& renderer);

} // namespace Ovra::GeoTool
