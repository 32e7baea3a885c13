#pragma once

#include "Programs.h"

#include <QByteArray>
#include <QProcess>
#include <QString>

/// \brief What CGNS's own programs say of files: cgnscheck, which holds them against the standard, and
///        cgnsdiff.
namespace CgnsChecker
{

/// \brief What it says of a file; empty if it finds no errors.
inline QByteArray faultsOf(const QString& path)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(Programs::find("cgnscheck"), {path});
    const bool isOver = process.waitForFinished(60000);
    const QByteArray output = process.readAll();
    const bool isSound = isOver && process.exitStatus() == QProcess::NormalExit &&
                         process.exitCode() == 0 && !output.contains("ERROR");
    return isSound ? QByteArray() : "cgnscheck found: " + output;
}

/// \brief What cgnsdiff says of two files, data included.
inline QByteArray differences(const QString& first, const QString& second)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(Programs::find("cgnsdiff"), {QStringLiteral("-d"), first, second});
    process.waitForFinished(60000);
    return process.readAll();
}

} // namespace CgnsChecker
