#pragma once

class QFile;

namespace Ovra::GeoTool
{

/// \brief Whether Gmsh runs a script to its end: of a last line without a line break it takes the
/// first statement, and says nothing.
class ScriptCheck
{
public:
    /// \brief Throws ToolError, InputDamaged, if \p file, open and at its start, is not whole.
    static void check(QFile& file);
};

} // namespace Ovra::GeoTool
