#pragma once

#include "Vector.h"

namespace Ovra::GeoTool
{

/// \brief Where an instance stands in its assembly: moved first, then turned about an axis.
class AbaqusPlacement
{
public:
    void setTranslation(const Geo::Vector& translation) { translation_ = translation; }

    /// \brief Turns about the axis from \p a to \p b, by the right hand.
    /// \param degrees angle in degrees
    /// \pre \p a and \p b differ
    void setRotation(const Geo::Vector& a, const Geo::Vector& b, double degrees);

    Geo::Vector place(const Geo::Vector& point) const;

private:
    Geo::Vector translation_;
    Geo::Vector origin_;
    Geo::Vector axis_; ///< of unit length
    double cosine_ = 1;
    double sine_ = 0;
};

} // namespace Ovra::GeoTool
