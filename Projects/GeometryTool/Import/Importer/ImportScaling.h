#pragma once

namespace Ovra::GeoTool
{

struct ImportedMesh;

/// \brief Multiplies all places of an import by a factor, and what follows from them: boxes,
/// centroids, lengths, areas and volumes.
namespace ImportScaling
{

/// \brief Scales \p mesh, geometry included; \p factor must be finite and above 0.
/// \return false if numbers become too large to be finite; \p mesh is of no use then
bool apply(ImportedMesh& mesh, double factor);

} // namespace ImportScaling

} // namespace Ovra::GeoTool
