#include "Database.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Solver.h"
#include "Utility.h"

#include <QDebug>

#include <algorithm>
#include <utility>

namespace Ovra::Geo
{

void Solver::removeUnreferencedMeshEntities()
{
    if (database_->model()->is3d()) {
        removeUnreferencedMeshEntities(2, 3);
        removeUnreferencedMeshEntities(1, 2);
        removeUnreferencedMeshEntities(0, 3);
    } else {
        removeUnreferencedMeshEntities(1, 2);
        removeUnreferencedMeshEntities(0, 2);
    }
}

QList<MeshEntity*> Solver::getUnreferencedMeshVertices()
{
    return getUnreferencedMeshEntities(0, database_->model()->faceDimension() + 1);
}

void Solver::removeUnreferencedMeshEntities(int dimension, int upwardDimension)
{
    QList<MeshEntity*> found = getUnreferencedMeshEntities(dimension, upwardDimension);
    std::sort(found.begin(), found.end(), MeshEntity::lessThan);
    for (MeshEntity* entity : std::as_const(found)) {
        if (!isAdjacentToUnmeshedDevice(entity)) {
            database_->mesh()->remove(entity);
        }
    }
    qDebug().noquote() << QStringLiteral("There are %1 unreferenced mesh entities of dimension %2")
                              .arg(found.size())
                              .arg(dimension);
}

QList<MeshEntity*> Solver::getUnreferencedMeshEntities(int dimension, int upwardDimension)
{
    QList<MeshEntity*> found;
    auto entities = database_->mesh()->iterator(dimension);
    while (entities.hasNext()) {
        entities.next();
        if (entities.value()->adjacencyCount(upwardDimension) == 0) {
            found.append(entities.value());
        }
    }
    return found;
}

bool Solver::isAdjacentToUnmeshedDevice(MeshEntity* entity) const
{
    const ModelEntity* parent = entity->parent();
    if (!parent) {
        return false;
    }
    auto regions = parent->adjacencyIterator(database_->model()->faceDimension() + 1);
    while (regions.hasNext()) {
        if (Utility::isUnmeshedDevice(regions.next())) {
            return true;
        }
    }
    return false;
}

} // namespace Ovra::Geo
