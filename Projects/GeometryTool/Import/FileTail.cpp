#include "FileTail.h"

#include <QFile>

namespace Ovra::GeoTool
{

QByteArray FileTail::bytes(QFile& file, qint64 size)
{
    file.seek(qMax<qint64>(0, file.size() - size));
    return file.readAll();
}

QByteArray FileTail::lastLine(QFile& file)
{
    return bytes(file, 400).trimmed().split('\n').last().trimmed();
}

} // namespace Ovra::GeoTool
