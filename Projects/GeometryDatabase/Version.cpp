#include "Version.h"

#include "MetaTypeAlias.h"

#include <QTextStream>

#include <tuple>

namespace Ovra::Geo
{

bool Version::operator==(const Version& other) const
{
    return major_ == other.major_ && minor_ == other.minor_ && build_ == other.build_;
}

bool Version::operator<(const Version& other) const
{
    return std::tie(major_, minor_, build_) < std::tie(other.major_, other.minor_, other.build_);
}

QString Version::toString() const
{
    return QString("%1.%2.%3")
        .arg(major_, 0, 10, QChar(' '))
        .arg(minor_, 0, 10, QChar(' '))
        .arg(build_, 0, 10, QChar(' '));
}

Version::operator QVariant() const
{
    return QVariant::fromValue(*this);
}

bool Version::init()
{
    return registerMetaTypeAlias<Version>("geo::Version");
}

QDataStream& operator<<(QDataStream& stream, const Version& version)
{
    return stream << qint32(version.major()) << qint32(version.minor()) << qint32(version.build());
}

QDataStream& operator>>(QDataStream& stream, Version& version)
{
    qint32 major = 0;
    qint32 minor = 0;
    qint32 build = 0;
    stream >> major >> minor >> build;
    version.setVersion(major, minor, build);
    return stream;
}

QTextStream& operator<<(QTextStream& stream, const Version& version)
{
    return stream << version.toString();
}

} // namespace Ovra::Geo

OVRA_GEO_DEFINE_SHARED_METATYPE(Ovra::Geo::Version)
