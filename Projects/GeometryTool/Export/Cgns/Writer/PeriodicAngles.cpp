#include "PeriodicAngles.h"

#include <algorithm>
#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

std::array<float, 3> floats(const Vector& vector)
{
    return {static_cast<float>(vector.x()), static_cast<float>(vector.y()),
            static_cast<float>(vector.z())};
}

/// \param x, y, z what becomes of the unit vectors
Vector anglesOf(const Vector& x, const Vector& y, const Vector& z)
{
    const double sine = std::clamp(-x.z(), -1.0, 1.0);
    const double cosine = std::hypot(x.x(), x.y());
    if (cosine < 1e-9) { // turned by a quarter about y: x and z are one axis then
        return {std::atan2(-z.y(), y.y()), std::asin(sine), 0.0};
    }
    return {std::atan2(y.z(), z.z()), std::atan2(sine, cosine), std::atan2(x.y(), x.x())};
}

} // namespace

PeriodicAngles::PeriodicAngles(const PeriodicTransform& transform)
{
    const Vector origin = transform.origin;
    const Vector moved = transform.map(origin);
    translation = floats(moved - origin);
    if (transform.translation.length() > 0.0) {
        return;
    }
    center = floats(origin);
    angle = floats(anglesOf(transform.map(origin + Vector(1, 0, 0)) - moved,
                            transform.map(origin + Vector(0, 1, 0)) - moved,
                            transform.map(origin + Vector(0, 0, 1)) - moved));
}

} // namespace Ovra::GeoTool
