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

QString UnknownNode::text(const QString& element, qint64 node, const QString& owner)
{
    return QStringLiteral(
               "%1 names node %2, which %3 does not have; the file is damaged, or was put "
               "together from files whose nodes are numbered apart")
        .arg(element, QString::number(node), owner);
}

QString UnknownNode::explained(const QString& remark, const QString& path)
{
    static const QRegularExpression bare(
        QStringLiteral("(?:Wrong node index|Unknown node) (\\d+).*$"));
    const QRegularExpressionMatch match = bare.match(remark);
    if (!match.hasMatch()) {
        return remark;
    }
    const QString node = match.captured(1);
    return remark.left(match.capturedStart()) + placeOf(node.toLatin1(), path) +
           text(QStringLiteral("an element"), node.toLongLong());
}

} // namespace Ovra::GeoTool
