#pragma once

namespace CLI
{
class App;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief Adds the subcommand `report` to \p app; it reports through \p progress, which must
/// outlive \p app.
void addReportCommand(CLI::App& app, Progress& progress);

} // namespace Ovra::GeoTool
