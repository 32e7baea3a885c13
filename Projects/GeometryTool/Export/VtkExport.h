#pragma once

#include "ModuleLoading.h"

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief Begins to load what writes the files of VTK; throws ToolError if this build has none of it.
[[nodiscard]] ModuleLoading requireVtk();

/// \brief Writes the elements as an unstructured grid.
void writeVtu(const ExportJob& job);

/// \brief Writes the elements in parts: an index, and a file for each part in the folder that has the
/// name of the output without its suffix.
void writePvtu(const ExportJob& job);

/// \brief Writes the mesh faces on model faces as a surface.
void writeVtp(const ExportJob& job);

/// \brief Writes a block for each model region and face, each in a file of its own in the folder
/// that has the name of the output without its suffix.
void writeVtm(const ExportJob& job);

} // namespace Ovra::GeoTool
