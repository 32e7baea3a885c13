#include "InfoCommand.h"

#include "CaseFiles.h"
#include "CaseSummary.h"
#include "InfoJson.h"
#include "InfoText.h"
#include "InputFileCheck.h"
#include "LastingCase.h"
#include "LengthUnit.h"
#include "StandardOutput.h"
#include "ToolError.h"
#include "UnitText.h"

#include <QFileInfo>

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

/// \brief A file that is yet to be imported. Where there is a case of its name too, which its own
/// suffix asks for, the file goes first if it states its unit.
bool isInput(const QString& name)
{
    const bool isCase = QFileInfo::exists(name + QStringLiteral(".geo_model"));
    const bool isKnown = InputFileCheck::knownSuffixes().contains(InputFileCheck::suffix(name));
    return isKnown && (!isCase || (LengthUnit::isStatedBy(name) && QFileInfo::exists(name)));
}

void tellOfInput(const Options& options)
{
    const QString path = QString::fromStdString(options.name);
    InputFileCheck::check(path);
    if (!LengthUnit::isStatedBy(path)) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("%1: of inputs, only STEP and IGES files state a unit; "
                                       "import it, then ask for the case")
                            .arg(path));
    }
    printToStandardOutput(options.json ? UnitText::json(path)
                                       : (UnitText::ofCase(path, 1) + QLatin1Char('\n')).toUtf8());
}

void run(const Options& options, Progress& progress)
{
    if (isInput(QString::fromStdString(options.name))) {
        tellOfInput(options);
        return;
    }
    CaseFiles files(QString::fromStdString(options.name));
    const CaseDatabase& database = loadLastingly(files, progress, CaseFiles::UpwardLists::LeftOut);
    const CaseSummary summary(files, database, progress);
    printToStandardOutput(options.json ? infoJson(summary) : infoText(summary));
}

} // namespace

void addInfoCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command = app.add_subcommand("info", "Say what is in a case");
    const auto options = std::make_shared<Options>();
    command
        ->add_option("NAME", options->name,
                     "The case, with or without a suffix; or a STEP or IGES file, to see its unit")
        ->required();
    command->add_flag("--json", options->json, "Print JSON for scripts");
    command->footer("Example:\n  ovrageo info wing --json");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
