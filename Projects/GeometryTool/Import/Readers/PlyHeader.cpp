#include "PlyHeader.h"

#include "InputDamage.h"

#include <QFile>
#include <QHash>
#include <QString>

namespace Ovra::GeoTool
{

namespace
{

bool takeFormat(const QList<QByteArray>& words, PlyHeader& header)
{
    const QByteArray format = words.value(1);
    header.isText = format == "ascii";
    header.isBigEndian = format == "binary_big_endian";
    return header.isText || header.isBigEndian || format == "binary_little_endian";
}

bool takeElement(const QList<QByteArray>& words, PlyHeader& header)
{
    bool ok = false;
    const qint64 count = words.value(2).toLongLong(&ok);
    header.elements.append({words.value(1), count, {}});
    return ok && count >= 0;
}

bool takeProperty(const QList<QByteArray>& words, PlyHeader& header)
{
    const bool isList = words.value(1) == "list";
    if (header.elements.isEmpty() || words.size() != (isList ? 5 : 3)) {
        return false;
    }
    const QByteArray type = words.at(isList ? 3 : 1);
    const QByteArray countType = isList ? words.at(2) : QByteArray();
    header.elements.last().properties.append({words.last(), type, countType});
    return PlyHeader::sizeOf(type) > 0 &&
           (!isList || (PlyHeader::sizeOf(countType) > 0 && !PlyHeader::isReal(countType)));
}

bool takeLine(const QByteArray& line, PlyHeader& header)
{
    const QList<QByteArray> words = line.split(' ');
    if (words.first() == "format") {
        return takeFormat(words, header);
    }
    if (words.first() == "element") {
        return takeElement(words, header);
    }
    if (words.first() == "property") {
        return takeProperty(words, header);
    }
    return true; // a comment, with its keyword or without
}

} // namespace

PlyHeader PlyHeader::of(QFile& file)
{
    constexpr qint64 longest = 100000; // a binary file may have no line break for long
    PlyHeader header;
    if (file.readLine(longest).trimmed() != "ply") {
        InputDamage::damaged(file.fileName(),
                             QStringLiteral("not a polygon file: it does not begin with ply"));
    }
    for (int number = 2; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine(longest).simplified();
        if (line == "end_header") {
            return header;
        }
        if (!takeLine(line, header)) {
            InputDamage::damaged(file.fileName(),
                                 QStringLiteral("line %1: \"%2\" is not understood")
                                     .arg(number)
                                     .arg(QString::fromUtf8(line.left(40))));
        }
    }
    InputDamage::cutOff(file, QStringLiteral("there is no end_header"));
}

int PlyHeader::sizeOf(const QByteArray& type)
{
    static const QHash<QByteArray, int> sizes{
        {"char", 1},   {"int8", 1},    {"uchar", 1},  {"uint8", 1},  {"short", 2}, {"int16", 2},
        {"ushort", 2}, {"uint16", 2},  {"int", 4},    {"int32", 4},  {"uint", 4},  {"uint32", 4},
        {"float", 4},  {"float32", 4}, {"double", 8}, {"float64", 8}};
    return sizes.value(type, 0);
}

bool PlyHeader::isReal(const QByteArray& type)
{
    return type.startsWith("float") || type.startsWith("double");
}

} // namespace Ovra::GeoTool
