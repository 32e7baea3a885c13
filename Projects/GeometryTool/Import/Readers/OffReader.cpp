#include "OffReader.h"

#include "Counted.h"
#include "InputDamage.h"
#include "OpenInput.h"

#include <QtNumeric>

namespace Ovra::GeoTool
{

OffReader::OffReader(const QString& path)
    : file_(path)
{
}

QStringList OffReader::read()
{
    openInput(file_);
    readHeader();
    for (qint64 i = 0; i < vertexCount_; ++i) {
        requireLine(QStringLiteral("vertex"), i, vertexCount_);
        readVertex();
    }
    for (qint64 i = 0; i < faceCount_; ++i) {
        requireLine(QStringLiteral("face"), i, faceCount_);
        readFace();
    }
    return surface_.makeEntities();
}

void OffReader::readHeader()
{
    static const QList<QByteArray> headers{"OFF",   "NOFF",   "COFF",   "CNOFF",
                                           "STOFF", "STNOFF", "STCOFF", "STCNOFF"};
    if (!nextLine() || !headers.contains(fields_.takeFirst().toUpper())) {
        fail(QStringLiteral("not an object file: it must begin with OFF, or with OFF behind N, C "
                            "or ST"));
    }
    if (!fields_.isEmpty() && fields_.first().toUpper() == "BINARY") {
        fail(QStringLiteral("binary object files are not read; save it as text"));
    }
    if (fields_.isEmpty() && !nextLine()) {
        InputDamage::cutOff(file_,
                            QStringLiteral("the line with the numbers of vertices and faces is "
                                           "missing"));
    }
    vertexCount_ = count(0);
    faceCount_ = count(1);
    if (faceCount_ == 0) {
        fail(QStringLiteral("holds no faces"));
    }
}

void OffReader::readVertex()
{
    double numbers[3] = {0, 0, 0};
    bool areNumbers = fields_.size() >= 3;
    for (int i = 0; i < 3 && areNumbers; ++i) {
        numbers[i] = fields_.at(i).toDouble(&areNumbers);
        areNumbers = areNumbers && qIsFinite(numbers[i]);
    }
    if (!areNumbers) {
        fail(QStringLiteral("a vertex needs three coordinates"));
    }
    surface_.addVertex({numbers[0], numbers[1], numbers[2]});
}

void OffReader::readFace()
{
    const qint64 size = count(0);
    if (size < 3 || size >= fields_.size()) {
        fail(QStringLiteral("a face needs the number of its corners, at least 3, and as many "
                            "positions"));
    }
    std::vector<qint64> corners;
    for (qint64 i = 1; i <= size; ++i) {
        corners.push_back(count(i));
    }
    const QString fault = surface_.addFace(corners);
    if (!fault.isEmpty()) {
        fail(fault);
    }
}

/// \brief Steps to the next line that holds something.
bool OffReader::nextLine()
{
    while (!file_.atEnd()) {
        ++line_;
        QByteArray line = file_.readLine();
        line.truncate(line.contains('#') ? line.indexOf('#') : line.size());
        line = line.simplified();
        if (!line.isEmpty()) {
            fields_ = line.split(' ');
            return true;
        }
    }
    return false;
}

void OffReader::requireLine(const QString& what, qint64 found, qint64 wanted)
{
    if (!nextLine()) {
        InputDamage::cutOff(
            file_, QStringLiteral("of %1, %2")
                       .arg(counted(wanted, what), counted(found, QStringLiteral("is there"),
                                                           QStringLiteral("are there"))));
    }
}

qint64 OffReader::count(qsizetype field) const
{
    bool isNumber = false;
    const qint64 number = fields_.value(field).toLongLong(&isNumber);
    if (!isNumber || number < 0) {
        fail(QStringLiteral("\"%1\" is no number of vertices, faces or corners")
                 .arg(QString::fromUtf8(fields_.value(field).left(40))));
    }
    return number;
}

void OffReader::fail(const QString& what) const
{
    InputDamage::damaged(file_.fileName(), QStringLiteral("line %1: %2").arg(line_).arg(what));
}

} // namespace Ovra::GeoTool
