#pragma once

#include "AttributeType.h"
#include "Database.h"
#include "Mesh.h"
#include "MeshFace.h"
#include "MeshRegion.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "SavedCase.h"

#include <QDataStream>
#include <QFile>
#include <QString>

#include <array>
#include <initializer_list>

/// \brief A tetrahedron on the axes in the model region 2 "box", its bottom on the model face 3
/// "inlet".
///
/// The mesh has vertices 1 to 4, on the region, the face 1 (1 3 2) and the region 1 (1 2 3 4).
/// Tests change it before they save it.
class TinyCase
{
public:
    TinyCase()
    {
        addModel();
        const std::array<Ovra::Geo::Vector, 4> points = {
            Ovra::Geo::Vector(0, 0, 0), Ovra::Geo::Vector(1, 0, 0), Ovra::Geo::Vector(0, 1, 0),
            Ovra::Geo::Vector(0, 0, 1)};
        for (std::size_t i = 0; i < points.size(); ++i) {
            vertices[i] = addVertex(points[i]);
        }
        tetrahedron = addElement(3, {1, 2, 3, 4}, region);
        bottom = addElement(2, {1, 3, 2}, face);
    }

    TinyCase(const TinyCase&) = delete;
    TinyCase& operator=(const TinyCase&) = delete;

    Ovra::Geo::Model* model() { return database.model(); }
    Ovra::Geo::Mesh* mesh() { return database.mesh(); }

    Ovra::Geo::MeshVertex* addVertex(const Ovra::Geo::Vector& point)
    {
        auto* vertex = new Ovra::Geo::MeshVertex;
        vertex->setPoint(point);
        mesh()->add(vertex);
        region->addChild(vertex);
        return vertex;
    }

    Ovra::Geo::MeshEntity* addElement(int dimension, std::initializer_list<int> vertexIds,
                                      Ovra::Geo::ModelEntity* parent)
    {
        Ovra::Geo::MeshEntity* const element = Ovra::Geo::MeshEntity::create(dimension);
        for (const int id : vertexIds) {
            element->addAdjacency(mesh()->entity(0, id));
        }
        mesh()->add(element);
        if (parent) {
            parent->addChild(element);
        }
        return element;
    }

    /// \brief Writes the pair \p name + ".geo_model" and ".geo_mesh" in the current formats.
    bool save(const QString& name) { return SavedCase::save(database, name); }

    Ovra::Geo::Database database;
    Ovra::Geo::ModelFace* face = nullptr;
    Ovra::Geo::ModelRegion* region = nullptr;
    std::array<Ovra::Geo::MeshVertex*, 4> vertices = {};
    Ovra::Geo::MeshEntity* tetrahedron = nullptr;
    Ovra::Geo::MeshEntity* bottom = nullptr;

private:
    void addModel()
    {
        using namespace Ovra::Geo;
        model()->setVersion(Version(15, 1, 2));
        mesh()->setVersion(Version(15, 1, 3));
        model()->setBoundingBox(Box(Vector(0, 0, 0), Vector(1, 1, 1)));
        face = new ModelFace;
        face->setId(3);
        face->setName(QStringLiteral("inlet"));
        face->setCentroid(Vector(0.5, 0.5, 0));
        face->setNormal(Vector(0, 0, -1));
        region = new ModelRegion;
        region->setId(2);
        region->setName(QStringLiteral("box"));
        region->setCentroid(Vector(0.25, 0.25, 0.25));
        region->attributes().insert(AttributeType::MaterialType, QStringLiteral("fluid"));
        region->attributes().insert(AttributeType::MaterialId, 7);
        model()->add(face);
        model()->add(region);
        face->addAdjacency(region);
        region->addAdjacency(face);
    }
};
