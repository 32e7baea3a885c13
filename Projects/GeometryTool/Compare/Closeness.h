#pragma once

#include "Vector.h"

#include <QByteArray>
#include <QVariant>

namespace Ovra::GeoTool
{

/// \brief What passes for equal: real numbers that differ by no more than a tolerance, wherever
/// they stand, and all else if it is the same.
///
/// Two numbers that are none (NaN) are equal, so that a case is equal to itself.
class Closeness
{
public:
    /// \param tolerance 0 or more, in whatever the numbers are in
    explicit Closeness(double tolerance)
        : tolerance_(tolerance)
    {
    }

    double tolerance() const { return tolerance_; }

    bool areClose(double a, double b) const;

    /// \brief Coordinate by coordinate.
    bool areClose(const Geo::Vector& a, const Geo::Vector& b) const;

    /// \brief Values of attributes: equal in type, in being null, and in what they hold. Numbers in
    ///        lists, maps, vectors, matrices and boxes count as numbers do; values of other types
    ///        are equal if a file has the same bytes for them.
    bool areClose(const QVariant& a, const QVariant& b) const;

private:
    bool areScalarsClose(const QVariant& a, const QVariant& b) const;

    double tolerance_;
};

/// \brief What a file has for \p value.
QByteArray bytesOf(const QVariant& value);

} // namespace Ovra::GeoTool
