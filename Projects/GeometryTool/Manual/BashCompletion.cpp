#include "CommandDescription.h"
#include "ShellCompletion.h"

#include <QIODevice>
#include <QTextStream>

namespace Ovra::GeoTool
{

namespace
{

// Options before the command take no value, so that the first word that is no option is the command. bash
// parts --option=value at the sign.
constexpr const char* Functions =
    R"(# Completion of ovrageo(1) for bash, made from its command line.

# Adds what compgen finds for the arguments.
_ovrageo_add()
{
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen "$@" -- "$cur")
}

# Files with one of the suffixes, of any if there are none, and directories.
_ovrageo_files()
{
    local suffix
    compopt -o filenames 2>/dev/null
    if [ $# -eq 0 ]; then
        _ovrageo_add -f
        return
    fi
    for suffix; do
        _ovrageo_add -f -X "!*.$suffix"
    done
    _ovrageo_add -d
}

# Cases by their name, and files with one of the suffixes.
_ovrageo_cases()
{
    local i
    _ovrageo_add -f -X '!*.geo_model'
    for i in "${!COMPREPLY[@]}"; do
        [[ ${COMPREPLY[i]%.geo_model} != "$cur"* ]] || COMPREPLY[i]=${COMPREPLY[i]%.geo_model}
    done
    if [ $# -eq 0 ]; then
        _ovrageo_directories
    else
        _ovrageo_files "$@"
    fi
}

_ovrageo_directories()
{
    compopt -o filenames 2>/dev/null
    _ovrageo_add -d
}

_ovrageo_words()
{
    _ovrageo_add -W "$*"
}

_ovrageo()
{
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} command='' i
    COMPREPLY=()
    if [ "$cur" = = ]; then
        cur=''
    elif [ "$prev" = = ]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        if [[ ${COMP_WORDS[i]} != -* ]]; then
            command=${COMP_WORDS[i]}
            break
        fi
    done
    _ovrageo_offer "$command" "$prev"
}

)";

QString call(const Completion& completion)
{
    const QString words = completion.words.isEmpty()
                              ? QString()
                              : QLatin1Char(' ') + completion.words.join(QLatin1Char(' '));
    switch (completion.kind) {
    case Completion::Kind::Words:
        return QStringLiteral("_ovrageo_words") + words;
    case Completion::Kind::Files:
        return QStringLiteral("_ovrageo_files") + words;
    case Completion::Kind::Cases:
        return QStringLiteral("_ovrageo_cases") + words;
    case Completion::Kind::Directories:
        return QStringLiteral("_ovrageo_directories");
    case Completion::Kind::Nothing:
        break;
    }
    return QStringLiteral(":");
}

QStringList allNames(const CommandDescription& command)
{
    QStringList names;
    for (const DescribedOption& option : command.options) {
        names.append(option.names);
    }
    return names;
}

/// What is offered behind an option that takes a value.
void writeValues(QTextStream& out, const CommandDescription& command)
{
    for (const DescribedOption& option : command.options) {
        if (option.takesValue()) {
            for (const QString& name : option.names) {
                out << "    '" << command.name << ' ' << name << "') " << call(option.completion)
                    << "; return ;;\n";
            }
        }
    }
}

QString positionalCall(const CommandDescription& command)
{
    for (const DescribedOption& option : command.options) {
        if (option.isPositional()) {
            return call(option.completion);
        }
    }
    return QStringLiteral(":");
}

void writeWords(QTextStream& out, const QString& pattern, const QStringList& options,
                const QString& otherwise)
{
    out << "    " << pattern << ") if [[ $cur == -* ]]; then _ovrageo_words "
        << options.join(QLatin1Char(' ')) << "; else " << otherwise << "; fi ;;\n";
}

} // namespace

QString bashCompletion(const CLI::App& app)
{
    const CommandDescription program(app);
    const std::vector<CommandDescription> commands = CommandDescription::ofSubcommands(app);
    QString script = QString::fromUtf8(Functions);
    QTextStream out(&script, QIODevice::Append);
    out << "_ovrageo_offer()\n{\n    case \"$1 $2\" in\n";
    QStringList names;
    for (const CommandDescription& command : commands) {
        writeValues(out, command);
        names.append(command.name);
    }
    out << "    esac\n    case $1 in\n";
    writeWords(out, QStringLiteral("''"), allNames(program),
               QStringLiteral("_ovrageo_words ") + names.join(QLatin1Char(' ')));
    QStringList shared = allNames(program);
    shared.removeAll(QStringLiteral("--version"));
    for (const CommandDescription& command : commands) {
        QStringList options = allNames(command) + shared;
        options.removeDuplicates();
        writeWords(out, command.name, options, positionalCall(command));
    }
    out << "    esac\n}\n\ncomplete -F _ovrageo ovrageo\n";
    return script;
}

} // namespace Ovra::GeoTool
