#include "GmshMeshCheck.h"

#include "InputDamage.h"
#include "SectionMarks.h"

#include <QFile>
#include <QList>

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

/// \brief Gmsh runs a file that begins with anything else as a script, whatever its suffix.
void requireMeshAtStart(QFile& file)
{
    static const QList<QByteArray> beginnings{"$MeshFormat", "$NOD", "$Comments"};
    const QByteArray start = file.peek(20);
    const bool isMesh =
        std::any_of(beginnings.begin(), beginnings.end(),
                    [&start](const QByteArray& beginning) { return start.startsWith(beginning); });
    if (!isMesh) {
        InputDamage::damaged(file.fileName(),
                             QStringLiteral("not a Gmsh mesh file: it does not begin with "
                                            "$MeshFormat, $Comments or $NOD"));
    }
}

} // namespace

void GmshMeshCheck::check(QFile& file)
{
    requireMeshAtStart(file);
    QByteArray open;
    SectionMarks marks(file);
    for (QByteArray line = marks.next(); !line.isEmpty(); line = marks.next()) {
        const QByteArray lower = line.toLower(); // version 1 shouts
        if (lower.startsWith("$comment")) {
            continue;
        }
        if (open.isEmpty() && !lower.startsWith("$end")) {
            open = line.mid(1);
        } else if (lower == "$end" + open.toLower()) {
            open.clear();
        }
    }
    if (!open.isEmpty()) {
        InputDamage::cutOff(
            file, QStringLiteral("section $%1 is not closed").arg(QString::fromLatin1(open)));
    }
}

} // namespace Ovra::GeoTool
