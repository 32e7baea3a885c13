#pragma once

class QFile;

namespace Ovra::GeoTool
{

/// \brief Whether a Medit file is ended by "End" and holds no elements that Gmsh misreads.
class MeditCheck
{
public:
    /// \brief Throws ToolError, InputDamaged, if \p file, open and at its start, is not whole.
    static void check(QFile& file);
};

} // namespace Ovra::GeoTool
