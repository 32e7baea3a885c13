#include "PlyReader.h"

#include "InputDamage.h"
#include "ToolError.h"

#include <QtEndian>
#include <QtNumeric>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Ovra::GeoTool
{

namespace
{

bool isCorners(const PlyHeader::Property& property)
{
    return !property.countType.isEmpty() &&
           (property.name == "vertex_indices" || property.name == "vertex_index");
}

template <typename Number>
double numberAt(const QByteArray& bytes, bool isBigEndian)
{
    return static_cast<double>(isBigEndian ? qFromBigEndian<Number>(bytes.constData())
                                           : qFromLittleEndian<Number>(bytes.constData()));
}

double integerOf(const QByteArray& bytes, bool isSigned, bool isBigEndian)
{
    switch (bytes.size()) {
    case 1:
        return isSigned ? numberAt<qint8>(bytes, isBigEndian)
                        : numberAt<quint8>(bytes, isBigEndian);
    case 2:
        return isSigned ? numberAt<qint16>(bytes, isBigEndian)
                        : numberAt<quint16>(bytes, isBigEndian);
    default:
        return isSigned ? numberAt<qint32>(bytes, isBigEndian)
                        : numberAt<quint32>(bytes, isBigEndian);
    }
}

double realOf(const QByteArray& bytes, bool isBigEndian)
{
    return bytes.size() == 4 ? numberAt<float>(bytes, isBigEndian)
                             : numberAt<double>(bytes, isBigEndian);
}

} // namespace

PlyReader::PlyReader(const QString& path)
    : file_(path)
{
}

QStringList PlyReader::read()
{
    if (!file_.open(QIODevice::ReadOnly)) {
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("%1: %2").arg(file_.fileName(), file_.errorString()));
    }
    header_ = PlyHeader::of(file_);
    requireFaces();
    for (const PlyHeader::Element& element : std::as_const(header_.elements)) {
        const qint64 count = element.properties.isEmpty() ? 0 : element.count;
        for (qint64 i = 0; i < count; ++i) {
            readElement(element, i);
        }
    }
    return surface_.makeEntities();
}

void PlyReader::requireFaces() const
{
    for (const PlyHeader::Element& element : header_.elements) {
        const bool hasCorners =
            std::any_of(element.properties.begin(), element.properties.end(), isCorners);
        if (element.name == "face" && element.count > 0 && hasCorners) {
            return;
        }
        if (element.name == "tristrips" && element.count > 0) {
            throw ToolError(ExitCode::Unsuitable,
                            QStringLiteral("%1: strips of triangles are not read; save it with "
                                           "faces")
                                .arg(file_.fileName()));
        }
    }
    throw ToolError(ExitCode::Unsuitable,
                    QStringLiteral("%1: holds no faces, points at most").arg(file_.fileName()));
}

void PlyReader::readElement(const PlyHeader::Element& element, qint64 position)
{
    const QString owner =
        QStringLiteral("%1 %2").arg(QString::fromUtf8(element.name)).arg(position);
    double place[3] = {0, 0, 0};
    for (const PlyHeader::Property& property : element.properties) {
        const std::vector<double> found = values(property, owner);
        const qsizetype axis = QByteArray("xyz").indexOf(property.name);
        if (element.name == "vertex" && property.name.size() == 1 && axis >= 0 && !found.empty()) {
            place[axis] = found.front();
        } else if (element.name == "face" && isCorners(property)) {
            addFace(found, owner);
        }
    }
    if (element.name == "vertex") {
        addVertex(place, owner);
    }
}

std::vector<double> PlyReader::values(const PlyHeader::Property& property, const QString& owner)
{
    double count = 1;
    if (!property.countType.isEmpty()) {
        count = value(property.countType, owner);
        if (count < 0 || count != std::floor(count)) {
            InputDamage::damaged(
                file_.fileName(),
                QStringLiteral("%1: %2 is no length of a list").arg(owner).arg(count));
        }
    }
    std::vector<double> all;
    for (double i = 0; i < count; ++i) {
        all.push_back(value(property.type, owner));
    }
    return all;
}

double PlyReader::value(const QByteArray& type, const QString& owner)
{
    return header_.isText ? textValue(owner) : binaryValue(type, owner);
}

double PlyReader::textValue(const QString& owner)
{
    while (nextWord_ == words_.size()) {
        if (file_.atEnd()) {
            InputDamage::cutOff(file_, QStringLiteral("%1 is not whole").arg(owner));
        }
        const QByteArray line = file_.readLine().simplified();
        words_ = line.isEmpty() ? QList<QByteArray>() : line.split(' ');
        nextWord_ = 0;
    }
    const QByteArray& word = words_.at(nextWord_++);
    bool ok = false;
    const double number = word.toDouble(&ok);
    if (!ok) {
        InputDamage::damaged(
            file_.fileName(),
            QStringLiteral("%1: \"%2\" is no number").arg(owner, QString::fromUtf8(word.left(40))));
    }
    return number;
}

double PlyReader::binaryValue(const QByteArray& type, const QString& owner)
{
    const int size = PlyHeader::sizeOf(type);
    const QByteArray bytes = file_.read(size);
    if (bytes.size() < size) {
        InputDamage::cutOff(file_, QStringLiteral("%1 is not whole").arg(owner));
    }
    return PlyHeader::isReal(type) ? realOf(bytes, header_.isBigEndian)
                                   : integerOf(bytes, !type.startsWith('u'), header_.isBigEndian);
}

void PlyReader::addVertex(const double (&place)[3], const QString& owner)
{
    if (!qIsFinite(place[0]) || !qIsFinite(place[1]) || !qIsFinite(place[2])) {
        InputDamage::damaged(file_.fileName(),
                             QStringLiteral("%1 has a coordinate that is no number").arg(owner));
    }
    surface_.addVertex({place[0], place[1], place[2]});
}

void PlyReader::addFace(const std::vector<double>& corners, const QString& owner)
{
    std::vector<qint64> positions;
    for (const double corner : corners) {
        const bool isCount = corner >= 0 && corner < 1e15 && corner == std::floor(corner);
        positions.push_back(isCount ? static_cast<qint64>(corner) : -1);
    }
    const QString fault = surface_.addFace(positions);
    if (!fault.isEmpty()) {
        InputDamage::damaged(file_.fileName(), QStringLiteral("%1: %2").arg(owner, fault));
    }
}

} // namespace Ovra::GeoTool
