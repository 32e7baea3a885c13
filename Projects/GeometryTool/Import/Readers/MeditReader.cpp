#include "MeditReader.h"

#include "Counted.h"
#include "InputDamage.h"
#include "MeditTokens.h"
#include "OpenInput.h"

#include <QFile>
#include <QHash>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace Ovra::GeoTool
{

namespace
{

struct Form
{
    int nodes = 0;
    int gmshType = 0;
};

struct Family
{
    int dimension = 0;
    std::array<Form, 3> forms; ///< of first and of higher order
};

const QHash<QString, Family>& families()
{
    static const QHash<QString, Family> table{
        {QStringLiteral("Edges"), {1, {{{2, 1}, {3, 8}, {4, 26}}}}},
        {QStringLiteral("Triangles"), {2, {{{3, 2}, {6, 9}, {10, 21}}}}},
        {QStringLiteral("Quadrilaterals"), {2, {{{4, 3}, {8, 16}, {9, 10}}}}},
        {QStringLiteral("Tetrahedra"), {3, {{{4, 4}, {10, 11}, {20, 29}}}}},
        {QStringLiteral("Prisms"), {3, {{{6, 6}, {15, 18}, {18, 13}}}}},
        {QStringLiteral("Pentahedra"), {3, {{{6, 6}, {15, 18}, {18, 13}}}}},
        {QStringLiteral("Pyramids"), {3, {{{5, 7}, {13, 19}, {14, 14}}}}},
        {QStringLiteral("Hexahedra"), {3, {{{8, 5}, {20, 17}, {27, 12}}}}}};
    return table;
}

/// \brief "Triangles" of "TrianglesP2".
QString withoutOrder(const QString& keyword)
{
    const qsizetype order = keyword.size() - 2;
    const bool given =
        order > 0 && keyword.back().isDigit() &&
        (keyword.at(order) == QLatin1Char('P') || keyword.at(order) == QLatin1Char('Q'));
    return given ? keyword.left(order) : keyword;
}

QString quoted(std::string_view token)
{
    constexpr qsizetype longest = 40;
    return QStringLiteral("\"%1\"").arg(
        QString::fromUtf8(token.data(), static_cast<qsizetype>(token.size())).left(longest));
}

QString entries(qint64 count)
{
    return counted(count, QStringLiteral("entry"), QStringLiteral("entries"));
}

} // namespace

MeditReader::MeditReader(const QString& path)
    : path_(path)
{
}

QStringList MeditReader::read()
{
    QFile file(path_);
    openInput(file);
    const QByteArray text = file.readAll();
    MeditTokens tokens(text);
    parse(tokens);
    if (!mesh_.hasElements()) {
        InputDamage::damaged(path_, QStringLiteral("there are no elements in it"));
    }
    requireNodes();
    warnOfEnd(text);
    mesh_.load();
    return remarks_;
}

void MeditReader::parse(MeditTokens& tokens)
{
    bool first = true;
    while (!ended_) {
        const std::string_view word = tokens.next();
        const bool isKeyword = MeditTokens::isWord(word);
        if (first && (!isKeyword || !word.starts_with("MeshVersion"))) {
            InputDamage::damaged(path_, QStringLiteral("not a Medit file in text form: it does not "
                                                       "begin with MeshVersionFormatted"));
        }
        first = false;
        if (word.empty()) {
            return;
        }
        if (!isKeyword) {
            fail(tokens.line(), QStringLiteral("a keyword is expected, not %1").arg(quoted(word)));
        }
        takeKeyword(QString::fromUtf8(word.data(), static_cast<qsizetype>(word.size())), tokens);
    }
}

void MeditReader::takeKeyword(const QString& keyword, MeditTokens& tokens)
{
    if (keyword == QLatin1String("End")) {
        ended_ = true;
    } else if (keyword == QLatin1String("Dimension")) {
        takeDimension(tokens);
    } else if (keyword == QLatin1String("MeshVersionFormatted")) {
        integer(tokens);
    } else if (keyword == QLatin1String("Vertices")) {
        takeVertices(begin(keyword, tokens), tokens);
    } else if (families().contains(withoutOrder(keyword))) {
        takeElements(begin(keyword, tokens), tokens);
    } else {
        skip(keyword, tokens);
    }
}

void MeditReader::takeDimension(MeditTokens& tokens)
{
    const qint64 dimension = integer(tokens);
    if (dimension != 2 && dimension != 3) {
        fail(tokens.line(), QStringLiteral("Dimension is %1, not 2 or 3").arg(dimension));
    }
    dimension_ = static_cast<int>(dimension);
}

MeditReader::Section MeditReader::begin(const QString& keyword, MeditTokens& tokens) const
{
    const MeditTokens::Ahead ahead = tokens.ahead();
    Section section;
    section.name = keyword;
    section.line = tokens.line();
    section.isLast = ahead.isLast;
    section.count = integer(tokens);
    requireFit(section, ahead.numbers - 1);
    section.width = section.count == 0 ? 0 : (ahead.numbers - 1) / section.count;
    return section;
}

/// \brief Passes over a section; one that has no count is a keyword with a value or two.
void MeditReader::skip(const QString& keyword, MeditTokens& tokens) const
{
    const MeditTokens::Ahead ahead = tokens.ahead();
    Section section;
    section.name = keyword;
    section.line = tokens.line();
    section.isLast = ahead.isLast;
    for (qint64 i = 0; i < ahead.numbers; ++i) {
        const std::string_view token = tokens.next();
        if (i == 0) {
            std::from_chars(token.data(), token.data() + token.size(), section.count);
        }
    }
    if (ahead.isLast && section.count > 0) {
        requireFit(section, ahead.numbers - 1);
    }
}

void MeditReader::requireFit(const Section& section, qint64 numbers) const
{
    const qint64 count = section.count;
    if (count > 0 ? numbers >= count && numbers % count == 0 : count == 0 && numbers == 0) {
        return;
    }
    failSection(section, QStringLiteral("it announces %1, which its %2 not make up")
                             .arg(entries(count))
                             .arg(counted(numbers, QStringLiteral("number does"),
                                          QStringLiteral("numbers do"))));
}

void MeditReader::failWidth(const Section& section, int wanted, const char* parts) const
{
    failSection(section, QStringLiteral("an entry of it has %1 in place of %2: %3")
                             .arg(counted(section.width, QStringLiteral("number")))
                             .arg(wanted)
                             .arg(QLatin1String(parts)));
}

void MeditReader::failSection(const Section& section, const QString& what) const
{
    const QString place =
        QStringLiteral("section %1 of line %2: ").arg(section.name, QString::number(section.line));
    if (section.isLast) {
        InputDamage::cutOff(QFile(path_), place + what);
    }
    InputDamage::damaged(path_, place + what);
}

void MeditReader::takeVertices(const Section& section, MeditTokens& tokens)
{
    if (section.count > 0 && section.width != dimension_ + 1) {
        failWidth(section, dimension_ + 1, "coordinates and a reference");
    }
    for (qint64 i = 0; i < section.count; ++i) {
        std::array<double, 3> point{};
        for (int c = 0; c < dimension_; ++c) {
            point[static_cast<std::size_t>(c)] = real(tokens);
        }
        tokens.next();
        mesh_.addNode(point);
    }
}

void MeditReader::takeElements(const Section& section, MeditTokens& tokens)
{
    const Family family = families().value(withoutOrder(section.name));
    const auto form = std::find_if(family.forms.begin(), family.forms.end(), [&](const Form& each) {
        return each.nodes + 1 == section.width;
    });
    if (section.count == 0) {
        return;
    }
    if (form == family.forms.end()) {
        failWidth(section, family.forms[0].nodes + 1, "nodes and a reference");
    }
    std::vector<std::size_t> nodes(static_cast<std::size_t>(form->nodes));
    for (qint64 entry = 1; entry <= section.count; ++entry) {
        takeElement(section, entry, nodes, tokens);
        mesh_.addElement(family.dimension, reference(tokens), form->gmshType, nodes);
    }
}

void MeditReader::takeElement(const Section& section, qint64 entry, std::vector<std::size_t>& nodes,
                              MeditTokens& tokens)
{
    for (std::size_t& node : nodes) {
        const qint64 number = integer(tokens);
        if (number < 1) {
            fail(tokens.line(),
                 QStringLiteral("entry %1 of %2 names node %3; nodes are counted "
                                "from 1")
                     .arg(QString::number(entry), section.name, QString::number(number)));
        }
        if (number > highest_.node) {
            highest_ = {number, entry, tokens.line(), section.name};
        }
        node = static_cast<std::size_t>(number);
    }
}

int MeditReader::reference(MeditTokens& tokens) const
{
    const qint64 reference = integer(tokens);
    if (reference >= std::numeric_limits<int>::max()) {
        fail(tokens.line(), QStringLiteral("the reference %1 is too large").arg(reference));
    }
    return static_cast<int>(qMax<qint64>(reference, 0));
}

void MeditReader::requireNodes() const
{
    const auto count = static_cast<qint64>(mesh_.nodeCount());
    if (highest_.node > count) {
        fail(highest_.line,
             QStringLiteral("entry %1 of %2 names node %3, but Vertices has %4 only; "
                            "the file is damaged, or was put together from two")
                 .arg(QString::number(highest_.entry), highest_.section,
                      QString::number(highest_.node), entries(count)));
    }
}

void MeditReader::warnOfEnd(const QByteArray& text)
{
    if (ended_) {
        return;
    }
    const bool lineEnded = text.endsWith('\n');
    remarks_.append(
        QStringLiteral("there is no End; as each section has all that it announces, "
                       "the file is taken as whole%1")
            .arg(lineEnded ? QString() : QStringLiteral(", although its last line is not ended")));
}

qint64 MeditReader::integer(MeditTokens& tokens) const
{
    const std::string_view token = tokens.next();
    const std::size_t sign = token.starts_with('+') ? 1 : 0;
    qint64 value = 0;
    const char* const end = token.data() + token.size();
    const auto result = std::from_chars(token.data() + sign, end, value);
    if (token.empty() || result.ec != std::errc() || result.ptr != end) {
        fail(tokens.line(),
             token.empty()
                 ? QStringLiteral("the file ends where a number is expected")
                 : QStringLiteral("a whole number is expected, not %1").arg(quoted(token)));
    }
    return value;
}

double MeditReader::real(MeditTokens& tokens) const
{
    const std::string_view token = tokens.next();
    bool ok = false;
    const double value = QByteArray(token.data(), static_cast<qsizetype>(token.size()))
                             .replace('D', 'e')
                             .replace('d', 'e')
                             .toDouble(&ok);
    if (!ok || !std::isfinite(value)) {
        fail(tokens.line(), QStringLiteral("%1 is no coordinate").arg(quoted(token)));
    }
    return value;
}

void MeditReader::fail(int line, const QString& what) const
{
    InputDamage::damaged(path_, QStringLiteral("line %1: %2").arg(line).arg(what));
}

} // namespace Ovra::GeoTool
