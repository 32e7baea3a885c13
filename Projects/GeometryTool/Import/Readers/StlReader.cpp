#include "StlReader.h"

#include "Counted.h"
#include "InputDamage.h"
#include "OpenInput.h"
#include "StlCheck.h"

#include <QtEndian>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

constexpr qint64 HeaderSize = 84;
constexpr qint64 TriangleSize = 50;

/// \brief The point at a corner, 0 to 2, of a binary triangle.
Vector cornerOf(const QByteArray& triangle, int corner)
{
    constexpr qint64 normalSize = 12;
    const char* place = triangle.constData() + normalSize * (corner + 1);
    return {qFromLittleEndian<float>(place), qFromLittleEndian<float>(place + 4),
            qFromLittleEndian<float>(place + 8)};
}

} // namespace

StlReader::StlReader(const QString& path)
    : file_(path)
{
}

QStringList StlReader::read()
{
    openInput(file_);
    if (StlCheck::isBinary(file_)) {
        readBinary();
    } else {
        readText();
    }
    if (triangles_ == 0) {
        InputDamage::damaged(file_.fileName(), QStringLiteral("holds no triangles"));
    }
    return surface_.makeEntities();
}

void StlReader::readBinary()
{
    file_.seek(HeaderSize);
    surface_.addPatch(QString());
    while (!file_.atEnd()) {
        const QByteArray triangle = file_.read(TriangleSize);
        ++triangles_;
        if (triangle.size() < TriangleSize ||
            !surface_.addTriangle(
                {cornerOf(triangle, 0), cornerOf(triangle, 1), cornerOf(triangle, 2)})) {
            InputDamage::damaged(
                file_.fileName(),
                QStringLiteral("triangle %1 has a coordinate that is no number").arg(triangles_));
        }
    }
}

void StlReader::readText()
{
    while (!file_.atEnd()) {
        ++line_;
        const QByteArray line = file_.readLine().simplified();
        if (!line.isEmpty()) {
            takeLine(line);
        }
    }
    if (inSolid_) {
        fail(QStringLiteral("the file is cut off: there is no endsolid"));
    }
}

void StlReader::takeLine(const QByteArray& line)
{
    const qsizetype blank = line.indexOf(' ');
    const QByteArray word = line.left(blank < 0 ? line.size() : blank).toLower();
    if (!inSolid_ && word == "solid") {
        inSolid_ = true;
        surface_.addPatch(blank < 0 ? QString() : QString::fromUtf8(line.mid(blank + 1)));
    } else if (inSolid_ && !inFacet_ && word == "facet") {
        inFacet_ = true;
    } else if (inFacet_ && word == "vertex") {
        takeVertex(line);
    } else if (inFacet_ && word == "endfacet") {
        endFacet();
    } else if (inSolid_ && !inFacet_ &&
               (word == "endsolid" || line.toLower().startsWith("end solid"))) {
        inSolid_ = false;
    } else if (!inFacet_ ||
               (word != "outer" && word != "endloop" && line.toLower() != "end loop")) {
        fail(QStringLiteral("\"%1\" does not belong here").arg(QString::fromUtf8(line.left(40))));
    }
}

void StlReader::takeVertex(const QByteArray& line)
{
    const QList<QByteArray> fields = line.split(' ');
    double numbers[3] = {0, 0, 0};
    bool areNumbers = fields.size() == 4;
    for (int i = 0; i < 3 && areNumbers; ++i) {
        numbers[i] = fields.at(i + 1).toDouble(&areNumbers);
    }
    if (!areNumbers) {
        fail(QStringLiteral("a vertex needs three coordinates"));
    }
    corners_.emplace_back(numbers[0], numbers[1], numbers[2]);
}

void StlReader::endFacet()
{
    if (corners_.size() != 3) {
        fail(QStringLiteral("a facet with %1; it must have 3")
                 .arg(counted(static_cast<qint64>(corners_.size()), QStringLiteral("vertex"))));
    }
    if (!surface_.addTriangle({corners_[0], corners_[1], corners_[2]})) {
        fail(QStringLiteral("the facet has a coordinate that is no number"));
    }
    corners_.clear();
    inFacet_ = false;
    ++triangles_;
}

void StlReader::fail(const QString& what) const
{
    InputDamage::damaged(file_.fileName(), QStringLiteral("line %1: %2").arg(line_).arg(what));
}

} // namespace Ovra::GeoTool
