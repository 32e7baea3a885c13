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

QString pathOf(const QString& fileName, const QString& purpose, const QString& option)
{
    for (const QString& place : places()) {
        if (QFileInfo::exists(place + fileName)) {
            return place + fileName;
        }
    }
    throw ToolError(ExitCode::Usage,
                    QStringLiteral("this ovrageo has no %1, which %2; build it with -D%3=ON")
                        .arg(fileName, purpose, option));
}

} // namespace

HostModule::HostModule(const QString& fileName, const QString& purpose, const QString& option)
    : library_(pathOf(fileName, purpose, option))
{
}

ModuleLoading HostModule::load()
{
    loading_ = std::async(std::launch::async | std::launch::deferred, [this] { library_.load(); });
    return ModuleLoading(loading_);
}

QFunctionPointer HostModule::resolve(const char* name)
{
    if (loading_.valid()) {
        loading_.wait(); // the thread is gone then, which a copy of this process would lack
    }
    const QFunctionPointer found = library_.resolve(name);
    if (!found) {
        throw ToolError(
            ExitCode::Usage,
            QStringLiteral("cannot load %1: %2").arg(library_.fileName(), library_.errorString()));
    }
    return found;
}

} // namespace Ovra::GeoTool
