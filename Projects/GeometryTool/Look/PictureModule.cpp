#include "PictureModule.h"

#include "HostModule.h"
#include "PictureData.h"
#include "ToolError.h"

namespace Ovra::GeoTool
{

PictureModule::PictureModule()
    : draw_(HostModule(QStringLiteral("ovrageo-picture.so"), QStringLiteral("draws pictures"),
                       QStringLiteral("OVRA_WITH_VTK"))
                .function<void()>("ovrageo_draw"))
{
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
