#include "NastranReader.h"

#include "Counted.h"
#include "InputDamage.h"
#include "ToolError.h"

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QtNumeric>

#include <algorithm>
#include <optional>

namespace Ovra::GeoTool
{

namespace
{

struct Family
{
    int dimension;
    int type; ///< that of Gmsh, of the corners alone
    std::size_t corners;
    int curvedType; ///< that with nodes between the corners; 0 if there is none
    std::size_t curvedNodes;
};

constexpr Family Line{1, 1, 2, 0, 0};
constexpr Family Triangle{2, 2, 3, 9, 6};
constexpr Family Quadrilateral{2, 3, 4, 16, 8};

const QHash<QByteArray, Family>& families()
{
    static const QHash<QByteArray, Family> table{{"CBAR", Line},
                                                 {"CBEAM", Line},
                                                 {"CBEND", Line},
                                                 {"CONROD", Line},
                                                 {"CROD", Line},
                                                 {"CTUBE", Line},
                                                 {"CTRIA3", {2, 2, 3, 0, 0}},
                                                 {"CTRIAR", {2, 2, 3, 0, 0}},
                                                 {"CTRIA6", Triangle},
                                                 {"CQUAD4", {2, 3, 4, 0, 0}},
                                                 {"CQUADR", {2, 3, 4, 0, 0}},
                                                 {"CSHEAR", {2, 3, 4, 0, 0}},
                                                 {"CQUAD8", Quadrilateral},
                                                 {"CQUAD", {2, 3, 4, 10, 9}},
                                                 {"CTETRA", {3, 4, 4, 11, 10}},
                                                 {"CPYRAM", {3, 7, 5, 19, 13}},
                                                 {"CPENTA", {3, 6, 6, 18, 15}},
                                                 {"CHEXA", {3, 5, 8, 17, 20}}};
    return table;
}

/// \brief Whether an entry may be an element that is not known: "CBUSH", not "CEND" or "CORD2R".
bool looksLikeElement(const QByteArray& name)
{
    static const QRegularExpression form(
        QStringLiteral("^C(?!ORD|ONM|MASS|END$|REEP|LOAD|ONV|YJOIN|YSUP|YAX|YSYM|SSCHD|SET|SUPEXT|"
                       "OM|MFREE|ONCT)[A-Z]+[0-9]*[A-Z]*$"));
    return name.size() > 3 && form.match(QString::fromLatin1(name)).hasMatch();
}

/// \brief "1.5-3" and "1.5D-3" as "1.5E-3".
QByteArray withExponent(QByteArray text)
{
    text = text.toUpper().replace('D', 'E');
    const qsizetype sign = std::max(text.lastIndexOf('+'), text.lastIndexOf('-'));
    if (sign > 0 && text.at(sign - 1) != 'E') {
        text.insert(sign, 'E');
    }
    return text;
}

} // namespace

NastranReader::NastranReader(const QString& path)
    : path_(path)
    , cards_(path)
{
}

QStringList NastranReader::read()
{
    while (const std::optional<NastranCard> card = cards_.next()) {
        take(*card);
    }
    requireEnd();
    unknownKinds_.requireNone(path_);
    if (!mesh_.hasElements()) {
        InputDamage::damaged(path_, QStringLiteral("there are no elements in it, such as CTETRA"));
    }
    placeGrids();
    const QString unknown = mesh_.unknownNode();
    if (!unknown.isEmpty()) {
        InputDamage::damaged(path_, unknown);
    }
    if (halfCurved_ > 0) {
        remarks_.append(counted(
            halfCurved_,
            QStringLiteral("element with some of its nodes between corners becomes linear"),
            QStringLiteral("elements with some of their nodes between corners become linear")));
    }
    mesh_.load();
    return remarks_;
}

void NastranReader::take(const NastranCard& card)
{
    if (card.name == "GRID") {
        takeGrid(card);
    } else if (families().contains(card.name)) {
        takeElement(card);
    } else if (card.name == "CORD2R" || card.name == "CORD2C") {
        takeSystem(card);
    } else if (card.name == "GRDSET") {
        requireNoDefault(card);
    } else if (card.name == "INCLUDE" || card.name.startsWith("INCLUDE ")) {
        unsuitable(card.line,
                   QStringLiteral("INCLUDE is not followed; put the files together first"));
    } else if (looksLikeElement(card.name)) {
        unknownKinds_.add(QString::fromUtf8(card.name));
    }
}

void NastranReader::takeGrid(const NastranCard& card)
{
    const qint64 number = whole(card, 1, 0);
    if (number < 1 || number > NumberedMesh::HighestNumber) {
        fail(card, QStringLiteral("the number %1 is not within 1 to %2")
                       .arg(number)
                       .arg(NumberedMesh::HighestNumber));
    }
    grids_.push_back({number, whole(card, 2, 0), vector(card, 3), card.line});
}

void NastranReader::takeSystem(const NastranCard& card)
{
    systems_.add(whole(card, 1, 0), {card.name == "CORD2C",
                                     whole(card, 2, 0),
                                     {vector(card, 3), vector(card, 6), vector(card, 9)}});
}

void NastranReader::requireNoDefault(const NastranCard& card) const
{
    if (whole(card, 2, 0) != 0) {
        unsuitable(card.line, QStringLiteral("a coordinate system for all places, by GRDSET, is "
                                             "not read; give it in each GRID"));
    }
}

void NastranReader::placeGrids()
{
    for (const Grid& grid : grids_) {
        QString fault;
        const Geo::Vector place = systems_.basic(grid.system, grid.place, fault);
        if (!fault.isEmpty()) {
            unsuitable(grid.line, QStringLiteral("GRID %1: %2").arg(grid.number).arg(fault));
        }
        if (!mesh_.addNode(grid.number, {place.x(), place.y(), place.z()})) {
            InputDamage::damaged(path_,
                                 QStringLiteral("line %1: GRID %2 is there twice, at two places")
                                     .arg(grid.line)
                                     .arg(grid.number));
        }
    }
}

void NastranReader::takeElement(const NastranCard& card)
{
    const Family family = families().value(card.name);
    const bool hasProperty = card.name != "CONROD";
    const qint64 property = hasProperty ? whole(card, 2, 0) : 0;
    if (property > NumberedMesh::HighestNumber) {
        fail(card, QStringLiteral("the property %1 is beyond %2")
                       .arg(property)
                       .arg(NumberedMesh::HighestNumber));
    }
    std::vector<qint64> nodes = nodesOf(card, hasProperty ? 3 : 2, family.corners,
                                        std::max(family.corners, family.curvedNodes));
    const bool isCurved = nodes.size() == family.curvedNodes;
    halfCurved_ += !isCurved && nodes.size() > family.corners ? 1 : 0;
    nodes.resize(isCurved ? family.curvedNodes : family.corners);
    mesh_.addElement(whole(card, 1, 0), card.line,
                     {family.dimension, isCurved ? family.curvedType : family.type},
                     static_cast<int>(std::max<qint64>(property, 0)), nodes);
}

/// \brief The nodes that are given, corners first; those between them may be left out.
std::vector<qint64> NastranReader::nodesOf(const NastranCard& card, qsizetype first,
                                           std::size_t corners, std::size_t most)
{
    std::vector<qint64> nodes;
    for (std::size_t i = 0; i < most; ++i) {
        const qint64 node = whole(card, first + static_cast<qsizetype>(i), 0);
        if (node < 1 && i < corners) {
            fail(card, QStringLiteral("corner %1 of %2 is not given").arg(i + 1).arg(corners));
        }
        if (node > 0) {
            nodes.push_back(node);
        }
    }
    return nodes;
}

void NastranReader::requireEnd()
{
    if (cards_.isEnded()) {
        return;
    }
    if (!cards_.isLineEnded()) {
        InputDamage::cutOff(QFile(path_),
                            QStringLiteral("there is no ENDDATA, and its last line is not ended"));
    }
    remarks_.append(QStringLiteral("there is no ENDDATA; as its last line is ended, the file is "
                                   "taken as whole"));
}

qint64 NastranReader::whole(const NastranCard& card, qsizetype field, qint64 blank) const
{
    const QByteArray text = card.field(field);
    bool ok = false;
    const int value = text.toInt(&ok);
    if (!ok && !text.isEmpty()) {
        fail(card, QStringLiteral("field %1, \"%2\", is no whole number")
                       .arg(field + 1)
                       .arg(QString::fromUtf8(text)));
    }
    return text.isEmpty() ? blank : value;
}

double NastranReader::real(const NastranCard& card, qsizetype field) const
{
    const QByteArray text = card.field(field);
    bool ok = false;
    const double value = withExponent(text).toDouble(&ok);
    if (!text.isEmpty() && (!ok || !qIsFinite(value))) {
        fail(card, QStringLiteral("field %1, \"%2\", is no number")
                       .arg(field + 1)
                       .arg(QString::fromUtf8(text)));
    }
    return text.isEmpty() ? 0.0 : value;
}

Geo::Vector NastranReader::vector(const NastranCard& card, qsizetype field) const
{
    return {real(card, field), real(card, field + 1), real(card, field + 2)};
}

void NastranReader::unsuitable(int line, const QString& what) const
{
    throw ToolError(ExitCode::Unsuitable,
                    QStringLiteral("%1: line %2: %3").arg(path_, QString::number(line), what));
}

void NastranReader::fail(const NastranCard& card, const QString& what) const
{
    InputDamage::damaged(
        path_,
        QStringLiteral("line %1: %2: %3").arg(card.line).arg(QString::fromUtf8(card.name), what));
}

} // namespace Ovra::GeoTool
