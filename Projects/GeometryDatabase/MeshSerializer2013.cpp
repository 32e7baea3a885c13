#include "MeshSerializer2013.h"

#include "Mesh.h"
#include "MeshEntity.h"
#include "StreamReading.h"

#include <QTextStream>

namespace Ovra::Geo
{

MeshSerializer2013::MeshSerializer2013(Model* model, Mesh* mesh)
    : MeshSerializer(Format2013, model, mesh)
{
}

void MeshSerializer2013::read(QDataStream& stream)
{
    readAttributes(mesh()->attributes(), stream);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        readEntities(dimension, stream,
                     [&](MeshEntity* entity) { return readMeshEntity(entity, stream); });
    }
}

ModelEntity* MeshSerializer2013::readMeshEntity(MeshEntity* entity, QDataStream& stream)
{
    entity->setId(readValue<qint32>(stream));
    ModelEntity* parent = readParent(stream, MissingParent::Refused);
    readAttributes(entity->attributes(), stream);
    if (entity->dimension() == 0) {
        readMeshVertex(entity, stream);
    } else {
        readMeshAdjacencies(entity, stream);
    }
    return parent;
}

void MeshSerializer2013::readMeshVertex(MeshEntity* vertex, QDataStream& stream)
{
    readPoint(vertex, stream);
}

void MeshSerializer2013::write(QDataStream& stream)
{
    writeHead(stream);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        writeEntities(dimension, stream,
                      [&](MeshEntity* entity) { writeMeshEntity(entity, stream); });
    }
}

void MeshSerializer2013::writeMeshEntity(MeshEntity* entity, QDataStream& stream)
{
    stream << static_cast<qint32>(entity->id());
    writeParent(entity, stream);
    writeAttributes(entity->attributes(), stream);
    if (entity->dimension() == 0) {
        writeMeshVertex(entity, stream);
    } else {
        writeMeshAdjacencies(entity, stream);
    }
}

void MeshSerializer2013::writeMeshVertex(MeshEntity* vertex, QDataStream& stream)
{
    writePoint(vertex, stream);
}

void MeshSerializer2013::write(QTextStream& stream)
{
    writeText(stream, [&](MeshEntity* entity) { writeMeshEntity(entity, stream); });
}

void MeshSerializer2013::writeMeshEntity(MeshEntity* entity, QTextStream& stream)
{
    writeParentLine(entity, stream);
    writeAttributesIfAny(entity, stream);
    if (entity->dimension() == 0) {
        writeMeshVertex(entity, stream);
    } else {
        writeMeshAdjacencies(entity, stream);
    }
}

void MeshSerializer2013::writeMeshVertex(MeshEntity* vertex, QTextStream& stream)
{
    writePoint(vertex, stream);
}

} // namespace Ovra::Geo
