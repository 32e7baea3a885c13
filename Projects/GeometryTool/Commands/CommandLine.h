#pragma once

#include "ExitCode.h"

#include <vector>

namespace CLI
{
class App;
}

namespace Ovra::GeoTool
{

class Progress;

/// \brief What an exit code means, in the words of the help.
struct ExitMeaning
{
    ExitCode code;
    const char* meaning;
};

/// \brief The exit codes of all commands but `diff`, in ascending order.
const std::vector<ExitMeaning>& exitMeanings();

/// \brief Gives \p app the options and subcommands of ovrageo: all that is known of its command line,
/// for main() to parse and for the manual to describe.
/// \param progress what the commands report through; must outlive \p app
void setUpCommandLine(CLI::App& app, Progress& progress);

} // namespace Ovra::GeoTool
