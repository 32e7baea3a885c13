#pragma once

#include "ModuleLoading.h"

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief Begins to load what writes the files of Gmsh; throws ToolError if this build has none of it.
[[nodiscard]] ModuleLoading requireGmsh();

/// \brief Writes a case by way of Gmsh, in the GmshFormat of the job's suffix, and beside it the
/// attributes file that gives an import what the format cannot hold.
void writeGmsh(const ExportJob& job);

} // namespace Ovra::GeoTool
