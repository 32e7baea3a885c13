#include "ManualPage.h"

#include "CommandDescription.h"
#include "CommandLine.h"

#include <QTextStream>

namespace Ovra::GeoTool
{

namespace
{

/// Text that roff shall show as it stands.
QString plain(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\e"))
        .replace(QLatin1Char('-'), QLatin1String("\\-"))
        .replace(QLatin1Char('~'), QLatin1String("\\(ti"))
        .replace(QLatin1Char('^'), QLatin1String("\\(ha"))
        .replace(QLatin1Char('\''), QLatin1String("\\(aq"));
    return text.startsWith(QLatin1Char('.')) ? QStringLiteral("\\&") + text : text;
}

QString bold(const QString& text)
{
    return QStringLiteral("\\fB") + plain(text) + QStringLiteral("\\fR");
}

QString italic(const QString& text)
{
    return QStringLiteral("\\fI") + plain(text) + QStringLiteral("\\fR");
}

QString capitalised(const QString& text)
{
    return text.left(1).toUpper() + text.sliced(1);
}

/// A sentence ends with a stop where it goes on behind it, or in the end.
QString sentence(const QString& text)
{
    return text.endsWith(QLatin1Char('.')) ? text : text + QLatin1Char('.');
}

QString withValue(const QString& name, const DescribedOption& option)
{
    return bold(name) +
           (option.takesValue() ? QLatin1Char(' ') + italic(option.placeholder) : QString());
}

QString inSynopsis(const DescribedOption& option)
{
    if (option.isPositional()) {
        return italic(option.placeholder);
    }
    const QString text = withValue(option.names.constFirst(), option);
    return option.isRequired ? text : QLatin1Char('[') + text + QLatin1Char(']');
}

bool isHelp(const DescribedOption& option)
{
    return option.names.contains(QLatin1String("--help"));
}

void writeSynopsis(QTextStream& out, const CommandDescription& command)
{
    out << ".B ovrageo " << plain(command.name) << '\n';
    for (const bool positional : {true, false}) {
        for (const DescribedOption& option : command.options) {
            if (option.isPositional() == positional && !isHelp(option)) {
                out << inSynopsis(option) << '\n';
            }
        }
    }
}

QString remarks(const DescribedOption& option)
{
    QString text;
    if (!option.needs.isEmpty()) {
        text += QStringLiteral(" Only with %1.").arg(option.needs.join(QStringLiteral(", ")));
    }
    if (!option.excludes.isEmpty()) {
        text += QStringLiteral(" Not with %1.").arg(option.excludes.join(QStringLiteral(", ")));
    }
    return text;
}

void writeOption(QTextStream& out, const DescribedOption& option)
{
    QStringList heads;
    for (const QString& name : option.names) {
        heads.append(withValue(name, option));
    }
    if (option.isPositional()) {
        heads.append(italic(option.placeholder));
    }
    out << ".TP\n"
        << heads.join(QStringLiteral(", ")) << '\n'
        << plain(sentence(capitalised(option.text)) + remarks(option)) << '\n';
}

void writeOptions(QTextStream& out, const CommandDescription& command)
{
    for (const DescribedOption& option : command.options) {
        if (!isHelp(option)) {
            writeOption(out, option);
        }
    }
}

/// Lines that stay lines.
void writeLines(QTextStream& out, const QStringList& lines)
{
    out << ".RS 4\n.nf\n";
    for (const QString& line : lines) {
        out << plain(line) << '\n';
    }
    out << ".fi\n.RE\n";
}

void writeBlock(QTextStream& out, const DescribedBlock& block)
{
    out << ".PP\n";
    if (block.title.isEmpty()) {
        out << plain(block.lines.join(QLatin1Char(' '))) << '\n';
        return;
    }
    out << plain(block.title) << ":\n";
    writeLines(out, block.lines);
}

void writeCommand(QTextStream& out, const CommandDescription& command)
{
    out << ".SS " << plain(command.name) << '\n';
    writeSynopsis(out, command);
    out << ".PP\n" << plain(sentence(command.text)) << '\n';
    writeOptions(out, command);
    for (const DescribedBlock& block : command.blocks) {
        if (!block.isExample()) {
            writeBlock(out, block);
        }
    }
}

void writeExamples(QTextStream& out, const std::vector<CommandDescription>& commands)
{
    out << ".SH EXAMPLES\n";
    for (const CommandDescription& command : commands) {
        for (const DescribedBlock& block : command.blocks) {
            if (block.isExample()) {
                out << ".TP\n" << plain(sentence(command.text)) << '\n';
                out << ".nf\n" << plain(block.lines.join(QLatin1Char('\n'))) << "\n.fi\n";
            }
        }
    }
}

void writeExitStatus(QTextStream& out)
{
    out << ".SH EXIT STATUS\n";
    for (const auto& [code, meaning] : exitMeanings()) {
        out << ".TP\n.B " << static_cast<int>(code) << '\n'
            << plain(sentence(capitalised(QString::fromUtf8(meaning)))) << '\n';
    }
    out << ".PP\nThe command " << bold(QStringLiteral("diff"))
        << " has codes of its own, which stand there.\n";
}

void writeHead(QTextStream& out, const CommandDescription& program)
{
    out << ".TH OVRAGEO 1 \"\" \"ovrageo " OVRAGEO_VERSION "\" \"User Commands\"\n"
        << ".nh\n.ad l\n.SH NAME\novrageo \\- "
        << plain(program.text.left(1).toLower() + program.text.sliced(1))
        << "\n.SH SYNOPSIS\n.B ovrageo\n[" << bold(QStringLiteral("-q")) << "]\n"
        << italic(QStringLiteral("COMMAND")) << "\n[" << italic(QStringLiteral("OPTIONS")) << "] "
        << italic(QStringLiteral("ARGUMENTS")) << "\n";
}

void writeDescription(QTextStream& out, const CommandDescription& program)
{
    out << ".SH DESCRIPTION\n"
           "A case is a pair of files, "
        << italic(QStringLiteral("NAME")) << ".geo_model with the geometry and "
        << italic(QStringLiteral("NAME"))
        << ".geo_mesh with the mesh that is\nclassified on it. Wherever a command takes a case, "
           "the name may "
           "be given without a suffix or\nwith either of the two. Output files appear whole or not "
           "at all.\n"
           ".PP\nThese options may stand before the command or behind it:\n";
    writeOptions(out, program);
    out << ".TP\n"
        << bold(QStringLiteral("-h")) << ", " << bold(QStringLiteral("--help"))
        << "\nPrint the help of the command, or of all if there is none, and exit.\n";
}

} // namespace

QString manualPage(const CLI::App& app)
{
    const CommandDescription program(app);
    const std::vector<CommandDescription> commands = CommandDescription::ofSubcommands(app);
    QString page;
    QTextStream out(&page);
    writeHead(out, program);
    writeDescription(out, program);
    out << ".SH COMMANDS\n";
    for (const CommandDescription& command : commands) {
        writeCommand(out, command);
    }
    writeExitStatus(out);
    writeExamples(out, commands);
    out << ".SH SEE ALSO\n"
        << plain(QStringLiteral("The pages about each command, the file formats and the library in "
                                "/usr/share/doc/ovrageo-doc, of the package ovrageo-doc."))
        << "\n.PP\n.BR gmsh (1),\n.BR paraview (1)\n";
    return page;
}

} // namespace Ovra::GeoTool
