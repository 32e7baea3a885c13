#include "ImportCommand.h"

#include "CaseFiles.h"
#include "CaseImport.h"
#include "FixedAddresses.h"
#include "FreedMemory.h"
#include "ImportJob.h"
#include "OutputCheck.h"
#include "Progress.h"
#include "StandardOutput.h"
#include "ToolError.h"
#include "UnitText.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

struct Arguments
{
    std::string input;
    std::string output;
    std::string attributes;
    std::optional<double> meshSize;
    std::optional<double> scale;
    int dimension = 0;
    bool join = false;
    std::optional<double> joinTolerance;
    std::optional<double> air;
    std::vector<double> airBox;
};

std::optional<AirExtent> airOf(const Arguments& arguments)
{
    if (arguments.air) {
        return AirExtent{*arguments.air, {}};
    }
    const std::vector<double>& c = arguments.airBox;
    if (c.empty()) {
        return std::nullopt;
    }
    return AirExtent{0, {Geo::Vector(c[0], c[1], c[2]), Geo::Vector(c[3], c[4], c[5])}};
}

ImportOptions optionsOf(const Arguments& arguments)
{
    ImportOptions options;
    options.input = QString::fromStdString(arguments.input);
    options.meshSize = arguments.meshSize.value_or(options.meshSize);
    options.dimension = arguments.dimension;
    options.scale = arguments.scale.value_or(options.scale);
    options.join = arguments.join;
    options.joinTolerance = arguments.joinTolerance;
    options.air = airOf(arguments);
    return options;
}

void requirePositive(const std::optional<double>& value, const char* option)
{
    if (value && (!std::isfinite(*value) || *value <= 0.0)) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("%1 must be a positive number").arg(QLatin1String(option)));
    }
}

void requireAir(const Arguments& arguments)
{
    if (arguments.air && !(std::isfinite(*arguments.air) && *arguments.air > 1)) {
        throw ToolError(ExitCode::Usage, QStringLiteral("--air must be a number above 1"));
    }
    const std::vector<double>& c = arguments.airBox;
    for (std::size_t i = 0; i + 3 < c.size(); ++i) {
        if (!(std::isfinite(c[i]) && std::isfinite(c[i + 3]) && c[i] < c[i + 3])) {
            throw ToolError(ExitCode::Usage,
                            QStringLiteral("--air-box must be X0,Y0,Z0,X1,Y1,Z1 with X0 below X1, "
                                           "Y0 below Y1 and Z0 below Z1"));
        }
    }
}

void requireOutput(const Arguments& arguments)
{
    QStringList inputs{QString::fromStdString(arguments.input)};
    if (!arguments.attributes.empty()) {
        inputs += QString::fromStdString(arguments.attributes);
    }
    OutputCheck::requireCase(CaseFiles(QString::fromStdString(arguments.output)), inputs);
}

/// \brief The model file has no place for a unit; whoever imports is told once.
void tellOfUnit(const Arguments& arguments)
{
    const QString text =
        UnitText::ofCase(QString::fromStdString(arguments.input), arguments.scale.value_or(1.0));
    if (!text.isEmpty()) {
        printToStandardOutput((text + QLatin1Char('\n')).toUtf8());
    }
}

void requireSound(const Arguments& arguments)
{
    requirePositive(arguments.meshSize, "--mesh-size");
    requirePositive(arguments.scale, "--scale");
    requirePositive(arguments.joinTolerance, "--join-tolerance");
    requireAir(arguments);
    requireOutput(arguments);
}

void run(const Arguments& arguments, Progress& progress)
{
    requireSound(arguments);
    FixedAddresses::ensure(); // before the module is loaded, or that would be done twice
    keepFreedMemory();
    requireImport();
    importCase({optionsOf(arguments), QString::fromStdString(arguments.attributes),
                QString::fromStdString(arguments.output), progress});
    tellOfUnit(arguments);
}

void addFileOptions(CLI::App& command, Arguments& arguments)
{
    command
        .add_option("INPUT", arguments.input,
                    "Gmsh .geo or .msh, STEP, IGES, BREP, UNV, Nastran .bdf, STL, legacy VTK, "
                    "Medit .mesh, Abaqus .inp, or another that ImportFormats.md lists")
        ->required();
    command
        .add_option("-o,--output", arguments.output,
                    "Case to write: NAME.geo_model and NAME.geo_mesh")
        ->required()
        ->type_name("NAME");
    command
        .add_option("--attributes", arguments.attributes,
                    "JSON file that gives attributes to physical groups and entities")
        ->type_name("FILE.json");
}

void addMeshOptions(CLI::App& command, Arguments& arguments)
{
    command
        .add_option("--mesh-size", arguments.meshSize,
                    "Largest element edge when meshing, in the unit of the input")
        ->type_name("H");
    command
        .add_option("--scale", arguments.scale,
                    "Multiplies all coordinates in the end, boxes, lengths, areas and volumes with "
                    "them; 0.001 makes metres of millimetres")
        ->type_name("S");
    command
        .add_option("--dimension", arguments.dimension,
                    "Import volumes (3) or surfaces only (2); default: what the input has")
        ->check(CLI::IsMember({2, 3}));
}

void addJoiningOptions(CLI::App& command, Arguments& arguments)
{
    command.add_flag("--join", arguments.join,
                     "Cut bodies that touch along one another, so that they share faces");
    command
        .add_option("--join-tolerance", arguments.joinTolerance,
                    "Gaps and overlaps that count as contact, in the unit of the input; default: "
                    "1e-5 of the size of the whole")
        ->type_name("T");
}

void addAirOptions(CLI::App& command, Arguments& arguments)
{
    CLI::Option* const air =
        command
            .add_option("--air", arguments.air,
                        "Put the parts into a box of air: their own box, FACTOR times as large")
            ->type_name("FACTOR");
    command
        .add_option("--air-box", arguments.airBox,
                    "Put the parts into a box of air from one corner to the other")
        ->type_name("X0,Y0,Z0,X1,Y1,Z1")
        ->delimiter(',')
        ->expected(6)
        ->excludes(air);
}

} // namespace

void addImportCommand(CLI::App& app, Progress& progress)
{
    const auto arguments = std::make_shared<Arguments>();
    CLI::App* const command = app.add_subcommand(
        "import", "Make a case from a geometry or mesh file, meshing it where it has no mesh");
    addFileOptions(*command, *arguments);
    addMeshOptions(*command, *arguments);
    addJoiningOptions(*command, *arguments);
    addAirOptions(*command, *arguments);
    command->footer("Example:\n  ovrageo import enclosure.geo -o enclosure --attributes "
                    "enclosure.json --mesh-size 0.01");
    command->callback([arguments, &progress] { run(*arguments, progress); });
}

} // namespace Ovra::GeoTool
