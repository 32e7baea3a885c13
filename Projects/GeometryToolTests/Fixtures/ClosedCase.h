#pragma once

#include "MeshEdge.h"
#include "ModelEdge.h"
#include "TinyCase.h"

/// \brief The tetrahedron of TinyCase with all four sides on model faces, in which there is nothing
/// to find.
///
/// The mesh faces 2 to 4 are its sides (2 3 4), (1 4 3) and (1 2 4), on the model face 4 "walls".
class ClosedCase : public TinyCase
{
public:
    ClosedCase()
    {
        walls = addFace();
        link(walls, region);
        addElement(2, {2, 3, 4}, walls);
        addElement(2, {1, 4, 3}, walls);
        addElement(2, {1, 2, 4}, walls);
    }

    static void link(Ovra::Geo::ModelEntity* a, Ovra::Geo::ModelEntity* b)
    {
        a->addAdjacency(b);
        b->addAdjacency(a);
    }

    /// \brief A model face that bounds nothing.
    Ovra::Geo::ModelFace* addFace()
    {
        auto* const added = new Ovra::Geo::ModelFace;
        model()->add(added);
        return added;
    }

    /// \brief A model region with the next id, from 3.
    Ovra::Geo::ModelRegion* addRegion()
    {
        auto* const added = new Ovra::Geo::ModelRegion;
        model()->add(added);
        return added;
    }

    Ovra::Geo::ModelEdge* addEdge()
    {
        auto* const added = new Ovra::Geo::ModelEdge;
        model()->add(added);
        return added;
    }

    Ovra::Geo::AttributeMap& vertex(int id) { return mesh()->entity(0, id)->attributes(); }

    Ovra::Geo::ModelFace* walls = nullptr;
};

/// \brief Two triangles side by side in a model without regions, with all their sides on model
/// edges: (1 2 3) and (1 3 4) of the unit square, the model faces 1 and 2 with one of them each,
/// the model edge 1 between these and the model edges 2 and 3 around them.
class PlanarCase
{
public:
    PlanarCase()
    {
        using namespace Ovra::Geo;
        for (auto& face : faces) {
            add(face = new ModelFace);
        }
        for (auto& edge : edges) {
            add(edge = new ModelEdge);
        }
        ClosedCase::link(edges[0], faces[0]);
        ClosedCase::link(edges[0], faces[1]);
        ClosedCase::link(edges[1], faces[0]);
        ClosedCase::link(edges[2], faces[1]);
        for (const Vector& point :
             {Vector(0, 0, 0), Vector(1, 0, 0), Vector(1, 1, 0), Vector(0, 1, 0)}) {
            addVertex(point);
        }
        addElement(2, {1, 2, 3}, faces[0]);
        addElement(1, {1, 3}, edges[0]);
        addElement(1, {1, 2}, edges[1]);
        addElement(1, {2, 3}, edges[1]);
        addElement(1, {3, 4}, edges[2]);
        addElement(1, {4, 1}, edges[2]);
    }

    PlanarCase(const PlanarCase&) = delete;
    PlanarCase& operator=(const PlanarCase&) = delete;

    void addVertex(const Ovra::Geo::Vector& point)
    {
        auto* const vertex = new Ovra::Geo::MeshVertex;
        vertex->setPoint(point);
        database.mesh()->add(vertex);
    }

    Ovra::Geo::MeshEntity* addElement(int dimension, std::initializer_list<int> vertexIds,
                                      Ovra::Geo::ModelEntity* parent)
    {
        auto* const element = Ovra::Geo::MeshEntity::create(dimension);
        for (const int id : vertexIds) {
            element->addAdjacency(database.mesh()->entity(0, id));
        }
        database.mesh()->add(element);
        parent->addChild(element);
        return element;
    }

    Ovra::Geo::Database database;
    std::array<Ovra::Geo::ModelFace*, 2> faces = {};
    std::array<Ovra::Geo::ModelEdge*, 3> edges = {};

private:
    void add(Ovra::Geo::ModelEntity* entity) { database.model()->add(entity); }
};
