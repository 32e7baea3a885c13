#include "UnreferencedRemoval.h"

#include "Counted.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Solver.h"
#include "Utility.h"
#include "VertexLinks.h"

#include <array>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

std::array<int, 3> countsOf(const Mesh& mesh)
{
    return {mesh.count(0), mesh.count(1), mesh.count(2)};
}

} // namespace

bool UnreferencedRemoval::isNearDevice(const MeshEntity& entity) const
{
    if (!entity.parent()) {
        return false;
    }
    for (ModelEntity* region : regionsAt(*entity.parent())) {
        if (Utility::isUnmeshedDevice(region)) {
            return true;
        }
    }
    return false;
}

QSet<MeshEntity*> UnreferencedRemoval::doomedFaces() const
{
    QSet<MeshEntity*> doomed;
    for (MeshEntity* meshFace : inIdOrder(mesh().iterator(faceDimension()))) {
        if (meshFace->adjacencyCount(regionDimension()) == 0 && !isNearDevice(*meshFace)) {
            doomed.insert(meshFace);
        }
    }
    return doomed;
}

QList<MeshEntity*> UnreferencedRemoval::doomedVertices() const
{
    QList<MeshEntity*> doomed = inIdOrder(mesh().iterator(0));
    doomed.removeIf([this](const MeshEntity* vertex) {
        return vertex->adjacencyCount(regionDimension()) > 0 || isNearDevice(*vertex);
    });
    return doomed;
}

/// For each vertex that is to go although something that stays uses it: where that stands.
UnreferencedRemoval::Shelters
UnreferencedRemoval::sheltersFor(const QList<MeshEntity*>& vertices) const
{
    const QSet<MeshEntity*> goingFaces = doomedFaces();
    Shelters shelters;
    for (MeshEntity* vertex : vertices) {
        for (int dimension = faceDimension(); dimension >= 1 && !shelters.contains(vertex);
             --dimension) {
            for (auto users = vertex->adjacencyIterator(dimension); users.hasNext();) {
                MeshEntity* const user = users.next();
                if (!goingFaces.contains(user) && isNearDevice(*user)) {
                    shelters.insert(vertex, user->parent());
                }
            }
        }
    }
    return shelters;
}

void UnreferencedRemoval::requireUnnamed(const QList<MeshEntity*>& vertices) const
{
    QSet<int> ids;
    for (const MeshEntity* vertex : vertices) {
        ids.insert(vertex->id());
    }
    if (ids.isEmpty()) {
        return;
    }
    forEachVertexLink(mesh(), [&ids](MeshEntity& vertex, const AttributeType& type, int id) {
        if (ids.contains(id) && !ids.contains(vertex.id())) {
            refuse(
                QStringLiteral("%1 of %2 names %3, which no element uses and which would be "
                               "removed")
                    .arg(type.toString(), nameOf(vertex), nameOf(QStringLiteral("mesh"), 0, id)));
        }
    });
}

QString UnreferencedRemoval::run(Solver& solver)
{
    QList<MeshEntity*> vertices = doomedVertices();
    const Shelters shelters = sheltersFor(vertices);
    vertices.removeIf([&shelters](MeshEntity* vertex) { return shelters.contains(vertex); });
    requireUnnamed(vertices);

    Shelters homes;
    for (auto shelter = shelters.begin(); shelter != shelters.end(); ++shelter) {
        homes.insert(shelter.key(), shelter.key()->parent());
        shelter.value()->addChild(shelter.key());
    }
    const std::array<int, 3> before = countsOf(mesh());
    solver.removeUnreferencedMeshEntities();
    for (auto home = homes.begin(); home != homes.end(); ++home) {
        if (home.value()) {
            home.value()->addChild(home.key());
        }
    }
    const std::array<int, 3> after = countsOf(mesh());
    if (after == before) {
        return QString();
    }
    refreshUpwardLists();
    return QStringLiteral("%1, %2 and %3 removed")
        .arg(counted(before[0] - after[0], QStringLiteral("vertex")),
             counted(before[1] - after[1], QStringLiteral("edge")),
             counted(before[2] - after[2], QStringLiteral("face")));
}

} // namespace Ovra::GeoTool
