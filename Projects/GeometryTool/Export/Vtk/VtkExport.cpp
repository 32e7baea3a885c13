#include "VtkExport.h"

#include "BlockExport.h"
#include "CaseGrid.h"
#include "ExportJob.h"
#include "OutputFiles.h"
#include "Progress.h"
#include "VtkFile.h"

#include <QFile>

#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

namespace Ovra::GeoTool
{

void requireVtk() {}

void writeVtu(const ExportJob& job)
{
    job.progress.phase(QStringLiteral("writing ") + job.path);
    VtkFile::write(*CaseGrid(job.view).elements(), job.files.add(job.path));
}

void writeVtp(const ExportJob& job)
{
    job.progress.phase(QStringLiteral("writing ") + job.path);
    VtkFile::write(*CaseGrid(job.view).faces(), job.files.add(job.path));
}

void writeVtm(const ExportJob& job)
{
    BlockExport(job).write();
}

} // namespace Ovra::GeoTool
