#include "CommandDescription.h"

#include <QRegularExpression>

#include <CLI/CLI.hpp>
#include <set>

namespace Ovra::GeoTool
{

namespace
{

QStringList namesOf(const CLI::Option& option)
{
    QStringList names;
    for (const std::string& name : option.get_snames()) {
        names.append(QLatin1Char('-') + QString::fromStdString(name));
    }
    for (const std::string& name : option.get_lnames()) {
        names.append(QStringLiteral("--") + QString::fromStdString(name));
    }
    return names;
}

/// Of "INT:{2,3}", which a check leaves in the help, the choice "2|3".
QString placeholderOf(const CLI::Option& option)
{
    if (option.get_positional()) {
        return QString::fromStdString(option.get_name(true));
    }
    if (option.get_type_size() == 0) {
        return {};
    }
    const QString type = QString::fromStdString(option.get_type_name());
    static const QRegularExpression choice(QStringLiteral("\\{(.*)\\}$"));
    const QRegularExpressionMatch match = choice.match(type);
    return match.hasMatch() ? match.captured(1).replace(QLatin1Char(','), QLatin1Char('|')) : type;
}

/// The sets are in the order of addresses; the help has that of the command.
QStringList longNames(const CLI::App& command, const std::set<CLI::Option*>& chosen)
{
    QStringList names;
    for (const CLI::Option* option : command.get_options()) {
        if (chosen.count(const_cast<CLI::Option*>(option)) > 0) { // NOLINT: only looked up
            names.append(namesOf(*option).constLast());
        }
    }
    return names;
}

DescribedOption described(const CLI::App& command, const CLI::Option& option)
{
    DescribedOption result;
    result.names = namesOf(option);
    result.placeholder = placeholderOf(option);
    result.text = QString::fromStdString(option.get_description());
    result.needs = longNames(command, option.get_needs());
    result.excludes = longNames(command, option.get_excludes());
    result.isRequired = option.get_required();
    result.completion =
        Completion::of(QString::fromStdString(command.get_name()), result.placeholder);
    return result;
}

DescribedBlock blockOf(const QString& paragraph)
{
    DescribedBlock block;
    block.lines = paragraph.split(QLatin1Char('\n'));
    if (block.lines.size() > 1 && block.lines.constFirst().endsWith(QLatin1Char(':'))) {
        block.title = block.lines.takeFirst().chopped(1);
    }
    for (QString& line : block.lines) {
        line = line.trimmed();
    }
    return block;
}

} // namespace

CommandDescription::CommandDescription(const CLI::App& command)
    : name(QString::fromStdString(command.get_name()))
    , text(QString::fromStdString(command.get_description()))
{
    for (const CLI::Option* option : command.get_options()) {
        options.push_back(described(command, *option));
    }
    const QString footer = QString::fromStdString(command.get_footer());
    for (const QString& paragraph : footer.split(QStringLiteral("\n\n"), Qt::SkipEmptyParts)) {
        blocks.push_back(blockOf(paragraph));
    }
}

std::vector<CommandDescription> CommandDescription::ofSubcommands(const CLI::App& app)
{
    std::vector<CommandDescription> commands;
    const auto all = [](const CLI::App*) { return true; };
    for (const CLI::App* command : app.get_subcommands(all)) {
        commands.emplace_back(*command);
    }
    return commands;
}

} // namespace Ovra::GeoTool
