#include "ExtrudedInterpolation.h"

#include "CloserTies.h"
#include "Counted.h"
#include "EntityName.h"
#include "EntityNames.h"
#include "IntAttribute.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"
#include "Solver.h"
#include "TieSearch.h"
#include "Utility.h"
#include "VertexTies.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Farther from its tie than this, in longest edges of what it is tied to, a vertex lies beside the
/// partner face.
constexpr double allowedMiss = 0.5;

/// The weights of a quadrilateral may be a quarter each: from there on none may be left.
constexpr double safeTolerance = 0.25;

const QString smallerTolerance =
    QStringLiteral("; an --extrusion-tolerance below 0.25 does not drop all weights");

} // namespace

ExtrudedInterpolation::ExtrudedInterpolation(Database& database, Progress& progress)
    : PreparationStep(database)
    , progress_(progress)
{
}

QList<ModelEntity*> ExtrudedInterpolation::extrudedFaces() const
{
    QList<ModelEntity*> faces = modelFaces();
    faces.removeIf([](const ModelEntity* face) {
        return intOf(face->attributes(), AttributeType::ExtrudedFace) == 0;
    });
    return faces;
}

ModelEntity* ExtrudedInterpolation::partnerOf(const ModelEntity& face) const
{
    return model().entity(faceDimension(), intOf(face.attributes(), AttributeType::ExtrudedFace));
}

void ExtrudedInterpolation::requireAtStart() const
{
    for (const ModelEntity* face : extrudedFaces()) {
        const ModelEntity* const partner = partnerOf(*face);
        if (partner == face) {
            refuse(QStringLiteral("extruded_face of %1 names that face itself").arg(nameOf(*face)));
        }
        for (const ModelEntity* side : {face, partner}) {
            if (side->childCount() == 0) {
                refuse(QStringLiteral("%1 of the extruded pair %2 and %3 has no mesh")
                           .arg(nameOf(*side))
                           .arg(face->id())
                           .arg(partner->id()));
            }
        }
    }
}

QList<MeshEntity*> ExtrudedInterpolation::verticesOnPairs() const
{
    QSet<MeshEntity*> vertices;
    for (const ModelEntity* face : extrudedFaces()) {
        vertices += Utility::getMeshVerticesOnModelEntity(face);
        vertices += Utility::getMeshVerticesOnModelEntity(partnerOf(*face));
    }
    QList<MeshEntity*> sorted = vertices.values();
    std::sort(sorted.begin(), sorted.end(), MeshEntity::lessThan);
    return sorted;
}

QString ExtrudedInterpolation::run(Solver& solver)
{
    requireAtStart(); // steps before this one may have removed mesh faces
    const qsizetype faceCount = extrudedFaces().size();
    if (faceCount == 0) {
        return QString();
    }
    requireSearchable();
    solver.interpolateExtrudedFaces();
    requireWeights(solver.extrusionTolerance());
    const qint64 closer = drawCloser(solver.extrusionTolerance());
    warnOfMisses();
    return QStringLiteral("%1, %2 tied%3")
        .arg(counted(faceCount, QStringLiteral("extruded face")),
             counted(verticesOnPairs().size(), QStringLiteral("vertex")),
             CloserTies::report(closer));
}

void ExtrudedInterpolation::requireSearchable() const
{
    for (const ModelEntity* face : extrudedFaces()) {
        for (const ModelEntity* side : {face, static_cast<const ModelEntity*>(partnerOf(*face))}) {
            const QString fault = TieSearch::fault(*side);
            if (!fault.isEmpty()) {
                refuse(fault);
            }
        }
    }
}

void ExtrudedInterpolation::requireWeights(double tolerance) const
{
    const VertexTies ties = VertexTies::extruded();
    for (MeshEntity* vertex : verticesOnPairs()) {
        const QString fault = ties.fault(mesh(), *vertex);
        if (!fault.isEmpty()) {
            refuse(QStringLiteral("%1 at %2 on an extruded face %3%4")
                       .arg(nameOf(*vertex), placeText(vertex->centroid()), fault,
                            tolerance < safeTolerance ? QString() : smallerTolerance));
        }
    }
}

/// \return how many vertices are tied anew
qint64 ExtrudedInterpolation::drawCloser(double tolerance) const
{
    const CloserTies closer(mesh(), VertexTies::extruded(), tolerance);
    const QList<MeshEntity*> vertices = verticesOnPairs();
    return std::count_if(vertices.begin(), vertices.end(), [&closer](MeshEntity* vertex) {
        return closer.improve(*vertex, vertex->centroid());
    });
}

void ExtrudedInterpolation::warnOfMisses() const
{
    const VertexTies ties = VertexTies::extruded();
    qint64 beside = 0;
    for (MeshEntity* vertex : verticesOnPairs()) {
        const MeshEntity& partner = ties.entityOf(mesh(), *vertex);
        const double miss = (ties.placeOf(mesh(), *vertex) - vertex->centroid()).length();
        if (partner.dimension() > 0 && miss > allowedMiss * longestEdge(partner)) {
            ++beside;
        }
    }
    if (beside > 0) {
        progress_.warning(
            QStringLiteral(
                "%1 of extruded faces lie more than half an edge beside the partner face")
                .arg(counted(beside, QStringLiteral("vertex"))));
    }
}

} // namespace Ovra::GeoTool
