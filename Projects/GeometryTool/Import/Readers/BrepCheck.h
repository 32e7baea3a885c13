#pragma once

class QFile;

namespace Ovra::GeoTool
{

/// \brief Whether all shapes of a BREP file are there, and a reference to the whole behind them.
///
/// Each shape closes its list of parts with an asterisk; a reference to the last one ends the file.
/// The kernel reads on for ever in some files that are cut off.
class BrepCheck
{
public:
    /// \brief Throws ToolError, InputDamaged, if \p file, open and at its start, is not whole.
    static void check(QFile& file);
};

} // namespace Ovra::GeoTool
