#pragma once

#include <QByteArray>

namespace Ovra::GeoTool
{

/// \brief The page of the report as the build has bundled it, with a mark such as "{{case}}" where
/// each part of a case goes.
///
/// Throws ToolError Usage where the tool was built without it.
QByteArray pageTemplate();

} // namespace Ovra::GeoTool
