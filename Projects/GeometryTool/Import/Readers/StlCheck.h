#pragma once

class QFile;

namespace Ovra::GeoTool
{

/// \brief Whether an STL file ends in "endsolid", or has the size that its count of triangles calls
/// for.
class StlCheck
{
public:
    /// \brief Throws ToolError, InputDamaged, if \p file, open and at its start, is not whole.
    static void check(QFile& file);
};

} // namespace Ovra::GeoTool
