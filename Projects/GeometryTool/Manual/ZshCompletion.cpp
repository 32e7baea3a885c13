#include "CommandDescription.h"
#include "ShellCompletion.h"

#include <QRegularExpression>
#include <QTextStream>

namespace Ovra::GeoTool
{

namespace
{

/// Within single quotes.
QString quoted(QString text)
{
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("'\\''")) +
           QLatin1Char('\'');
}

/// Text of a specification of _arguments, where colons and brackets part it.
QString escaped(QString text)
{
    for (const QLatin1Char sign :
         {QLatin1Char('\\'), QLatin1Char(':'), QLatin1Char('['), QLatin1Char(']')}) {
        text.replace(sign, QLatin1Char('\\') + QString(sign));
    }
    return text;
}

QString pattern(const QStringList& suffixes)
{
    return QStringLiteral("_files -g \"*.(%1)(-.)\"").arg(suffixes.join(QLatin1Char('|')));
}

QString action(const Completion& completion)
{
    switch (completion.kind) {
    case Completion::Kind::Words:
        return QStringLiteral("(%1)").arg(completion.words.join(QLatin1Char(' ')));
    case Completion::Kind::Files:
        return completion.words.isEmpty() ? QStringLiteral("_files") : pattern(completion.words);
    case Completion::Kind::Cases:
        return pattern(QStringList{QStringLiteral("geo_model")} + completion.words);
    case Completion::Kind::Directories:
        return QStringLiteral("_files -/");
    case Completion::Kind::Nothing:
        break;
    }
    return QStringLiteral(" ");
}

QString value(const DescribedOption& option)
{
    return QStringLiteral(":%1:%2").arg(escaped(option.placeholder), action(option.completion));
}

/// The names; a long one with the sign that lets a value stand behind "=" as well as in the next word.
QString names(const DescribedOption& option)
{
    QStringList all = option.names;
    if (option.takesValue()) {
        all.replaceInStrings(QRegularExpression(QStringLiteral("^(--.+)$")),
                             QStringLiteral("\\1="));
    }
    return all.size() == 1 ? all.constFirst()
                           : QLatin1Char('{') + all.join(QLatin1Char(',')) + QLatin1Char('}');
}

/// '(-o --output)'{-o,--output=}'[what it does]:FILE:_files'
QString specification(const DescribedOption& option, int position)
{
    if (option.isPositional()) {
        return quoted(QString::number(position) + value(option));
    }
    const QString what = QLatin1Char('[') + escaped(option.text) + QLatin1Char(']') +
                         (option.takesValue() ? value(option) : QString());
    const QStringList others = option.names + option.excludes;
    return quoted(QLatin1Char('(') + others.join(QLatin1Char(' ')) + QLatin1Char(')')) +
           names(option) + quoted(what);
}

void writeSpecifications(QTextStream& out, const CommandDescription& command, const QString& indent)
{
    int position = 0;
    for (const DescribedOption& option : command.options) {
        position += option.isPositional() ? 1 : 0;
        out << " \\\n" << indent << specification(option, position);
    }
}

void writeCommands(QTextStream& out, const std::vector<CommandDescription>& commands)
{
    out << "    local -a commands=(\n";
    for (const CommandDescription& command : commands) {
        out << "        " << quoted(command.name + QLatin1Char(':') + escaped(command.text))
            << '\n';
    }
    out << "    )\n";
}

void writeArguments(QTextStream& out, const CommandDescription& program,
                    const CommandDescription& command)
{
    out << "            (" << command.name << ")\n                _arguments";
    writeSpecifications(out, command, QString(20, QLatin1Char(' ')));
    for (const DescribedOption& option : program.options) {
        if (option.names.contains(QLatin1String("--quiet"))) {
            out << " \\\n" << QString(20, QLatin1Char(' ')) << specification(option, 0);
        }
    }
    out << "\n                ;;\n";
}

} // namespace

QString zshCompletion(const CLI::App& app)
{
    const CommandDescription program(app);
    const std::vector<CommandDescription> commands = CommandDescription::ofSubcommands(app);
    QString script;
    QTextStream out(&script);
    out << "#compdef ovrageo\n# Completion of ovrageo(1) for zsh, made from its command line.\n\n"
           "_ovrageo()\n{\n    local context state state_descr line\n    typeset -A opt_args\n";
    writeCommands(out, commands);
    out << "    _arguments -C";
    writeSpecifications(out, program, QString(8, QLatin1Char(' ')));
    out << " \\\n        '1: :->command' \\\n        '*:: :->arguments'\n"
           "    case $state in\n    (command)\n        _describe -t commands command commands\n    "
           "    ;;\n"
           "    (arguments)\n        case ${words[1]} in\n";
    for (const CommandDescription& command : commands) {
        writeArguments(out, program, command);
    }
    out << "        esac\n        ;;\n    esac\n}\n\n_ovrageo \"$@\"\n";
    return script;
}

} // namespace Ovra::GeoTool
