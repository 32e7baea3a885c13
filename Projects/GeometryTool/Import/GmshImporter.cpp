#include "GmshImporter.h"

#include "AttributesFile.h"
#include "Database.h"
#include "EntityGeometry.h"
#include "EntitySplitting.h"
#include "GmshExtraction.h"
#include "GmshSession.h"
#include "ImportRemarks.h"
#include "MeshTransfer.h"
#include "Progress.h"
#include "TopologyCompletion.h"
#include "TopologyLinks.h"

namespace Ovra::GeoTool
{

GmshImporter::GmshImporter(const ImportOptions& options, Progress& progress)
    : options_(options)
    , progress_(progress)
{
}

void GmshImporter::import(Geo::Database& database, const AttributesFile* attributes)
{
    GmshSession session;
    const int dimension = GmshReader(session, progress_).read(options_);
    ImportedMesh mesh = GmshExtraction(options_.input, progress_).extract(dimension);
    progress_.phase(QStringLiteral("building the topology"));
    TopologyLinks::close(mesh);
    EntitySplitting(mesh).split();
    TopologyCompletion(mesh, options_.input).complete();
    TopologyLinks::classifyNodes(mesh);
    TopologyLinks::close(mesh);
    TopologyLinks::addTouching(mesh);
    TopologyLinks::discardEmpty(mesh);
    session.run(options_.input, [&mesh] { EntityGeometry(mesh).compute(); });
    if (attributes != nullptr) {
        attributes->leaveWithoutMesh(mesh);
    }
    progress_.phase(QStringLiteral("building model and mesh"));
    MeshTransfer(mesh, database).transfer();
    const ImportRemarks remarks(*database.model(), progress_);
    if (attributes != nullptr) {
        attributes->apply(mesh, *database.model());
        remarks.warnOfMaterials(attributes->path());
    }
    remarks.warnOfLooseBodies(options_.input);
}

} // namespace Ovra::GeoTool
