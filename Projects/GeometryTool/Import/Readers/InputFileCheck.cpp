#include "InputFileCheck.h"

#include "ToolError.h"

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <cctype>

namespace Ovra::GeoTool
{

namespace
{

[[noreturn]] void damaged(const QString& path, const QString& what)
{
    throw ToolError(ExitCode::InputDamaged, QStringLiteral("%1: %2").arg(path, what));
}

[[noreturn]] void cutOff(const QFile& file, const QString& missing)
{
    damaged(file.fileName(),
            QStringLiteral("the file is cut off at byte %1: %2").arg(file.size()).arg(missing));
}

QByteArray tail(QFile& file, qint64 size)
{
    file.seek(qMax<qint64>(0, file.size() - size));
    return file.readAll();
}

QByteArray lastLine(QFile& file)
{
    return tail(file, 400).trimmed().split('\n').last().trimmed();
}

void checkSections(QFile& file)
{
    bool found = false;
    QByteArray open;
    constexpr qint64 longestLine = 200;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(longestLine).trimmed();
        const QByteArray lower = line.toLower(); // version 1 shouts
        if (!line.startsWith('$') || lower.startsWith("$comment")) {
            continue;
        }
        found = true;
        if (open.isEmpty() && !lower.startsWith("$end")) {
            open = line.mid(1);
        } else if (lower == "$end" + open.toLower()) {
            open.clear();
        }
    }
    if (!found) {
        damaged(file.fileName(), QStringLiteral("not a Gmsh mesh file: no section begins in it"));
    }
    if (!open.isEmpty()) {
        cutOff(file, QStringLiteral("section $%1 is not closed").arg(QString::fromLatin1(open)));
    }
}

void checkStep(QFile& file)
{
    if (!tail(file, 400).contains("END-ISO-10303-21")) {
        cutOff(file, QStringLiteral("there is no END-ISO-10303-21"));
    }
}

void checkIges(QFile& file)
{
    const QByteArray line = tail(file, 400).trimmed().split('\n').last();
    constexpr qsizetype sectionColumn = 72;
    if (line.size() <= sectionColumn || line.at(sectionColumn) != 'T') {
        cutOff(file, QStringLiteral("there is no terminate section"));
    }
}

void checkUniversal(QFile& file)
{
    int delimiters = 0;
    while (!file.atEnd()) {
        delimiters += file.readLine().trimmed() == "-1" ? 1 : 0;
    }
    if (delimiters == 0) {
        damaged(file.fileName(), QStringLiteral("not a universal file: no data set begins in it"));
    }
    if (delimiters % 2 != 0) {
        cutOff(file, QStringLiteral("the last data set is not closed by -1"));
    }
}

void checkNastran(QFile& file)
{
    while (!file.atEnd()) {
        if (file.readLine().trimmed().toUpper().startsWith("ENDDATA")) {
            return;
        }
    }
    cutOff(file, QStringLiteral("there is no ENDDATA"));
}

/// \brief How many numbers Gmsh takes from a line under a keyword of a Medit file; 0 if it does not
/// matter.
qsizetype numbersUnder(const QByteArray& keyword)
{
    static const QHash<QByteArray, qsizetype> numbers{{"Edges", 3},          {"Triangles", 4},
                                                      {"Quadrilaterals", 5}, {"Tetrahedra", 5},
                                                      {"Prisms", 7},         {"Hexahedra", 9}};
    return numbers.value(keyword, 0);
}

void checkMedit(QFile& file)
{
    QByteArray keyword;
    bool ended = false;
    for (qint64 number = 1; !file.atEnd(); ++number) {
        const QByteArray line = file.readLine().simplified();
        const bool isKeyword = !line.isEmpty() && line.at(0) >= 'A' && line.at(0) <= 'Z';
        if (isKeyword) {
            keyword = line.split(' ').first();
        }
        ended = ended || keyword == "End";
        const bool tooLong =
            !isKeyword && numbersUnder(keyword) > 0 && line.count(' ') >= numbersUnder(keyword);
        const bool higherOrder = isKeyword && (keyword.endsWith("P2") || keyword.endsWith("Q2"));
        if (tooLong || higherOrder) {
            damaged(
                file.fileName(),
                QStringLiteral("line %1: elements of second order, which Gmsh misreads in Medit "
                               "files; save the mesh in first order or as .msh")
                    .arg(number));
        }
    }
    if (!ended) {
        cutOff(file, QStringLiteral("there is no End"));
    }
}

/// \brief Each shape closes its list of parts with an asterisk; a reference to the last one ends the
/// file. The kernel reads on for ever in some files that are cut off.
void checkBrep(QFile& file)
{
    qint64 wanted = -1;
    qint64 found = 0;
    QByteArray last;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().simplified();
        if (line.startsWith("TShapes ")) {
            wanted = line.mid(8).toLongLong();
        } else if (wanted >= 0) {
            found += line.count('*');
        }
        last = line.isEmpty() ? last : line;
    }
    if (wanted < 0) {
        cutOff(file, QStringLiteral("there are no TShapes"));
    }
    if (found < wanted) {
        cutOff(file, QStringLiteral("%1 of %2 TShapes are there").arg(found).arg(wanted));
    }
    const QList<QByteArray> reference = last.split(' ');
    const bool isEnded = tail(file, 1).trimmed().isEmpty();
    if (reference.size() != 2 || last.contains('*') || !isEnded) {
        cutOff(file, QStringLiteral("there is no reference to the whole behind the TShapes"));
    }
}

void checkStl(QFile& file)
{
    const QByteArray header = file.read(84);
    constexpr qint64 headerSize = 84;
    constexpr qint64 triangleSize = 50;
    if (header.size() == headerSize) {
        const qint64 count = qFromLittleEndian<quint32>(header.constData() + 80);
        if (file.size() == headerSize + triangleSize * count) {
            return;
        }
    }
    if (!header.trimmed().startsWith("solid")) {
        cutOff(file,
               QStringLiteral("neither text nor as long as its count of triangles calls for"));
    }
    if (!lastLine(file).startsWith("endsolid")) {
        cutOff(file, QStringLiteral("there is no endsolid"));
    }
}

qint64 numbersInLine(const QByteArray& line)
{
    qint64 count = 0;
    for (const QByteArray& word : line.simplified().split(' ')) {
        bool isNumber = false;
        word.toDouble(&isNumber);
        count += isNumber ? 1 : 0;
    }
    return count;
}

/// \brief Each table of values on points or cells has as many as there are of these.
void checkVtkTables(QFile& file)
{
    qint64 wanted = 0;
    qint64 missing = 0;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().simplified();
        if (line.startsWith("CELL_DATA ") || line.startsWith("POINT_DATA ")) {
            wanted = line.mid(line.indexOf(' ')).toLongLong();
        } else if (line.startsWith("LOOKUP_TABLE ")) {
            missing = wanted;
        } else {
            missing -= numbersInLine(line);
        }
    }
    if (missing > 0) {
        cutOff(file, QStringLiteral("%1 of %2 values of the last table are missing")
                         .arg(missing)
                         .arg(wanted));
    }
}

/// \brief The types of the cells come behind points and cells, and so tell of these too.
void checkVtk(QFile& file)
{
    bool binary = false;
    qint64 wanted = -1;
    qint64 found = 0;
    while (!file.atEnd() && wanted < 0) {
        const QByteArray line = file.readLine().simplified();
        binary = binary || line == "BINARY";
        if (line.startsWith("CELL_TYPES ")) {
            wanted = line.mid(11).toLongLong();
        }
    }
    if (wanted < 0) {
        cutOff(file, QStringLiteral("there are no CELL_TYPES"));
    }
    constexpr qint64 bytesOfType = 4;
    if (binary) {
        found = (file.size() - file.pos()) / bytesOfType;
    }
    while (!binary && !file.atEnd() && found < wanted) {
        found += numbersInLine(file.readLine());
    }
    if (found < wanted) {
        cutOff(file, QStringLiteral("%1 of %2 CELL_TYPES are there").arg(found).arg(wanted));
    }
    if (!binary) {
        checkVtkTables(file);
    }
}

/// \brief Whether something follows the first statement of a line, comments apart.
bool hasMoreStatements(const QByteArray& line)
{
    const qsizetype end = line.indexOf(';');
    QByteArray rest = end < 0 ? QByteArray() : line.mid(end + 1);
    for (const char* comment : {"//", "/*"}) {
        rest.truncate(rest.contains(comment) ? rest.indexOf(comment) : rest.size());
    }
    return std::any_of(rest.begin(), rest.end(),
                       [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; });
}

/// \brief Of a last line without a line break Gmsh takes the first statement, and says nothing.
void checkScript(QFile& file)
{
    constexpr qint64 longestLine = 100000;
    const QByteArray last = tail(file, longestLine).split('\n').last();
    if (hasMoreStatements(last)) {
        damaged(file.fileName(),
                QStringLiteral("the last line has several statements and no line break at its end, "
                               "so that Gmsh would pass over all but the first; end it, or "
                               "complete the file if it is cut off"));
    }
}

void checkLastLineEnded(QFile& file)
{
    if (!tail(file, 1).endsWith('\n')) {
        cutOff(file, QStringLiteral("the last line is not ended"));
    }
}

using Check = void (*)(QFile&);

const QHash<QString, Check>& checks()
{
    static const QHash<QString, Check> table{
        {QStringLiteral("geo"), checkScript},       {QStringLiteral("geo_unrolled"), checkScript},
        {QStringLiteral("msh"), checkSections},     {QStringLiteral("step"), checkStep},
        {QStringLiteral("stp"), checkStep},         {QStringLiteral("iges"), checkIges},
        {QStringLiteral("igs"), checkIges},         {QStringLiteral("brep"), checkBrep},
        {QStringLiteral("unv"), checkUniversal},    {QStringLiteral("bdf"), checkNastran},
        {QStringLiteral("nas"), checkNastran},      {QStringLiteral("stl"), checkStl},
        {QStringLiteral("mesh"), checkMedit},       {QStringLiteral("vtk"), checkVtk},
        {QStringLiteral("inp"), checkLastLineEnded}};
    return table;
}

/// \brief All that is known, with what Gmsh takes by their suffix and nothing is checked of.
QStringList knownSuffixes()
{
    QStringList suffixes = checks().keys() + QStringList{"cgns", "med",  "mmed", "off", "p3d",
                                                         "ply",  "rmed", "vrml", "wrl"};
    suffixes.sort();
    return suffixes;
}

void requireKnownSuffix(const QString& path)
{
    const QString suffix = InputFileCheck::suffix(path);
    if (suffix == QLatin1String("geo_model") || suffix == QLatin1String("geo_mesh")) {
        throw ToolError(
            ExitCode::Usage,
            QStringLiteral("%1: this is a case already, not an input to import").arg(path));
    }
    if (!knownSuffixes().contains(suffix)) {
        damaged(path, QStringLiteral("its suffix tells no known format; can be imported: .") +
                          knownSuffixes().join(QStringLiteral(", .")));
    }
}

} // namespace

QString InputFileCheck::suffix(const QString& path)
{
    return QFileInfo(path).suffix().toLower();
}

void InputFileCheck::check(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        throw ToolError(ExitCode::InputMissing, QStringLiteral("%1: no such file").arg(path));
    }
    QFile file(path);
    if (info.isDir() || !file.open(QIODevice::ReadOnly)) {
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("%1: %2").arg(path, info.isDir()
                                                               ? QStringLiteral("is a directory")
                                                               : file.errorString()));
    }
    requireKnownSuffix(path);
    if (file.size() == 0) {
        damaged(path, QStringLiteral("the file is empty"));
    }
    if (const Check check = checks().value(suffix(path), nullptr)) {
        check(file);
    }
}

} // namespace Ovra::GeoTool
