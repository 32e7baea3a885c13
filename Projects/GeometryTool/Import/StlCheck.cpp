#include "StlCheck.h"

#include "Counted.h"
#include "FileTail.h"
#include "InputDamage.h"

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <optional>

namespace Ovra::GeoTool
{

namespace
{

constexpr qint64 HeaderSize = 84;
constexpr qint64 TriangleSize = 50;

/// \brief How many triangles the header of a binary file promises; nothing if it is not whole.
std::optional<qint64> promisedTriangles(QFile& file)
{
    file.seek(HeaderSize - 4);
    const QByteArray count = file.read(4);
    file.seek(0);
    return count.size() == 4 ? std::optional<qint64>(qFromLittleEndian<quint32>(count.constData()))
                             : std::nullopt;
}

/// \brief Says in what the size of a binary file departs from its header.
[[noreturn]] void failBinary(QFile& file)
{
    const std::optional<qint64> promised = promisedTriangles(file);
    if (!promised) {
        InputDamage::cutOff(file, QStringLiteral("a binary STL file has a header of 84 bytes"));
    }
    const QString text = QStringLiteral("binary STL whose header promises %1")
                             .arg(counted(*promised, QStringLiteral("triangle")));
    const qint64 more = file.size() - HeaderSize - TriangleSize * *promised;
    if (more < 0) {
        const qint64 present = (file.size() - HeaderSize) / TriangleSize;
        InputDamage::cutOff(file, QStringLiteral("%1, of which %2")
                                      .arg(text, counted(present, QStringLiteral("is there"),
                                                         QStringLiteral("are there"))));
    }
    InputDamage::damaged(file.fileName(),
                         QStringLiteral("%1; behind them %2")
                             .arg(text, counted(more, QStringLiteral("byte is left over"),
                                                QStringLiteral("bytes are left over"))));
}

} // namespace

bool StlCheck::isBinary(QFile& file)
{
    const std::optional<qint64> promised = promisedTriangles(file);
    return promised && file.size() == HeaderSize + TriangleSize * *promised;
}

void StlCheck::check(QFile& file)
{
    if (isBinary(file)) {
        return;
    }
    const QByteArray start = file.peek(1000);
    if (start.contains('\0')) {
        failBinary(file);
    }
    if (!start.trimmed().toLower().startsWith("solid")) {
        InputDamage::damaged(file.fileName(),
                             QStringLiteral("not an STL file: as a text it must begin with solid"));
    }
    const QByteArray last = FileTail::lastLine(file).simplified().toLower();
    if (!last.startsWith("endsolid") && !last.startsWith("end solid")) {
        InputDamage::cutOff(file, QStringLiteral("there is no endsolid"));
    }
}

} // namespace Ovra::GeoTool
