#include "PictureModule.h"

#include "PictureData.h"
#include "ToolError.h"

#include <QFileInfo>
#include <QLibrary>
#include <QStringList>

namespace Ovra::GeoTool
{

namespace
{

constexpr const char* fileName = "ovrageo-picture.so";

/// Where the module stands as it is built, and as it is installed.
QStringList places()
{
    const QString folder = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
    return {folder + QStringLiteral("/modules/"),
            folder + QStringLiteral("/" OVRAGEO_MODULES_FROM_BINDIR "/")};
}

QString path()
{
    for (const QString& place : places()) {
        if (QFileInfo::exists(place + QLatin1String(fileName))) {
            return place + QLatin1String(fileName);
        }
    }
    throw ToolError(ExitCode::Usage,
                    QStringLiteral("this ovrageo has no %1, which draws pictures; build it with "
                                   "-DOVRA_WITH_VTK=ON")
                        .arg(QLatin1String(fileName)));
}

} // namespace

PictureModule::PictureModule()
{
    QLibrary library(path());
    draw_ = library.resolve("ovrageo_draw");
    if (!draw_) {
        throw ToolError(
            ExitCode::Usage,
            QStringLiteral("cannot load %1: %2").arg(library.fileName(), library.errorString()));
    }
}

QByteArray PictureModule::draw(const PictureData& data) const
{
    PictureAnswer answer;
    reinterpret_cast<DrawPicture>(draw_)(data, answer);
    if (!answer.error.empty()) {
        throw ToolError(
            ExitCode::InternalError,
            QStringLiteral("cannot draw a picture: %1").arg(QString::fromStdString(answer.error)));
    }
    return QByteArray::fromStdString(answer.png);
}

} // namespace Ovra::GeoTool
