// The module's functions, which the host looks up by their names. What they throw reaches the host.

#include "BlockExport.h"
#include "CaseGrid.h"
#include "ExportJob.h"
#include "OutputFiles.h"
#include "PartExport.h"
#include "Progress.h"
#include "VtkFile.h"

#include <QFile>

#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

using namespace Ovra::GeoTool;

extern "C" {

__attribute__((visibility("default"))) void ovrageo_write_pvtu(const ExportJob& job)
{
    PartExport(job).write();
}

__attribute__((visibility("default"))) void ovrageo_write_vtu(const ExportJob& job)
{
    job.progress.phase(QStringLiteral("writing ") + job.path);
    VtkFile::write(*CaseGrid(job.view).elements(), job.files.add(job.path));
}

__attribute__((visibility("default"))) void ovrageo_write_vtp(const ExportJob& job)
{
    job.progress.phase(QStringLiteral("writing ") + job.path);
    CaseGrid grid(job.view);
    grid.tellOfEmptyFaces(job);
    VtkFile::write(*grid.faces(), job.files.add(job.path));
}

__attribute__((visibility("default"))) void ovrageo_write_vtm(const ExportJob& job)
{
    BlockExport(job).write();
}

} // extern "C"
