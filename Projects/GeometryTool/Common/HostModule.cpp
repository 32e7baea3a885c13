#include "HostModule.h"

#include "ToolError.h"

#include <QFileInfo>
#include <QStringList>

namespace Ovra::GeoTool
{

namespace
{

/// Where modules stand as they are built, and as they are installed.
QStringList places()
{
    const QString folder = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
    return {folder + QStringLiteral("/modules/"),
            folder + QStringLiteral("/" OVRAGEO_MODULES_FROM_BINDIR "/")};
}

QString pathOf(const QString& fileName, const QString& purpose)
{
    for (const QString& place : places()) {
        if (QFileInfo::exists(place + fileName)) {
            return place + fileName;
        }
    }
    throw ToolError(
        ExitCode::Usage,
        QStringLiteral("this ovrageo has no %1, which %2; build it with -DOVRA_WITH_VTK=ON")
            .arg(fileName, purpose));
}

} // namespace

HostModule::HostModule(const QString& fileName, const QString& purpose)
    : library_(pathOf(fileName, purpose))
{
}

QFunctionPointer HostModule::resolve(const char* name)
{
    const QFunctionPointer found = library_.resolve(name);
    if (!found) {
        throw ToolError(
            ExitCode::Usage,
            QStringLiteral("cannot load %1: %2").arg(library_.fileName(), library_.errorString()));
    }
    return found;
}

} // namespace Ovra::GeoTool
