#include "BrepCheck.h"

#include "FileTail.h"
#include "InputDamage.h"

#include <QByteArray>
#include <QFile>
#include <QList>

namespace Ovra::GeoTool
{

void BrepCheck::check(QFile& file)
{
    qint64 wanted = -1;
    qint64 found = 0;
    QByteArray last;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().simplified();
        if (line.startsWith("TShapes ")) {
            wanted = line.mid(8).toLongLong();
        } else if (wanted >= 0) {
            found += line.count('*');
        }
        last = line.isEmpty() ? last : line;
    }
    if (wanted < 0) {
        InputDamage::cutOff(file, QStringLiteral("there are no TShapes"));
    }
    if (found < wanted) {
        InputDamage::cutOff(file,
                            QStringLiteral("%1 of %2 TShapes are there").arg(found).arg(wanted));
    }
    const QList<QByteArray> reference = last.split(' ');
    const bool isEnded = FileTail::bytes(file, 1).trimmed().isEmpty();
    if (reference.size() != 2 || last.contains('*') || !isEnded) {
        InputDamage::cutOff(
            file, QStringLiteral("there is no reference to the whole behind the TShapes"));
    }
}

} // namespace Ovra::GeoTool
