#include "OutputFiles.h"

#include "ToolError.h"

#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace Ovra::GeoTool
{

namespace
{

ToolError outputError(const QString& path, const QString& reason)
{
    return ToolError(ExitCode::OutputFailed,
                     QStringLiteral("cannot write %1: %2").arg(path, reason));
}

std::filesystem::path toPath(const QString& name)
{
    return std::filesystem::path(QFile::encodeName(name).toStdString());
}

/// A rename through a symbolic link would replace the link, so that the link is followed first.
QString targetOf(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

QString nameBeside(const QString& target, const char* suffix)
{
    const quint32 number = QRandomGenerator::system()->generate();
    return QStringLiteral("%1.%2.%3")
        .arg(target)
        .arg(number, 8, 16, QLatin1Char('0'))
        .arg(QLatin1String(suffix));
}

bool isDeviceOrPipe(const QFileInfo& info)
{
    return info.exists() && !info.isFile() && !info.isDir();
}

void requireReplaceable(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir())
        throw outputError(path, QStringLiteral("it is a directory"));
    if (info.exists() && !info.isWritable())
        throw outputError(path, QStringLiteral("the file is write-protected"));
    if (!QFileInfo(info.absolutePath()).isDir())
        throw outputError(path,
                          QStringLiteral("there is no directory %1").arg(info.absolutePath()));
}

} // namespace

struct OutputFiles::Entry
{
    QString path; // as the user gave it, for messages
    QString target;
    QString backup;
    QFile file;
    bool direct = false;
    bool inPlace = false;

    void open();
    void openBeside();
    void bringToDisk();
    void keepOld();
    void putInPlace();
    bool takeBack();
    void dropBackup();
};

void OutputFiles::Entry::open()
{
    direct = isDeviceOrPipe(QFileInfo(path));
    if (!direct) {
        openBeside();
        return;
    }
    file.setFileName(path);
    if (!file.open(QIODevice::WriteOnly))
        throw outputError(path, file.errorString());
}

void OutputFiles::Entry::openBeside()
{
    requireReplaceable(path);
    target = targetOf(path);
    file.setFileName(nameBeside(target, "part"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        throw outputError(path, file.errorString());
    if (QFile::exists(target))
        file.setPermissions(QFile::permissions(target));
}

void OutputFiles::Entry::bringToDisk()
{
    const bool flushed = file.flush() && file.error() == QFileDevice::NoError;
    if (!flushed)
        throw outputError(path, file.errorString());
    if (!direct && fsync(file.handle()) != 0)
        throw outputError(path, QString::fromLocal8Bit(std::strerror(errno)));
    file.close();
    if (file.error() != QFileDevice::NoError)
        throw outputError(path, file.errorString());
}

/// Leaves the old file under its own name too, so that there is no moment without one.
void OutputFiles::Entry::keepOld()
{
    if (direct || !QFile::exists(target))
        return;
    backup = nameBeside(target, "old");
    std::error_code error;
    std::filesystem::create_hard_link(toPath(target), toPath(backup), error);
    if (error) // a file system without links
        std::filesystem::rename(toPath(target), toPath(backup), error);
    if (error) {
        backup.clear();
        throw outputError(path, QString::fromStdString(error.message()));
    }
}

void OutputFiles::Entry::putInPlace()
{
    if (direct)
        return;
    std::error_code error;
    std::filesystem::rename(toPath(file.fileName()), toPath(target), error);
    if (error)
        throw outputError(path, QString::fromStdString(error.message()));
    inPlace = true;
}

bool OutputFiles::Entry::takeBack()
{
    std::error_code error;
    if (!backup.isEmpty())
        std::filesystem::rename(toPath(backup), toPath(target), error);
    else if (inPlace)
        std::filesystem::remove(toPath(target), error);
    return !error;
}

void OutputFiles::Entry::dropBackup()
{
    if (!backup.isEmpty())
        QFile::remove(backup);
}

OutputFiles::OutputFiles() = default;

OutputFiles::~OutputFiles()
{
    for (const std::unique_ptr<Entry>& entry : entries_) {
        if (!entry->direct && !entry->inPlace)
            entry->file.remove();
    }
}

QFile& OutputFiles::add(const QString& path)
{
    auto entry = std::make_unique<Entry>();
    entry->path = path;
    entry->open();
    entries_.push_back(std::move(entry));
    return entries_.back()->file;
}

void OutputFiles::commit()
{
    for (const std::unique_ptr<Entry>& entry : entries_)
        entry->bringToDisk();
    try {
        for (const std::unique_ptr<Entry>& entry : entries_) {
            if (entry != entries_.back())
                entry->keepOld();
            entry->putInPlace();
        }
    } catch (const ToolError& error) {
        throw ToolError(error.exitCode(), error.text() + takeBack());
    }
    for (const std::unique_ptr<Entry>& entry : entries_)
        entry->dropBackup();
}

QString OutputFiles::takeBack()
{
    QString failures;
    for (const std::unique_ptr<Entry>& entry : entries_) {
        if (!entry->takeBack())
            failures +=
                QStringLiteral("; the old %1 now stands as %2").arg(entry->path, entry->backup);
    }
    return failures;
}

} // namespace Ovra::GeoTool
