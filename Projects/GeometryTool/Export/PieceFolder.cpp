#include "PieceFolder.h"

#include "ExportJob.h"
#include "OutputFiles.h"
#include "ToolError.h"

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

QString folderNameOf(const QString& output)
{
    return QFileInfo(output).completeBaseName();
}

QString folderOf(const QString& output)
{
    return QFileInfo(output).path() + QLatin1Char('/') + folderNameOf(output);
}

} // namespace

void PieceFolder::require(const QString& output, const QString& suffix)
{
    const QStringList taken{QString(), QStringLiteral("."), QStringLiteral(".."),
                            QFileInfo(output).fileName()};
    if (taken.contains(folderNameOf(output))) {
        throw ToolError(ExitCode::Usage,
                        QStringLiteral("the output %1 leaves no name for its folder, which is that "
                                       "of the output without the suffix; give it one such as "
                                       "wing.%2")
                            .arg(output, suffix));
    }
    OutputFiles::requireFolder(folderOf(output));
}

PieceFolder::PieceFolder(const ExportJob& job)
    : job_(job)
    , name_(folderNameOf(job.path))
    , path_(folderOf(job.path))
{
    job.files.addDirectory(path_);
    outdatePieces();
}

void PieceFolder::write(const QString& fileName, const std::function<void(QFile&)>& fill) const
{
    QFile& file = job_.files.add(path_ + QLatin1Char('/') + fileName);
    fill(file);
    job_.files.finish(file);
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
