#pragma once

class QFile;

namespace Ovra::GeoTool
{

/// \brief Whether an STL file ends in "endsolid", or has the size that its count of triangles calls
/// for.
class StlCheck
{
public:
    /// \brief Whether \p file, open, is as long as the count of triangles of a binary file calls for;
    /// its header may begin with "solid" all the same. Leaves the file at its start.
    static bool isBinary(QFile& file);

    /// \brief Throws ToolError, InputDamaged, if \p file, open and at its start, is not whole.
    static void check(QFile& file);
};

} // namespace Ovra::GeoTool
