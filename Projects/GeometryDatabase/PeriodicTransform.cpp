#include "PeriodicTransform.h"

namespace Ovra::Geo
{

PeriodicTransform PeriodicTransform::inverse() const
{
    PeriodicTransform result = *this;
    result.translation = -translation;
    result.matrix.transpose();
    return result;
}

Vector PeriodicTransform::map(const Vector& point) const
{
    if (!translation.isZero()) {
        return point + translation;
    }
    Matrix frame;
    frame.setRow(0, xAxis);
    frame.setRow(1, yAxis);
    frame.setRow(2, zAxis);
    Vector local = matrix * (frame * (point - origin));
    frame.transpose();
    return frame * local + origin;
}

} // namespace Ovra::Geo
