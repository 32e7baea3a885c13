#pragma once

class QFile;

namespace Ovra::GeoTool
{

/// \brief Opens an input for reading; throws ToolError InputMissing, with its name and the reason, if
/// that fails.
void openInput(QFile& file);

} // namespace Ovra::GeoTool
