#pragma once

#include "GeometryDatabaseExport.h"
#include "MetaTypeSharing.h"

#include <QDataStream>
#include <QMetaType>
#include <QString>
#include <QVariant>

QT_FORWARD_DECLARE_CLASS(QTextStream)

namespace Ovra::Geo
{

/// \brief A three-part version number, ordered by major, then minor, then build; 0.0.0 by default.
///
/// Known to Qt's meta types as "Ovra::Geo::Version" and, for values stored long ago,
/// "geo::Version".
class OVRA_GEO_EXPORT Version
{
public:
    /// \brief The version of these parts.
    constexpr Version(int major = 0, int minor = 0, int build = 0)
        : major_(major)
        , minor_(minor)
        , build_(build)
    {
    }

    /// \brief The part that counts most in comparisons.
    constexpr int major() const { return major_; }

    /// \brief The part that counts where the major ones are equal.
    constexpr int minor() const { return minor_; }

    /// \brief The part that counts where the other two are equal.
    constexpr int build() const { return build_; }

    /// \brief Sets all three parts.
    void setVersion(int major, int minor, int build) { *this = Version(major, minor, build); }

    /// \brief True when at least one of the three parts is not 0.
    constexpr bool isValid() const { return major_ != 0 || minor_ != 0 || build_ != 0; }

    /// \name Comparison by major, then minor, then build, as signed numbers
    /// \{
    bool operator==(const Version& other) const; ///< all three parts are equal
    bool operator!=(const Version& other) const { return !(*this == other); } ///< some part differs
    bool operator<(const Version& other) const;                               ///< earlier
    bool operator<=(const Version& other) const { return !(other < *this); }  ///< earlier or equal
    bool operator>(const Version& other) const { return other < *this; }      ///< later
    bool operator>=(const Version& other) const { return !(*this < other); }  ///< later or equal
    /// \}

    /// \brief The text "major.minor.build".
    QString toString() const;

    /// \brief A variant that holds this version under its meta type.
    operator QVariant() const;

private:
    static bool init();

    // Inline: the older name stands before the static objects of any file that includes this.
    inline static const bool init_ = init();

    qint32 major_;
    qint32 minor_;
    qint32 build_;
};

/// \brief Writes major, minor and build as signed 32-bit integers.
OVRA_GEO_EXPORT QDataStream& operator<<(QDataStream& stream, const Version& version);

/// \brief Reads major, minor and build as signed 32-bit integers.
OVRA_GEO_EXPORT QDataStream& operator>>(QDataStream& stream, Version& version);

/// \brief Writes Version::toString() and nothing else.
OVRA_GEO_EXPORT QTextStream& operator<<(QTextStream& stream, const Version& version);

} // namespace Ovra::Geo

OVRA_GEO_DECLARE_SHARED_METATYPE(Ovra::Geo::Version)
