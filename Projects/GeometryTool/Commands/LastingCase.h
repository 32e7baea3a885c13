#pragma once

#include "CaseFiles.h"

namespace Ovra::GeoTool
{

class Progress;

/// \brief Reads the case that a command is about, which stays until the process ends.
///
/// To take a mesh apart takes a third of the time of its reading; the end of the process takes
/// none. Throws as CaseFiles::load() does.
CaseDatabase& loadLastingly(CaseFiles& files, Progress& progress,
                            CaseFiles::UpwardLists lists = CaseFiles::UpwardLists::Made);

} // namespace Ovra::GeoTool
