#pragma once

#include <string>
#include <vtkSmartPointer.h>
#include <vtkTextActor.h>

class vtkRenderer;

namespace Ovra::GeoTool
{

/// \brief A line of text of the picture, \p size pixels high, in \p grey from 0 to 1.
vtkSmartPointer<vtkTextActor> textActor(const std::string& text, int size, double grey = 0.15);

/// \brief Cuts the end off a text that is longer than \p width, in pixels, and puts dots there.
void shorten(vtkTextActor& actor, double width, vtkRenderer& renderer);

} // namespace Ovra::GeoTool
