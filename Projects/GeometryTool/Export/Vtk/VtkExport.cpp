#include "VtkExport.h"

#include "BlockExport.h"
#include "CaseGrid.h"
#include "ExportJob.h"
#include "OutputFiles.h"
#include "PartExport.h"
#include "Progress.h"
#include "VtkFile.h"

#include <QFile>
#include <QFileInfo>

#include <vtkPolyData.h>
#include <vtkUnstructuredGrid.h>

namespace Ovra::GeoTool
{

void requireVtk() {}

void writeVtu(const ExportJob& job)
{
    if (job.options.parts > 1) {
        const QFileInfo info(job.path);
        const QString index =
            QStringLiteral("%1/%2.pvtu").arg(info.path(), info.completeBaseName());
        writePvtu({job.view, job.format, index, job.options, job.files, job.progress});
        return;
    }
    job.progress.phase(QStringLiteral("writing ") + job.path);
    VtkFile::write(*CaseGrid(job.view).elements(), job.files.add(job.path));
}

void writePvtu(const ExportJob& job)
{
    PartExport(job).write();
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
