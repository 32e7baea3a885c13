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

void requireReplaceable(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir()) {
        throw outputError(path, QStringLiteral("it is a directory"));
    }
    if (info.exists() && !info.isWritable()) {
        throw outputError(path, QStringLiteral("the file is write-protected"));
    }
    if (!QFileInfo(info.absolutePath()).isDir()) {
        throw outputError(path,
                          QStringLiteral("there is no directory %1").arg(info.absolutePath()));
    }
}

} // namespace

/// A QFile that remembers its first failure. A QFile by itself answers a short write with a number
/// that streams lose, and forgets it: a full disk would pass unseen.
class OutputFiles::CheckedFile : public QFile
{
public:
    QString failure() const { return failure_; }

    /// \brief Empties Qt's buffer and the system's.
    bool bringToDisk();

protected:
    qint64 writeData(const char* data, qint64 size) override;

private:
    void remember(const QString& failure);
    void rememberReason();

    QString failure_;
};

qint64 OutputFiles::CheckedFile::writeData(const char* data, qint64 size)
{
    qint64 done = 0;
    while (done < size) {
        const qint64 count = QFile::writeData(data + done, size - done);
        if (count <= 0) {
            rememberReason();
            return -1;
        }
        done += count;
    }
    return done;
}

bool OutputFiles::CheckedFile::bringToDisk()
{
    if (!flush() || error() != NoError) {
        rememberReason();
    } else if (fsync(handle()) != 0 &&
               errno != EINVAL) { // EINVAL is the answer of a pipe or device
        remember(QString::fromLocal8Bit(std::strerror(errno)));
    }
    return failure_.isEmpty();
}

void OutputFiles::CheckedFile::remember(const QString& failure)
{
    if (failure_.isEmpty()) {
        failure_ = failure;
    }
}

/// A flush that got a part out knows no reason; the next one meets the obstacle itself.
void OutputFiles::CheckedFile::rememberReason()
{
    flush();
    remember(errorString());
}

struct OutputFiles::Entry
{
    QString path; // as the user gave it, for messages
    QString target;
    QString backup;
    CheckedFile file;
    bool direct = false;
    bool inPlace = false;

    void open();
    void openBeside();
    void bringToDisk();
    void keepOld();
    void putInPlace();
    bool takeBack();
    void dropBackup();
    void discard();
};

void OutputFiles::Entry::open()
{
    direct = isDeviceOrPipe(path);
    if (!direct) {
        openBeside();
        return;
    }
    file.setFileName(path);
    if (!file.open(QIODevice::WriteOnly)) {
        throw outputError(path, file.errorString());
    }
}

void OutputFiles::Entry::openBeside()
{
    requireReplaceable(path);
    target = targetOf(path);
    file.setFileName(nameBeside(target, "part"));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        throw outputError(path, file.errorString());
    }
    if (QFile::exists(target)) {
        file.setPermissions(QFile::permissions(target));
    }
}

void OutputFiles::Entry::bringToDisk()
{
    if (!file.bringToDisk()) {
        throw outputError(path, file.failure());
    }
    file.close();
    if (file.error() != QFileDevice::NoError) {
        throw outputError(path, file.errorString());
    }
}

/// Leaves the old file under its own name too, so that there is no moment without one.
void OutputFiles::Entry::keepOld()
{
    if (direct || !QFile::exists(target)) {
        return;
    }
    backup = nameBeside(target, "old");
    std::error_code error;
    std::filesystem::create_hard_link(toPath(target), toPath(backup), error);
    if (error) { // a file system without links
        std::filesystem::rename(toPath(target), toPath(backup), error);
    }
    if (error) {
        backup.clear();
        throw outputError(path, QString::fromStdString(error.message()));
    }
}

void OutputFiles::Entry::putInPlace()
{
    if (direct) {
        return;
    }
    std::error_code error;
    std::filesystem::rename(toPath(file.fileName()), toPath(target), error);
    if (error) {
        throw outputError(path, QString::fromStdString(error.message()));
    }
    inPlace = true;
}

bool OutputFiles::Entry::takeBack()
{
    std::error_code error;
    if (!backup.isEmpty()) {
        std::filesystem::rename(toPath(backup), toPath(target), error);
    } else if (inPlace) {
        std::filesystem::remove(toPath(target), error);
    }
    return !error;
}

void OutputFiles::Entry::dropBackup()
{
    if (!backup.isEmpty()) {
        QFile::remove(backup);
    }
}

/// QFile::remove() keeps a file that it cannot flush first.
void OutputFiles::Entry::discard()
{
    file.close();
    std::error_code error;
    std::filesystem::remove(toPath(file.fileName()), error);
}

OutputFiles::OutputFiles() = default;

OutputFiles::~OutputFiles()
{
    for (const std::unique_ptr<Entry>& entry : entries_) {
        if (!entry->direct && !entry->inPlace) {
            entry->discard();
        }
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

bool OutputFiles::isDeviceOrPipe(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile() && !info.isDir();
}

bool OutputFiles::replaces(const QString& path, const QString& other)
{
    std::error_code error; // where one of the two does not exist
    return std::filesystem::equivalent(toPath(targetOf(path)), toPath(other), error);
}

void OutputFiles::commit()
{
    for (const std::unique_ptr<Entry>& entry : entries_) {
        entry->bringToDisk();
    }
    try {
        for (const std::unique_ptr<Entry>& entry : entries_) {
            if (entry != entries_.back()) {
                entry->keepOld();
            }
            entry->putInPlace();
        }
    } catch (const ToolError& error) {
        throw ToolError(error.exitCode(), error.text() + takeBack());
    }
    for (const std::unique_ptr<Entry>& entry : entries_) {
        entry->dropBackup();
    }
}

QString OutputFiles::takeBack()
{
    QString failures;
    for (const std::unique_ptr<Entry>& entry : entries_) {
        if (!entry->takeBack()) {
            failures +=
                QStringLiteral("; the old %1 now stands as %2").arg(entry->path, entry->backup);
        }
    }
    return failures;
}

} // namespace Ovra::GeoTool
