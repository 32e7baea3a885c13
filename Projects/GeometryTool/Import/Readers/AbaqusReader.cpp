#include "AbaqusReader.h"

#include "AbaqusEntities.h"
#include "AbaqusSetGraph.h"
#include "Counted.h"
#include "InputDamage.h"
#include "ToolError.h"
#include "UnknownNode.h"

#include <QtMath>

#include <algorithm>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

QString shown(const AbaqusLabel& name)
{
    return QLatin1Char('"') + QString::fromUtf8(name.text) + QLatin1Char('"');
}

Vector fromCylinder(const Vector& point)
{
    const double angle = qDegreesToRadians(point.y());
    return {point.x() * std::cos(angle), point.x() * std::sin(angle), point.z()};
}

/// \brief Whether a field is meant as a number; all names begin with something else.
bool isNumber(const QByteArray& field)
{
    bool ok = false;
    field.toDouble(&ok);
    return ok || field.isEmpty();
}

} // namespace

AbaqusReader::AbaqusReader(const QString& path)
    : path_(path)
    , lexer_(path)
    , bodies_(1)
{
}

QStringList AbaqusReader::read()
{
    parse();
    unknownKinds_.requireNone(path_);
    standPartsWithoutAssembly();
    const bool isEmpty = std::all_of(bodies_.begin(), bodies_.end(),
                                     [](const AbaqusPart& body) { return body.elements.empty(); });
    if (isEmpty) {
        lexer_.fail(QStringLiteral("the file ends without any *ELEMENT data"));
    }
    requireKnownNodes();
    const AbaqusSetGraph nodeSets(bodies_, &AbaqusPart::nodeSets);
    const AbaqusSetGraph elementSets(bodies_, &AbaqusPart::elementSets);
    AbaqusEntities(bodies_, elementSets).make();
    return partsLeftOut();
}

void AbaqusReader::parse()
{
    for (;;) {
        switch (lexer_.next()) {
        case AbaqusLexer::Item::Keyword:
            beginKeyword();
            break;
        case AbaqusLexer::Item::Data:
            if (lexer_.keyword().name.isEmpty()) {
                lexer_.fail(
                    QStringLiteral("data ahead of the first keyword; not an Abaqus input file"));
            }
            if (const Action action = actionOn(lexer_.keyword().name)) {
                (this->*action)();
            }
            break;
        case AbaqusLexer::Item::End:
            requireEnd();
            return;
        }
    }
}

void AbaqusReader::beginKeyword()
{
    requireWholeElement();
    type_ = {};
    const QByteArray& name = lexer_.keyword().name;
    if (const Action action = actionAt(name)) {
        (this->*action)();
    } else if (name.endsWith("SECTION")) {
        beginSection();
    }
}

/// \brief What a keyword line asks for itself.
AbaqusReader::Action AbaqusReader::actionAt(const QByteArray& keyword)
{
    static const QHash<QByteArray, Action> actions{
        {"NODE", &AbaqusReader::beginNodes},        {"ELEMENT", &AbaqusReader::beginElements},
        {"ELSET", &AbaqusReader::beginElementSet},  {"NSET", &AbaqusReader::beginNodeSet},
        {"PART", &AbaqusReader::beginPart},         {"END PART", &AbaqusReader::endPart},
        {"INSTANCE", &AbaqusReader::beginInstance}, {"END INSTANCE", &AbaqusReader::endInstance},
        {"NGEN", &AbaqusReader::refuseKeyword},     {"NFILL", &AbaqusReader::refuseKeyword},
        {"NCOPY", &AbaqusReader::refuseKeyword},    {"NMAP", &AbaqusReader::refuseKeyword},
        {"ELGEN", &AbaqusReader::refuseKeyword},    {"ELCOPY", &AbaqusReader::refuseKeyword}};
    return actions.value(keyword, nullptr);
}

/// \brief What the data lines under a keyword ask for.
AbaqusReader::Action AbaqusReader::actionOn(const QByteArray& keyword)
{
    static const QHash<QByteArray, Action> actions{
        {"NODE", &AbaqusReader::takeNode},          {"ELEMENT", &AbaqusReader::takeElement},
        {"ELSET", &AbaqusReader::takeElementSet},   {"NSET", &AbaqusReader::takeNodeSet},
        {"INSTANCE", &AbaqusReader::takePlacement}, {"SYSTEM", &AbaqusReader::refuseKeyword}};
    return actions.value(keyword, nullptr);
}

void AbaqusReader::refuseKeyword()
{
    throw ToolError(ExitCode::Unsuitable,
                    QStringLiteral("%1: *%2 is not carried out; let the program that made the file "
                                   "write all nodes and elements one by one")
                        .arg(lexer_.where(), QString::fromLatin1(lexer_.keyword().name)));
}

void AbaqusReader::beginNodes()
{
    const QByteArray system = lexer_.keyword().value("SYSTEM").toUpper();
    if (!system.isEmpty() && system != "R" && system != "C") {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: coordinates of SYSTEM=%2 are not converted; known are "
                                       "R and C")
                            .arg(lexer_.where(), QString::fromLatin1(system)));
    }
    if (lexer_.keyword().has("NSET")) {
        part().nodeSets.named(requiredValue("NSET")).blocks.append({{}, lexer_.where(), {}, {}});
    }
}

void AbaqusReader::beginElements()
{
    const QByteArray type = requiredValue("TYPE").toUpper();
    type_ = AbaqusElementType::named(type);
    if (lexer_.keyword().has("ELSET")) {
        part()
            .elementSets.named(requiredValue("ELSET"))
            .blocks.append({{}, lexer_.where(), {}, {}});
    }
}

void AbaqusReader::beginElementSet()
{
    beginSet(part().elementSets, "ELSET");
}

void AbaqusReader::beginNodeSet()
{
    beginSet(part().nodeSets, "NSET");
}

void AbaqusReader::beginSet(AbaqusSets& sets, const QByteArray& parameter)
{
    AbaqusSets::Set& set = sets.named(requiredValue(parameter));
    set.isListed = true;
    set.isInternal = lexer_.keyword().has("INTERNAL");
    set.blocks.append({lexer_.keyword().value("INSTANCE"), lexer_.where(), {}, {}});
}

void AbaqusReader::beginPart()
{
    requireOutside();
    const AbaqusLabel name = AbaqusLabel::of(requiredValue("NAME"));
    if (partByKey_.contains(name.key)) {
        lexer_.fail(QStringLiteral("the part %1 is there twice").arg(shown(name)));
    }
    partByKey_.insert(name.key, static_cast<int>(parts_.size()));
    parts_.emplace_back();
    parts_.back().name = name;
    scope_ = Scope::Part;
}

void AbaqusReader::endPart()
{
    if (scope_ != Scope::Part) {
        lexer_.fail(QStringLiteral("*END PART without *PART"));
    }
    scope_ = Scope::Model;
}

void AbaqusReader::beginInstance()
{
    requireOutside();
    const AbaqusLabel name = AbaqusLabel::of(requiredValue("NAME"));
    const AbaqusLabel of = AbaqusLabel::of(requiredValue("PART"));
    if (!partByKey_.contains(of.key)) {
        lexer_.fail(QStringLiteral("there is no part %1 ahead of its instance").arg(shown(of)));
    }
    for (const AbaqusPart& body : bodies_) {
        if (body.name.key == name.key) {
            lexer_.fail(QStringLiteral("the instance %1 is there twice").arg(shown(name)));
        }
    }
    ++instancesOf_[of.key];
    bodies_.push_back(parts_[static_cast<std::size_t>(partByKey_.value(of.key))]);
    bodies_.back().name = name;
    placement_ = {};
    placementLines_ = 0;
    scope_ = Scope::Instance;
}

void AbaqusReader::endInstance()
{
    if (scope_ != Scope::Instance) {
        lexer_.fail(QStringLiteral("*END INSTANCE without *INSTANCE"));
    }
    part().place(placement_);
    scope_ = Scope::Model;
}

void AbaqusReader::beginSection()
{
    const AbaqusKeyword& keyword = lexer_.keyword();
    if (!keyword.has("ELSET") || !keyword.has("MATERIAL")) {
        return;
    }
    part().sections.append(
        {{requiredValue("ELSET"), lexer_.where()}, AbaqusLabel::of(requiredValue("MATERIAL"))});
}

void AbaqusReader::takeNode()
{
    const QList<QByteArray>& fields = lexer_.fields();
    if (fields.size() < 3) {
        lexer_.fail(QStringLiteral("a node needs a number and coordinates"));
    }
    const int node = number(fields.at(0));
    const bool isCylinder = lexer_.keyword().value("SYSTEM").toUpper() == "C";
    const Vector point = vectorAt(1);
    if (!part().addNode(node, isCylinder ? fromCylinder(point) : point)) {
        lexer_.fail(QStringLiteral("node %1 is there twice, at different places").arg(node));
    }
    if (lexer_.keyword().has("NSET")) {
        AbaqusSets::addNumber(part().nodeSets.named(lexer_.keyword().value("NSET")).blocks.last(),
                              node);
    }
}

void AbaqusReader::takeElement()
{
    if (type_.nodeCount == 0) {
        unknownKinds_.add(QString::fromUtf8(lexer_.keyword().value("TYPE").toUpper()));
        return;
    }
    const QList<QByteArray>& fields = lexer_.fields();
    AbaqusPart& owner = part();
    const bool isNew = owner.missingNodes() == 0;
    if (isNew) {
        const int element = number(fields.value(0));
        if (!owner.addElement(element, type_, lexer_.line())) {
            lexer_.fail(QStringLiteral("element %1 is there twice").arg(element));
        }
        if (lexer_.keyword().has("ELSET")) {
            AbaqusSets::addNumber(
                owner.elementSets.named(lexer_.keyword().value("ELSET")).blocks.last(), element);
        }
    }
    for (qsizetype i = isNew ? 1 : 0; i < fields.size(); ++i) {
        owner.elementNodes.push_back(number(fields.at(i)));
    }
    if (owner.missingNodes() < 0) {
        lexer_.fail(QStringLiteral("element %1 has more than %2")
                        .arg(owner.elements.back().number)
                        .arg(counted(type_.nodeCount, QStringLiteral("node"))));
    }
}

void AbaqusReader::takeElementSet()
{
    takeMembers(part().elementSets, "ELSET");
}

void AbaqusReader::takeNodeSet()
{
    if (!lexer_.keyword().has("ELSET")) { // else those of the elements of that set
        takeMembers(part().nodeSets, "NSET");
    }
}

void AbaqusReader::takeMembers(AbaqusSets& sets, const QByteArray& parameter)
{
    AbaqusSets::Block& block = sets.named(lexer_.keyword().value(parameter)).blocks.last();
    if (lexer_.keyword().has("GENERATE") || lexer_.keyword().has("GEN")) {
        block.ranges.push_back(generated());
        return;
    }
    for (const QByteArray& field : lexer_.fields()) {
        if (isNumber(field)) {
            AbaqusSets::addNumber(block, number(field));
        } else {
            block.references.append({field, lexer_.where()});
        }
    }
}

AbaqusSets::Range AbaqusReader::generated() const
{
    const QList<QByteArray>& fields = lexer_.fields();
    AbaqusSets::Range range;
    range.first = number(fields.value(0));
    range.last = fields.size() > 1 ? number(fields.at(1)) : range.first;
    range.step = fields.size() > 2 ? number(fields.at(2)) : 1;
    if (range.last < range.first) {
        lexer_.fail(QStringLiteral("the last number, %1, is below the first, %2")
                        .arg(range.last)
                        .arg(range.first));
    }
    return range;
}

void AbaqusReader::takePlacement()
{
    const QList<QByteArray>& fields = lexer_.fields();
    ++placementLines_;
    if (placementLines_ == 1 && fields.size() <= 3) {
        placement_.setTranslation(vectorAt(0));
        return;
    }
    constexpr qsizetype axisAndAngle = 7;
    if (placementLines_ != 2 || fields.size() != axisAndAngle) {
        lexer_.fail(QStringLiteral("an instance has a line of 3 numbers that moves it, and behind "
                                   "that one of 7 that turns it"));
    }
    if (vectorAt(0) == vectorAt(3)) {
        lexer_.fail(QStringLiteral("the two points of the axis are the same"));
    }
    placement_.setRotation(vectorAt(0), vectorAt(3), real(fields.at(6)));
}

AbaqusPart& AbaqusReader::part()
{
    return scope_ == Scope::Part       ? parts_.back()
           : scope_ == Scope::Instance ? bodies_.back()
                                       : bodies_.front();
}

/// \brief Three coordinates of a data line; what is left out counts as 0.
Vector AbaqusReader::vectorAt(qsizetype first) const
{
    const QList<QByteArray>& fields = lexer_.fields();
    return {real(fields.value(first)), real(fields.value(first + 1)),
            real(fields.value(first + 2))};
}

QByteArray AbaqusReader::requiredValue(const QByteArray& parameter) const
{
    const QByteArray value = lexer_.keyword().value(parameter);
    if (value.isEmpty()) {
        lexer_.fail(
            QStringLiteral("*%1 without %2")
                .arg(QString::fromLatin1(lexer_.keyword().name), QString::fromLatin1(parameter)));
    }
    return value;
}

void AbaqusReader::requireOutside() const
{
    if (scope_ != Scope::Model) {
        lexer_.fail(QStringLiteral("*%1 within a part or an instance, which is not ended")
                        .arg(QString::fromLatin1(lexer_.keyword().name)));
    }
}

void AbaqusReader::requireWholeElement()
{
    const int missing = part().missingNodes();
    if (missing > 0) {
        const AbaqusPart::Element& element = part().elements.back();
        lexer_.fail(QStringLiteral("element %1 has %2 where its type has %3")
                        .arg(element.number)
                        .arg(counted(element.type.nodeCount - missing, QStringLiteral("node")))
                        .arg(element.type.nodeCount));
    }
}

void AbaqusReader::requireEnd()
{
    requireWholeElement();
    if (scope_ != Scope::Model) {
        lexer_.fail(
            QStringLiteral("the file is cut off: there is no *END %1")
                .arg(scope_ == Scope::Part ? QStringLiteral("PART") : QStringLiteral("INSTANCE")));
    }
}

int AbaqusReader::number(const QByteArray& field) const
{
    bool ok = false;
    const int value = field.toInt(&ok);
    if (!ok || value <= 0) {
        lexer_.fail(QStringLiteral("\"%1\" is no number of a node or element")
                        .arg(QString::fromUtf8(field)));
    }
    return value;
}

double AbaqusReader::real(const QByteArray& field) const
{
    bool ok = false;
    const double value = field.isEmpty() ? 0.0 : QByteArray(field).replace('D', 'E').toDouble(&ok);
    if (!field.isEmpty() && (!ok || !qIsFinite(value))) {
        lexer_.fail(QStringLiteral("\"%1\" is no coordinate").arg(QString::fromUtf8(field)));
    }
    return value;
}

void AbaqusReader::requireKnownNodes() const
{
    for (const AbaqusPart& body : bodies_) {
        for (const AbaqusPart::Element& element : body.elements) {
            if (const int node = body.unknownNodeOf(element); node != 0) {
                failOnNode(body, element, node);
            }
        }
    }
}

void AbaqusReader::failOnNode(const AbaqusPart& body, const AbaqusPart::Element& element,
                              int node) const
{
    const QString name = QStringLiteral("element %1").arg(element.number);
    const QString text =
        body.name.text.isEmpty()
            ? UnknownNode::text(name, node)
            : UnknownNode::text(QStringLiteral("%1 of %2").arg(name, shown(body.name)), node,
                                shown(body.name));
    InputDamage::damaged(lexer_.where(element.line), text);
}

/// \brief Without an assembly, each part stands once where it is.
void AbaqusReader::standPartsWithoutAssembly()
{
    if (bodies_.size() > 1) {
        return;
    }
    for (const AbaqusPart& part : parts_) {
        bodies_.push_back(part);
        ++instancesOf_[part.name.key];
    }
}

QStringList AbaqusReader::partsLeftOut() const
{
    QStringList remarks;
    for (const AbaqusPart& part : parts_) {
        if (!instancesOf_.contains(part.name.key) && !part.elements.empty()) {
            remarks.append(QStringLiteral("the part %1 has no instance and is left out")
                               .arg(shown(part.name)));
        }
    }
    return remarks;
}

} // namespace Ovra::GeoTool
