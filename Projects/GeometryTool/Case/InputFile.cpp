#include "InputFile.h"

#include "Progress.h"
#include "ToolError.h"

#include <QFileInfo>

namespace Ovra::GeoTool
{

namespace
{

QString reasonAgainst(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return QStringLiteral("no such file");
    }
    return info.isFile() ? QString() : QStringLiteral("it is no regular file");
}

} // namespace

InputFile::InputFile(const QString& path, Progress& progress)
    : file_(path)
    , progress_(progress)
{
}

void InputFile::openOrThrow()
{
    QString reason = reasonAgainst(path());
    if (reason.isEmpty() && !file_.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        reason = file_.errorString();
    }
    if (!reason.isEmpty()) {
        throw ToolError(ExitCode::InputMissing,
                        QStringLiteral("cannot read %1: %2").arg(path(), reason));
    }
    QIODevice::open(QIODevice::ReadOnly);
}

bool InputFile::seek(qint64 position)
{
    return QIODevice::seek(position) && file_.seek(position);
}

qint64 InputFile::readData(char* data, qint64 maxSize)
{
    const qint64 count = file_.read(data, maxSize);
    progress_.updateBytes(file_.pos(), file_.size());
    if (count < 0) {
        setErrorString(file_.errorString());
    }
    return count;
}

qint64 InputFile::writeData(const char*, qint64)
{
    return -1;
}

} // namespace Ovra::GeoTool
