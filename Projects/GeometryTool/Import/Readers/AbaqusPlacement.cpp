#include "AbaqusPlacement.h"

#include <QtMath>

namespace Ovra::GeoTool
{

using Geo::Vector;

void AbaqusPlacement::setRotation(const Vector& a, const Vector& b, double degrees)
{
    origin_ = a;
    axis_ = b - a;
    axis_.normalize();
    cosine_ = std::cos(qDegreesToRadians(degrees));
    sine_ = std::sin(qDegreesToRadians(degrees));
}

// Rodrigues' formula.
Vector AbaqusPlacement::place(const Vector& point) const
{
    const Vector arm = point + translation_ - origin_;
    return origin_ + arm * cosine_ + (axis_ ^ arm) * sine_ +
           axis_ * ((axis_ * arm) * (1.0 - cosine_));
}

} // namespace Ovra::GeoTool
