#pragma once

namespace CLI
{
class App;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief Adds the subcommand `prepare` to \p app; it reports through \p progress, which must
/// outlive \p app.
void addPrepareCommand(CLI::App& app, Progress& progress);

} // namespace Ovra::GeoTool
