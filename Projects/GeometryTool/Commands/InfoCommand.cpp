#include "InfoCommand.h"

#include "CaseFiles.h"
#include "CaseSummary.h"
#include "InfoJson.h"
#include "InfoText.h"
#include "StandardOutput.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

namespace Ovra::GeoTool
{

namespace
{

struct Options
{
    std::string name;
    bool json = false;
};

void run(const Options& options, Progress& progress)
{
    CaseFiles files(QString::fromStdString(options.name));
    CaseDatabase database;
    files.load(database, progress);
    const CaseSummary summary(files, database, progress);
    printToStandardOutput(options.json ? infoJson(summary) : infoText(summary));
}

} // namespace

void addInfoCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command = app.add_subcommand("info", "Say what is in a case");
    const auto options = std::make_shared<Options>();
    command->add_option("NAME", options->name, "The case, with or without a suffix")->required();
    command->add_flag("--json", options->json, "Print JSON for scripts");
    command->footer("Example:\n  ovrageo info wing --json");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
