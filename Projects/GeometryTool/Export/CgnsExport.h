#pragma once

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief Throws ToolError if this build has no CGNS.
void requireCgns();

/// \brief Writes a case as unstructured zones, one for each region or one for all, with boundary
/// conditions and connectivity.
void writeCgns(const ExportJob& job);

} // namespace Ovra::GeoTool
