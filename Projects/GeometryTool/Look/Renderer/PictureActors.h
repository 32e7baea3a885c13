#pragma once

class vtkRenderer;

namespace Ovra::GeoTool
{

struct PictureData;

/// \brief Puts surfaces, what a plane cuts out of elements, and lines into a scene.
void addSurfaces(const PictureData& data, vtkRenderer& renderer);

/// \brief Puts the marks into a scene that is drawn above.
void addMarks(const PictureData& data, vtkRenderer& renderer);

} // namespace Ovra::GeoTool
