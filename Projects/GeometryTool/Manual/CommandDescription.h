#pragma once

#include "Completion.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace CLI
{
class App;
}

namespace Ovra::GeoTool
{

/// \brief An option or a positional argument of a command.
struct DescribedOption
{
    QStringList names;   ///< "-o", "--output"; of a positional argument none
    QString placeholder; ///< of its value, "FILE"; empty for a flag
    QString text;        ///< what it does, as in the help
    QStringList needs;   ///< options that it needs
    QStringList excludes;
    bool isRequired = false;
    Completion completion;

    bool isPositional() const { return names.isEmpty(); }
    bool takesValue() const { return !isPositional() && !placeholder.isEmpty(); }
};

/// \brief A block of a footer of the help: lines under a title, or a text without one.
struct DescribedBlock
{
    QString title; ///< "Examples", or empty
    QStringList lines;

    bool isExample() const { return title.startsWith(QLatin1String("Example")); }
};

/// \brief What the help of a command tells, for those who write it down in another form.
struct CommandDescription
{
    QString name; ///< of the program itself "ovrageo"
    QString text;
    std::vector<DescribedOption> options; ///< in the order of the help; positional arguments too
    std::vector<DescribedBlock> blocks;

    explicit CommandDescription(const CLI::App& command);

    /// \brief Of all subcommands, in the order of the help.
    static std::vector<CommandDescription> ofSubcommands(const CLI::App& app);
};

} // namespace Ovra::GeoTool
