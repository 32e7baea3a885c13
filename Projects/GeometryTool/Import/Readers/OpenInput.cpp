#include "OpenInput.h"

#include "ToolError.h"

#include <QFile>

namespace Ovra::GeoTool
{

void openInput(QFile& file)
{
    if (!file.open(QIODevice::ReadOnly)) {
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("%1: %2").arg(file.fileName(), file.errorString()));
    }
}

} // namespace Ovra::GeoTool
