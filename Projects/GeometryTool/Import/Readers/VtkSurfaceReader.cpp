#include "VtkSurfaceReader.h"

#include "ToolError.h"

#include <array>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

const QByteArray Integer = "int";

[[noreturn]] void unsuitable(const PolygonFile& file, const QString& what)
{
    throw ToolError(ExitCode::Unsuitable, QStringLiteral("%1: %2").arg(file.path(), what));
}

} // namespace

VtkSurfaceReader::VtkSurfaceReader(const QString& path)
    : file_(path)
{
}

QStringList VtkSurfaceReader::read()
{
    file_.open();
    readHeader();
    for (QList<QByteArray> words = findSection(); !words.isEmpty(); words = findSection()) {
        if (words.first() == "POINTS") {
            readPoints(words);
        } else if (words.first() == "POLYGONS") {
            readPolygons(words);
        } else if (words.first() == "TRIANGLE_STRIPS") {
            unsuitable(file_,
                       QStringLiteral("TRIANGLE_STRIPS are not read; save it with POLYGONS"));
        } else if (words.first() != "VERTICES" && words.first() != "LINES") {
            break; // values, behind which no more places come
        } else {
            passOver(words);
        }
    }
    if (!file_.surface().hasFaces()) {
        unsuitable(file_, QStringLiteral("holds no POLYGONS, points and lines at most"));
    }
    return file_.surface().makeEntities();
}

void VtkSurfaceReader::readHeader()
{
    const QByteArray version = file_.readLine().split(' ').last();
    if (version.toDouble() >= 5) {
        unsuitable(file_, QStringLiteral("POLYDATA of version %1 is not read; save it with version "
                                         "4.2 or as STL")
                              .arg(QString::fromUtf8(version)));
    }
    file_.readLine();
    while (!file_.atEnd()) {
        const QByteArray line = file_.readLine().toUpper();
        if (line == "BINARY") {
            file_.setForm(PolygonFile::Form::BigEndian);
        }
        if (line.startsWith("DATASET")) {
            return;
        }
    }
}

/// \brief Steps behind the line that begins the next section; its words.
QList<QByteArray> VtkSurfaceReader::findSection()
{
    static const QList<QByteArray> sections{"POINTS",          "POLYGONS",   "VERTICES", "LINES",
                                            "TRIANGLE_STRIPS", "POINT_DATA", "CELL_DATA"};
    while (!file_.atEnd()) {
        const QList<QByteArray> words = file_.readLine().split(' ');
        if (sections.contains(words.first())) {
            return words;
        }
    }
    return {};
}

void VtkSurfaceReader::readPoints(const QList<QByteArray>& words)
{
    const qint64 count = countIn(words, 1);
    const QByteArray type = words.value(2).toLower();
    if (!file_.isText() && type != "float" && type != "double") {
        unsuitable(file_, QStringLiteral("POINTS of type %1 are not read; save it as text")
                              .arg(QString::fromUtf8(type)));
    }
    for (qint64 i = 0; i < count; ++i) {
        const QString owner = QStringLiteral("point %1").arg(i);
        std::array<double, 3> place{};
        for (double& coordinate : place) {
            coordinate = file_.number(type, owner);
        }
        file_.addVertex(place, owner);
    }
}

void VtkSurfaceReader::readPolygons(const QList<QByteArray>& words)
{
    const qint64 count = countIn(words, 1);
    for (qint64 i = 0; i < count; ++i) {
        const QString owner = QStringLiteral("polygon %1").arg(i);
        const qint64 size = file_.count(Integer, owner, QStringLiteral("number of corners"));
        std::vector<double> corners;
        for (qint64 n = 0; n < size; ++n) {
            corners.push_back(file_.number(Integer, owner));
        }
        file_.addFace(corners, owner);
    }
}

void VtkSurfaceReader::passOver(const QList<QByteArray>& words)
{
    const qint64 numbers = countIn(words, 2);
    const QString owner = QStringLiteral("section %1").arg(QString::fromUtf8(words.first()));
    for (qint64 i = 0; i < numbers; ++i) {
        file_.number(Integer, owner);
    }
}

qint64 VtkSurfaceReader::countIn(const QList<QByteArray>& words, qsizetype index) const
{
    bool isCount = false;
    const qint64 count = words.value(index).toLongLong(&isCount);
    if (!isCount || count < 0) {
        file_.fail(QStringLiteral("\"%1\" does not say how much there is")
                       .arg(QString::fromUtf8(words.join(' ').left(40))));
    }
    return count;
}

} // namespace Ovra::GeoTool
