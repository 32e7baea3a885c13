#pragma once

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief Throws ToolError if this build has no VTK.
void requireVtk();

/// \brief Writes the elements as an unstructured grid.
void writeVtu(const ExportJob& job);

} // namespace Ovra::GeoTool
