#pragma once

#include "ModuleLoading.h"

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief Begins to load what writes CGNS files; throws ToolError if this build has none of it.
[[nodiscard]] ModuleLoading requireCgns();

/// \brief Writes a case as unstructured zones, one for each region or one for all, with boundary
/// conditions and connectivity.
void writeCgns(const ExportJob& job);

} // namespace Ovra::GeoTool
