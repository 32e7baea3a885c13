#pragma once

#include <QByteArray>

namespace Ovra::GeoTool
{

/// \brief Prints \p bytes; throws ToolError OutputFailed if they did not all get out.
void printToStandardOutput(const QByteArray& bytes);

} // namespace Ovra::GeoTool
