#include "GmshImporter.h"

#include "AirBox.h"
#include "AttributesFile.h"
#include "CadModel.h"
#include "Database.h"
#include "EntityGeometry.h"
#include "EntitySplitting.h"
#include "Flatness.h"
#include "GmshExtraction.h"
#include "GmshReader.h"
#include "GmshSession.h"
#include "ImportRemarks.h"
#include "ImportScaling.h"
#include "InputFileCheck.h"
#include "LooseBodySearch.h"
#include "MeshTransfer.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"
#include "ToolError.h"
#include "TopologyCompletion.h"
#include "TopologyLinks.h"
#include "VolumeAdvice.h"

#include <gmsh.h>

namespace Ovra::GeoTool
{

namespace
{

bool isSurfaceInSpace(const ImportedMesh& mesh)
{
    if (mesh.elementDimension != 2) {
        return false;
    }
    std::vector<Geo::Vector> points;
    for (const ImportedNode& node : mesh.nodes) {
        points.push_back(node.point);
    }
    return !Flatness::isFlat(points);
}

bool isOfOtherKernel()
{
    return CadModel::hasShapesOnly() && !CadModel::isOfKernel();
}

void makeAirFluid(const ImportedMesh& mesh, Geo::Model& model)
{
    for (const ImportedEntity& region : mesh.entitiesOf(3)) {
        if (region.groups.contains(AirBox::name())) {
            model.entity(3, region.id)
                ->attributes()
                .insert(Geo::AttributeType::MaterialType, QStringLiteral("fluid"));
        }
    }
}

} // namespace

GmshImporter::GmshImporter(const ImportOptions& options, Progress& progress)
    : options_(options)
    , progress_(progress)
{
}

void GmshImporter::import(Geo::Database& database, const AttributesFile* attributes)
{
    GmshSession session;
    GmshReader reader(session, progress_);
    const int dimension = reader.read(options_);
    ImportedMesh mesh = GmshExtraction(options_.input, progress_).extract(dimension);
    if (dimension == 3) { // surfaces may yet be asked for what they enclose
        session.run(options_.input, [] { gmsh::model::mesh::clear(); });
    }
    if (attributes != nullptr) {
        attributes->nameEntities(mesh);
    }
    progress_.phase(QStringLiteral("building the topology"));
    TopologyLinks::close(mesh);
    completeTopology(mesh);
    TopologyLinks::classifyNodes(mesh);
    TopologyLinks::close(mesh);
    TopologyLinks::addTouching(mesh);
    TopologyLinks::discardEmpty(mesh);
    session.run(options_.input, [&mesh] { EntityGeometry(mesh).compute(); });
    const bool isSurface = isSurfaceInSpace(mesh);
    if (isSurface && options_.dimension == 0 && !reader.isOpennessTold()) {
        warnOfSurfacesInSpace(session);
    }
    const LooseBodies loose = isSurface // joined edges would make no volume of it
                                  ? LooseBodies()
                                  : looseBodies(session, mesh, reader.isMeshedHere());
    scale(mesh);
    if (attributes != nullptr) {
        attributes->leaveWithoutMesh(mesh);
    }
    progress_.phase(QStringLiteral("building model and mesh"));
    MeshTransfer(mesh, database).transfer();
    if (options_.air) {
        makeAirFluid(mesh, *database.model());
    }
    const ImportRemarks remarks(*database.model(), progress_);
    if (attributes != nullptr) {
        attributes->apply(mesh, *database.model());
        if (!attributes->isOfNamesAlone()) {
            remarks.warnOfMaterials(attributes->path());
        }
    }
    remarks.warnOfLooseBodies(options_.input, loose, options_.scale);
}

void GmshImporter::completeTopology(ImportedMesh& mesh) const
{
    const SideTable volumeSides(mesh, 3); // neither step changes the elements of volumes
    EntitySplitting(mesh, volumeSides).split();
    TopologyCompletion(mesh, volumeSides, options_.input).complete();
}

void GmshImporter::warnOfSurfacesInSpace(GmshSession& session) const
{
    QString advice;
    session.run(options_.input, [&] { advice = VolumeAdvice::onSurfaces(options_.input); });
    progress_.warning(
        QStringLiteral("%1: holds no volumes and becomes a case of surfaces in space; %2")
            .arg(options_.input, advice));
}

void GmshImporter::scale(ImportedMesh& mesh) const
{
    if (options_.scale != 1.0 && !ImportScaling::apply(mesh, options_.scale)) {
        throw ToolError(ExitCode::Unsuitable,
                        QStringLiteral("%1: --scale %2 makes its coordinates or measures too large")
                            .arg(options_.input, QString::number(options_.scale)));
    }
}

LooseBodies GmshImporter::looseBodies(GmshSession& session, const ImportedMesh& mesh,
                                      bool isMeshedHere) const
{
    progress_.phase(QStringLiteral("looking for bodies that touch"));
    LooseBodies found;
    session.run(options_.input, [&] {
        found = LooseBodySearch(mesh, options_.joinTolerance, isMeshedHere).search();
        if (InputFileCheck::isScript(options_.input) && isOfOtherKernel()) {
            found.remedy = isMeshedHere ? LooseBodies::Remedy::OtherKernel
                                        : LooseBodies::Remedy::OtherKernelUnmeshed;
        }
    });
    found.givenTolerance = options_.joinTolerance;
    return found;
}

} // namespace Ovra::GeoTool
