#include "UnknownNode.h"

#include <QByteArrayList>
#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <array>
#include <cctype>

namespace Ovra::GeoTool
{

namespace
{

/// \brief Tells the lines of a section of elements apart, in the formats that Gmsh reads.
class ElementLines
{
public:
    /// \brief The keyword of the section that is open; empty if it is of something else.
    QByteArray keyword() const { return keyword_; }

    /// \brief The nodes that the next line of the file names; none if it is not one of elements.
    QByteArrayList nodesOf(const QByteArrayList& words);

private:
    void open(const QByteArray& keyword);
    QByteArrayList nodesOfMsh2(const QByteArrayList& words) const;
    QByteArrayList nodesOfMsh4(const QByteArrayList& words);
    QByteArrayList nodesOfVtk(const QByteArrayList& words);

    QByteArray keyword_;
    bool isHeaderRead_ = false;
    bool hasBlocks_ = false;
    qint64 left_ = 0; ///< elements of the block, or nodes of the cell, that are still to come
};

void ElementLines::open(const QByteArray& keyword)
{
    static const std::array<const char*, 3> keywords = {"$Elements", "$ELM", "CELLS"};
    const bool known = std::find(keywords.begin(), keywords.end(), keyword) != keywords.end();
    *this = ElementLines();
    keyword_ = known ? keyword : QByteArray();
    isHeaderRead_ = keyword_ == "CELLS"; // it stands beside the keyword
}

QByteArrayList ElementLines::nodesOf(const QByteArrayList& words)
{
    constexpr qsizetype beforeNodesOfMsh1 = 5;
    const QByteArray& first = words.first();
    if (first.startsWith('$') || (!first.isEmpty() && std::isupper(first.front()) != 0)) {
        open(first);
        return {};
    }
    if (keyword_.isEmpty() || first.isEmpty()) {
        return {};
    }
    if (!isHeaderRead_) {
        isHeaderRead_ = true;
        hasBlocks_ = words.size() > 1;
        return {};
    }
    if (keyword_ == "CELLS") {
        return nodesOfVtk(words);
    }
    return keyword_ == "$ELM" ? words.mid(beforeNodesOfMsh1)
                              : (hasBlocks_ ? nodesOfMsh4(words) : nodesOfMsh2(words));
}

/// \brief Behind number, type, and as many tags as the third word tells.
QByteArrayList ElementLines::nodesOfMsh2(const QByteArrayList& words) const
{
    constexpr qsizetype beforeTags = 3;
    return words.mid(beforeTags + qMax(0, words.value(beforeTags - 1).toInt()));
}

/// \brief Behind the number; the last word of a block's header counts its elements.
QByteArrayList ElementLines::nodesOfMsh4(const QByteArrayList& words)
{
    if (left_ == 0) {
        left_ = qMax(Q_INT64_C(0), words.last().toLongLong());
        return {};
    }
    --left_;
    return words.mid(1);
}

/// \brief Each cell counts its nodes ahead of them, and line breaks mean nothing.
QByteArrayList ElementLines::nodesOfVtk(const QByteArrayList& words)
{
    QByteArrayList nodes;
    for (const QByteArray& word : words) {
        if (left_ == 0) {
            left_ = qMax(Q_INT64_C(0), word.toLongLong());
        } else {
            --left_;
            nodes.append(word);
        }
    }
    return nodes;
}

QString placeOf(const QByteArray& node, const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return QString();
    }
    ElementLines lines;
    for (int number = 1; !file.atEnd(); ++number) {
        if (lines.nodesOf(file.readLine().simplified().split(' ')).contains(node)) {
            return QStringLiteral("line %1, %2: ")
                .arg(number)
                .arg(QString::fromLatin1(lines.keyword()));
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
