#pragma once

namespace Ovra::GeoTool
{

struct ExportJob;

/// \brief Throws ToolError if this build does not write what Gmsh does.
void requireGmsh();

/// \brief Writes a case by way of Gmsh, in the GmshFormat of the job's suffix, and beside it the
/// attributes file that gives an import what the format cannot hold.
void writeGmsh(const ExportJob& job);

} // namespace Ovra::GeoTool
