#pragma once

#include "Database.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

/// \brief Checks on a whole mesh; each answers what it found wrong, an empty text for nothing.
namespace MeshChecks
{

using Ovra::Geo::Database;
using Ovra::Geo::HashIterator;
using Ovra::Geo::MeshEntity;
using Ovra::Geo::ModelEntity;
using Ovra::Geo::Vector;

inline QList<MeshEntity*> sorted(HashIterator<int, MeshEntity*> walk)
{
    QList<MeshEntity*> entities;
    while (walk.hasNext()) {
        walk.next();
        entities.append(walk.value());
    }
    std::sort(entities.begin(), entities.end(), MeshEntity::lessThan);
    return entities;
}

inline QList<MeshEntity*> neighbours(const MeshEntity* entity, int dimension)
{
    QList<MeshEntity*> result;
    for (int i = 0; i < entity->adjacencyCount(dimension); ++i) {
        result.append(entity->adjacencyAt(dimension, i));
    }
    return result;
}

inline QList<int> ids(const QList<MeshEntity*>& entities)
{
    QList<int> result;
    for (const MeshEntity* entity : entities) {
        result.append(entity->id());
    }
    return result;
}

inline QList<int> vertexIds(const MeshEntity* entity)
{
    return ids(neighbours(entity, 0));
}

inline QList<int> sortedIds(const MeshEntity* entity, int dimension)
{
    QList<int> result = ids(neighbours(entity, dimension));
    std::sort(result.begin(), result.end());
    return result;
}

inline QString text(const MeshEntity* entity)
{
    return QStringLiteral("entity %1 of dimension %2").arg(entity->id()).arg(entity->dimension());
}

/// \brief The signed volume of a tetrahedron, positive if the fourth vertex lies on the side from
///        which the first three are seen counter-clockwise.
inline double tetrahedronVolume(const Vector& a, const Vector& b, const Vector& c, const Vector& d)
{
    return ((b - a) ^ (c - a)) * (d - a) / 6.0;
}

/// \brief The volume of an element, or the area of a planar one.
inline double measure(const MeshEntity* element)
{
    if (element->dimension() == 2) {
        return element->boundaryArea();
    }
    using Pattern = std::vector<std::array<int, 4>>;
    const Pattern wedge = {{0, 1, 2, 3}, {1, 2, 3, 4}, {2, 3, 4, 5}};
    const Pattern hexahedron = {{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6},
                                {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}};
    const int count = element->adjacencyCount(0);
    const Pattern pattern = count == 8 ? hexahedron : count == 6 ? wedge : Pattern{{0, 1, 2, 3}};
    double sum = 0.0;
    for (const auto& corners : pattern) {
        const auto at = [&](int i) {
            return element->adjacencyAt(0, corners[static_cast<size_t>(i)])->centroid();
        };
        sum += std::abs(tetrahedronVolume(at(0), at(1), at(2), at(3)));
    }
    return sum;
}

/// \brief The volume of the elements on a region.
inline double meshMeasure(const ModelEntity* region)
{
    double sum = 0.0;
    for (const MeshEntity* element : sorted(region->childIterator())) {
        sum += measure(element);
    }
    return sum;
}

/// \brief The vertices of the mesh entities on a model entity.
inline QSet<MeshEntity*> verticesOn(const ModelEntity* entity)
{
    QSet<MeshEntity*> result;
    for (const MeshEntity* child : sorted(entity->childIterator())) {
        for (MeshEntity* vertex : neighbours(child, 0)) {
            result.insert(vertex);
        }
    }
    return result;
}

/// \brief Tests that whatever the mesh points to is in the mesh, without looking at it first.
inline QString findDeadPointer(Database* database)
{
    QSet<const MeshEntity*> alive;
    for (int d = 0; d < 4; ++d) {
        for (const MeshEntity* entity : sorted(database->mesh()->iterator(d))) {
            alive.insert(entity);
        }
    }
    for (int d = 0; d < 4; ++d) {
        for (const MeshEntity* entity : sorted(database->mesh()->iterator(d))) {
            for (int list = 0; list < 4; ++list) {
                for (const MeshEntity* neighbour : neighbours(entity, list)) {
                    if (!alive.contains(neighbour)) {
                        return text(entity) + QStringLiteral(" lists a dead one");
                    }
                }
            }
        }
        auto parents = database->model()->iterator(d);
        while (parents.hasNext()) {
            parents.next();
            auto children = parents.value()->childIterator();
            while (children.hasNext()) {
                children.next();
                if (!alive.contains(children.value())) {
                    return QStringLiteral("dead child");
                }
                if (children.value()->parent() != parents.value()) {
                    return text(children.value()) + QStringLiteral(" has another parent");
                }
            }
        }
    }
    return QString();
}

/// \brief Tests the upward lists against those that the vertex lists imply, each entry once.
/// \param edgeDimension the lowest dimension whose own upward list is tested: 2 leaves out the
///        edges
inline QString findStaleUpwardList(Database* database, int edgeDimension = 1)
{
    QHash<const MeshEntity*, std::array<QList<MeshEntity*>, 4>> expected;
    for (int d = 1; d < 4; ++d) {
        for (MeshEntity* entity : sorted(database->mesh()->iterator(d))) {
            for (const MeshEntity* vertex : neighbours(entity, 0)) {
                expected[vertex][static_cast<size_t>(d)].append(entity);
            }
        }
    }
    // Not the lists' own operator==, which hands null pointers of empty lists to memcmp.
    const auto isSame = [](QList<MeshEntity*> list, const QList<MeshEntity*>& wanted) {
        std::sort(list.begin(), list.end(), MeshEntity::lessThan);
        return std::equal(list.cbegin(), list.cend(), wanted.cbegin(), wanted.cend());
    };
    for (const MeshEntity* vertex : sorted(database->mesh()->iterator(0))) {
        for (int d = 1; d < 4; ++d) {
            if (!isSame(neighbours(vertex, d), expected[vertex][static_cast<size_t>(d)])) {
                return text(vertex) + QStringLiteral(" has a wrong list %1").arg(d);
            }
        }
    }
    for (int d = edgeDimension; d < 3; ++d) {
        for (const MeshEntity* side : sorted(database->mesh()->iterator(d))) {
            const QList<MeshEntity*> vertices = neighbours(side, 0);
            QList<MeshEntity*> common = expected[vertices.first()][static_cast<size_t>(d + 1)];
            for (const MeshEntity* vertex : vertices) {
                const auto& list = expected[vertex][static_cast<size_t>(d + 1)];
                common.removeIf([&](MeshEntity* entity) { return !list.contains(entity); });
            }
            if (!isSame(neighbours(side, d + 1), common)) {
                return text(side) + QStringLiteral(" has a wrong list %1").arg(d + 1);
            }
        }
    }
    return QString();
}

/// \brief Tests that the vertices of one set lie on those of the other, one on one.
inline bool coincide(const QSet<MeshEntity*>& first, const QSet<MeshEntity*>& second)
{
    const auto points = [](const QSet<MeshEntity*>& vertices) {
        QStringList result;
        for (const MeshEntity* vertex : vertices) {
            result.append(vertex->centroid().toString());
        }
        result.sort();
        return result;
    };
    return points(first) == points(second);
}

} // namespace MeshChecks
