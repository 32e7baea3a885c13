#pragma once

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Whether the mesh may have a side on its outside that no mesh face covers.
///
/// Looks at every element once, in a twentieth of the time that it takes to bring their sides
/// together. False is certain but for one chance in 2 to the power of 64; true is not, as where
/// faces or elements lie twice in the same place.
/// \pre the upward lists of the mesh are set, as Mesh::read leaves them
bool mayHaveBareSides(const CaseView& view);

} // namespace Ovra::GeoTool
