#include "InputDamage.h"

#include "ToolError.h"

#include <QFile>

namespace Ovra::GeoTool
{

void InputDamage::damaged(const QString& path, const QString& what)
{
    throw ToolError(ExitCode::InputDamaged, QStringLiteral("%1: %2").arg(path, what));
}

void InputDamage::cutOff(const QFile& file, const QString& missing)
{
    damaged(file.fileName(),
            QStringLiteral("the file is cut off at byte %1: %2").arg(file.size()).arg(missing));
}

} // namespace Ovra::GeoTool
