#pragma once

class QFile;

namespace Ovra::GeoTool
{

/// \brief Whether a file holds what begins and ends one of its format.
///
/// Each throws ToolError, InputDamaged, if the file, open and at its start, is not whole.
class EndMarkCheck
{
public:
    /// \brief Whether "ISO-10303-21" stands at the start and "END-ISO-10303-21" at the end.
    static void step(QFile& file);

    /// \brief Whether the first line is of section S and the last of section T.
    static void iges(QFile& file);

    /// \brief Whether the delimiters "    -1" come in pairs.
    static void universal(QFile& file);

    /// \brief Whether the last line is ended; the format has no mark of its end.
    static void abaqus(QFile& file);
};

} // namespace Ovra::GeoTool
