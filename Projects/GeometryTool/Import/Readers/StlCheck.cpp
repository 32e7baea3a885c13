#include "StlCheck.h"

#include "FileTail.h"
#include "InputDamage.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

namespace Ovra::GeoTool
{

void StlCheck::check(QFile& file)
{
    const QByteArray header = file.read(84);
    constexpr qint64 headerSize = 84;
    constexpr qint64 triangleSize = 50;
    if (header.size() == headerSize) {
        const qint64 count = qFromLittleEndian<quint32>(header.constData() + 80);
        if (file.size() == headerSize + triangleSize * count) {
            return;
        }
    }
    if (!header.trimmed().startsWith("solid")) {
        InputDamage::cutOff(
            file, QStringLiteral("neither text nor as long as its count of triangles calls for"));
    }
    if (!FileTail::lastLine(file).startsWith("endsolid")) {
        InputDamage::cutOff(file, QStringLiteral("there is no endsolid"));
    }
}

} // namespace Ovra::GeoTool
