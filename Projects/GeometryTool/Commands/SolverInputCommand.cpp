#include "SolverInputCommand.h"

#include "CaseFiles.h"
#include "LastingCase.h"
#include "OutputCheck.h"
#include "OutputFiles.h"
#include "Progress.h"
#include "SolverInput.h"
#include "ToolError.h"

#include <QTextStream>

#include <CLI/CLI.hpp>
#include <cmath>
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
    double scale = 1.0;
    std::optional<std::string> sections;
    bool labelled = false;
};

QStringList sectionsOf(const std::string& list)
{
    QStringList names = QString::fromStdString(list).split(QLatin1Char(','));
    for (QString& name : names) {
        name = name.trimmed();
    }
    return names;
}

SolverInput configured(const Options& options)
{
    SolverInput input;
    if (!std::isfinite(options.scale) || options.scale <= 0.0) {
        throw ToolError(ExitCode::Usage, QStringLiteral("--scale must be a number above 0"));
    }
    if (options.sections) {
        input.setSections(sectionsOf(*options.sections));
    }
    input.setScale(options.scale);
    input.setLabelled(options.labelled);
    return input;
}

void run(const Options& options, Progress& progress)
{
    const SolverInput input = configured(options); // wrong arguments are told before a long load
    CaseFiles source(QString::fromStdString(options.name));
    const QString output = QString::fromStdString(options.output);
    if (!OutputFiles::isStandardOutput(output)) {
        OutputCheck::requireFile(output, source.paths());
    }
    CaseDatabase& database = loadLastingly(source, progress);
    if (OutputFiles::isStandardOutput(output)) {
        progress.giveWay();
    }
    OutputFiles files;
    QTextStream stream(&files.add(output));
    input.write(database, stream, progress);
    stream.flush();
    files.commit();
}

void addOptions(CLI::App& command, Options& options)
{
    const std::string names = SolverInput::sectionNames().join(QStringLiteral(", ")).toStdString();
    command.add_option("NAME", options.name, "The case, with or without a suffix")->required();
    command.add_option("-o,--output", options.output, "The file to write; - for standard output")
        ->type_name("FILE")
        ->required();
    command.add_option("--scale", options.scale, "Multiplies all coordinates; 1 if not given")
        ->type_name("S");
    command
        .add_option("--sections", options.sections,
                    "Only these, separated by commas, in the order of the file: " + names)
        ->type_name("LIST");
    command.add_flag("--labelled", options.labelled,
                     "Write periodic, extrusion, moving and rotating in their labelled form");
}

} // namespace

void addSolverInputCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command =
        app.add_subcommand("solver-input", "Write the input of the flow solver");
    const auto options = std::make_shared<Options>();
    addOptions(*command, *options);
    command->footer("Example:\n  ovrageo solver-input wing -o wing.gbi --scale 0.001 "
                    "--sections nodes,elements");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
