#include "IsolatedRun.h"

#include "Descriptor.h"
#include "ToolError.h"

#include <QByteArray>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <new>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef OVRA_COVERAGE
extern "C" void __gcov_dump(); // NOLINT(*-identifier, *-naming)
#endif

namespace Ovra::GeoTool
{

namespace
{

constexpr char Done = 'D';   ///< the work came to its end
constexpr char Failed = 'F'; ///< exit code and text of a ToolError follow

void writeAll(int pipe, const QByteArray& bytes)
{
    qsizetype written = 0;
    while (written < bytes.size()) {
        const ssize_t count = write(pipe, bytes.constData() + written,
                                    static_cast<std::size_t>(bytes.size() - written));
        if (count < 0 && errno != EINTR) {
            return;
        }
        written += count < 0 ? 0 : count;
    }
}

QByteArray readAll(int pipe)
{
    QByteArray bytes;
    char buffer[4096];
    for (;;) {
        const ssize_t count = read(pipe, buffer, sizeof buffer);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return bytes;
        }
        bytes.append(buffer, count);
    }
}

QByteArray failure(ExitCode code, const QString& text)
{
    return QByteArray(1, Failed) + static_cast<char>(code) + text.toUtf8();
}

QByteArray outcomeOf(const std::function<void()>& work)
{
    try {
        work();
        return QByteArray(1, Done);
    } catch (const ToolError& error) {
        return failure(error.exitCode(), error.text());
    } catch (const std::bad_alloc&) {
        return failure(ExitCode::InternalError, QStringLiteral("out of memory"));
    } catch (const std::exception& exception) {
        return failure(ExitCode::InternalError, QString::fromUtf8(exception.what()));
    } catch (...) { // values of other types, which Gmsh throws too
        return failure(ExitCode::InternalError, QStringLiteral("Gmsh failed without a message"));
    }
}

/// A build that counts coverage does so at the end of main(), which a copy never sees.
void handInCoverage()
{
#ifdef OVRA_COVERAGE
    __gcov_dump();
#endif
}

[[noreturn]] void runCopy(int pipe, const std::function<void()>& work)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody would wait for the result
    writeAll(pipe, outcomeOf(work));
    std::fflush(nullptr);
    handInCoverage();
    _exit(0);
}

int waitFor(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

bool isProper(int status)
{
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

QString ending(int status)
{
    if (WIFSIGNALED(status)) {
        return QStringLiteral("signal %1, %2")
            .arg(WTERMSIG(status))
            .arg(QString::fromLocal8Bit(strsignal(WTERMSIG(status))));
    }
    return QStringLiteral("exit with code %1").arg(WEXITSTATUS(status));
}

void runBeside(pid_t child, const std::function<void()>& meanwhile)
{
    try {
        if (meanwhile) {
            meanwhile();
        }
    } catch (...) {
        kill(child, SIGKILL);
        waitFor(child);
        throw;
    }
}

void judge(const QByteArray& outcome, int status, const IsolatedRun::Messages& messages)
{
    if (outcome.size() >= 2 && outcome.at(0) == Failed) {
        throw ToolError(static_cast<ExitCode>(outcome.at(1)), QString::fromUtf8(outcome.mid(2)));
    }
    if (outcome.isEmpty() || outcome.at(0) != Done) {
        const QString how = QStringLiteral(" (%1)").arg(ending(status));
        throw ToolError(messages.exitCode,
                        isProper(status) ? messages.onExit : messages.onCrash + how);
    }
}

} // namespace

void IsolatedRun::run(const Messages& messages, const std::function<void()>& work,
                      const std::function<void()>& meanwhile)
{
    int ends[2] = {-1, -1};
    std::fflush(nullptr);              // what is buffered would be printed by both
    if (pipe2(ends, O_CLOEXEC) != 0) { // or a program that the copy starts would hold it open
        throw ToolError(ExitCode::InternalError, QStringLiteral("cannot open a pipe"));
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        runCopy(ends[1], work);
    }
    close(ends[1]);
    const Descriptor reading(ends[0]);
    if (child < 0) {
        throw ToolError(ExitCode::InternalError, QStringLiteral("cannot start a process"));
    }
    runBeside(child, meanwhile);
    const QByteArray outcome = readAll(reading.number());
    judge(outcome, waitFor(child), messages);
}

} // namespace Ovra::GeoTool
