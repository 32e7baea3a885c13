#include "TextCommand.h"

#include "CaseFiles.h"
#include "LastingCase.h"
#include "Mesh.h"
#include "Model.h"
#include "OutputCheck.h"
#include "OutputFiles.h"
#include "Progress.h"
#include "ToolError.h"

#include <QDir>
#include <QFileInfo>
#include <QTextStream>

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
    std::string directory;
};

void requireDirectory(const QString& directory)
{
    if (!QDir().mkpath(directory)) {
        throw ToolError(ExitCode::OutputFailed,
                        QStringLiteral("cannot make the directory %1").arg(directory));
    }
}

template <typename Container>
void dump(Container& container, const QString& path, OutputFiles& files, Progress& progress)
{
    progress.phase(QStringLiteral("writing ") + path);
    QTextStream stream(&files.add(path));
    container.write(stream);
    stream.flush();
}

void writeToStandardOutput(CaseFiles& source, Progress& progress)
{
    const CaseDatabase& database = loadLastingly(source, progress);
    progress.giveWay();
    OutputFiles files;
    QTextStream stream(&files.add(QStringLiteral("-")));
    database.model()->write(stream);
    database.mesh()->write(stream);
    stream.flush();
    files.commit();
}

void writeFiles(CaseFiles& source, const QString& directory, Progress& progress)
{
    const auto pathOf = [&directory](const QString& file) {
        return QStringLiteral("%1/%2.txt").arg(directory, QFileInfo(file).fileName());
    };
    const QString modelText = pathOf(source.modelPath());
    const QString meshText = pathOf(source.meshPath());
    OutputCheck::requireDirectory(directory, {modelText, meshText}, source.paths());
    const CaseDatabase& database = loadLastingly(source, progress);
    requireDirectory(directory);
    OutputFiles files;
    dump(*database.model(), modelText, files, progress);
    dump(*database.mesh(), meshText, files, progress);
    files.commit();
}

void run(const Options& options, Progress& progress)
{
    CaseFiles source(QString::fromStdString(options.name));
    const QString directory = QString::fromStdString(options.directory);
    if (OutputFiles::isStandardOutput(directory)) {
        writeToStandardOutput(source, progress);
    } else {
        writeFiles(source, directory, progress);
    }
    progress.finish();
}

} // namespace

void addTextCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command = app.add_subcommand("text", "Dump model and mesh as text to read");
    const auto options = std::make_shared<Options>();
    command->add_option("NAME", options->name, "The case, with or without a suffix")->required();
    command
        ->add_option("-o,--output", options->directory,
                     "Directory for NAME.geo_model.txt and NAME.geo_mesh.txt, made if missing; "
                     "- for both on standard output, the model first")
        ->type_name("DIR")
        ->required();
    command->footer("Example:\n  ovrageo text wing -o dumps");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
