#include "ConvertCommand.h"

#include "CaseFiles.h"
#include "LastingCase.h"
#include "OutputCheck.h"

#include <CLI/CLI.hpp>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

struct Options
{
    std::string name;
    std::string output;
    std::string meshFormat = "2014a";
    bool dropParents = false;
};

const std::map<std::string, MeshSerializer::Format>& formats()
{
    static const std::map<std::string, MeshSerializer::Format> table = {
        {"2013", MeshSerializer::Format2013},
        {"2014", MeshSerializer::Format2014},
        {"2014a", MeshSerializer::Format2014a}};
    return table;
}

void run(const Options& options, Progress& progress)
{
    CaseFiles input(QString::fromStdString(options.name));
    const CaseFiles output(QString::fromStdString(options.output));
    OutputCheck::requireCase(output, input);
    CaseDatabase& database = loadLastingly(input, progress);
    output.save(database, progress, formats().at(options.meshFormat), options.dropParents);
}

} // namespace

void addConvertCommand(CLI::App& app, Progress& progress)
{
    CLI::App* const command =
        app.add_subcommand("convert", "Write a case anew, in another mesh format");
    const auto options = std::make_shared<Options>();
    command->add_option("NAME", options->name, "The case, with or without a suffix")->required();
    command->add_option("-o,--output", options->output, "The case to write; may be the same one")
        ->type_name("NAME2")
        ->required();
    command
        ->add_option("--mesh-format", options->meshFormat,
                     "Mesh format to write; 2014a if not given")
        ->type_name("2013|2014|2014a")
        ->check(CLI::IsMember(std::vector<std::string>{"2013", "2014", "2014a"}).description(""));
    command->add_flag(
        "--drop-parents", options->dropParents,
        "Let mesh entities that stand on a model entity of another dimension lose their "
        "parent where the format cannot hold it, with a warning, rather than refuse");
    command->footer("Example:\n  ovrageo convert wing -o wing-2013 --mesh-format 2013");
    command->callback([options, &progress] { run(*options, progress); });
}

} // namespace Ovra::GeoTool
