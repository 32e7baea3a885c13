#pragma once

#include "GeometryDatabaseExport.h"
#include "Matrix.h"
#include "Vector.h"

namespace Ovra::Geo
{

/// \brief Takes the first face of a periodic pair to the second one: a translation, or else a
///        rotation about an axis.
///
/// A plain record. A default one, all zero, is the rotation that takes every point to the zero
/// point.
class OVRA_GEO_EXPORT PeriodicTransform
{
public:
    /// \brief The transform that takes the second face to the first one.
    PeriodicTransform inverse() const;

    /// \brief The place to which \p point is taken.
    ///
    /// A translation that is not exactly zero is added and nothing else happens. Otherwise the
    /// point is rotated about the axis.
    Vector map(const Vector& point) const;

    /// A point on the axis of the rotation.
    Vector origin;
    /// The translation; anything but zero selects translation over rotation.
    Vector translation;
    /// First unit vector of the local frame.
    Vector xAxis;
    /// Second unit vector of the local frame.
    Vector yAxis;
    /// Third unit vector of the local frame, the axis of the rotation.
    Vector zAxis;
    /// The rotation in the local frame.
    Matrix matrix;
};

} // namespace Ovra::Geo
