#include "PieceFolder.h"

#include "ExportJob.h"
#include "OutputFiles.h"

#include <QFileInfo>

namespace Ovra::GeoTool
{

PieceFolder::PieceFolder(const ExportJob& job)
    : job_(job)
    , name_(QFileInfo(job.path).completeBaseName())
    , path_(QFileInfo(job.path).path() + QLatin1Char('/') + name_)
{
    job.files.addDirectory(path_);
}

QFile& PieceFolder::add(const QString& fileName) const
{
    return job_.files.add(path_ + QLatin1Char('/') + fileName);
}

QString PieceFolder::reference(const QString& fileName) const
{
    return name_ + QLatin1Char('/') + fileName;
}

} // namespace Ovra::GeoTool
