#pragma once

namespace Ovra::GeoTool
{

struct ImportJob;

/// \brief Throws ToolError if this build does not import.
void requireImport();

/// \brief Makes a case of a file and writes it, in a process of its own.
///
/// Throws ToolError; where the file brings that process down, one that says so.
void importCase(const ImportJob& job);

} // namespace Ovra::GeoTool
