#include "VtkExport.h"

#include "CaseGrid.h"
#include "ExportJob.h"
#include "OutputFiles.h"
#include "Progress.h"
#include "StreamedWriter.h"
#include "ToolError.h"

#include <QFile>

#include <vtkNew.h>
#include <vtkUnstructuredGrid.h>
#include <vtkXMLUnstructuredGridWriter.h>

namespace Ovra::GeoTool
{

namespace
{

template <typename Writer>
void write(vtkDataObject& data, QFile& file)
{
    vtkObject::GlobalWarningDisplayOff(); // the file tells of what fails, as it is closed
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

void requireVtk() {}

void writeVtu(const ExportJob& job)
{
    job.progress.phase(QStringLiteral("writing ") + job.path);
    const vtkSmartPointer<vtkUnstructuredGrid> grid = CaseGrid(job.view).elements();
    write<vtkXMLUnstructuredGridWriter>(*grid, job.files.add(job.path));
}

} // namespace Ovra::GeoTool
