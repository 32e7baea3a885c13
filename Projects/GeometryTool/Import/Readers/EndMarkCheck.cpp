#include "EndMarkCheck.h"

#include "FileTail.h"
#include "InputDamage.h"

#include <QFile>

namespace Ovra::GeoTool
{

void EndMarkCheck::step(QFile& file)
{
    if (!FileTail::bytes(file, 400).contains("END-ISO-10303-21")) {
        InputDamage::cutOff(file, QStringLiteral("there is no END-ISO-10303-21"));
    }
}

void EndMarkCheck::iges(QFile& file)
{
    const QByteArray line = FileTail::bytes(file, 400).trimmed().split('\n').last();
    constexpr qsizetype sectionColumn = 72;
    if (line.size() <= sectionColumn || line.at(sectionColumn) != 'T') {
        InputDamage::cutOff(file, QStringLiteral("there is no terminate section"));
    }
}

void EndMarkCheck::universal(QFile& file)
{
    int delimiters = 0;
    while (!file.atEnd()) {
        delimiters += file.readLine().trimmed() == "-1" ? 1 : 0;
    }
    if (delimiters == 0) {
        InputDamage::damaged(file.fileName(),
                             QStringLiteral("not a universal file: no data set begins in it"));
    }
    if (delimiters % 2 != 0) {
        InputDamage::cutOff(file, QStringLiteral("the last data set is not closed by -1"));
    }
}

void EndMarkCheck::abaqus(QFile& file)
{
    if (!FileTail::bytes(file, 1).endsWith('\n')) {
        InputDamage::cutOff(file, QStringLiteral("the last line is not ended"));
    }
}

} // namespace Ovra::GeoTool
