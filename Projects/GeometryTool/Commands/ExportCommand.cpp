#include "ExportCommand.h"

#include "CaseFiles.h"
#include "CaseView.h"
#include "ExportFormat.h"
#include "ExportJob.h"
#include "GraphCut.h"
#include "LastingCase.h"
#include "OutputCheck.h"
#include "OutputFiles.h"
#include "PieceFolder.h"
#include "Progress.h"
#include "ToolError.h"

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
    std::optional<std::string> format;
    ExportOptions job;
};

/// With or without the dot with which the help writes it.
const ExportFormat& namedFormat(const std::string& text)
{
    const QString name = QString::fromStdString(text);
    return ExportFormat::ofSuffix(name.startsWith(QLatin1Char('.')) ? name.sliced(1) : name);
}

const ExportFormat& formatOf(const Options& options)
{
    const QString output = QString::fromStdString(options.output);
    return options.format ? namedFormat(*options.format) : ExportFormat::ofFile(output);
}

void requireSeekable(const ExportFormat& format, const QString& output)
{
    const bool isStream =
        OutputFiles::isStandardOutput(output) || OutputFiles::isDeviceOrPipe(output);
    if (isStream && format.content == ExportFormat::Content::Binary) {
        throw ToolError(
            ExitCode::Usage,
            QStringLiteral("cannot write to %1: a .%2 file is binary; name a file to write")
                .arg(output, format.suffix));
    }
}

void requireParts(const ExportFormat& format, const ExportOptions& options)
{
    if (options.parts < 1) {
        throw ToolError(ExitCode::Usage, QStringLiteral("--parts must be a number above 0"));
    }
    if (options.parts == 1) {
        return;
    }
    if (!format.hasParts()) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("a .%1 file is not written in parts; those that are: %2")
                            .arg(format.suffix, ExportFormat::suffixesWithParts()));
    }
    requireMetis();
}

void requireZones(const ExportFormat& format, const ExportOptions& options)
{
    if (options.oneZone && format.suffix != QLatin1String("cgns")) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("--one-zone is for .cgns files, and a .%1 file has no zones")
                            .arg(format.suffix));
    }
}

/// What is written in fact: parts of .vtu files have an index of a format of its own beside them.
struct Target
{
    const ExportFormat& format;
    QString path;
};

Target targetOf(const ExportFormat& format, const QString& output, int parts)
{
    if (parts == 1 || format.partsSuffix == format.suffix) {
        return {format, output};
    }
    const QString suffix = QLatin1Char('.') + format.suffix;
    const QString name =
        output.endsWith(suffix, Qt::CaseInsensitive) ? output.chopped(suffix.size()) : output;
    return {ExportFormat::ofSuffix(format.partsSuffix),
            name + QLatin1Char('.') + format.partsSuffix};
}

void requireOutput(const ExportFormat& format, const QString& output, const QStringList& inputs)
{
    if (OutputFiles::isStandardOutput(output)) {
        return;
    }
    OutputCheck::requireFile(output, inputs);
    if (format.hasAttributes) {
        OutputCheck::requireFile(attributesPath(output), inputs);
    }
    if (format.hasFolder) {
        PieceFolder::require(output, format.suffix);
    }
}

void run(const Options& options, Progress& progress)
{
    const ExportFormat& named = formatOf(options); // wrong arguments are told before a long load
    const ModuleLoading module = named.require();
    requireSeekable(named, QString::fromStdString(options.output));
    requireParts(named, options.job);
    requireZones(named, options.job);
    const auto [format, output] =
        targetOf(named, QString::fromStdString(options.output), options.job.parts);
    CaseFiles source(QString::fromStdString(options.name));
    requireOutput(format, output, source.paths());
    const CaseDatabase& database = loadLastingly(source, progress, CaseFiles::UpwardLists::LeftOut);
    if (OutputFiles::isStandardOutput(output)) {
        progress.giveWay();
    }
    const CaseView view(database);
    OutputFiles files;
    format.write({view, format, output, options.job, files, progress});
    files.commit();
    progress.finish();
}

void addOptions(CLI::App& command, Options& options)
{
    command.add_option("NAME", options.name, "The case, with or without a suffix")->required();
    command
        .add_option("-o,--output", options.output,
                    "The file to write, in the format of its suffix: " +
                        ExportFormat::suffixes().toStdString() +
                        "; - for standard output, where the format is text")
        ->type_name("FILE")
        ->required();
    command
        .add_option("--format", options.format, "The format, in place of the suffix of the file")
        ->type_name("SUFFIX");
    CLI::Option* const parts =
        command
            .add_option(
                "--parts", options.job.parts,
                "Cut the elements in so many parts of about the same size, each with a layer "
                "of ghosts; for " +
                    ExportFormat::suffixesWithParts().toStdString())
            ->type_name("N");
    command
        .add_flag("--keep-interfaces", options.job.keepInterfaces,
                  "Let no cut part the two sides of a doubled interface, shell or periodic pair")
        ->needs(parts);
    command
        .add_flag("--one-zone", options.job.oneZone,
                  "In a .cgns file, put all regions into one zone in place of one for each")
        ->excludes(parts);
}

std::string footer()
{
    QString text = QStringLiteral("Formats:\n");
    for (const ExportFormat& format : ExportFormat::all()) {
        text +=
            QStringLiteral("  .%1 %2\n").arg(format.suffix.leftJustified(5), format.description);
    }
    text += QStringLiteral("\nExamples:\n"
                           "  ovrageo export wing -o wing.vtu\n"
                           "  ovrageo export wing -o wing.pvtu --parts 8 --keep-interfaces\n"
                           "  ovrageo export wing -o wing.cgns --one-zone\n"
                           "  ovrageo export wing -o - --format su2 -q | gzip > wing.su2.gz");
    return text.toStdString();
}

} // namespace

void addExportCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command =
        app.add_subcommand("export", "Write a case in a format of other programs");
    const auto options = std::make_shared<Options>();
    addOptions(*command, *options);
    command->footer(footer());
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
