// The module's function, which the host looks up by its name. What it throws reaches the host.

#include "AttributesBeside.h"
#include "CaseView.h"
#include "Counted.h"
#include "ElementTopology.h"
#include "ExportFormat.h"
#include "ExportJob.h"
#include "ExportLosses.h"
#include "GmshModel.h"
#include "GmshSession.h"
#include "IsolatedRun.h"
#include "MeshEntity.h"
#include "OutputFiles.h"
#include "OutputPipe.h"
#include "Progress.h"
#include "SecondName.h"
#include "ToolError.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <gmsh.h>

using namespace Ovra::GeoTool;

namespace
{

bool isStream(const QString& path)
{
    return OutputFiles::isStandardOutput(path) || OutputFiles::isDeviceOrPipe(path);
}

/// A mesh with holes is no use to anybody.
void requireKinds(const ExportJob& job, const GmshFormat& format)
{
    const int dimension = job.view.elementDimension();
    for (const int vertices : format.missingKinds) {
        const std::vector<Ovra::Geo::MeshEntity*>& elements = job.view.meshEntities(dimension);
        const auto count = dimension == 3
                               ? std::count_if(elements.begin(), elements.end(),
                                               [vertices](const Ovra::Geo::MeshEntity* element) {
                                                   return element->adjacencyCount(0) == vertices;
                                               })
                               : 0;
        if (count > 0) {
            const ElementTopology& kind = *ElementTopology::find(3, vertices);
            throw ToolError(
                ExitCode::Unsuitable,
                QStringLiteral("%1: Gmsh writes no %2 to %3 files, and the case has %4; "
                               "take another format")
                    .arg(job.path, QLatin1String(kind.plural), format.title,
                         counted(count, QLatin1String(kind.name), QLatin1String(kind.plural))));
        }
    }
}

void tellLosses(const ExportJob& job, const GmshFormat& format)
{
    for (const QString& loss : ExportLosses(job.view, format).all()) {
        job.progress.warning(QStringLiteral("%1: %2").arg(job.path, loss));
    }
}

void writeAttributes(const ExportJob& job, const GmshFormat& format, const GroupNames& names)
{
    const QString path = attributesPath(job.path);
    const AttributesBeside attributes(job.view, format, names);
    job.files.add(path).write(attributes.text());
    for (const QString& unheld : attributes.unheld()) {
        job.progress.warning(
            QStringLiteral("%1: %2 is of a kind that it cannot hold").arg(path, unheld));
    }
}

void writeBeside(const ExportJob& job, const GmshFormat& format, const GroupNames& names)
{
    tellLosses(job, format);
    if (format.comesBack() && !isStream(job.path)) {
        writeAttributes(job, format, names);
    }
}

/// \brief Makes the case Gmsh's and writes it to a name that tells the format.
void writeHere(const CaseView& view, const GmshFormat& format, const GroupNames& names,
               const std::string& path)
{
    auto* const session = new GmshSession; // to end with the process, which takes no time
    session->run(
        QStringLiteral("Gmsh cannot write the case"),
        [&] {
            gmsh::model::add("case");
            GmshModel(view, format, names).make();
            // Or Gmsh asks the nodes of all elements for their entities, to leave none out.
            gmsh::option::setNumber("Mesh.SaveAll", 1);
            for (const auto& [name, value] : format.gmshOptions) {
                gmsh::option::setNumber(name, value);
            }
            gmsh::write(path);
        },
        false);
}

void showWriting(const ExportJob& job)
{
    job.progress.phase(QStringLiteral("writing %1").arg(job.path));
}

void writeMesh(const ExportJob& job, const GmshFormat& format, const GroupNames& names)
{
    QFile& file = job.files.add(job.path);
    OutputPipe pipe;
    const SecondName name(pipe.path(), QStringLiteral("output"), format.gmshSuffix);
    if (!name.isValid()) {
        throw ToolError(ExitCode::OutputFailed,
                        QStringLiteral("cannot make a link in %1").arg(QDir::tempPath()));
    }
    const QString failure = QStringLiteral("%1: Gmsh broke down writing it").arg(job.path);
    job.progress.leaveLineToCopy();
    IsolatedRun::run(
        {failure, failure, ExitCode::InternalError},
        // some formats tell the path that Gmsh is given
        [&] {
            showWriting(job);
            writeHere(job.view, format, names, name.nameInCurrentDirectory());
        },
        [&] {
            writeBeside(job, format,
                        names); // which takes less time than Gmsh does to begin writing
            pipe.drainInto(file);
        });
}

} // namespace

extern "C" __attribute__((visibility("default"))) void ovrageo_write_gmsh(const ExportJob& job)
{
    const GmshFormat& format = GmshFormat::ofSuffix(job.format.suffix);
    GmshModel::requireFit(job.view, format);
    requireKinds(job, format);
    showWriting(job);
    writeMesh(job, format, GroupNames(job.view, format));
}
