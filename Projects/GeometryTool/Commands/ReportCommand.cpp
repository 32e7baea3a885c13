#include "ReportCommand.h"

#include "CaseFiles.h"
#include "EarlierCase.h"
#include "LastingCase.h"
#include "OutputCheck.h"
#include "OutputFiles.h"
#include "Progress.h"
#include "Report.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

namespace Ovra::GeoTool
{

namespace
{

struct Options
{
    std::string name;
    std::string output;
    std::optional<std::string> before;
};

void requireOutput(const Options& options)
{
    const QString output = QString::fromStdString(options.output);
    QStringList inputs = CaseFiles(QString::fromStdString(options.name)).paths();
    if (options.before) {
        inputs += CaseFiles(QString::fromStdString(*options.before)).paths();
    }
    OutputCheck::requireFile(output, inputs);
    OutputCheck::requireSuffix(output, {QStringLiteral(".html"), QStringLiteral(".htm")});
}

void run(const Options& options, Progress& progress)
{
    const Report report;
    requireOutput(options);
    std::optional<EarlierCase> before;
    if (options.before) {
        before.emplace(QString::fromStdString(*options.before), progress);
    }
    CaseFiles source(QString::fromStdString(options.name));
    const CaseDatabase& database = loadLastingly(source, progress, CaseFiles::UpwardLists::LeftOut);
    std::optional<QJsonObject> changes;
    if (before) {
        changes = before->changesTo(database);
    }
    const QByteArray page = report.page(source, database, changes, progress);
    progress.finish();
    OutputFiles files;
    files.add(QString::fromStdString(options.output)).write(page);
    files.commit();
}

} // namespace

void addReportCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command =
        app.add_subcommand("report", "Write a page about a case, with its surfaces to turn about");
    const auto options = std::make_shared<Options>();
    command->add_option("NAME", options->name, "The case, with or without a suffix")->required();
    command
        ->add_option("-o,--output", options->output,
                     "The HTML file to write; - for standard output")
        ->type_name("FILE.html")
        ->required();
    command
        ->add_option("--before", options->before,
                     "The case that NAME was prepared from, to tell what has changed")
        ->type_name("NAME0");
    command->footer("Example:\n  ovrageo report wing-prepared -o wing.html --before wing\n\n"
                    "The page stands for itself: it needs no network and no other file.");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
