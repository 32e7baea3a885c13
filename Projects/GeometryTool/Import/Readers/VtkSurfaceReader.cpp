#include "VtkSurfaceReader.h"

#include "InputDamage.h"
#include "ToolError.h"

#include <QtEndian>
#include <QtNumeric>

#include <cmath>

namespace Ovra::GeoTool
{

namespace
{

constexpr int HeaderLines = 20;
constexpr qint64 LongestLine = 100000;
const QByteArray Integer = "int";

[[noreturn]] void unsuitable(const QFile& file, const QString& what)
{
    throw ToolError(ExitCode::Unsuitable, QStringLiteral("%1: %2").arg(file.fileName(), what));
}

} // namespace

VtkSurfaceReader::VtkSurfaceReader(const QString& path)
    : file_(path)
{
}

QByteArray VtkSurfaceReader::dataset(const QString& path)
{
    QFile file(path);
    file.open(QIODevice::ReadOnly);
    for (int i = 0; i < HeaderLines && !file.atEnd(); ++i) {
        const QByteArray line = file.readLine(LongestLine).simplified();
        if (line.startsWith("DATASET ")) {
            return line.mid(8).toUpper();
        }
    }
    return QByteArray();
}

QStringList VtkSurfaceReader::read()
{
    if (!file_.open(QIODevice::ReadOnly)) {
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("%1: %2").arg(file_.fileName(), file_.errorString()));
    }
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
    if (!surface_.hasFaces()) {
        unsuitable(file_, QStringLiteral("holds no POLYGONS, points and lines at most"));
    }
    return surface_.makeEntities();
}

void VtkSurfaceReader::readHeader()
{
    const QByteArray version = file_.readLine(LongestLine).simplified().split(' ').last();
    if (version.toDouble() >= 5) {
        unsuitable(file_, QStringLiteral("POLYDATA of version %1 is not read; save it with version "
                                         "4.2 or as STL")
                              .arg(QString::fromUtf8(version)));
    }
    file_.readLine(LongestLine);
    while (!file_.atEnd()) {
        const QByteArray line = file_.readLine(LongestLine).simplified().toUpper();
        isBinary_ = isBinary_ || line == "BINARY";
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
    nextWord_ = 0;
    words_.clear();
    while (!file_.atEnd()) {
        const QList<QByteArray> words = file_.readLine(LongestLine).simplified().split(' ');
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
    if (isBinary_ && type != "float" && type != "double") {
        unsuitable(file_, QStringLiteral("POINTS of type %1 are not read; save it as text")
                              .arg(QString::fromUtf8(type)));
    }
    for (qint64 i = 0; i < count; ++i) {
        const QString owner = QStringLiteral("point %1").arg(i);
        double place[3];
        for (double& coordinate : place) {
            coordinate = number(type, owner);
            if (!qIsFinite(coordinate)) {
                InputDamage::damaged(
                    file_.fileName(),
                    QStringLiteral("%1 has a coordinate that is no number").arg(owner));
            }
        }
        surface_.addVertex({place[0], place[1], place[2]});
    }
}

void VtkSurfaceReader::readPolygons(const QList<QByteArray>& words)
{
    const qint64 count = countIn(words, 1);
    for (qint64 i = 0; i < count; ++i) {
        const QString owner = QStringLiteral("polygon %1").arg(i);
        const double size = number(Integer, owner);
        std::vector<qint64> corners;
        for (double n = 0; n < size; ++n) {
            const double position = number(Integer, owner);
            const bool isCount = std::abs(position) < 1e15 && position == std::floor(position);
            corners.push_back(isCount ? static_cast<qint64>(position) : -1);
        }
        const QString fault = surface_.addFace(corners);
        if (!fault.isEmpty()) {
            InputDamage::damaged(file_.fileName(), QStringLiteral("%1: %2").arg(owner, fault));
        }
    }
}

void VtkSurfaceReader::passOver(const QList<QByteArray>& words)
{
    const qint64 numbers = countIn(words, 2);
    const QString owner = QStringLiteral("section %1").arg(QString::fromUtf8(words.first()));
    for (qint64 i = 0; i < numbers; ++i) {
        number(Integer, owner);
    }
}

double VtkSurfaceReader::number(const QByteArray& type, const QString& owner)
{
    if (isBinary_) {
        return binaryNumber(type, owner);
    }
    const QByteArray text = word(owner);
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok) {
        InputDamage::damaged(
            file_.fileName(),
            QStringLiteral("%1: \"%2\" is no number").arg(owner, QString::fromUtf8(text.left(40))));
    }
    return value;
}

double VtkSurfaceReader::binaryNumber(const QByteArray& type, const QString& owner)
{
    const qint64 size = type == "double" ? 8 : 4;
    const QByteArray bytes = file_.read(size);
    if (bytes.size() < size) {
        InputDamage::cutOff(file_, QStringLiteral("%1 is not whole").arg(owner));
    }
    if (type == "double") {
        return qFromBigEndian<double>(bytes.constData());
    }
    return type == Integer ? static_cast<double>(qFromBigEndian<qint32>(bytes.constData()))
                           : static_cast<double>(qFromBigEndian<float>(bytes.constData()));
}

QByteArray VtkSurfaceReader::word(const QString& owner)
{
    while (nextWord_ == words_.size()) {
        if (file_.atEnd()) {
            InputDamage::cutOff(file_, QStringLiteral("%1 is not whole").arg(owner));
        }
        const QByteArray line = file_.readLine().simplified();
        words_ = line.isEmpty() ? QList<QByteArray>() : line.split(' ');
        nextWord_ = 0;
    }
    return words_.at(nextWord_++);
}

qint64 VtkSurfaceReader::countIn(const QList<QByteArray>& words, qsizetype index)
{
    return qMax<qint64>(0, words.value(index).toLongLong());
}

} // namespace Ovra::GeoTool
