#include "PlyHeader.h"

#include "BinaryNumber.h"

#include <QHash>
#include <QString>

namespace Ovra::GeoTool
{

namespace
{

bool takeFormat(const QList<QByteArray>& words, PlyHeader& header)
{
    using Form = PolygonFile::Form;
    static const QHash<QByteArray, Form> forms{{"ascii", Form::Text},
                                               {"binary_little_endian", Form::LittleEndian},
                                               {"binary_big_endian", Form::BigEndian}};
    header.form = forms.value(words.value(1), Form::Text);
    return forms.contains(words.value(1));
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
    const QByteArray& type = words.at(isList ? 3 : 1);
    const QByteArray countType = isList ? words.at(2) : QByteArray();
    header.elements.last().properties.append({words.last(), type, countType});
    return BinaryNumber::sizeOf(type) > 0 &&
           (!isList || (BinaryNumber::sizeOf(countType) > 0 && !BinaryNumber::isReal(countType)));
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
    static const QList<QByteArray> comments{"comment", "obj_info", ""};
    return comments.contains(words.first());
}

} // namespace

PlyHeader PlyHeader::of(PolygonFile& file)
{
    PlyHeader header;
    if (file.readLine() != "ply") {
        file.fail(QStringLiteral("not a polygon file: it does not begin with ply"));
    }
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        if (line == "end_header") {
            return header;
        }
        if (!takeLine(line, header)) {
            file.fail(
                QStringLiteral("\"%1\" is not understood").arg(QString::fromUtf8(line.left(40))));
        }
    }
    file.cutOff(QStringLiteral("there is no end_header"));
}

} // namespace Ovra::GeoTool
