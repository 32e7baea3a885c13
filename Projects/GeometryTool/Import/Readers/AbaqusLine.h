#pragma once

namespace Ovra::GeoTool
{

/// \brief A line of one of the files that make up an Abaqus input; see AbaqusLexer::where().
struct AbaqusLine
{
    int file = 0; ///< in the order in which they are opened
    int number = 0;
};

} // namespace Ovra::GeoTool
