#include "VerifyCommand.h"

#include "CaseFiles.h"
#include "CaseVerifier.h"
#include "LastingCase.h"
#include "Progress.h"
#include "StandardOutput.h"
#include "ToolError.h"
#include "VerifyReport.h"

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
    int limit = CaseFindings::DefaultLimit;
};

void run(const Options& options, Progress& progress)
{
    if (options.limit < 0) {
        throw ToolError(ExitCode::Usage, QStringLiteral("--limit must be 0 or more"));
    }
    CaseFiles files(QString::fromStdString(options.name));
    const CaseDatabase& database = loadLastingly(files, progress, CaseFiles::UpwardLists::LeftOut);
    const CaseFindings findings =
        CaseVerifier(database).verify(progress, CaseVerifier::ContentTopics, options.limit);
    const VerifyReport report(files.name(), database, findings);
    printToStandardOutput(options.json ? report.json() : report.text());
    if (!findings.isSound()) {
        throw ToolError(ExitCode::Findings, report.summary());
    }
}

} // namespace

void addVerifyCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command =
        app.add_subcommand("verify", "Look whether a case is sound, and say what is wrong where");
    const auto options = std::make_shared<Options>();
    command->add_option("NAME", options->name, "The case, with or without a suffix")->required();
    command->add_flag("--json", options->json, "Print JSON for scripts");
    command
        ->add_option("--limit", options->limit,
                     "At most so many lines for each kind of finding; 10 if not given")
        ->type_name("N");
    command->footer("Example:\n  ovrageo verify wing --limit 3\n\n"
                    "Exit codes: 0 sound, 7 unsound, 3 or 4 unreadable; warnings leave a case "
                    "sound.");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
