#pragma once

class QFile;

namespace Ovra::GeoTool
{

/// \brief Whether every section "$Name" of a Gmsh mesh file is closed by "$EndName".
class GmshMeshCheck
{
public:
    /// \brief Throws ToolError, InputDamaged, if \p file, open and at its start, is not whole.
    static void check(QFile& file);
};

} // namespace Ovra::GeoTool
