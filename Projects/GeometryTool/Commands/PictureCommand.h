#pragma once

namespace CLI
{
class App;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief Adds the subcommand `picture` to \p app; it reports through \p progress, which must
/// outlive \p app.
void addPictureCommand(CLI::App& app, Progress& progress);

} // namespace Ovra::GeoTool
