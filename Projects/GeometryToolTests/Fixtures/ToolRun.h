#pragma once

#include "Places.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStringList>

#include <array>
#include <functional>
#include <unistd.h>

/// \brief What one run of the tool left behind.
struct ToolRun
{
    int exitCode = -1; ///< -1 if it did not end by itself
    QByteArray output;
    QByteArray errors;
};

/// \brief Runs the tool to its end with both outputs piped.
/// \param hashSeed value of QT_HASH_SEED; unset if empty
/// \param childModifier called in the new process before the tool starts, to set limits for
/// instance
inline ToolRun runTool(const QStringList& arguments, const QString& hashSeed = QString(),
                       const std::function<void()>& childModifier = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("QT_HASH_SEED"));
    if (!hashSeed.isEmpty()) {
        environment.insert(QStringLiteral("QT_HASH_SEED"), hashSeed);
    }
    process.setProcessEnvironment(environment);
    if (childModifier) {
        process.setChildProcessModifier(childModifier);
    }
    process.start(Places::tool(), arguments);
    ToolRun run;
    if (process.waitForFinished(-1) && process.exitStatus() == QProcess::NormalExit) {
        run.exitCode = process.exitCode();
    }
    run.output = process.readAllStandardOutput();
    run.errors = process.readAllStandardError();
    return run;
}

/// \brief A modifier for runTool(): the tool's output goes to a pipe that nobody reads.
inline void closeReaderOfOutput()
{
    std::array<int, 2> ends = {};
    if (pipe(ends.data()) == 0) {
        close(ends[0]);
        dup2(ends[1], STDOUT_FILENO);
        close(ends[1]);
    }
}

/// \brief True for exactly one line that begins as all errors of the tool do.
inline bool isOneErrorLine(const QByteArray& errors)
{
    return errors.startsWith("ovrageo: error: ") && errors.count('\n') == 1 &&
           errors.endsWith('\n');
}

inline QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline bool writeContent(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

inline QStringList filesIn(const QString& directory)
{
    return QDir(directory).entryList(QDir::Files | QDir::Hidden | QDir::System, QDir::Name);
}
