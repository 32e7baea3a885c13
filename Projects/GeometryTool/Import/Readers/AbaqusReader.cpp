#include "AbaqusReader.h"

#include "ToolError.h"

#include <QFile>
#include <QSet>

#include <algorithm>
#include <gmsh.h>
#include <map>

namespace Ovra::GeoTool
{

namespace
{

struct TypeFamily
{
    const char* prefix;
    int dimension;
};

// Longer prefixes stand first where one begins with another.
const TypeFamily Families[] = {{"SFM3D", 2}, {"STRI", 2}, {"DC3D", 3}, {"AC3D", 3}, {"FC3D", 3},
                               {"DC2D", 2},  {"AC2D", 2}, {"C3D", 3},  {"CPS", 2},  {"CPE", 2},
                               {"CAX", 2},   {"M3D", 2},  {"R3D", 2},  {"T2D", 1},  {"T3D", 1},
                               {"DS", 2},    {"B2", 1},   {"B3", 1},   {"S", 2}};

int gmshTypeOf(int dimension, int nodeCount)
{
    static const QHash<std::pair<int, int>, int> types{
        {{1, 2}, 1},  {{1, 3}, 8},   {{2, 3}, 2},   {{2, 4}, 3},   {{2, 6}, 9},
        {{2, 8}, 16}, {{2, 9}, 10},  {{3, 4}, 4},   {{3, 5}, 7},   {{3, 6}, 6},
        {{3, 8}, 5},  {{3, 10}, 11}, {{3, 13}, 19}, {{3, 15}, 18}, {{3, 20}, 17}};
    return types.value({dimension, nodeCount}, 0);
}

int leadingNumber(const QByteArray& text)
{
    qsizetype end = 0;
    while (end < text.size() && text.at(end) >= '0' && text.at(end) <= '9') {
        ++end;
    }
    return text.left(end).toInt();
}

int nodeCountOf(const QByteArray& prefix, int number)
{
    if (prefix == "B2" || prefix == "B3") {
        return number + 1; // names the order of the beam
    }
    return prefix == "STRI" && number == 65 ? 6 : number;
}

/// \brief Dimension and number of nodes of an element type such as "C3D8R"; 0, 0 if unknown.
std::pair<int, int> kindOf(const QByteArray& type)
{
    for (const TypeFamily& family : Families) {
        const QByteArray prefix(family.prefix);
        if (!type.startsWith(prefix)) {
            continue;
        }
        const int count = nodeCountOf(prefix, leadingNumber(type.mid(prefix.size())));
        if (gmshTypeOf(family.dimension, count) != 0) {
            return {family.dimension, count};
        }
    }
    return {0, 0};
}

QList<QByteArray> split(const QByteArray& line)
{
    QList<QByteArray> fields = line.split(',');
    for (QByteArray& field : fields) {
        field = field.trimmed();
    }
    while (!fields.isEmpty() && fields.last().isEmpty()) {
        fields.removeLast();
    }
    return fields;
}

} // namespace

AbaqusReader::AbaqusReader(const QString& path)
    : path_(path)
{
}

void AbaqusReader::read()
{
    parse();
    requireKnownTypes();
    if (elements_.empty()) {
        fail(QStringLiteral("the file ends without any *ELEMENT data"));
    }
    requireKnownNodes();
    putEndsFirst();
    enterSets();
    makeEntities();
}

void AbaqusReader::parse()
{
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly)) {
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("%1: %2").arg(path_, file.errorString()));
    }
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        ++line_;
        if (line.startsWith("**") || line.isEmpty()) {
            continue;
        }
        if (line.startsWith('*')) {
            beginKeyword(line);
        } else {
            takeData(line);
        }
    }
    requireWholeElement();
}

void AbaqusReader::beginKeyword(const QByteArray& line)
{
    requireWholeElement();
    QList<QByteArray> fields = split(line.mid(1));
    keyword_ = fields.isEmpty() ? QByteArray() : fields.takeFirst().toUpper();
    parameters_.clear();
    for (const QByteArray& field : fields) {
        const qsizetype equals = field.indexOf('=');
        const QByteArray value = equals < 0 ? QByteArray() : field.mid(equals + 1).trimmed();
        parameters_.insert(field.left(equals < 0 ? field.size() : equals).trimmed().toUpper(),
                           value);
    }
    if (keyword_ == "INCLUDE") {
        fail(QStringLiteral("*INCLUDE is not followed; put the files together first"));
    }
    if (keyword_ == "ELEMENT") {
        beginElements();
    }
    if (keyword_ == "ELSET") {
        beginSet();
    }
}

void AbaqusReader::beginElements()
{
    const QByteArray type = parameters_.value("TYPE").toUpper();
    if (type.isEmpty()) {
        fail(QStringLiteral("*ELEMENT without TYPE"));
    }
    const auto [dimension, count] = kindOf(type);
    nodesOfType_ = static_cast<std::size_t>(count);
    pattern_ = Element();
    pattern_.dimension = dimension;
    pattern_.gmshType = gmshTypeOf(dimension, count);
    const QByteArray set = parameters_.value("ELSET");
    if (set.isEmpty()) {
        return;
    }
    pattern_.sets.append(set);
    if (!elementSetNames_.contains(set)) {
        elementSetNames_.append(set);
    }
}

void AbaqusReader::beginSet()
{
    const QByteArray name = parameters_.value("ELSET");
    if (name.isEmpty()) {
        fail(QStringLiteral("*ELSET without a name"));
    }
    if (!setNames_.contains(name)) {
        setNames_.append(name);
    }
}

void AbaqusReader::takeData(const QByteArray& line)
{
    if (keyword_.isEmpty()) {
        fail(QStringLiteral("data ahead of the first keyword; not an Abaqus input file"));
    }
    const QList<QByteArray> fields = split(line);
    if (keyword_ == "NODE") {
        takeNode(fields);
    } else if (keyword_ == "ELEMENT") {
        takeElement(fields);
    } else if (keyword_ == "ELSET") {
        takeSetMembers(fields);
    }
}

void AbaqusReader::takeNode(const QList<QByteArray>& fields)
{
    if (fields.size() < 3) {
        fail(QStringLiteral("a node needs a number and coordinates"));
    }
    nodeNumbers_.push_back(number(fields.at(0)));
    for (qsizetype i = 1; i <= 3; ++i) {
        coordinates_.push_back(i < fields.size() ? real(fields.at(i)) : 0.0);
    }
}

void AbaqusReader::takeElement(const QList<QByteArray>& fields)
{
    if (nodesOfType_ == 0) {
        ++unknownTypes_[parameters_.value("TYPE").toUpper()];
        return;
    }
    qsizetype first = 0;
    if (elements_.empty() || elements_.back().nodes.size() >= nodesOfType_ ||
        elements_.back().gmshType != pattern_.gmshType) {
        elements_.push_back(pattern_);
        elements_.back().number = number(fields.value(0));
        if (positions_.contains(elements_.back().number)) {
            fail(QStringLiteral("element %1 is there twice").arg(elements_.back().number));
        }
        positions_.insert(elements_.back().number, elements_.size() - 1);
        first = 1;
    }
    std::vector<std::size_t>& nodes = elements_.back().nodes;
    for (qsizetype i = first; i < fields.size(); ++i) {
        nodes.push_back(number(fields.at(i)));
    }
    if (nodes.size() > nodesOfType_) {
        fail(QStringLiteral("element %1 has more than %2 nodes")
                 .arg(elements_.back().number)
                 .arg(nodesOfType_));
    }
}

void AbaqusReader::takeSetMembers(const QList<QByteArray>& fields)
{
    QList<std::size_t>& members = setMembers_[parameters_.value("ELSET")];
    if (parameters_.contains("GENERATE")) {
        const std::size_t step = fields.size() > 2 ? number(fields.at(2)) : 1;
        const std::size_t last = number(fields.value(1));
        for (std::size_t n = number(fields.value(0)); n <= last; n += step) {
            members.append(n);
        }
        return;
    }
    for (const QByteArray& field : fields) {
        if (setMembers_.contains(field)) {
            members.append(QList<std::size_t>(setMembers_.value(field)));
        } else {
            members.append(number(field));
        }
    }
}

/// \brief From the order of nodes along a line to ends first, as Gmsh has it.
void AbaqusReader::putEndsFirst()
{
    constexpr int quadraticLine = 8;
    for (Element& element : elements_) {
        if (element.gmshType == quadraticLine) {
            std::swap(element.nodes[1], element.nodes[2]);
        }
    }
}

void AbaqusReader::requireWholeElement() const
{
    if (keyword_ == "ELEMENT" && nodesOfType_ > 0 && !elements_.empty() &&
        elements_.back().nodes.size() < nodesOfType_) {
        fail(QStringLiteral("element %1 has %2 nodes where its type has %3")
                 .arg(elements_.back().number)
                 .arg(elements_.back().nodes.size())
                 .arg(nodesOfType_));
    }
}

std::size_t AbaqusReader::number(const QByteArray& field) const
{
    bool ok = false;
    const qulonglong value = field.toULongLong(&ok);
    constexpr qulonglong highest = 2147483647;
    if (!ok || value == 0 || value > highest) {
        fail(QStringLiteral("'%1' is no number of a node or element")
                 .arg(QString::fromLatin1(field)));
    }
    return static_cast<std::size_t>(value);
}

double AbaqusReader::real(const QByteArray& field) const
{
    bool ok = false;
    const double value = field.isEmpty() ? 0.0 : QByteArray(field).replace('D', 'E').toDouble(&ok);
    if (!ok && !field.isEmpty()) {
        fail(QStringLiteral("'%1' is no coordinate").arg(QString::fromLatin1(field)));
    }
    return value;
}

void AbaqusReader::fail(const QString& what) const
{
    throw ToolError(ExitCode::InputDamaged,
                    QStringLiteral("%1: line %2: %3").arg(path_).arg(line_).arg(what));
}

void AbaqusReader::requireKnownTypes() const
{
    QStringList counts;
    for (auto it = unknownTypes_.cbegin(); it != unknownTypes_.cend(); ++it) {
        counts.append(
            QStringLiteral("%1 of type %2").arg(it.value()).arg(QString::fromLatin1(it.key())));
    }
    if (!counts.isEmpty()) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: elements of kinds that cannot be imported: %2")
                            .arg(path_, counts.join(QStringLiteral(", "))));
    }
}

void AbaqusReader::requireKnownNodes() const
{
    const QSet<std::size_t> known(nodeNumbers_.cbegin(), nodeNumbers_.cend());
    if (static_cast<std::size_t>(known.size()) != nodeNumbers_.size()) {
        throw ToolError(ExitCode::InputDamaged,
                        QStringLiteral("%1: node numbers occur twice; a file of several parts must "
                                       "be numbered through")
                            .arg(path_));
    }
    for (const Element& element : elements_) {
        for (const std::size_t node : element.nodes) {
            if (!known.contains(node)) {
                throw ToolError(ExitCode::InputDamaged,
                                QStringLiteral("%1: element %2 names node %3, which does not exist")
                                    .arg(path_)
                                    .arg(element.number)
                                    .arg(node));
            }
        }
    }
}

void AbaqusReader::enterSets()
{
    for (const QByteArray& name : std::as_const(setNames_)) {
        for (const std::size_t member : setMembers_.value(name)) {
            const auto found = positions_.constFind(member);
            if (found == positions_.constEnd()) {
                continue; // sets may name elements that another analysis adds
            }
            QList<QByteArray>& sets = elements_[found.value()].sets;
            if (!sets.contains(name)) {
                sets.append(name);
            }
        }
    }
}

void AbaqusReader::addElements(int entity, const std::vector<const Element*>& elements)
{
    std::map<int, std::pair<std::vector<std::size_t>, std::vector<std::size_t>>> byType;
    for (const Element* element : elements) {
        auto& [numbers, nodes] = byType[element->gmshType];
        numbers.push_back(element->number);
        nodes.insert(nodes.end(), element->nodes.begin(), element->nodes.end());
    }
    for (const auto& [type, members] : byType) {
        gmsh::model::mesh::addElementsByType(entity, type, members.first, members.second);
    }
}

void AbaqusReader::makeEntities() const
{
    std::map<std::pair<int, QList<QByteArray>>, std::vector<const Element*>> parts;
    std::vector<std::pair<int, QList<QByteArray>>> order;
    for (const Element& element : elements_) {
        auto& part = parts[{element.dimension, element.sets}];
        if (part.empty()) {
            order.emplace_back(element.dimension, element.sets);
        }
        part.push_back(&element);
    }
    Groups groups;
    bool first = true;
    for (const auto& key : order) {
        const int tag = gmsh::model::addDiscreteEntity(key.first);
        if (first) {
            gmsh::model::mesh::addNodes(key.first, tag, nodeNumbers_, coordinates_);
        }
        first = false;
        for (const QByteArray& set : key.second) {
            groups[{key.first, set}].push_back(tag);
        }
        addElements(tag, parts[key]);
    }
    gmsh::model::mesh::reclassifyNodes();
    makeGroups(groups);
}

void AbaqusReader::makeGroups(const Groups& groups) const
{
    for (int dimension = 1; dimension <= 3; ++dimension) {
        QSet<QByteArray> done;
        for (const QByteArray& set : setNames_ + elementSetNames_) {
            const auto group = groups.find({dimension, set});
            if (group == groups.end() || done.contains(set)) {
                continue;
            }
            done.insert(set);
            const int tag = gmsh::model::addPhysicalGroup(dimension, group->second);
            gmsh::model::setPhysicalName(dimension, tag, set.toStdString());
        }
    }
}

} // namespace Ovra::GeoTool
