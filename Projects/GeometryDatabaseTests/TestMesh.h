#pragma once

#include "Database.h"
#include "Mesh.h"
#include "MeshEdge.h"
#include "MeshEntity.h"
#include "MeshFace.h"
#include "MeshRegion.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelEntity.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ModelVertex.h"

#include <QList>
#include <QMap>
#include <QSet>

#include <algorithm>

/// The ids of the entities of a set or list, ascending.
template <typename Entities>
QList<int> sortedIds(const Entities& entities)
{
    QList<int> ids;
    for (const auto* entity : entities) {
        ids.append(entity->id());
    }
    std::sort(ids.begin(), ids.end());
    return ids;
}

/// The ids of the entries of one list of neighbours, in the order of the list.
template <typename Entity>
QList<int> neighbourIds(const Entity* entity, int dimension)
{
    QList<int> ids;
    for (int i = 0; i < entity->adjacencyCount(dimension); ++i) {
        ids.append(entity->adjacencyAt(dimension, i)->id());
    }
    return ids;
}

/// A database with the means to build a model and its mesh by hand, a line for each entity.
///
/// Everything is owned by the database. An id of 0 leaves the choice of the id to the container.
class TestMesh
{
public:
    using Vertices = QList<Ovra::Geo::MeshVertex*>;

    Ovra::Geo::Database database;

    Ovra::Geo::Model& model() { return *database.model(); }
    Ovra::Geo::Mesh& mesh() { return *database.mesh(); }

    Ovra::Geo::ModelVertex* addModelVertex(const Ovra::Geo::Vector& point, int id = 0)
    {
        auto* vertex = addModelEntity<Ovra::Geo::ModelVertex>(id);
        vertex->setPoint(point);
        return vertex;
    }
    Ovra::Geo::ModelEdge* addModelEdge(int id = 0)
    {
        return addModelEntity<Ovra::Geo::ModelEdge>(id);
    }
    Ovra::Geo::ModelFace* addModelFace(int id = 0)
    {
        return addModelEntity<Ovra::Geo::ModelFace>(id);
    }
    Ovra::Geo::ModelRegion* addModelRegion(int id = 0)
    {
        return addModelEntity<Ovra::Geo::ModelRegion>(id);
    }

    /// Makes two entities, of the model or of the mesh, list each other.
    template <typename Entity, typename Other>
    static void link(Entity* a, Other* b)
    {
        a->addAdjacency(b);
        b->addAdjacency(a);
    }

    Ovra::Geo::MeshVertex* addVertex(const Ovra::Geo::Vector& point, int id = 0,
                                     Ovra::Geo::ModelEntity* parent = nullptr)
    {
        auto* vertex = new Ovra::Geo::MeshVertex;
        vertex->setPoint(point);
        enter(vertex, parent, id);
        return vertex;
    }

    /// A mesh edge, face or region, of the kind that its number of vertices tells.
    /// The vertices do not list it until setUpwardAdjacencies() or link().
    Ovra::Geo::MeshEntity* addElement(int dimension, const Vertices& vertices,
                                      Ovra::Geo::ModelEntity* parent = nullptr, int id = 0)
    {
        auto* element = Ovra::Geo::MeshEntity::create(dimension);
        for (auto* vertex : vertices) {
            element->addAdjacency(vertex);
        }
        enter(element, parent, id);
        return element;
    }

    /// An element of dimension 3 by local node numbers of a cell, with all its faces and edges.
    ///
    /// The faces are those of the element's kind in the order of their local numbers, the edges the
    /// sides of the faces, each once. Sides that exist already, from a neighbouring element, are
    /// not made again. \param faceParent is the parent of the new faces, may be null; the edges get
    /// no parent
    Ovra::Geo::MeshEntity* addCell(const Vertices& vertices,
                                   Ovra::Geo::ModelEntity* parent = nullptr,
                                   Ovra::Geo::ModelEntity* faceParent = nullptr)
    {
        auto* cell = addElement(3, vertices, parent);
        for (const QList<int>& row : cellFaces(vertices.size())) {
            Vertices corners;
            for (int index : row) {
                corners.append(vertices[index]);
            }
            addSide(2, corners, faceParent);
            for (qsizetype i = 0; i < corners.size(); ++i) {
                addSide(1, {corners[i], corners[(i + 1) % corners.size()]}, nullptr);
            }
        }
        return cell;
    }

    /// A cell of its kind of unit extent at an origin of choice, with vertices of its own:
    /// 4 vertices make a tetrahedron, 5 a pyramid, 6 a wedge, 8 a hexahedron.
    Ovra::Geo::MeshEntity* addUnitCell(int vertexCount, Ovra::Geo::ModelEntity* parent = nullptr,
                                       Ovra::Geo::ModelEntity* faceParent = nullptr,
                                       const Ovra::Geo::Vector& origin = Ovra::Geo::Vector())
    {
        Vertices vertices;
        for (const Ovra::Geo::Vector& point : unitCellPoints(vertexCount)) {
            vertices.append(addVertex(point + origin));
        }
        return addCell(vertices, parent, faceParent);
    }

    /// Node positions of a cell of unit extent, in node order.
    static QList<Ovra::Geo::Vector> unitCellPoints(int vertexCount)
    {
        switch (vertexCount) {
        case 4:
            return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        case 5:
            return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0.5, 0.5, 1}};
        case 6:
            return {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
        default:
            return {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0},
                    {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}};
        }
    }

    /// The faces of a cell by local node numbers, in the order of the local face numbers and along
    /// their boundaries. Stands apart from the library's tables on purpose.
    static QList<QList<int>> cellFaces(qsizetype vertexCount)
    {
        switch (vertexCount) {
        case 4:
            return {{1, 2, 3}, {0, 3, 2}, {0, 1, 3}, {0, 2, 1}};
        case 5:
            return {{3, 2, 1, 0}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}};
        case 6:
            return {{0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}, {0, 2, 1}, {3, 4, 5}};
        default:
            return {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4},
                    {2, 3, 7, 6}, {0, 3, 2, 1}, {4, 5, 6, 7}};
        }
    }

private:
    template <typename Entity>
    Entity* addModelEntity(int id)
    {
        auto* entity = new Entity;
        entity->setId(id);
        model().add(entity);
        return entity;
    }

    void enter(Ovra::Geo::MeshEntity* entity, Ovra::Geo::ModelEntity* parent, int id)
    {
        entity->setId(id);
        mesh().add(entity);
        if (parent) {
            parent->addChild(entity);
        }
    }

    void addSide(int dimension, const Vertices& vertices, Ovra::Geo::ModelEntity* parent)
    {
        const QList<int> key = sortedIds(vertices);
        auto& sides = sides_[dimension];
        if (!sides.contains(key)) {
            sides.insert(key, addElement(dimension, vertices, parent));
        }
    }

    QMap<int, QMap<QList<int>, Ovra::Geo::MeshEntity*>> sides_;
};
