#pragma once

#include "Vector.h"

#include <optional>

namespace Ovra::Geo
{
class MeshEntity;
}

namespace Ovra::GeoTool
{

/// \brief The mean of the places of an entity's vertices, of whatever number there are.
///
/// Geo::MeshEntity::centroid(), which is the same, wants the number of a known kind.
/// \return none without vertices
std::optional<Geo::Vector> meanPlaceOf(const Geo::MeshEntity& entity);

} // namespace Ovra::GeoTool
