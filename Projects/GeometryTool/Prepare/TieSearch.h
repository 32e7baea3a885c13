#pragma once

#include "Vector.h"

#include <QString>

namespace Ovra::Geo
{
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief What must hold for the library to find a mesh entity on a partner face for every point.
///
/// It looks about the nearest vertex for the closest side, and takes it that there is one: a side
/// without length is no place, and farther than 1e10 away it sees nothing.
class TieSearch
{
public:
    TieSearch() = delete;

    /// \brief Whether \p point is near enough to the origin; false for what is no number.
    static bool isWithinReach(const Geo::Vector& point);

    /// \brief Why the search might come to nothing on the mesh of \p face: a vertex that is too far
    ///        out, or that has no neighbour in another place.
    /// \return empty if it cannot
    static QString fault(const Geo::ModelEntity& face);
};

} // namespace Ovra::GeoTool
