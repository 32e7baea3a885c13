#pragma once

class QFile;
class vtkPolyData;
class vtkUnstructuredGrid;

namespace Ovra::GeoTool
{

class Progress;

/// \brief Writes data sets in VTK's XML formats, compressed and behind the XML.
///
/// What the file itself fails at it tells when it is closed; anything else is a ToolError.
namespace VtkFile
{

void write(vtkUnstructuredGrid& grid, QFile& file);
void write(vtkPolyData& surface, QFile& file);

} // namespace VtkFile

} // namespace Ovra::GeoTool
