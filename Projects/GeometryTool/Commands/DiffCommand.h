#pragma once

namespace CLI
{
class App;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief Adds the subcommand `diff` to \p app; it reports through \p progress, which must outlive
/// \p app.
///
/// Where the cases differ, it ends by throwing CLI::RuntimeError with ExitCode::Different.
void addDiffCommand(CLI::App& app, Progress& progress);

} // namespace Ovra::GeoTool
