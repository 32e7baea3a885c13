#pragma once

#include "ToolError.h"

namespace Ovra::GeoTool
{

/// \brief What the user hears of a feature that this build has not got.
/// \param library what it needs, "VTK"
/// \param option  of the build, "OVRA_WITH_VTK"
inline ToolError missingFeature(const QString& library, const QString& option)
{
    return ToolError(ExitCode::Usage,
                     QStringLiteral("this ovrageo was built without %1, which this needs; build it "
                                    "with -D%2=ON")
                         .arg(library, option));
}

} // namespace Ovra::GeoTool
