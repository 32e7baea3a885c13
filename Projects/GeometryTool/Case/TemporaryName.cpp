#include "TemporaryName.h"

#include "Descriptor.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QRandomGenerator>

#include <algorithm>
#include <fcntl.h>
#include <map>
#include <sys/file.h>
#include <unistd.h>
#include <utility>
#include <vector>

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

/// A file in a directory, by what its name tells.
struct Temporary
{
    QString name;
    QString target; ///< without its directory; empty for a file that is none of ours
    QString random;
    QString suffix;
};

Temporary temporaryOf(const QString& name)
{
    const QString suffix = name.section(QLatin1Char('.'), -1);
    const QString digits = name.section(QLatin1Char('.'), -2, -2);
    const QString target = name.section(QLatin1Char('.'), 0, -3);
    const QString random = digits.left(randomLength);
    const bool isOurs = (suffix == partSuffix || suffix == oldSuffix) &&
                        digits.size() == randomLength + checkLength &&
                        digits == random + checkOf(random, target);
    return {name, isOurs ? target : QString(), random, suffix};
}

std::vector<Temporary> temporariesIn(const QDir& directory)
{
    std::vector<Temporary> found;
    for (const QString& name : directory.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks)) {
        if (Temporary file = temporaryOf(name); !file.target.isEmpty()) {
            found.push_back(std::move(file));
        }
    }
    return found;
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

/// The sets of a directory of which some process holds a file.
class HeldSets
{
public:
    explicit HeldSets(const QDir& directory)
        : directory_(directory)
    {
    }

    bool contains(const QString& random)
    {
        const auto known = known_.constFind(random);
        return known != known_.constEnd() ? *known : *known_.insert(random, isHeld(random));
    }

private:
    /// Lists the files anew: the one that is held came before all those that are not.
    bool isHeld(const QString& random) const
    {
        const std::vector<Temporary> files = temporariesIn(directory_);
        return std::any_of(files.begin(), files.end(), [&](const Temporary& file) {
            const QString path = directory_.filePath(file.name);
            return file.random == random && !Abandoned(path) && QFile::exists(path);
        });
    }

    QDir directory_;
    QHash<QString, bool> known_;
};

/// The temporary files of a directory, by their target.
class Leftovers
{
public:
    explicit Leftovers(const QDir& directory)
        : directory_(directory)
        , held_(directory)
    {
        for (const Temporary& file : temporariesIn(directory)) {
            files_[file.target].push_back(file);
        }
    }

    void remove(const QString& target)
    {
        for (const Temporary& file : files_.value(target)) {
            if (held_.contains(file.random)) {
                continue;
            }
            if (const Abandoned left(directory_.filePath(file.name)); left) {
                left.remove();
            }
        }
    }

private:
    QDir directory_;
    HeldSets held_;
    QHash<QString, std::vector<Temporary>> files_;
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

void TemporaryName::removeLeftovers(const QStringList& targets)
{
    std::map<QString, Leftovers> directories;
    for (const QString& target : targets) {
        const QFileInfo info(target);
        directories.try_emplace(info.path(), QDir(info.path()))
            .first->second.remove(info.fileName());
    }
}

QString TemporaryName::unfinished(const QString& first, const QString& second)
{
    const QDir directory = QFileInfo(second).dir();
    for (const Temporary& file : temporariesIn(directory)) {
        TemporaryName set;
        set.random_ = file.random;
        const QString path = directory.filePath(file.name);
        const bool isNewSecond =
            file.target == QFileInfo(second).fileName() && file.suffix == partSuffix;
        if (isNewSecond && !QFile::exists(set.part(first)) && Abandoned(path)) {
            return path;
        }
    }
    return QString();
}

} // namespace Ovra::GeoTool
