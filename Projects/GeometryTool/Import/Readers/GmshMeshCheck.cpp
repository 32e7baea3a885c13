#include "GmshMeshCheck.h"

#include "InputDamage.h"

#include <QFile>

namespace Ovra::GeoTool
{

void GmshMeshCheck::check(QFile& file)
{
    bool found = false;
    QByteArray open;
    constexpr qint64 longestLine = 200;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(longestLine).trimmed();
        const QByteArray lower = line.toLower(); // version 1 shouts
        if (!line.startsWith('$') || lower.startsWith("$comment")) {
            continue;
        }
        found = true;
        if (open.isEmpty() && !lower.startsWith("$end")) {
            open = line.mid(1);
        } else if (lower == "$end" + open.toLower()) {
            open.clear();
        }
    }
    if (!found) {
        InputDamage::damaged(file.fileName(),
                             QStringLiteral("not a Gmsh mesh file: no section begins in it"));
    }
    if (!open.isEmpty()) {
        InputDamage::cutOff(
            file, QStringLiteral("section $%1 is not closed").arg(QString::fromLatin1(open)));
    }
}

} // namespace Ovra::GeoTool
