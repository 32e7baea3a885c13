#include "VtkCheck.h"

#include "Counted.h"
#include "InputDamage.h"
#include "ToolError.h"

#include <QByteArray>
#include <QFile>

namespace Ovra::GeoTool
{

namespace
{

constexpr int HeaderLines = 20;
constexpr qint64 LongestLine = 100000;

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
        InputDamage::cutOff(
            file,
            counted(missing,
                    QStringLiteral("of %1 values of the last table is missing").arg(wanted),
                    QStringLiteral("of %1 values of the last table are missing").arg(wanted)));
    }
}

} // namespace

void VtkCheck::check(QFile& file)
{
    const QByteArray dataset = VtkCheck::dataset(file.fileName());
    if (dataset == "POLYDATA") {
        return; // its reader sees to that
    }
    if (!dataset.isEmpty() && dataset != "UNSTRUCTURED_GRID") {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: DATASET %2 is not read; UNSTRUCTURED_GRID and POLYDATA "
                                       "are")
                            .arg(file.fileName(), QString::fromUtf8(dataset.left(40))));
    }
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
        InputDamage::cutOff(file, QStringLiteral("there are no CELL_TYPES"));
    }
    constexpr qint64 bytesOfType = 4;
    if (binary) {
        found = (file.size() - file.pos()) / bytesOfType;
    }
    while (!binary && !file.atEnd() && found < wanted) {
        found += numbersInLine(file.readLine());
    }
    if (found < wanted) {
        InputDamage::cutOff(file, QStringLiteral("CELL_TYPES announces %1, of which %2")
                                      .arg(counted(wanted, QStringLiteral("type")),
                                           counted(found, QStringLiteral("is there"),
                                                   QStringLiteral("are there"))));
    }
    if (!binary) {
        checkVtkTables(file);
    }
}

QByteArray VtkCheck::dataset(const QString& path)
{
    QFile file(path);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    for (int i = 0; isOpen && i < HeaderLines && !file.atEnd(); ++i) {
        const QByteArray line = file.readLine(LongestLine).simplified();
        if (line.startsWith("DATASET ")) {
            return line.mid(8).toUpper();
        }
    }
    return QByteArray();
}

} // namespace Ovra::GeoTool
