#include "OutputFiles.h"

#include "PartFile.h"
#include "TemporaryName.h"
#include "ToolError.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/resource.h>
#include <system_error>
#include <unistd.h>
#include <utility>

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

void requireDirectoryOf(const QString& path)
{
    const QString directory = QFileInfo(path).absolutePath();
    if (!QFileInfo(directory).isDir()) {
        throw outputError(path, QStringLiteral("there is no directory %1").arg(directory));
    }
}

/// Half of the descriptors that the system lets this process have: others need some too.
int descriptorBudget()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return 0;
    }
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
    constexpr rlim_t most = 1 << 16; // the limit may be none
    return static_cast<int>(std::min(limit.rlim_cur, most) / 2);
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
    std::unique_ptr<PartFile> part; // none for a device or a pipe
    CheckedFile file;
    bool inPlace = false;

    void open(const TemporaryName& names);
    void openDirectly();
    void openPart(const TemporaryName& names);
    void bringToDisk();
    void giveName();
    void release();
    void keepOld(const TemporaryName& names);
    void putInPlace();
    bool takeBack(const TemporaryName& names);
    void dropBackup();
    void require(const std::error_code& error) const;
};

void OutputFiles::Entry::require(const std::error_code& error) const
{
    if (error) {
        throw outputError(path, QString::fromStdString(error.message()));
    }
}

void OutputFiles::Entry::open(const TemporaryName& names)
{
    if (isStandardOutput(path) || isDeviceOrPipe(path)) {
        openDirectly();
    } else {
        openPart(names);
    }
}

void OutputFiles::Entry::openDirectly()
{
    const bool standard = isStandardOutput(path);
    path = standard ? QStringLiteral("standard output") : path;
    file.setFileName(path);
    if (!(standard ? file.open(STDOUT_FILENO, QIODevice::WriteOnly)
                   : file.open(QIODevice::WriteOnly))) {
        throw outputError(path, file.errorString());
    }
}

void OutputFiles::Entry::openPart(const TemporaryName& names)
{
    requireReplaceable(path);
    target = targetOf(path);
    part = std::make_unique<PartFile>(names.part(target));
    require(part->create(target));
    Descriptor written = part->openForWriting();
    if (!written.isOpen()) {
        throw outputError(path, QString::fromLocal8Bit(std::strerror(errno)));
    }
    if (!file.open(written.number(), QIODevice::WriteOnly, QFileDevice::AutoCloseHandle)) {
        throw outputError(path, file.errorString());
    }
    written.release();
}

void OutputFiles::Entry::bringToDisk()
{
    if (!file.isOpen()) {
        return; // is finished
    }
    if (!file.bringToDisk()) {
        throw outputError(path, file.failure());
    }
    file.close();
    if (file.error() != QFileDevice::NoError) {
        throw outputError(path, file.errorString());
    }
}

void OutputFiles::Entry::giveName()
{
    if (part) {
        require(part->giveName());
    }
}

void OutputFiles::Entry::release()
{
    giveName();
    part->release();
}

/// Leaves the old file under its own name too, so that there is no moment without one.
void OutputFiles::Entry::keepOld(const TemporaryName& names)
{
    if (!part || !QFile::exists(target)) {
        return;
    }
    const QString name = names.old(target);
    std::error_code error;
    std::filesystem::create_hard_link(toPath(target), toPath(name), error);
    if (error) { // a file system without links
        std::filesystem::rename(toPath(target), toPath(name), error);
    }
    require(error);
    backup = name;
}

void OutputFiles::Entry::putInPlace()
{
    if (part) {
        require(part->moveTo(target));
        inPlace = true;
    }
}

bool OutputFiles::Entry::takeBack(const TemporaryName& names)
{
    std::error_code error;
    if (backup.isEmpty()) {
        if (inPlace) {
            std::filesystem::remove(toPath(target), error);
        }
        return !error;
    }
    std::filesystem::rename(toPath(backup), toPath(target), error);
    if (!error) {
        QFile::remove(backup); // where both were the same file, nothing has been renamed
        return true;
    }
    if (QFile::rename(backup, names.kept(target))) {
        backup = names.kept(target);
    }
    return false;
}

void OutputFiles::Entry::dropBackup()
{
    if (!backup.isEmpty()) {
        QFile::remove(backup);
    }
}

OutputFiles::OutputFiles() = default;

OutputFiles::~OutputFiles()
{
    while (!entries_.empty()) { // in this order, for TemporaryName::unfinished()
        entries_.pop_back();
    }
    for (const QString& directory : madeDirectories_) {
        QDir().rmdir(directory); // unless something is in it
    }
}

QFile& OutputFiles::add(const QString& path)
{
    auto entry = std::make_unique<Entry>();
    entry->path = path;
    entry->open(names_);
    entries_.push_back(std::move(entry));
    return entries_.back()->file;
}

void OutputFiles::finish(QFile& file)
{
    const auto found = std::find_if(entries_.rbegin(), entries_.rend(),
                                    [&](const auto& entry) { return &entry->file == &file; });
    if (found == entries_.rend()) {
        return;
    }
    Entry& entry = **found;
    entry.bringToDisk();
    if (!entry.part) {
        return;
    }
    static const int budget = descriptorBudget();
    if (heldCount_ < budget) {
        ++heldCount_;
    } else {
        release(entry);
    }
}

/// One file of the set stays open in each directory: by it other processes know that the closed ones
/// are no leftovers.
void OutputFiles::release(Entry& entry)
{
    const QString directory = QFileInfo(entry.target).path();
    if (directoriesWithReleased_.contains(directory)) {
        entry.release();
        return;
    }
    entry.giveName();
    directoriesWithReleased_.insert(directory);
}

void OutputFiles::requireFolder(const QString& path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isDir()) {
        throw outputError(path, QStringLiteral("it is no directory"));
    }
}

void OutputFiles::addDirectory(const QString& path)
{
    if (QFileInfo(path).isDir()) {
        return;
    }
    requireFolder(path);
    requireDirectoryOf(path);
    if (!QDir().mkdir(path)) {
        throw outputError(path, QStringLiteral("the directory cannot be made"));
    }
    madeDirectories_ += path;
}

void OutputFiles::addRemoval(const QString& path)
{
    removals_ += path;
}

void OutputFiles::requireReplaceable(const QString& path)
{
    const QFileInfo info(path);
    if (info.isDir()) {
        throw outputError(path, QStringLiteral("it is a directory"));
    }
    if (info.exists() && !info.isWritable()) {
        throw outputError(path, QStringLiteral("the file is write-protected"));
    }
    requireDirectoryOf(path);
}

bool OutputFiles::isStandardOutput(const QString& path)
{
    return path == QLatin1String("-");
}

bool OutputFiles::isDeviceOrPipe(const QString& path)
{
    const QFileInfo info(path);
    return info.exists() && !info.isFile() && !info.isDir();
}

bool OutputFiles::isTerminal(const QString& path)
{
    if (isStandardOutput(path)) {
        return isatty(STDOUT_FILENO) == 1;
    }
    std::error_code error; // where there is nothing
    const bool isDevice = std::filesystem::is_character_file(toPath(path), error);
    const Descriptor device(
        isDevice ? open(QFile::encodeName(path).constData(), O_RDONLY | O_NOCTTY | O_NONBLOCK)
                 : -1);
    return device.isOpen() && isatty(device.number()) == 1;
}

QString OutputFiles::unfinished(const QString& first, const QString& second)
{
    return TemporaryName::unfinished(targetOf(first), targetOf(second));
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
    const Descriptor lock = lockDirectory();
    try {
        replace();
    } catch (const ToolError& error) {
        throw ToolError(error.exitCode(), error.text() + takeBack());
    }
    for (const std::unique_ptr<Entry>& entry : entries_) {
        entry->dropBackup();
    }
    removeOutdated();
    if (lock.isOpen()) {
        removeLeftovers();
    }
}

void OutputFiles::removeOutdated()
{
    QSet<QString> targets;
    for (const std::unique_ptr<Entry>& entry : entries_) {
        targets.insert(entry->target);
    }
    for (const QString& path : removals_) {
        if (!targets.contains(targetOf(path))) {
            QFile::remove(path);
        }
    }
}

/// One run at a time: of two that replace the same pair, each could be the last at one half.
Descriptor OutputFiles::lockDirectory() const
{
    if (entries_.empty() || !entries_.front()->part) {
        return Descriptor();
    }
    const QString directory = QFileInfo(entries_.front()->target).path();
    Descriptor opened(open(QFile::encodeName(directory).constData(), O_RDONLY | O_CLOEXEC));
    return opened.isOpen() && flock(opened.number(), LOCK_EX) == 0 ? std::move(opened)
                                                                   : Descriptor();
}

void OutputFiles::replace()
{
    for (const std::unique_ptr<Entry>& entry : entries_) {
        entry->giveName();
    }
    for (const std::unique_ptr<Entry>& entry : entries_) {
        if (entry != entries_.back()) {
            entry->keepOld(names_);
        }
        entry->putInPlace();
    }
}

void OutputFiles::removeLeftovers()
{
    QStringList targets;
    // NOLINTNEXTLINE(modernize-loop-convert): backwards, for which ranges are too new for some compilers
    for (auto entry = entries_.rbegin(); entry != entries_.rend(); ++entry) {
        if ((*entry)->part) {
            targets += (*entry)->target;
        }
    }
    TemporaryName::removeLeftovers(targets);
}

QString OutputFiles::takeBack()
{
    QString failures;
    for (const std::unique_ptr<Entry>& entry : entries_) {
        if (!entry->takeBack(names_)) {
            failures +=
                QStringLiteral("; the old %1 now stands as %2").arg(entry->path, entry->backup);
        }
    }
    return failures;
}

} // namespace Ovra::GeoTool
