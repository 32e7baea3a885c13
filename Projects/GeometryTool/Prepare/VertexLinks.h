#pragma once

#include "AttributeType.h"

#include <array>
#include <functional>

namespace Ovra::Geo
{
class Mesh;
class MeshEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief Attributes of mesh vertices by which they name another one; Mesh::renumber() keeps them
///        in step.
const std::array<Geo::AttributeType, 5>& vertexLinkTypes();

/// \brief Visits every such attribute in \p mesh: the vertex, by ascending id, the attribute, and
///        the id that it names.
void forEachVertexLink(
    const Geo::Mesh& mesh,
    const std::function<void(Geo::MeshEntity&, const Geo::AttributeType&, int)>& visit);

} // namespace Ovra::GeoTool
