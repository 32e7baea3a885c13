#pragma once

namespace Ovra::GeoTool
{

class Progress;

/// \brief Shows what the library and Qt log as remarks beside the progress, so that standard error
///        holds warnings of the tool and the error line alone.
///
/// A failed assertion of the library is printed as the error line and ends the process with
/// ExitCode::InternalError. \p progress must live as long as messages can come.
void routeQtMessages(Progress& progress);

} // namespace Ovra::GeoTool
