#include "UnknownKinds.h"

#include "ToolError.h"

#include <QStringList>

namespace Ovra::GeoTool
{

void UnknownKinds::requireNone(const QString& path) const
{
    QStringList counts;
    for (auto it = counts_.cbegin(); it != counts_.cend(); ++it) {
        counts.append(QStringLiteral("%1 of type %2").arg(it.value()).arg(it.key()));
    }
    if (!counts.isEmpty()) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: elements of kinds that cannot be imported: %2")
                            .arg(path, counts.join(QStringLiteral(", "))));
    }
}

} // namespace Ovra::GeoTool
