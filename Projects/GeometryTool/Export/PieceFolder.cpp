#include "PieceFolder.h"

#include "ExportJob.h"
#include "OutputFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QXmlStreamReader>

namespace Ovra::GeoTool
{

namespace
{

/// \brief The files that an index of VTK refers to, as it names them; none if it is not whole.
QStringList referencesOf(const QString& index)
{
    QFile file(index);
    QStringList references;
    if (!QFileInfo(index).isFile() || !file.open(QIODevice::ReadOnly)) {
        return references;
    }
    QXmlStreamReader xml(&file);
    if (!xml.readNextStartElement() || xml.name() != QLatin1String("VTKFile")) {
        return references;
    }
    while (!xml.atEnd()) {
        xml.readNext();
        const QXmlStreamAttributes attributes = xml.attributes();
        for (const char* name : {"Source", "file"}) { // of parts and of blocks
            if (attributes.hasAttribute(QLatin1String(name))) {
                references += attributes.value(QLatin1String(name)).toString();
            }
        }
    }
    return xml.hasError() ? QStringList() : references;
}

} // namespace

PieceFolder::PieceFolder(const ExportJob& job)
    : job_(job)
    , name_(QFileInfo(job.path).completeBaseName())
    , path_(QFileInfo(job.path).path() + QLatin1Char('/') + name_)
{
    job.files.addDirectory(path_);
    outdatePieces();
}

QFile& PieceFolder::add(const QString& fileName) const
{
    return job_.files.add(path_ + QLatin1Char('/') + fileName);
}

QString PieceFolder::reference(const QString& fileName) const
{
    return name_ + QLatin1Char('/') + fileName;
}

void PieceFolder::outdatePieces() const
{
    for (const QString& old : referencesOf(job_.path)) {
        const QString fileName = QFileInfo(old).fileName();
        if (old == reference(fileName)) {
            job_.files.addRemoval(path_ + QLatin1Char('/') + fileName);
        }
    }
}

} // namespace Ovra::GeoTool
