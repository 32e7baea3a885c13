#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStandardPaths>
#include <QString>

/// \brief The program cgnscheck, which holds a CGNS file against the standard.
namespace CgnsChecker
{

inline QString program()
{
    return QStandardPaths::findExecutable(QStringLiteral("cgnscheck"));
}

/// \brief Whether a test has to do without one of these programs; not so where all are installed.
inline bool isMissing(const QString& found)
{
    return found.isEmpty() && !qEnvironmentVariableIsSet("OVRA_NOTHING_SKIPPED");
}

/// \brief What it says of a file; empty if it finds no errors.
inline QByteArray faultsOf(const QString& path)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program(), {path});
    const bool isOver = process.waitForFinished(60000);
    const QByteArray output = process.readAll();
    const bool isSound = isOver && process.exitStatus() == QProcess::NormalExit &&
                         process.exitCode() == 0 && !output.contains("ERROR");
    return isSound ? QByteArray() : "cgnscheck found: " + output;
}

inline QString differ()
{
    return QStandardPaths::findExecutable(QStringLiteral("cgnsdiff"));
}

/// \brief What cgnsdiff says of two files, data included.
inline QByteArray differences(const QString& first, const QString& second)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(differ(), {QStringLiteral("-d"), first, second});
    process.waitForFinished(60000);
    return process.readAll();
}

} // namespace CgnsChecker
