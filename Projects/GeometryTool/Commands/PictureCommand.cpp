#include "PictureCommand.h"

#include "CaseFiles.h"
#include "CaseVerifier.h"
#include "CaseView.h"
#include "LastingCase.h"
#include "OutputCheck.h"
#include "OutputFiles.h"
#include "PictureModule.h"
#include "PictureOptions.h"
#include "PictureScene.h"
#include "Progress.h"
#include "ToolError.h"

#include <QFileInfo>

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
    std::string colorBy;
    std::string unit;
    std::optional<std::string> clip;
    std::optional<std::string> size;
    std::vector<std::string> faces;
    double explode = 0.0;
    bool hasFindings = false;
};

PictureOptions pictureOptions(const Options& options)
{
    PictureOptions picture;
    if (options.size) {
        picture.setSize(QString::fromStdString(*options.size));
    }
    if (options.clip) {
        picture.setCut(QString::fromStdString(*options.clip));
    }
    if (!std::isfinite(options.explode) || options.explode < 0.0 || options.explode > 100.0) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("--explode must be a number from 0 to 100"));
    }
    for (const std::string& name : options.faces) {
        picture.faces += QString::fromStdString(name);
    }
    picture.explode = options.explode;
    picture.colorBy = QString::fromStdString(options.colorBy);
    picture.unit = QString::fromStdString(options.unit);
    picture.hasFindings = options.hasFindings;
    return picture;
}

QByteArray drawn(PictureModule& module, const PictureOptions& options, CaseFiles& source,
                 Progress& progress)
{
    const CaseDatabase& database = loadLastingly(source, progress, CaseFiles::UpwardLists::LeftOut);
    const CaseView view(database);
    std::optional<CaseFindings> findings;
    if (options.hasFindings) {
        findings = CaseVerifier::verify(view, progress, CaseVerifier::ContentTopics);
    }
    progress.phase(QStringLiteral("drawing"));
    PictureScene scene(view, options, findings ? &*findings : nullptr);
    scene.setTitle(QFileInfo(source.name()).fileName());
    const QByteArray picture = module.draw(scene.data());
    progress.finish();
    return picture;
}

void run(const Options& options, Progress& progress)
{
    const PictureOptions picture =
        pictureOptions(options); // wrong arguments are told before a load
    CaseFiles source(QString::fromStdString(options.name));
    const QString output = QString::fromStdString(options.output);
    OutputCheck::requireFile(output, source.paths());
    OutputCheck::requireSuffix(output, {QStringLiteral(".png")});
    OutputCheck::requireNoTerminal(output);
    PictureModule module;
    const QByteArray bytes = drawn(module, picture, source, progress);
    OutputFiles files;
    files.add(output).write(bytes);
    files.commit();
}

void addOptions(CLI::App& command, Options& options)
{
    command.add_option("NAME", options.name, "The case, with or without a suffix")->required();
    command
        .add_option("-o,--output", options.output, "The PNG file to write; - for standard output")
        ->type_name("FILE.png")
        ->required();
    command
        .add_option("--color-by", options.colorBy,
                    "region, face, material, or an attribute of regions and faces such as "
                    "periodic_pair_id; if not given, region, or face where there is one region")
        ->type_name("TAG");
    command
        .add_option("--clip", options.clip,
                    "Cuts the case open at a place on an axis, such as x=0.05, and leaves out what "
                    "is nearer")
        ->type_name("x|y|z=V");
    command
        .add_option("--faces", options.faces,
                    "Only these, or those of these regions, separated by commas; * and ? stand for "
                    "any characters and any one")
        ->type_name("NAMES")
        ->delimiter(',');
    command
        .add_option("--explode", options.explode,
                    "Moves the regions apart, by so many times their distance from the middle")
        ->type_name("F");
    command.add_option("--size", options.size, "In pixels; 1600x1000 if not given")
        ->type_name("WxH");
    command.add_option("--unit", options.unit, "Of the coordinates, to stand at the axes")
        ->type_name("TEXT");
    command.add_flag("--findings", options.hasFindings, "Mark what verify finds");
}

} // namespace

void addPictureCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command = app.add_subcommand("picture", "Draw a case as a PNG file");
    const auto options = std::make_shared<Options>();
    addOptions(*command, *options);
    command->footer("Examples:\n  ovrageo picture wing -o wing.png --unit m\n"
                    "  ovrageo picture wing -o open.png --clip y=0.5 --color-by material\n"
                    "  ovrageo picture wing -o sides.png --faces 'inlet,wall_*' --findings\n\n"
                    "Needs no display.");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
