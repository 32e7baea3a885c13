#include "UnknownNode.h"

#include <QByteArray>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace Ovra::GeoTool
{

namespace
{

/// \brief The keyword with which the elements begin, in the formats that Gmsh reads.
QByteArray sectionBegunBy(const QByteArray& line)
{
    static const std::array<const char*, 3> keywords = {"$Elements", "$ELM", "CELLS"};
    const QByteArray first = line.split(' ').first();
    const bool known = std::find(keywords.begin(), keywords.end(), first) != keywords.end();
    return known ? first : QByteArray();
}

/// \brief Whether a line of elements names a node; what stands first is the element's own number.
bool names(const QByteArray& line, const QByteArray& node)
{
    return line.split(' ').indexOf(node, 1) >= 0;
}

QString placeOf(const QByteArray& node, const QString& path)
{
    QFile file(path);
    QByteArray section;
    if (!file.open(QIODevice::ReadOnly)) {
        return QString();
    }
    for (int number = 1; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine().simplified();
        const QByteArray begun = sectionBegunBy(line);
        section = begun.isEmpty() ? section : begun;
        if (begun.isEmpty() && !section.isEmpty() && names(line, node)) {
            return QStringLiteral("line %1, %2: ").arg(number).arg(QString::fromLatin1(section));
        }
    }
    return QString();
}

} // namespace

QString UnknownNode::explained(const QString& text, const QString& path)
{
    static const QRegularExpression remark(
        QStringLiteral("(?:Wrong node index|Unknown node) (\\d+).*$"));
    const QRegularExpressionMatch match = remark.match(text);
    if (!match.hasMatch()) {
        return text;
    }
    const QString node = match.captured(1);
    return text.left(match.capturedStart()) +
           QStringLiteral(
               "%1an element names node %2, which the file does not have; it is damaged, "
               "or was put together from files whose nodes are numbered apart")
               .arg(placeOf(node.toLatin1(), path), node);
}

} // namespace Ovra::GeoTool
