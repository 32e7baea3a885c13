#include "Database.h"
#include "IdOrder.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshEntityPair.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Solver.h"
#include "WedgeIndirection.h"

#include <algorithm>
#include <array>

namespace Ovra::Geo
{

namespace
{

using WedgeVertices = std::array<MeshEntity*, 6>;

QList<MeshEntity*> wedgesOf(const ModelEntity* region)
{
    QList<MeshEntity*> wedges = inIdOrder(region->childIterator());
    wedges.removeIf([](const MeshEntity* element) { return element->adjacencyCount(0) != 6; });
    return wedges;
}

// The stored order turned over: the top triangle first, read in the opposite sense.
QList<MeshEntity*> overturned(const MeshEntity* wedge)
{
    QList<MeshEntity*> vertices;
    vertices.reserve(6);
    for (const int position : {3, 5, 4, 0, 2, 1}) {
        vertices.append(wedge->adjacencyAt(0, position));
    }
    return vertices;
}

WedgeVertices startingAt(int index, const QList<MeshEntity*>& vertices)
{
    WedgeIndirection indirection;
    indirection.setIndex(index);
    WedgeVertices turned;
    for (int i = 0; i < 6; ++i) {
        turned[static_cast<std::size_t>(i)] = vertices.at(indirection.at(i));
    }
    return turned;
}

} // namespace

void Solver::decomposeWedgesToTets()
{
    bool changed = false;
    const QList<ModelEntity*> regions = inIdOrder(database_->model()->iterator(3));
    for (const ModelEntity* region : regions) {
        const QList<MeshEntity*> wedges = wedgesOf(region);
        if (wedges.isEmpty()) {
            continue;
        }
        decomposeWedgesToTets(wedges);
        changed = true;
    }
    if (changed) {
        database_->mesh()->renumber(3);
    }
}

void Solver::decomposeWedgesToTets(const QList<MeshEntity*>& wedges)
{
    for (MeshEntity* wedge : wedges) {
        const QList<MeshEntity*> vertices = overturned(wedge);
        const WedgeVertices v = startingAt(indexOfSmallest(vertices), vertices);
        ModelEntity* parent = wedge->parent();

        // Both diagonals of the one quadrilateral without v[0]; the other two are cut from v[0].
        if (MeshEntityPair{v[1], v[5]} < MeshEntityPair{v[2], v[4]}) {
            addTetrahedron(v[2], v[1], v[0], v[5], parent);
            addTetrahedron(v[5], v[1], v[0], v[4], parent);
            addTetrahedron(v[5], v[3], v[4], v[0], parent);
        } else {
            addTetrahedron(v[2], v[1], v[0], v[4], parent);
            addTetrahedron(v[0], v[2], v[4], v[5], parent);
            addTetrahedron(v[0], v[4], v[3], v[5], parent);
        }
        database_->mesh()->remove(wedge);
    }
}

int Solver::indexOfSmallest(const QList<MeshEntity*>& entities) const
{
    const auto smallest =
        std::min_element(entities.cbegin(), entities.cend(), MeshEntity::lessThan);
    return entities.isEmpty() ? 0 : static_cast<int>(smallest - entities.cbegin());
}

void Solver::addTetrahedron(MeshEntity* first, MeshEntity* second, MeshEntity* third,
                            MeshEntity* fourth, ModelEntity* parent)
{
    MeshEntity* tetrahedron = MeshEntity::create(3);
    for (MeshEntity* vertex : {first, second, third, fourth}) {
        tetrahedron->addAdjacency(vertex);
    }
    database_->mesh()->add(tetrahedron);
    parent->addChild(tetrahedron);
}

} // namespace Ovra::Geo
