#pragma once

#include <QByteArray>
#include <QString>
#include <QtGlobal>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

/// The message with which a function stops the process; empty if it returns.
///
/// The function runs in a child process, so that the test goes on. POSIX only.
template <typename Function>
QString stopMessage(Function function)
{
    static int childEnd = -1;
    int ends[2];
    if (pipe(ends) != 0) {
        return QStringLiteral("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        std::signal(SIGABRT, SIG_DFL); // or the test framework would print a stack trace
        childEnd = ends[1];
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& text) {
            const QByteArray bytes = text.toUtf8();
            if (write(childEnd, bytes.constData(), static_cast<size_t>(bytes.size())) < 0) {
                _exit(2);
            }
        });
        function();
        _exit(0);
    }
    close(ends[1]);
    QByteArray message;
    char buffer[256];
    for (ssize_t count; (count = read(ends[0], buffer, sizeof buffer)) > 0;) {
        message.append(buffer, static_cast<qsizetype>(count));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    const bool isStopped = WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
    return isStopped ? QString::fromUtf8(message) : QString();
}
