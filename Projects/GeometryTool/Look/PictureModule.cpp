#include "PictureModule.h"

#include "PictureData.h"
#include "ToolError.h"

namespace Ovra::GeoTool
{

PictureModule::PictureModule()
    : module_(QStringLiteral("ovrageo-picture.so"), QStringLiteral("draws pictures"),
              QStringLiteral("OVRA_WITH_VTK"))
    , loading_(module_.load())
{
}

QByteArray PictureModule::draw(const PictureData& data)
{
    PictureAnswer answer;
    module_.function<std::remove_pointer_t<DrawPicture>>("ovrageo_draw")(data, answer);
    if (!answer.error.empty()) {
        throw ToolError(
            ExitCode::InternalError,
            QStringLiteral("cannot draw a picture: %1").arg(QString::fromStdString(answer.error)));
    }
    return QByteArray::fromStdString(answer.png);
}

} // namespace Ovra::GeoTool
