// The module's function, which the host looks up by its name. What it throws reaches the host.

#include "AttributesFile.h"
#include "CaseFiles.h"
#include "Database.h"
#include "GmshImporter.h"
#include "ImportJob.h"
#include "IsolatedRun.h"
#include "Progress.h"

#include <optional>

using namespace Ovra::GeoTool;

namespace
{

void importHere(const ImportJob& job)
{
    job.progress.phase(QStringLiteral("importing %1").arg(job.options.input));
    std::optional<AttributesFile> attributes;
    if (!job.attributes.isEmpty()) {
        attributes.emplace(job.attributes);
        attributes->read();
    }
    // The process ends with the import, and takes a million elements with it at once.
    auto& database = *new Ovra::Geo::Database;
    GmshImporter(job.options, job.progress).import(database, attributes ? &*attributes : nullptr);
    CaseFiles(job.output).save(database, job.progress);
    job.progress.finish();
}

} // namespace

/// A damaged file may bring Gmsh down, which the tool outlives.
extern "C" __attribute__((visibility("default"))) void ovrageo_import(const ImportJob& job)
{
    job.progress.leaveLineToCopy();
    const IsolatedRun::Messages messages{
        QStringLiteral(
            "%1: the import broke down over it; the file is damaged or too much for Gmsh")
            .arg(job.options.input),
        QStringLiteral("%1: it ended Gmsh itself, as Exit does in a script; leave that out")
            .arg(job.options.input)};
    IsolatedRun::run(messages, [&job] { importHere(job); });
    job.progress.finish();
}
