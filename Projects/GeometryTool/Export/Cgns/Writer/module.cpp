// The module's function, which the host looks up by its name. What it throws reaches the host.

#include "CaseView.h"
#include "CgnsFile.h"
#include "CgnsWriter.h"
#include "Counted.h"
#include "ElementTopology.h"
#include "EntityNames.h"
#include "ExportJob.h"
#include "IsolatedRun.h"
#include "MeshEntity.h"
#include "ModelEntity.h"
#include "OutputFiles.h"
#include "Partition.h"
#include "Progress.h"
#include "ReturningEntities.h"
#include "ToolError.h"
#include "ZoneLayout.h"
#include "ZoneLinks.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>

using namespace Ovra::Geo;
using namespace Ovra::GeoTool;

namespace
{

void requireKinds(const std::vector<MeshEntity*>& entities, int dimension)
{
    for (const MeshEntity* entity : entities) {
        const int vertices = entity->adjacencyCount(0);
        if (!ElementTopology::find(dimension, vertices)) {
            throw ToolError(ExitCode::Unsuitable,
                            QStringLiteral("%1 is no element: it has %2")
                                .arg(nameOf(*entity), counted(vertices, QStringLiteral("vertex"))));
        }
    }
}

bool isInXyPlane(const CaseView& view)
{
    const std::vector<Vector>& points = view.points();
    return view.elementDimension() == 2 &&
           std::all_of(points.begin(), points.end(),
                       [](const Vector& point) { return point.z() == 0.0; });
}

void warn(const ExportJob& job, qsizetype count, const QString& singular, const QString& plural)
{
    if (count > 0) {
        job.progress.warning(
            QStringLiteral("%1: %2").arg(job.path, counted(count, singular, plural)));
    }
}

void tellLosses(const ExportJob& job, const ZoneLayout& layout, const ZoneLinks& links)
{
    const std::vector<ModelEntity*>& regions = job.view.modelEntities(job.view.elementDimension());
    const auto empty = std::count_if(regions.begin(), regions.end(), [](const ModelEntity* region) {
        return !ReturningEntities::hasMesh(*region);
    });
    warn(job, empty, QStringLiteral("region without elements is left out"),
         QStringLiteral("regions without elements are left out"));
    warn(job, layout.looseFaceCount(), QStringLiteral("mesh face without an element is left out"),
         QStringLiteral("mesh faces without an element are left out"));
    if (!layout.parts().empty()) {
        const auto zones = static_cast<qsizetype>(layout.zones().size());
        warn(job, job.options.parts - zones, QStringLiteral("part without elements has no zone"),
             QStringLiteral("parts without elements have no zone"));
    }
    const std::vector<MeshEntity*>& vertices = job.view.meshEntities(0);
    const auto attributed = std::count_if(vertices.begin(), vertices.end(), [](MeshEntity* vertex) {
        return !vertex->attributes().isEmpty();
    });
    if (attributed > 0) {
        job.progress.warning(
            QStringLiteral("%1: attributes of %2 are left out")
                .arg(job.path, counted(attributed, QStringLiteral("mesh vertex"))));
    }
    for (const int pair : links.untiedPairs()) {
        job.progress.warning(
            QStringLiteral("%1: periodic pair %2 is no connection: the case is not "
                           "prepared, which gives it a transform")
                .arg(job.path)
                .arg(pair));
    }
}

/// The library makes its files by itself, and wants to read in them.
void copy(const QString& from, QFile& to)
{
    QFile file(from);
    constexpr qint64 blockSize = 1 << 20;
    if (!file.open(QIODevice::ReadOnly)) {
        throw ToolError(ExitCode::OutputFailed,
                        QStringLiteral("%1: %2").arg(from, file.errorString()));
    }
    while (!file.atEnd()) {
        to.write(file.read(blockSize));
    }
}

ZoneLayout layoutOf(const ExportJob& job)
{
    if (job.options.parts == 1) {
        return job.options.oneZone ? ZoneLayout::asOne(job.view) : ZoneLayout::byRegion(job.view);
    }
    const Partition partition(job.view, job.options, job.progress);
    partition.tell(job);
    return ZoneLayout::byPart(job.view, partition);
}

} // namespace

extern "C" __attribute__((visibility("default"))) void ovrageo_write_cgns(const ExportJob& job)
{
    const CaseView& view = job.view;
    requireKinds(view.meshEntities(view.elementDimension()), view.elementDimension());
    requireKinds(view.meshEntities(view.faceDimension()), view.faceDimension());
    job.progress.phase(QStringLiteral("writing %1").arg(job.path));
    const ZoneLayout layout = layoutOf(job);
    if (layout.zones().empty()) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("the case has no elements, of which a zone could be made"));
    }
    const ZoneLinks links(view, layout);
    tellLosses(job, layout, links);
    const QTemporaryDir directory;
    const QString failure = QStringLiteral("cannot write %1: CGNS broke down").arg(job.path);
    const QString path = directory.filePath(QStringLiteral("output.cgns"));
    job.progress.leaveLineToCopy();
    IsolatedRun::run({failure, failure, ExitCode::OutputFailed}, [&] {
        CgnsFile file(path, job.path, view.elementDimension(), isInXyPlane(view) ? 2 : 3);
        CgnsWriter(view, layout, links, file).write();
        file.close();
    });
    copy(path, job.files.add(job.path));
}
