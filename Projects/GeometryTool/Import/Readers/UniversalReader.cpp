#include "UniversalReader.h"

#include "Counted.h"
#include "InputDamage.h"
#include "OpenInput.h"
#include "ToolError.h"
#include "UniversalElementType.h"

#include <QHash>
#include <QtNumeric>

namespace Ovra::GeoTool
{

namespace
{

const QByteArray Delimiter = "-1";

/// \brief Numbers for each member of a group, by data set; 0 if it holds none.
int groupWidth(int dataset)
{
    static const QHash<int, int> widths{{2435, 4}, {2452, 4}, {2467, 4}, {2477, 4},
                                        {2417, 2}, {2429, 2}, {2430, 2}, {2432, 2}};
    return widths.value(dataset, 0);
}

QString quoted(const QByteArray& text)
{
    return QStringLiteral("\"%1\"").arg(QString::fromUtf8(text.left(40)));
}

} // namespace

UniversalReader::UniversalReader(const QString& path)
    : file_(path)
{
}

QStringList UniversalReader::read()
{
    openInput(file_);
    parse();
    unknownKinds_.requireNone(file_.fileName());
    if (!mesh_.hasElements()) {
        InputDamage::damaged(file_.fileName(),
                             QStringLiteral("there are no elements in it, data set 2412"));
    }
    const QString unknown = mesh_.unknownNode();
    if (!unknown.isEmpty()) {
        InputDamage::damaged(file_.fileName(), unknown);
    }
    return remarks(mesh_.load());
}

void UniversalReader::parse()
{
    while (!file_.atEnd()) {
        if (line().value(0) == Delimiter && !file_.atEnd()) {
            readDataset(line().value(0).toInt());
        }
    }
}

void UniversalReader::readDataset(int number)
{
    static const QList<int> conditions{755, 756, 757, 790, 791, 792};
    static const QList<int> olderElements{71, 780};
    if (number == 15 || number == 781 || number == 2411) {
        readNodes(number == 15);
    } else if (number == 2412) {
        readElements();
    } else if (const int width = groupWidth(number); width > 0) {
        readGroups(width);
    } else if (olderElements.contains(number)) {
        throw ToolError(
            ExitCode::Unsuitable,
            QStringLiteral("%1: line %2: elements of data set %3 are not read; save "
                           "them in 2412")
                .arg(file_.fileName(), QString::number(line_), QString::number(number)));
    } else {
        const QString name = QString::number(number);
        if (conditions.contains(number) && !conditionSets_.contains(name)) {
            conditionSets_.append(name);
        }
        skip();
    }
}

void UniversalReader::readNodes(bool inOneLine)
{
    for (QList<QByteArray> record; nextRecord(record);) {
        const qint64 label = number(record.value(0));
        const QList<QByteArray> place = inOneLine ? record.mid(4) : line();
        if (place.size() < 3) {
            fail(QStringLiteral("node %1 has fewer than three coordinates").arg(label));
        }
        if (label < 1 || label > NumberedMesh::HighestNumber ||
            !mesh_.addNode(label, {real(place[0]), real(place[1]), real(place[2])})) {
            fail(QStringLiteral("the number %1 of a node is taken, or beyond 1 to %2")
                     .arg(label)
                     .arg(NumberedMesh::HighestNumber));
        }
    }
}

void UniversalReader::readElements()
{
    for (QList<QByteArray> record; nextRecord(record);) {
        if (record.size() < 6) {
            fail(QStringLiteral("the record of an element needs 6 numbers"));
        }
        readElement(record);
    }
}

void UniversalReader::readElement(const QList<QByteArray>& record)
{
    const qint64 label = number(record[0]);
    const auto descriptor = static_cast<int>(number(record[1]));
    const qint64 property = number(record[2]);
    const qint64 count = number(record[5]);
    if (property > NumberedMesh::HighestNumber) {
        fail(QStringLiteral("the property %1 is beyond %2")
                 .arg(property)
                 .arg(NumberedMesh::HighestNumber));
    }
    const std::vector<qint64> nodes = readElementNodes(descriptor, count);
    const UniversalElementType type =
        UniversalElementType::of(descriptor, static_cast<int>(nodes.size()));
    if (nodes.size() == 1) {
        ++singleNodes_;
    } else if (type.kind.dimension == 0) {
        unknownKinds_.add(QString::number(descriptor));
    } else {
        mesh_.addElement(label, line_, type.kind, static_cast<int>(qMax<qint64>(0, property)),
                         type.cornersFirst(nodes));
    }
}

std::vector<qint64> UniversalReader::readElementNodes(int descriptor, qint64 count)
{
    if (UniversalElementType::isBeam(descriptor)) {
        line();
    }
    std::vector<qint64> nodes;
    while (static_cast<qint64>(nodes.size()) < count) {
        for (const QByteArray& field : line()) {
            nodes.push_back(number(field));
        }
        if (nodes.back() == -1) {
            fail(QStringLiteral("the data set ends within the nodes of an element"));
        }
    }
    if (static_cast<qint64>(nodes.size()) != count || count < 1) {
        fail(QStringLiteral("an element has %1 where its record announces %2")
                 .arg(counted(static_cast<qint64>(nodes.size()), QStringLiteral("node")))
                 .arg(count));
    }
    return nodes;
}

void UniversalReader::readGroups(qsizetype width)
{
    for (QList<QByteArray> record; nextRecord(record);) {
        if (record.size() < 8) {
            fail(QStringLiteral("the record of a group needs 8 numbers"));
        }
        readGroup(record, width);
    }
}

void UniversalReader::readGroup(const QList<QByteArray>& record, qsizetype width)
{
    constexpr qint64 nodeCode = 7;
    constexpr qint64 elementCode = 8;
    const qint64 count = number(record[7]);
    QString name = QString::fromUtf8(line().join(' '));
    if (name.isEmpty()) {
        name = QStringLiteral("group %1").arg(QString::fromUtf8(record[0]));
    }
    for (qint64 found = 0; found < count;) {
        const QList<QByteArray> members = line();
        if (members.value(0) == Delimiter || members.size() % width != 0) {
            fail(QStringLiteral("the group \"%1\" has %2 of %3 members")
                     .arg(name, QString::number(found), QString::number(count)));
        }
        for (qsizetype i = 0; i < members.size(); i += width) {
            const qint64 code = number(members[i]);
            if (code == elementCode) {
                mesh_.addToGroup(name, number(members[i + 1]));
            } else if (code == nodeCode && !nodeGroups_.contains(name)) {
                nodeGroups_.append(name);
            }
        }
        found += members.size() / width;
    }
}

void UniversalReader::skip()
{
    for (QList<QByteArray> record; nextRecord(record);) {
    }
}

/// \brief Steps to the next line of the data set; false, behind the delimiter, at its end.
bool UniversalReader::nextRecord(QList<QByteArray>& fields)
{
    fields = line();
    return fields.size() != 1 || fields[0] != Delimiter;
}

/// \brief The words of the next line.
QList<QByteArray> UniversalReader::line()
{
    if (file_.atEnd()) {
        InputDamage::cutOff(file_, QStringLiteral("the last data set is not closed by -1"));
    }
    ++line_;
    return file_.readLine().simplified().split(' ');
}

qint64 UniversalReader::number(const QByteArray& field) const
{
    bool ok = false;
    const int value = field.toInt(&ok);
    if (!ok) {
        fail(QStringLiteral("%1 is no whole number").arg(quoted(field)));
    }
    return value;
}

double UniversalReader::real(const QByteArray& field) const
{
    bool ok = false;
    const double value = QByteArray(field).replace('D', 'E').replace('d', 'e').toDouble(&ok);
    if (!ok || !qIsFinite(value)) {
        fail(QStringLiteral("%1 is no coordinate").arg(quoted(field)));
    }
    return value;
}

QStringList UniversalReader::remarks(const QStringList& emptyGroups) const
{
    QStringList all;
    const auto list = [&all](const QString& what, const QStringList& names) {
        if (!names.isEmpty()) {
            all.append(what.arg(names.join(QStringLiteral(", "))));
        }
    };
    if (singleNodes_ > 0) {
        all.append(counted(singleNodes_, QStringLiteral("element of one node is left out"),
                           QStringLiteral("elements of one node are left out")));
    }
    list(QStringLiteral("nodes of groups are left out: %1"), nodeGroups_);
    list(QStringLiteral("groups without an element that is imported: %1"), emptyGroups);
    list(QStringLiteral("boundary conditions are left out: data sets %1"), conditionSets_);
    return all;
}

void UniversalReader::fail(const QString& what) const
{
    InputDamage::damaged(file_.fileName(), QStringLiteral("line %1: %2").arg(line_).arg(what));
}

} // namespace Ovra::GeoTool
