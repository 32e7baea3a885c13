#include "DiffCommand.h"

#include "CaseFiles.h"
#include "DiffReport.h"
#include "LastingCase.h"
#include "Progress.h"
#include "StandardOutput.h"
#include "ToolError.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <memory>
#include <new>
#include <string>

namespace Ovra::GeoTool
{

namespace
{

struct Options
{
    std::string nameA;
    std::string nameB;
    bool json = false;
    CaseComparison::Options comparison;
};

void requireSense(const CaseComparison::Options& options)
{
    if (options.limit < 0) {
        throw ToolError(ExitCode::Usage, QStringLiteral("--limit must be 0 or more"));
    }
    if (!std::isfinite(options.tolerance) || options.tolerance < 0) {
        throw ToolError(ExitCode::Usage, QStringLiteral("--tolerance must be 0 or more"));
    }
}

/// \return whether the cases differ
bool compare(const Options& options, Progress& progress)
{
    requireSense(options.comparison);
    CaseFiles a(QString::fromStdString(options.nameA));
    CaseFiles b(QString::fromStdString(options.nameB));
    const CaseDatabase& databaseA = loadLastingly(a, progress);
    const CaseDatabase& databaseB = loadLastingly(b, progress);
    const CaseDifferences differences =
        CaseComparison::compare(databaseA, databaseB, options.comparison, progress);
    const DiffReport report(a, b, options.comparison, differences);
    printToStandardOutput(options.json ? report.json() : report.text());
    return !differences.areNone();
}

/// The code for cases that differ is that of an internal error elsewhere, so that no trouble may
/// keep its own code.
bool compareOrTrouble(const Options& options, Progress& progress)
{
    try {
        return compare(options, progress);
    } catch (const ToolError& error) {
        throw ToolError(ExitCode::Trouble, error.text());
    } catch (const std::bad_alloc&) {
        throw ToolError(ExitCode::Trouble, QStringLiteral("out of memory"));
    } catch (const std::exception& error) {
        throw ToolError(ExitCode::Trouble, QString::fromUtf8(error.what()));
    }
}

void run(const Options& options, Progress& progress)
{
    if (compareOrTrouble(options, progress)) {
        throw CLI::RuntimeError(static_cast<int>(ExitCode::Different));
    }
}

} // namespace

void addDiffCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command =
        app.add_subcommand("diff", "Say in what two cases differ, entity by entity");
    const auto options = std::make_shared<Options>();
    CaseComparison::Options& comparison = options->comparison;
    command->add_option("A", options->nameA, "A case, with or without a suffix")->required();
    command->add_option("B", options->nameB, "The case to compare it with")->required();
    command
        ->add_option("--tolerance", comparison.tolerance,
                     "How far real numbers and coordinates may differ; 0 if not given")
        ->type_name("T");
    command->add_flag("--by-place", comparison.byPlace,
                      "Match entities by where they lie rather than by their ids");
    command->add_flag("--json", options->json, "Print JSON for scripts");
    command
        ->add_option("--limit", comparison.limit,
                     "At most so many lines for each kind of difference; 10 if not given")
        ->type_name("N");
    command->footer("Example:\n  ovrageo diff wing wing-prepared --limit 3\n\n"
                    "Exit codes: 0 equal, with nothing printed; 1 different; 2 trouble.");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
