#include "MeshSerializer2014.h"

#include "Mesh.h"
#include "MeshEntity.h"
#include "StreamReading.h"

#include <QTextStream>

namespace Ovra::Geo
{

MeshSerializer2014::MeshSerializer2014(Model* model, Mesh* mesh)
    : MeshSerializer(Format2014, model, mesh)
{
}

void MeshSerializer2014::read(QDataStream& stream)
{
    readAttributes(mesh()->attributes(), stream);
    readEntities(0, stream, [&](MeshEntity* vertex) { return readMeshVertex(vertex, stream); });
    for (int dimension = 1; dimension <= 3; ++dimension) {
        readEntities(dimension, stream,
                     [&](MeshEntity* entity) { return readMeshEntity(entity, stream); });
    }
}

ModelEntity* MeshSerializer2014::readMeshVertex(MeshEntity* vertex, QDataStream& stream)
{
    vertex->setId(readValue<qint32>(stream));
    ModelEntity* parent = readParent(stream, MissingParent::Refused);
    readAttributes(vertex->attributes(), stream);
    readPoint(vertex, stream);
    return parent;
}

ModelEntity* MeshSerializer2014::readMeshEntity(MeshEntity* entity, QDataStream& stream)
{
    entity->setId(readValue<qint32>(stream));
    ModelEntity* parent = readParentId(entity->dimension(), stream, MissingParent::Refused);
    readAttributes(entity->attributes(), stream);
    readMeshAdjacencies(entity, stream);
    return parent;
}

void MeshSerializer2014::write(QDataStream& stream)
{
    writeHead(stream);
    writeEntities(0, stream, [&](MeshEntity* vertex) { writeMeshVertex(vertex, stream); });
    for (int dimension = 1; dimension <= 3; ++dimension) {
        writeEntities(dimension, stream,
                      [&](MeshEntity* entity) { writeMeshEntity(entity, stream); });
    }
}

void MeshSerializer2014::writeMeshVertex(MeshEntity* vertex, QDataStream& stream)
{
    stream << static_cast<qint32>(vertex->id());
    writeParent(vertex, stream);
    writeAttributes(vertex->attributes(), stream);
    writePoint(vertex, stream);
}

void MeshSerializer2014::writeMeshEntity(MeshEntity* entity, QDataStream& stream)
{
    stream << static_cast<qint32>(entity->id());
    writeParentId(entity, stream);
    writeAttributes(entity->attributes(), stream);
    writeMeshAdjacencies(entity, stream);
}

void MeshSerializer2014::write(QTextStream& stream)
{
    writeShortText(stream);
}

} // namespace Ovra::Geo
