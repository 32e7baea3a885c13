#include "VrmlReader.h"

#include "InputDamage.h"
#include "PolygonSurface.h"
#include "ToolError.h"

#include <QFile>
#include <QList>
#include <QtNumeric>

#include <algorithm>

namespace Ovra::GeoTool
{

using Geo::Vector;

namespace
{

/// Nodes and words whose shapes would be lost.
const QList<QByteArray> Lost{"AsciiText", "Box",  "Cone",      "Cube",          "Cylinder",
                             "Sphere",    "Text", "Extrusion", "ElevationGrid", "EXTERNPROTO",
                             "Inline",    "LOD",  "PROTO",     "Switch",        "WWWInline"};

/// Fields and nodes that move what is in them.
const QList<QByteArray> Moving{"MatrixTransform", "Rotation",         "Scale",    "Translation",
                               "matrix",          "rotation",         "scale",    "scaleFactor",
                               "translation",     "scaleOrientation", "Billboard"};

/// Fields whose nodes are looks, which may be used again without a loss.
const QList<QByteArray> Looks{"appearance", "color",    "fontStyle",        "material",
                              "normal",     "texCoord", "textureTransform", "texture"};

bool isFaces(const QByteArray& type)
{
    return type == "IndexedFaceSet";
}

bool isCoordinates(const QByteArray& type)
{
    return type == "Coordinate" || type == "Coordinate3";
}

} // namespace

VrmlReader::VrmlReader(const QString& path)
    : path_(path)
    , tokens_(path)
{
}

QStringList VrmlReader::read()
{
    readHeader();
    for (QByteArray word = tokens_.next(); !word.isEmpty(); word = tokens_.next()) {
        take(word);
        last_ = word;
    }
    if (!nodes_.empty()) {
        InputDamage::cutOff(
            QFile(path_),
            QStringLiteral("the brace of line %1 is not closed").arg(nodes_.back().line));
    }
    if (!hasFaces_) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: holds no IndexedFaceSet").arg(path_));
    }
    return surface_.makeEntities();
}

void VrmlReader::readHeader()
{
    const QByteArray header = tokens_.header();
    if (!header.startsWith("#VRML V1.0 ascii") && !header.startsWith("#VRML V2.0 utf8")) {
        InputDamage::damaged(path_,
                             QStringLiteral("not a VRML file as text: it does not begin with "
                                            "#VRML V1.0 ascii or #VRML V2.0 utf8"));
    }
}

void VrmlReader::take(const QByteArray& word)
{
    const QByteArray node = nodes_.empty() ? QByteArray() : nodes_.back().type;
    if (word == "{") {
        open();
    } else if (word == "}") {
        close();
    } else if (word == "point" && isCoordinates(node)) {
        takePoints();
    } else if (word == "coordIndex" && isFaces(node)) {
        takeCorners();
    } else {
        requireKnown(word);
    }
}

void VrmlReader::requireKnown(const QByteArray& word) const
{
    const bool isUsed = word == "USE" && !Looks.contains(last_);
    const bool isName = last_ == "DEF";
    const bool inTexture = !nodes_.empty() && nodes_.back().type.startsWith("Texture");
    if (isName || inTexture || (!isUsed && !Lost.contains(word) && !Moving.contains(word))) {
        return;
    }
    throw ToolError(ExitCode::Unsuitable,
                    QStringLiteral("%1: line %2: %3 of VRML is not read, only IndexedFaceSet where "
                                   "it stands; save it as STL")
                        .arg(path_, QString::number(tokens_.line()), QString::fromUtf8(word)));
}

void VrmlReader::open()
{
    nodes_.push_back({last_, {}, {}, tokens_.line()});
    if (last_.endsWith("Separator")) {
        nodes_.back().points = points_;
    }
}

void VrmlReader::close()
{
    if (nodes_.empty()) {
        fail(tokens_.line(), QStringLiteral("a brace is closed that is not open"));
    }
    const Node node = std::move(nodes_.back());
    nodes_.pop_back();
    if (isFaces(node.type)) {
        addFaces(node);
    } else if (node.type.endsWith("Separator")) {
        points_ = node.points;
    }
}

/// \brief The next number of a field in brackets; empty behind the last.
QByteArray VrmlReader::numberIn(const QByteArray& field)
{
    const QByteArray word = tokens_.next();
    if (word.isEmpty()) {
        InputDamage::cutOff(
            QFile(path_),
            QStringLiteral("the brackets of %1 are not closed").arg(QString::fromUtf8(field)));
    }
    return word == "]" ? QByteArray() : word;
}

void VrmlReader::takePoints()
{
    points_.clear();
    if (tokens_.next() != "[") {
        fail(tokens_.line(), QStringLiteral("point needs brackets"));
    }
    std::vector<double> numbers;
    for (QByteArray word = numberIn("point"); !word.isEmpty(); word = numberIn("point")) {
        bool ok = false;
        numbers.push_back(word.toDouble(&ok));
        if (!ok || !qIsFinite(numbers.back())) {
            fail(tokens_.line(),
                 QStringLiteral("\"%1\" is no coordinate").arg(QString::fromUtf8(word.left(40))));
        }
    }
    if (numbers.size() % 3 != 0) {
        fail(tokens_.line(), QStringLiteral("a point has fewer than three coordinates"));
    }
    for (std::size_t i = 0; i < numbers.size(); i += 3) {
        points_.emplace_back(numbers[i], numbers[i + 1], numbers[i + 2]);
    }
}

void VrmlReader::takeCorners()
{
    std::vector<qint64>& corners = nodes_.back().corners;
    if (tokens_.next() != "[") {
        fail(tokens_.line(), QStringLiteral("coordIndex needs brackets"));
    }
    for (QByteArray word = numberIn("coordIndex"); !word.isEmpty(); word = numberIn("coordIndex")) {
        bool ok = false;
        corners.push_back(word.toLongLong(&ok));
        if (!ok || corners.back() < -1) {
            fail(tokens_.line(), QStringLiteral("\"%1\" is no position of a point")
                                     .arg(QString::fromUtf8(word.left(40))));
        }
    }
    corners.push_back(-1); // may be left out behind the last face
}

void VrmlReader::addFaces(const Node& node)
{
    PolygonSurface polygons;
    std::for_each(points_.begin(), points_.end(),
                  [&polygons](const Vector& point) { polygons.addVertex(point); });
    std::vector<qint64> face;
    for (const qint64 corner : node.corners) {
        if (corner >= 0) {
            face.push_back(corner);
            continue;
        }
        const QString fault = face.empty() ? QString() : polygons.addFace(face);
        if (!fault.isEmpty()) {
            fail(node.line, QStringLiteral("IndexedFaceSet: %1").arg(fault));
        }
        face.clear();
    }
    hasFaces_ = hasFaces_ || polygons.hasFaces();
    surface_.append(polygons.surface());
}

void VrmlReader::fail(int line, const QString& what) const
{
    InputDamage::damaged(path_, QStringLiteral("line %1: %2").arg(line).arg(what));
}

} // namespace Ovra::GeoTool
