#include "CommandLine.h"
#include "Progress.h"
#include "QtMessages.h"
#include "ToolError.h"

#include <QHashSeed>
#include <QRegularExpression>
#include <QStringList>

#include <CLI/CLI.hpp>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <new>
#include <string>
#include <vector>

using namespace Ovra::GeoTool;

namespace
{

int fail(Progress& progress, ExitCode exitCode, QString text)
{
    progress.finish();
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    std::fprintf(stderr, "ovrageo: error: %s\n", text.trimmed().toUtf8().constData());
    return static_cast<int>(exitCode);
}

QString joined(const std::vector<std::string>& words, const QString& separator)
{
    QStringList list;
    for (const std::string& word : words) {
        list += QString::fromStdString(word);
    }
    return list.join(separator);
}

QString commandNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return joined(names, QStringLiteral(", "));
}

/// CLI11 tells what it cannot convert, and not into what.
QString conversionText(const QString& text)
{
    static const QRegularExpression unconverted(
        QStringLiteral("^Could not convert: (\\S+) = (.*)$"));
    const QRegularExpressionMatch match = unconverted.match(text);
    if (!match.hasMatch()) {
        return text;
    }
    bool isNumber = false;
    const double value = match.captured(2).toDouble(&isNumber);
    if (isNumber && value == std::trunc(value)) {
        return QStringLiteral("%1 takes no number as large as %2")
            .arg(match.captured(1), match.captured(2));
    }
    return QStringLiteral("%1 takes %2, not \"%3\"")
        .arg(match.captured(1),
             isNumber ? QStringLiteral("a whole number") : QStringLiteral("a number"),
             match.captured(2));
}

/// CLI11 names arguments that are too many in reverse, and a word that is no command among them.
QString textOf(const CLI::ParseError& error, const CLI::App& app)
{
    const std::vector<std::string> left = app.remaining(true);
    if (!dynamic_cast<const CLI::ExtrasError*>(&error) || left.empty()) {
        return conversionText(QString::fromUtf8(error.what()));
    }
    const QString first = QString::fromStdString(left.front());
    if (app.get_subcommands().empty() && !first.startsWith(QLatin1Char('-'))) {
        return QStringLiteral("there is no command \"%1\"; there are %2")
            .arg(first, commandNames(app));
    }
    return QStringLiteral("not expected: ") + joined(left, QStringLiteral(" "));
}

QString whereHelpIs(const CLI::App& app)
{
    const std::vector<CLI::App*> commands = app.get_subcommands();
    const std::string name = commands.empty() ? "" : commands.front()->get_name() + ' ';
    return QStringLiteral("; see ovrageo %1--help").arg(QString::fromStdString(name));
}

int parse(CLI::App& app, Progress& progress, int argc, char** argv)
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::RuntimeError& end) { // of a subcommand that has told all that it has to
        return end.get_exit_code();
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) { // help or version
            return app.exit(error);
        }
        return fail(progress, ExitCode::Usage, textOf(error, app) + whereHelpIs(app));
    }
    if (app.get_subcommands().empty()) {
        return fail(progress, ExitCode::Usage,
                    QStringLiteral("a subcommand is missing") + whereHelpIs(app));
    }
    return static_cast<int>(ExitCode::Success);
}

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): out of memory while saying so ends it anyhow
int main(int argc, char** argv)
{
    QHashSeed::setDeterministicGlobalSeed(); // the same case gives the same bytes in every run
    std::signal(SIGXFSZ, SIG_IGN);           // a file too large shall be an error of write()
    std::signal(SIGPIPE, SIG_IGN);           // and so shall a pipe that nobody reads
    Progress progress;
    routeQtMessages(progress);
    CLI::App app;
    try {
        setUpCommandLine(app, progress);
        return parse(app, progress, argc, argv);
    } catch (const ToolError& error) {
        return fail(progress, error.exitCode(), error.text());
    } catch (const std::bad_alloc&) {
        return fail(progress, ExitCode::InternalError, QStringLiteral("out of memory"));
    } catch (const std::exception& error) {
        return fail(progress, ExitCode::InternalError, QString::fromUtf8(error.what()));
    }
}
