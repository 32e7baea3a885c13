#include "StlCheck.h"

#include "FileTail.h"
#include "InputDamage.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

namespace Ovra::GeoTool
{

bool StlCheck::isBinary(QFile& file)
{
    constexpr qint64 headerSize = 84;
    constexpr qint64 triangleSize = 50;
    file.seek(headerSize - 4);
    const QByteArray count = file.read(4);
    file.seek(0);
    return count.size() == 4 &&
           file.size() == headerSize + triangleSize * qFromLittleEndian<quint32>(count.constData());
}

void StlCheck::check(QFile& file)
{
    if (isBinary(file)) {
        return;
    }
    if (!file.read(200).trimmed().toLower().startsWith("solid")) {
        InputDamage::cutOff(
            file, QStringLiteral("neither text nor as long as its count of triangles calls for"));
    }
    const QByteArray last = FileTail::lastLine(file).simplified().toLower();
    if (!last.startsWith("endsolid") && !last.startsWith("end solid")) {
        InputDamage::cutOff(file, QStringLiteral("there is no endsolid"));
    }
}

} // namespace Ovra::GeoTool
