#include "TemporaryName.h"

#include "Descriptor.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace Ovra::GeoTool
{

namespace
{

const QString partSuffix = QStringLiteral("part");
const QString oldSuffix = QStringLiteral("old");

constexpr qsizetype randomLength = 16;
constexpr qsizetype checkLength = 8;

QString checkOf(const QString& random, const QString& target)
{
    const QByteArray text = (random + QFileInfo(target).fileName()).toUtf8();
    const QByteArray hash = QCryptographicHash::hash(text, QCryptographicHash::Sha256);
    return QString::fromLatin1(hash.toHex().left(checkLength));
}

/// The random digits of a temporary file of \p target; empty for any other file.
QString randomOf(const QString& name, const QString& target, const QString& suffix)
{
    const QString start = QFileInfo(target).fileName() + QLatin1Char('.');
    const QString random = name.mid(start.size(), randomLength);
    return random.size() == randomLength &&
                   name == start + random + checkOf(random, target) + QLatin1Char('.') + suffix
               ? random
               : QString();
}

QStringList filesBeside(const QString& target)
{
    return QFileInfo(target).dir().entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks);
}

/// An open file that nobody holds any more, and that nobody can take hold of as long as this lives.
class Abandoned
{
public:
    explicit Abandoned(const QString& path)
        : path_(QFile::encodeName(path))
        , descriptor_(open(path_.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC))
        , abandoned_(descriptor_.isOpen() && flock(descriptor_.number(), LOCK_EX | LOCK_NB) == 0)
    {
    }

    explicit operator bool() const { return abandoned_; }
    void remove() const { unlink(path_.constData()); }

private:
    QByteArray path_;
    Descriptor descriptor_;
    bool abandoned_;
};

} // namespace

TemporaryName::TemporaryName()
    : random_(QStringLiteral("%1").arg(QRandomGenerator::system()->generate64(),
                                       static_cast<int>(randomLength), 16, QLatin1Char('0')))
{
}

QString TemporaryName::part(const QString& target) const
{
    return beside(target, partSuffix);
}

QString TemporaryName::old(const QString& target) const
{
    return beside(target, oldSuffix);
}

QString TemporaryName::kept(const QString& target) const
{
    return target + QLatin1Char('.') + random_ + QStringLiteral(".kept");
}

QString TemporaryName::beside(const QString& target, const QString& suffix) const
{
    return target + QLatin1Char('.') + random_ + checkOf(random_, target) + QLatin1Char('.') +
           suffix;
}

void TemporaryName::hold(const Descriptor& file)
{
    flock(file.number(), LOCK_SH);
}

void TemporaryName::removeLeftovers(const QString& target)
{
    const QDir directory = QFileInfo(target).dir();
    for (const QString& name : filesBeside(target)) {
        if (randomOf(name, target, partSuffix).isEmpty() &&
            randomOf(name, target, oldSuffix).isEmpty()) {
            continue;
        }
        if (const Abandoned file(directory.filePath(name)); file) {
            file.remove();
        }
    }
}

QString TemporaryName::unfinished(const QString& first, const QString& second)
{
    const QDir directory = QFileInfo(second).dir();
    for (const QString& name : filesBeside(second)) {
        TemporaryName set;
        set.random_ = randomOf(name, second, partSuffix);
        const QString path = directory.filePath(name);
        if (!set.random_.isEmpty() && !QFile::exists(set.part(first)) && Abandoned(path)) {
            return path;
        }
    }
    return QString();
}

} // namespace Ovra::GeoTool
