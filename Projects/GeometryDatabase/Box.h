#pragma once

#include "Vector.h"

#include <limits>

namespace Ovra::Geo
{

/// \brief An axis-aligned bounding box, given by its low and its high corner.
///
/// A default box has no extent: its low corner is the largest finite double on every axis and its
/// high corner the negative of that. Growing it by a point gives the box of that point alone, and
/// adding it to another box leaves that box as it is. Beware of isValid(), which answers true for
/// boxes such as the default one.
///
/// Known to Qt's meta types as "Ovra::Geo::Box" and, for values stored long ago, "geo::Box".
class OVRA_GEO_EXPORT Box
{
public:
    /// \brief The inverted box without extent.
    constexpr Box() = default;

    /// \brief The box with these corners, stored as given: they are not sorted.
    constexpr Box(const Vector& minimum, const Vector& maximum)
        : minimum_(minimum)
        , maximum_(maximum)
    {
    }

    /// \brief The low corner.
    constexpr Vector minimum() const { return minimum_; }

    /// \brief The high corner.
    constexpr Vector maximum() const { return maximum_; }

    /// \brief The point half way between the corners.
    Vector center() const { return 0.5 * (minimum_ + maximum_); }

    /// \brief The high corner minus the low one; infinite for a default box, by overflow.
    Vector extent() const { return maximum_ - minimum_; }

    /// \brief Half the length of extent().
    double radius() const { return 0.5 * extent().length(); }

    /// \brief Whether \p other lies inside this box; a shared boundary counts as inside.
    bool contains(const Box& other) const;

    /// \brief Whether the boxes have a point in common; boxes that only touch do.
    bool intersects(const Box& other) const;

    /// \brief True when the low corner exceeds the high one on at least one axis, as in a default
    ///        box.
    ///
    /// The sense is the opposite of what the name suggests: a box with extent, a flat one included,
    /// answers false.
    bool isValid() const;

    /// \brief Whether both corners lie within \p tolerance times the larger of the two diagonals of
    ///        those of \p other, by Euclidean distance.
    /// \param other     the box to compare with
    /// \param tolerance share of the larger diagonal, without unit
    bool matches(const Box& other, double tolerance) const;

    /// \brief Moves both corners to (0, 0, 0).
    void setToZero();

    /// \brief Grows the box to take in \p other.
    Box& operator+=(const Box& other);

    /// \brief Grows the box to take in \p point.
    Box& operator+=(const Vector& point);

    /// \brief Exact comparison of both corners.
    bool operator==(const Box& other) const
    {
        return minimum_ == other.minimum_ && maximum_ == other.maximum_;
    }

    /// \brief The negation of operator==().
    bool operator!=(const Box& other) const { return !(*this == other); }

    /// \brief The text "[minimum, maximum]", the corners in the form of Vector::toString().
    QString toString() const;

    /// \brief A variant that holds this box under its meta type.
    operator QVariant() const;

private:
    void expandLo(const Vector& point);
    void expandHi(const Vector& point);

    static bool init();

    // Inline: the older name stands before the static objects of any file that includes this.
    inline static const bool init_ = init();

    static constexpr double largest_ = std::numeric_limits<double>::max();

    Vector minimum_ = Vector(largest_, largest_, largest_);
    Vector maximum_ = Vector(-largest_, -largest_, -largest_);
};

/// \brief The smallest box around both.
OVRA_GEO_EXPORT Box operator+(const Box& a, const Box& b);

/// \brief Writes the low and then the high corner.
OVRA_GEO_EXPORT QDataStream& operator<<(QDataStream& stream, const Box& box);

/// \brief Reads the low and then the high corner.
OVRA_GEO_EXPORT QDataStream& operator>>(QDataStream& stream, Box& box);

/// \brief Writes Box::toString() and nothing else.
OVRA_GEO_EXPORT QTextStream& operator<<(QTextStream& stream, const Box& box);

} // namespace Ovra::Geo

OVRA_GEO_DECLARE_SHARED_METATYPE(Ovra::Geo::Box)
