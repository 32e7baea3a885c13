#include "PartFile.h"

#include "TemporaryName.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Ovra::GeoTool
{

namespace
{

constexpr mode_t allMayReadAndWrite = 0666; // less what the umask takes away

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

void takePermissions(int descriptor, const QString& target)
{
    struct stat facts = {};
    if (stat(QFile::encodeName(target).constData(), &facts) == 0) {
        fchmod(descriptor, facts.st_mode & 0777); // as before: a file system may have none
    }
}

} // namespace

PartFile::PartFile(const QString& name)
    : name_(name)
{
}

PartFile::~PartFile()
{
    if (isNamed_) {
        unlink(QFile::encodeName(name_).constData());
    }
}

std::error_code PartFile::create(const QString& target)
{
    if (!createUnnamed() && !createNamed()) {
        return lastError();
    }
    takePermissions(file_.number(), target);
    return {};
}

/// Without /proc the file could not get a name later.
bool PartFile::createUnnamed()
{
    const QByteArray directory = QFile::encodeName(QFileInfo(name_).path());
    file_ = Descriptor(
        open(directory.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, allMayReadAndWrite));
    if (!file_.isOpen() || access(linkToDescriptor().constData(), F_OK) != 0) {
        return false;
    }
    TemporaryName::hold(file_);
    return true;
}

/// Another process may take the file for a leftover before this one holds it.
bool PartFile::createNamed()
{
    const QByteArray name = QFile::encodeName(name_);
    while (!isNamed_) {
        file_ = Descriptor(
            open(name.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, allMayReadAndWrite));
        if (!file_.isOpen()) {
            return false;
        }
        TemporaryName::hold(file_);
        isNamed_ = isLinked();
    }
    return true;
}

bool PartFile::isLinked() const
{
    struct stat facts = {};
    return fstat(file_.number(), &facts) != 0 || facts.st_nlink > 0;
}

QByteArray PartFile::linkToDescriptor() const
{
    return "/proc/self/fd/" + QByteArray::number(file_.number());
}

Descriptor PartFile::openForWriting() const
{
    return Descriptor(fcntl(file_.number(), F_DUPFD_CLOEXEC, 0));
}

std::error_code PartFile::giveName()
{
    if (!isNamed_ && linkat(AT_FDCWD, linkToDescriptor().constData(), AT_FDCWD,
                            QFile::encodeName(name_).constData(), AT_SYMLINK_FOLLOW) != 0) {
        return lastError();
    }
    isNamed_ = true;
    return {};
}

std::error_code PartFile::moveTo(const QString& target)
{
    if (rename(QFile::encodeName(name_).constData(), QFile::encodeName(target).constData()) != 0) {
        return lastError();
    }
    isNamed_ = false;
    return {};
}

} // namespace Ovra::GeoTool
