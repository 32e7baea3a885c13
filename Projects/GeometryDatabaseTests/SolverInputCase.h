#pragma once

#include "AttributeMap.h"
#include "AttributeType.h"
#include "GbiWriter.h"
#include "TestMesh.h"

#include <QBuffer>
#include <QStringList>
#include <QTextStream>

#include <functional>

/// A model and mesh built by chosen ids, and the text that a writer makes of it.
class SolverInputCase : public TestMesh
{
public:
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
        auto* entity = modelEntity(dimension, id);
        for (auto* region : upper) {
            link(entity, region);
        }
        return entity;
    }

    Ovra::Geo::MeshVertex* node(int id, const Ovra::Geo::Vector& point = Ovra::Geo::Vector())
    {
        auto* known = static_cast<Ovra::Geo::MeshVertex*>(mesh().entity(0, id));
        return known ? known : addVertex(point, id);
    }

    /// Makes a mesh entity of the parent's dimension, and those of its nodes that do not exist yet.
    Ovra::Geo::MeshEntity* element(int id, Ovra::Geo::ModelEntity* parent, const QList<int>& nodes)
    {
        Vertices vertices;
        for (int nodeId : nodes) {
            vertices.append(node(nodeId));
        }
        return addElement(parent->dimension(), vertices, parent, id);
    }

    void setNodeAttribute(int id, const Ovra::Geo::AttributeType& type, const QVariant& value)
    {
        node(id)->attributes().insert(type, value);
    }

    /// To be called when the mesh is complete.
    void complete() { mesh().setUpwardAdjacencies(); }

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

    /// What one writer writes as the section \p second, after the section \p first.
    QString writtenAfter(void (Ovra::Geo::GbiWriter::*first)(QTextStream&) const,
                         void (Ovra::Geo::GbiWriter::*second)(QTextStream&) const)
    {
        return written([first, second](const auto& writer, auto& stream) {
            QString ignored;
            QTextStream before(&ignored);
            (writer.*first)(before);
            (writer.*second)(stream);
        });
    }

    /// What has reached the device when a section returns, without a flush by the host.
    QString arrived(void (Ovra::Geo::GbiWriter::*section)(QTextStream&) const)
    {
        QBuffer device;
        device.open(QIODevice::WriteOnly);
        QTextStream stream(&device);
        (Ovra::Geo::GbiWriter(&database).*section)(stream);
        return QString::fromUtf8(device.data());
    }

    QString written(void (Ovra::Geo::GbiWriter::*section)(QTextStream&, double) const, double scale)
    {
        return written([section, scale](const auto& writer, auto& stream) {
            (writer.*section)(stream, scale);
        });
    }
};

/// The ids from 1 to \p count.
inline QList<int> upTo(int count)
{
    QList<int> ids;
    for (int id = 1; id <= count; ++id) {
        ids.append(id);
    }
    return ids;
}

/// The lines of a text, sorted, for sections whose order of records is open.
inline QStringList sortedLines(const QString& text)
{
    QStringList lines = text.split(u'\n');
    lines.sort();
    return lines;
}
