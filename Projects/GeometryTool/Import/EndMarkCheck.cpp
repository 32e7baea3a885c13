#include "EndMarkCheck.h"

#include "FileTail.h"
#include "InputDamage.h"

#include <QFile>

namespace Ovra::GeoTool
{

namespace
{

/// \brief Whether a line of an IGES file belongs to a section.
bool isOfSection(char section, const QByteArray& line)
{
    constexpr qsizetype column = 72;
    return line.size() > column && line.at(column) == section;
}

} // namespace

void EndMarkCheck::step(QFile& file)
{
    if (!file.peek(400).trimmed().startsWith("ISO-10303-21")) {
        InputDamage::damaged(
            file.fileName(),
            QStringLiteral("not a STEP file: it does not begin with ISO-10303-21"));
    }
    if (!FileTail::bytes(file, 400).contains("END-ISO-10303-21")) {
        InputDamage::cutOff(file, QStringLiteral("there is no END-ISO-10303-21"));
    }
}

void EndMarkCheck::iges(QFile& file)
{
    if (!isOfSection('S', file.peek(400).split('\n').first())) {
        InputDamage::damaged(
            file.fileName(),
            QStringLiteral("not an IGES file: its first line has no S in column 73"));
    }
    if (!isOfSection('T', FileTail::bytes(file, 400).trimmed().split('\n').last())) {
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
