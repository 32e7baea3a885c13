#include "PolygonFile.h"

#include "BinaryNumber.h"
#include "InputDamage.h"
#include "OpenInput.h"

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

PolygonFile::PolygonFile(const QString& path)
    : file_(path)
{
}

void PolygonFile::open()
{
    openInput(file_);
}

QByteArray PolygonFile::readLine()
{
    constexpr qint64 longest = 100000; // a binary file may have no line break for long
    words_.clear();
    nextWord_ = 0;
    ++line_;
    return file_.readLine(longest).simplified();
}

double PolygonFile::number(const QByteArray& type, const QString& owner)
{
    return isText() ? textNumber(owner) : binaryNumber(type, owner);
}

double PolygonFile::textNumber(const QString& owner)
{
    while (nextWord_ == words_.size()) {
        if (file_.atEnd()) {
            cutOff(QStringLiteral("%1 is not whole").arg(owner));
        }
        const QByteArray line = file_.readLine().simplified();
        ++line_;
        words_ = line.isEmpty() ? QList<QByteArray>() : line.split(' ');
        nextWord_ = 0;
    }
    const QByteArray& word = words_.at(nextWord_++);
    bool ok = false;
    const double number = word.toDouble(&ok);
    if (!ok) {
        fail(
            QStringLiteral("%1: \"%2\" is no number").arg(owner, QString::fromUtf8(word.left(40))));
    }
    return number;
}

double PolygonFile::binaryNumber(const QByteArray& type, const QString& owner)
{
    const int size = BinaryNumber::sizeOf(type);
    const QByteArray bytes = file_.read(size);
    if (bytes.size() < size) {
        cutOff(QStringLiteral("%1 is not whole").arg(owner));
    }
    return BinaryNumber::of(bytes, type, form_ == Form::BigEndian);
}

qint64 PolygonFile::count(const QByteArray& type, const QString& owner, const QString& what)
{
    constexpr double beyondAll = 1e15;
    const double found = number(type, owner);
    if (!(found >= 0 && found < beyondAll) || found != std::floor(found)) {
        fail(QStringLiteral("%1: %2 is no %3").arg(owner, QString::number(found), what));
    }
    return static_cast<qint64>(found);
}

void PolygonFile::requireEndOfLine(const QString& owner) const
{
    if (nextWord_ < words_.size()) {
        fail(QStringLiteral("%1 ends in front of \"%2\"; what comes next needs a line of its own")
                 .arg(owner, QString::fromUtf8(words_.at(nextWord_).left(40))));
    }
}

void PolygonFile::addVertex(const std::array<double, 3>& place, const QString& owner)
{
    if (!std::all_of(place.begin(), place.end(), [](double c) { return std::isfinite(c); })) {
        fail(QStringLiteral("%1 has a coordinate that is no number").arg(owner));
    }
    surface_.addVertex({place[0], place[1], place[2]});
}

void PolygonFile::addFace(const std::vector<double>& corners, const QString& owner)
{
    constexpr double beyondAll = 1e15;
    std::vector<qint64> positions;
    for (const double corner : corners) {
        if (!(std::abs(corner) < beyondAll) || corner != std::floor(corner)) {
            fail(QStringLiteral("%1: %2 is no position of a vertex")
                     .arg(owner, QString::number(corner)));
        }
        positions.push_back(static_cast<qint64>(corner));
    }
    const QString fault = surface_.addFace(positions);
    if (!fault.isEmpty()) {
        fail(QStringLiteral("%1: %2").arg(owner, fault));
    }
}

void PolygonFile::fail(const QString& what) const
{
    const QString place = isText() ? QStringLiteral("line %1: ").arg(line_)
                                   : QStringLiteral("before byte %1: ").arg(file_.pos());
    InputDamage::damaged(path(), place + what);
}

void PolygonFile::cutOff(const QString& missing) const
{
    InputDamage::cutOff(file_, missing);
}

} // namespace Ovra::GeoTool
