#pragma once

#include "GeometryDatabaseExport.h"
#include "MetaTypeSharing.h"

#include <QDataStream>
#include <QMetaType>
#include <QString>
#include <QVariant>

#include <cmath>

QT_FORWARD_DECLARE_CLASS(QTextStream)

namespace Ovra::Geo
{

/// \brief A point or a direction in three dimensions: three doubles, (0, 0, 0) by default.
///
/// A plain value without heap or virtual operations. `*` between vectors is the dot product and `^`
/// the cross product, which binds more weakly than comparison: put it in parentheses. Division by
/// zero follows IEEE arithmetic in every form.
///
/// Known to Qt's meta types as "Ovra::Geo::Vector" and, for values stored long ago, "geo::Vector".
class OVRA_GEO_EXPORT Vector
{
public:
    /// \brief The vector (0, 0, 0).
    constexpr Vector() = default;

    /// \brief The vector of these components.
    constexpr Vector(double x, double y, double z)
        : x_(x)
        , y_(y)
        , z_(z)
    {
    }

    /// \brief The first component.
    constexpr double x() const { return x_; }

    /// \brief The second component.
    constexpr double y() const { return y_; }

    /// \brief The third component.
    constexpr double z() const { return z_; }

    /// \brief Sets all three components.
    void set(double x, double y, double z) { *this = Vector(x, y, z); }

    /// \brief Sets all three components to 0.
    void reset() { *this = Vector(); }

    /// \brief The component at \p index.
    /// \param index 0 for x, 1 for y, 2 for z; every other index, negative ones included, gives x
    double& operator[](int index) { return index == 1 ? y_ : index == 2 ? z_ : x_; }

    /// \copydoc operator[](int)
    const double& operator[](int index) const { return index == 1 ? y_ : index == 2 ? z_ : x_; }

    /// \brief Exact comparison of the three components.
    bool operator==(const Vector& other) const
    {
        return x_ == other.x_ && y_ == other.y_ && z_ == other.z_;
    }

    /// \brief The negation of operator==().
    bool operator!=(const Vector& other) const { return !(*this == other); }

    /// \brief Whether all three components compare equal to 0.0; so -0.0 counts as zero.
    bool isZero() const { return *this == Vector(); }

    /// \brief Whether the distance to \p other is at most \p relativeTolerance times the length of
    ///        the mean of the two, plus \p absoluteTolerance.
    ///
    /// With a relative tolerance of 0 this is a pure distance test. The limit itself still counts
    /// as equal.
    /// \param other             the vector to compare with
    /// \param relativeTolerance share of the mean's length, without unit
    /// \param absoluteTolerance a length in the unit of the components
    bool isAlmostEqualTo(const Vector& other, double relativeTolerance,
                         double absoluteTolerance) const;

    /// \brief The Euclidean length.
    double length() const { return std::sqrt(x_ * x_ + y_ * y_ + z_ * z_); }

    /// \brief Divides by the length; a vector of length exactly 0 is left as it is.
    void normalize();

    /// \brief The magnitude, never the signed value, of the component that is largest by magnitude.
    /// \param index receives the position of that component, the lowest one on ties; may be null
    double maxComponent(int* index) const;

    /// \brief Turns \p a and \p b into an orthonormal frame with \p c, by the Gram-Schmidt process.
    ///
    /// \p a loses its part along \p c and is normalized, then \p b loses its parts along both and
    /// is normalized. Whichever comes out of length 0 stays the zero vector.
    /// \param a first direction, to be changed
    /// \param b second direction, to be changed
    /// \param c the reference direction, not changed
    /// \pre \p c is of unit length
    static void orthonormalize(Vector& a, Vector& b, Vector& c);

    /// \brief The text "(x, y, z)", each number with up to six significant digits, in any locale.
    QString toString() const;

    /// \brief A variant that holds this vector under its meta type.
    operator QVariant() const;

    /// \brief Multiplies each component by \p factor.
    Vector& operator*=(double factor)
    {
        set(x_ * factor, y_ * factor, z_ * factor);
        return *this;
    }

    /// \brief Divides each component by \p divisor.
    Vector& operator/=(double divisor)
    {
        set(x_ / divisor, y_ / divisor, z_ / divisor);
        return *this;
    }

    /// \brief Adds component by component.
    Vector& operator+=(const Vector& other)
    {
        set(x_ + other.x_, y_ + other.y_, z_ + other.z_);
        return *this;
    }

    /// \brief Subtracts component by component.
    Vector& operator-=(const Vector& other)
    {
        set(x_ - other.x_, y_ - other.y_, z_ - other.z_);
        return *this;
    }

private:
    static bool init();

    // Inline: the older name stands before the static objects of any file that includes this.
    inline static const bool init_ = init();

    double x_ = 0.0;
    double y_ = 0.0;
    double z_ = 0.0;
};

/// \brief Each component times \p factor.
inline Vector operator*(const Vector& vector, double factor)
{
    return Vector(vector) *= factor;
}

/// \brief Each component times \p factor.
inline Vector operator*(double factor, const Vector& vector)
{
    return vector * factor;
}

/// \brief The dot product.
inline double operator*(const Vector& a, const Vector& b)
{
    return a.x() * b.x() + a.y() * b.y() + a.z() * b.z();
}

/// \brief The sum, component by component.
inline Vector operator+(const Vector& a, const Vector& b)
{
    return Vector(a) += b;
}

/// \brief The difference, component by component.
inline Vector operator-(const Vector& a, const Vector& b)
{
    return Vector(a) -= b;
}

/// \brief Each component times -1.0.
inline Vector operator-(const Vector& vector)
{
    return vector * -1.0;
}

/// \brief Each component divided by \p divisor.
inline Vector operator/(const Vector& vector, double divisor)
{
    return Vector(vector) /= divisor;
}

/// \brief The same as \p vector / \p divisor, and not \p divisor over each component.
inline Vector operator/(double divisor, const Vector& vector)
{
    return vector / divisor;
}

/// \brief The cross product.
inline Vector operator^(const Vector& a, const Vector& b)
{
    return Vector(a.y() * b.z() - a.z() * b.y(), a.z() * b.x() - a.x() * b.z(),
                  a.x() * b.y() - a.y() * b.x());
}

/// \brief The hash of the vector's text, with seed 0: vectors that print alike hash alike, whatever
///        their low-order bits.
OVRA_GEO_EXPORT size_t qHash(const Vector& vector);

/// \brief Writes x, y and z as doubles.
OVRA_GEO_EXPORT QDataStream& operator<<(QDataStream& stream, const Vector& vector);

/// \brief Reads x, y and z as doubles.
OVRA_GEO_EXPORT QDataStream& operator>>(QDataStream& stream, Vector& vector);

/// \brief Writes Vector::toString() and nothing else.
OVRA_GEO_EXPORT QTextStream& operator<<(QTextStream& stream, const Vector& vector);

} // namespace Ovra::Geo

OVRA_GEO_DECLARE_SHARED_METATYPE(Ovra::Geo::Vector)
