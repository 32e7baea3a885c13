#pragma once

#include <QString>

namespace Ovra::GeoTool
{

/// \brief What helps where Gmsh's current model has no volume, or one that cannot be meshed.
class VolumeAdvice
{
public:
    /// \brief How a volume is made of the surfaces of an input, or why there is none between them.
    /// \pre surfaces that do not lie in one plane, and no volumes
    /// \param input its path, whose suffix tells a script
    static QString onSurfaces(const QString& input);

    /// \brief What is wrong with the volume in which Gmsh could make no elements: faces that do not
    /// close, or a size of elements that is too large.
    /// \param failure Gmsh's own words; what to say behind them, empty if they are others
    static QString onFailure(const QString& failure);
};

} // namespace Ovra::GeoTool
