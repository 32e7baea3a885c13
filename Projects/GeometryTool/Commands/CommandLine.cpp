#include "CommandLine.h"

#include "ConvertCommand.h"
#include "DiffCommand.h"
#include "ExportCommand.h"
#include "ImportCommand.h"
#include "InfoCommand.h"
#include "PictureCommand.h"
#include "PrepareCommand.h"
#include "Progress.h"
#include "ReportCommand.h"
#include "SolverInputCommand.h"
#include "TextCommand.h"
#include "VerifyCommand.h"

#include <CLI/CLI.hpp>
#include <string>

namespace Ovra::GeoTool
{

namespace
{

/// A new subcommand is one more line here.
constexpr auto addCommands = {
    addImportCommand, addInfoCommand,    addVerifyCommand,      addConvertCommand,
    addTextCommand,   addPrepareCommand, addSolverInputCommand, addExportCommand,
    addReportCommand, addDiffCommand,    addPictureCommand,
};

std::string footer()
{
    std::string text = "Example:\n  ovrageo info wing\n\nExit codes:";
    for (const auto& [code, meaning] : exitMeanings()) {
        const bool beginsLine = code == ExitCode::OutputFailed;
        text += code == ExitCode::Success ? " " : beginsLine ? ",\n" : ", ";
        text += std::to_string(static_cast<int>(code)) + " " + meaning;
    }
    return text + ".\nThose of diff: 0 equal, 1 different, 2 trouble.";
}

} // namespace

const std::vector<ExitMeaning>& exitMeanings()
{
    static const std::vector<ExitMeaning> meanings{
        {ExitCode::Success, "done"},
        {ExitCode::InternalError, "internal error"},
        {ExitCode::Usage, "usage"},
        {ExitCode::InputMissing, "input missing"},
        {ExitCode::InputDamaged, "input damaged"},
        {ExitCode::OutputFailed, "output failed"},
        {ExitCode::Unsuitable, "case unsuitable for the request"},
        {ExitCode::Findings, "a check has findings"},
    };
    return meanings;
}

void setUpCommandLine(CLI::App& app, Progress& progress)
{
    app.description(
        "Imports, examines, compares, prepares, shows and exports cases of the geometry database");
    app.name("ovrageo");
    app.set_version_flag("--version", "ovrageo " OVRAGEO_VERSION);
    app.require_subcommand(0, 1); // parse() asks for one, so that a wrong word is told by name
    app.fallthrough();            // so that --quiet may stand behind the subcommand
    app.add_flag_callback(
        "-q,--quiet", [&progress] { progress.setQuiet(true); },
        "Print no progress and no warnings");
    app.footer(footer());
    for (const auto add : addCommands) {
        add(app, progress);
    }
}

} // namespace Ovra::GeoTool
