#pragma once

#include "AttributeMap.h"
#include "AttributeType.h"
#include "Database.h"
#include "GbiWriter.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelEntity.h"
#include "ModelFace.h"
#include "ModelRegion.h"

#include <QStringList>
#include <QTextStream>

#include <functional>

/// A small model and mesh, built by hand with chosen ids, and the text that a writer makes of it.
class SolverInputCase
{
public:
    Ovra::Geo::Database database;

    Ovra::Geo::Model& model() { return *database.model(); }
    Ovra::Geo::Mesh& mesh() { return *database.mesh(); }

    Ovra::Geo::ModelEntity* modelEntity(int dimension, int id, const QString& name = {})
    {
        auto* entity = Ovra::Geo::ModelEntity::create(dimension);
        entity->setId(id);
        entity->setName(name);
        model().add(entity);
        return entity;
    }

    Ovra::Geo::ModelEntity* region(int id, const QString& name = {})
    {
        return modelEntity(3, id, name);
    }

    Ovra::Geo::ModelEntity* face(int id, const QList<Ovra::Geo::ModelEntity*>& regions = {})
    {
        return bounding(2, id, regions);
    }

    /// An entity that bounds the given ones of the next dimension.
    Ovra::Geo::ModelEntity* bounding(int dimension, int id,
                                     const QList<Ovra::Geo::ModelEntity*>& upper)
    {
        auto* entity = modelEntity(dimension, id, QString());
        for (auto* region : upper) {
            entity->addAdjacency(region);
            region->addAdjacency(entity);
        }
        return entity;
    }

    Ovra::Geo::MeshEntity* node(int id, const Ovra::Geo::Vector& point = Ovra::Geo::Vector())
    {
        auto* vertex = static_cast<Ovra::Geo::MeshVertex*>(Ovra::Geo::MeshEntity::create(0));
        vertex->setId(id);
        vertex->setPoint(point);
        mesh().add(vertex);
        return vertex;
    }

    /// Makes a mesh entity of the parent's dimension, and those of its nodes that do not exist yet.
    Ovra::Geo::MeshEntity* element(int id, Ovra::Geo::ModelEntity* parent, const QList<int>& nodes)
    {
        return element(id, parent, parent->dimension(), nodes);
    }

    Ovra::Geo::MeshEntity* element(int id, Ovra::Geo::ModelEntity* parent, int dimension,
                                   const QList<int>& nodes)
    {
        auto* entity = Ovra::Geo::MeshEntity::create(dimension);
        entity->setId(id);
        for (int nodeId : nodes) {
            auto* vertex = mesh().entity(0, nodeId);
            entity->addAdjacency(vertex ? vertex : node(nodeId));
        }
        mesh().add(entity);
        parent->addChild(entity);
        return entity;
    }

    void setNodeAttribute(int id, const Ovra::Geo::AttributeType& type, const QVariant& value)
    {
        mesh().entity(0, id)->attributes().insert(type, value);
    }

    /// To be called when the mesh is complete.
    void link() { mesh().setUpwardAdjacencies(); }

    using Section = std::function<void(const Ovra::Geo::GbiWriter&, QTextStream&)>;

    /// What a fresh writer writes to a stream of default settings.
    QString written(const Section& section)
    {
        QString text;
        QTextStream stream(&text);
        section(Ovra::Geo::GbiWriter(&database), stream);
        return text;
    }

    QString written(void (Ovra::Geo::GbiWriter::*section)(QTextStream&) const)
    {
        return written([section](const auto& writer, auto& stream) { (writer.*section)(stream); });
    }

    QString written(void (Ovra::Geo::GbiWriter::*section)(QTextStream&, double) const, double scale)
    {
        return written([section, scale](const auto& writer, auto& stream) {
            (writer.*section)(stream, scale);
        });
    }
};

/// The lines of a text, sorted, for sections whose order of records is open.
inline QStringList sortedLines(const QString& text)
{
    QStringList lines = text.split(u'\n');
    lines.sort();
    return lines;
}
