#include "VtkFile.h"

#include "StreamedWriter.h"
#include "ToolError.h"

#include <QFile>

#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLPolyDataWriter.h>
#include <vtkXMLUnstructuredGridWriter.h>

namespace Ovra::GeoTool::VtkFile
{

namespace
{

template <typename Writer>
void writeBy(vtkDataObject& data, QFile& file)
{
    vtkObject::GlobalWarningDisplayOff(); // what goes wrong is told by exceptions
    vtkNew<StreamedWriter<Writer>> writer;
    writer->SetInputDataObject(&data);
    writer->SetDataModeToAppended();
    writer->EncodeAppendedDataOff();
    writer->SetCompressorTypeToLZ4();
    if (!writer->writeTo(file) && file.error() == QFileDevice::NoError) {
        throw ToolError(ExitCode::InternalError,
                        QStringLiteral("VTK cannot write %1").arg(file.fileName()));
    }
}

} // namespace

void write(vtkUnstructuredGrid& grid, QFile& file)
{
    writeBy<vtkXMLUnstructuredGridWriter>(grid, file);
}

void write(vtkPolyData& surface, QFile& file)
{
    writeBy<vtkXMLPolyDataWriter>(surface, file);
}

} // namespace Ovra::GeoTool::VtkFile
