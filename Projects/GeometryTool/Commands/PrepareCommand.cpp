#include "PrepareCommand.h"

#include "CaseFiles.h"
#include "LastingCase.h"
#include "OutputCheck.h"
#include "Preparation.h"
#include "StandardOutput.h"
#include "ToolError.h"

#include <CLI/CLI.hpp>
#include <map>
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
    bool all = false;
    std::map<QString, bool> operations;
    std::optional<double> extrusionTolerance;
};

QStringList operationsOf(const Options& options)
{
    if (options.all) {
        return Preparation::operationNames();
    }
    QStringList names;
    for (const auto& [name, wanted] : options.operations) {
        if (wanted) {
            names += name;
        }
    }
    if (names.isEmpty()) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("prepare needs --all or the operations to run: --%1")
                            .arg(Preparation::operationNames().join(QStringLiteral(", --"))));
    }
    return names;
}

void requireTolerance(const Options& options)
{
    const double tolerance = options.extrusionTolerance.value_or(0.0);
    const bool canBeWeight = tolerance >= 0.0 && tolerance <= 1.0; // no NaN can
    if (!canBeWeight) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("--extrusion-tolerance must be a number from 0 to 1"));
    }
}

void run(const Options& options, Progress& progress)
{
    const QStringList operations = operationsOf(options); // told before a long load
    requireTolerance(options);
    CaseFiles input(QString::fromStdString(options.name));
    const CaseFiles output(QString::fromStdString(options.output));
    OutputCheck::requireCase(output, input);
    CaseDatabase& database = loadLastingly(input, progress);
    Preparation preparation(database, progress);
    if (options.extrusionTolerance) {
        preparation.setExtrusionTolerance(*options.extrusionTolerance);
    }
    const QStringList report = preparation.run(operations);
    output.save(database, progress);
    printToStandardOutput((report.join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8());
}

void addOptions(CLI::App& command, Options& options)
{
    command.add_option("NAME", options.name, "The case, with or without a suffix")->required();
    command.add_option("-o,--output", options.output, "The case to write; may be the same one")
        ->type_name("NAME2")
        ->required();
    CLI::Option* const all =
        command.add_flag("--all", options.all, "Every operation that has something to do");
    for (const QString& name : Preparation::operationNames()) {
        command
            .add_flag("--" + name.toStdString(), options.operations[name],
                      Preparation::description(name).toStdString())
            ->excludes(all);
    }
    command
        .add_option("--extrusion-tolerance", options.extrusionTolerance,
                    "Weights on extruded faces below T are dropped; 0.01 if not given")
        ->type_name("T");
}

} // namespace

void addPrepareCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command = app.add_subcommand(
        "prepare", "Bring a case into the shape that the flow solver needs; the operations run in "
                   "the order listed, whatever the order of the options");
    const auto options = std::make_shared<Options>();
    addOptions(*command, *options);
    command->footer("Example:\n  ovrageo prepare wing -o wing-prepared --all");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
