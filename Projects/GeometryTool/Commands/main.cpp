#include "CommandLine.h"
#include "Progress.h"
#include "QtMessages.h"
#include "ToolError.h"

#include <QHashSeed>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <new>

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
        return fail(progress, ExitCode::Usage,
                    QString::fromUtf8(error.what()) + QStringLiteral("; see ovrageo --help"));
    }
    if (app.get_subcommands().empty()) {
        return fail(progress, ExitCode::Usage,
                    QStringLiteral("a subcommand is missing; see ovrageo --help"));
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
