#pragma once

#include <QStandardPaths>
#include <QString>

/// \brief Programs that a test runs beside the tool.
namespace Programs
{

/// \brief The path of a program; empty where it is not installed.
inline QString find(const char* name)
{
    return QStandardPaths::findExecutable(QLatin1String(name));
}

/// \brief Whether a test has to do without a program; not so where all are said to be installed, so
///        that it fails without them.
inline bool isMissing(const char* name)
{
    return find(name).isEmpty() && !qEnvironmentVariableIsSet("OVRA_NOTHING_SKIPPED");
}

} // namespace Programs
