#pragma once

#include "ImportOptions.h"

namespace Ovra::GeoTool
{

class Progress;

/// \brief One import, for the module that makes it.
struct ImportJob
{
    ImportOptions options;
    QString attributes; ///< path of the attributes file; empty for none
    QString output;     ///< the case to write
    Progress& progress;
};

} // namespace Ovra::GeoTool
