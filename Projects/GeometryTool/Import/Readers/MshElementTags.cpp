#include "MshElementTags.h"

#include <QFile>
#include <QList>

#include <algorithm>
#include <array>
#include <cstring>
#include <gmsh.h>
#include <map>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

struct Kind
{
    int dimension = -1; ///< -1 where Gmsh has no such kind
    int nodes = 0;
};

Kind kindOf(int gmshType)
{
    Kind kind;
    try {
        std::string name;
        std::vector<double> local;
        int order = 0;
        int corners = 0;
        gmsh::model::mesh::getElementProperties(gmshType, name, kind.dimension, order, kind.nodes,
                                                local, corners);
    } catch (...) {
        return Kind();
    }
    return kind;
}

/// \brief Gives numbers to what has none, by dimension and physical group.
class Numbering
{
public:
    const Kind& kind(int gmshType)
    {
        const auto found = kinds_.find(gmshType);
        return found != kinds_.end() ? found->second
                                     : kinds_.emplace(gmshType, kindOf(gmshType)).first->second;
    }

    void note(int gmshType, int elementary)
    {
        int& highest = highest_[kind(gmshType).dimension];
        highest = std::max(highest, elementary);
        missing_ = missing_ || elementary <= 0;
    }

    bool isAnyMissing() const { return missing_; }

    void complete(int gmshType, int& physical, int& elementary)
    {
        const int dimension = kind(gmshType).dimension;
        if (elementary > 0 || dimension < 0) {
            return;
        }
        physical = std::max(physical, 0);
        int& number = numbers_[{dimension, physical}];
        number = number > 0 ? number : ++highest_[dimension];
        elementary = number;
    }

private:
    std::map<int, Kind> kinds_;
    std::map<int, int> highest_;
    std::map<std::pair<int, int>, int> numbers_;
    bool missing_ = false;
};

/// \brief Steps behind the next line break.
qsizetype behindLine(const QByteArray& content, qsizetype position)
{
    const qsizetype end = content.indexOf('\n', position);
    return end < 0 ? content.size() : end + 1;
}

/// \brief Where the first line after the count of elements begins; -1 without such a section.
qsizetype firstElement(const QByteArray& content, const char* section)
{
    const qsizetype found = content.indexOf(section);
    return found < 0 ? -1 : behindLine(content, behindLine(content, found + 1));
}

/// \brief The line of an element: number, kind, tags, nodes.
class TextElement
{
public:
    TextElement(const QByteArray& line, bool counted)
        : fields_(line.simplified().split(' '))
        , counted_(counted)
    {
    }

    bool isElement() const { return fields_.size() > (counted_ ? 3 : 4); }
    int type() const { return fields_.at(1).toInt(); }

    int tag(qsizetype index) const
    {
        return index < tagCount() ? fields_.at(first() + index).toInt() : 0;
    }

    /// \brief Puts these two in place of all, partitions too, which have no meaning here.
    void setTags(int physical, int elementary)
    {
        const qsizetype nodes = first() + tagCount();
        const QByteArray tags = QByteArray::number(physical) + ' ' + QByteArray::number(elementary);
        fields_ = fields_.mid(0, 2) + (counted_ ? QList<QByteArray>{"2"} : QList<QByteArray>()) +
                  tags.split(' ') + fields_.mid(nodes);
    }

    QByteArray line() const { return fields_.join(' ') + '\n'; }

private:
    qsizetype first() const { return counted_ ? 3 : 2; }
    qsizetype tagCount() const
    {
        return counted_ ? std::clamp<qsizetype>(fields_.at(2).toInt(), 0, fields_.size() - 3) : 2;
    }

    QList<QByteArray> fields_;
    bool counted_ = true; ///< the number of tags stands ahead of them
};

/// \brief Calls \p take with each element of the section that begins at \p start; where it ends.
template <typename Take>
qsizetype forEachElement(const QByteArray& content, qsizetype start, bool counted, const Take& take)
{
    qsizetype position = start;
    while (position < content.size() && content.at(position) != '$') {
        const qsizetype next = behindLine(content, position);
        TextElement element(content.mid(position, next - position), counted);
        if (element.isElement()) {
            take(element);
        }
        position = next;
    }
    return position;
}

std::optional<QByteArray> completedText(const QByteArray& content, bool counted)
{
    const qsizetype start = firstElement(content, counted ? "\n$Elements" : "\n$ELM");
    if (start < 0) {
        return std::nullopt;
    }
    Numbering numbering;
    forEachElement(content, start, counted, [&numbering](const TextElement& element) {
        numbering.note(element.type(), element.tag(1));
    });
    if (!numbering.isAnyMissing()) {
        return std::nullopt;
    }
    QByteArray result = content.left(start);
    const qsizetype end =
        forEachElement(content, start, counted, [&numbering, &result](TextElement& element) {
            int physical = element.tag(0);
            int elementary = element.tag(1);
            numbering.complete(element.type(), physical, elementary);
            element.setTags(physical, elementary);
            result += element.line();
        });
    return result + content.mid(end);
}

int integerAt(const QByteArray& content, qsizetype position)
{
    int value = 0;
    if (position >= 0 && position + qsizetype(sizeof value) <= content.size()) {
        std::memcpy(&value, content.constData() + position, sizeof value);
    }
    return value;
}

struct BinaryElement
{
    int type = 0;
    qsizetype tags = 0; ///< place of the physical group, which the elementary tag follows
};

/// \brief All elements of a binary file; empty where one has no place for tags or the file breaks
/// off.
std::vector<BinaryElement> binaryElements(const QByteArray& content, Numbering& numbering)
{
    constexpr qsizetype size = sizeof(int);
    const qsizetype start = firstElement(content, "\n$Elements");
    const qsizetype countAt =
        start < 0 ? 0 : behindLine(content, content.indexOf("\n$Elements") + 1);
    const qint64 count = content.mid(countAt, start - countAt).trimmed().toLongLong();
    std::vector<BinaryElement> elements;
    qsizetype position = start;
    while (start >= 0 && static_cast<qint64>(elements.size()) < count) {
        const int type = integerAt(content, position);
        const int inBlock = integerAt(content, position + size);
        const int tags = integerAt(content, position + 2 * size);
        const qsizetype length = (1 + tags + numbering.kind(type).nodes) * size;
        position += 3 * size;
        if (inBlock < 1 || tags < 2 || numbering.kind(type).dimension < 0 ||
            inBlock > (content.size() - position) / length) {
            return {};
        }
        for (int i = 0; i < inBlock; ++i, position += length) {
            elements.push_back({type, position + size});
        }
    }
    return elements;
}

std::optional<QByteArray> completedBinary(const QByteArray& content)
{
    Numbering numbering;
    const std::vector<BinaryElement> elements = binaryElements(content, numbering);
    constexpr qsizetype size = sizeof(int);
    for (const BinaryElement& element : elements) {
        numbering.note(element.type, integerAt(content, element.tags + size));
    }
    if (!numbering.isAnyMissing()) {
        return std::nullopt;
    }
    QByteArray result = content;
    for (const BinaryElement& element : elements) {
        std::array<int, 2> tags{integerAt(content, element.tags),
                                integerAt(content, element.tags + size)};
        numbering.complete(element.type, tags[0], tags[1]);
        std::memcpy(result.data() + element.tags, tags.data(), sizeof tags);
    }
    return result;
}

} // namespace

std::optional<QByteArray> MshElementTags::completed(QFile& file)
{
    constexpr qint64 enough = 4096; // comments may go ahead
    const QByteArray head = file.peek(enough);
    const qsizetype format = head.indexOf("$MeshFormat");
    if (format < 0) {
        return completedText(file.readAll(), false);
    }
    const qsizetype line = behindLine(head, format);
    const QList<QByteArray> fields =
        head.mid(line, behindLine(head, line) - line).simplified().split(' ');
    if (fields.first().toDouble() >= 3) {
        return std::nullopt;
    }
    return fields.value(1) == "1" ? completedBinary(file.readAll())
                                  : completedText(file.readAll(), true);
}

} // namespace Ovra::GeoTool
