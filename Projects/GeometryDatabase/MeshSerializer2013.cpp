#include "MeshSerializer2013.h"

#include "AttributeSerializer.h"
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
    AttributeSerializer::read(mesh()->attributes(), stream);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        readEntities(dimension, stream,
                     [&](MeshEntity* entity) { return readMeshEntity(entity, stream); });
    }
}

ModelEntity* MeshSerializer2013::readMeshEntity(MeshEntity* entity, QDataStream& stream)
{
    entity->setId(readValue<qint32>(stream));
    ModelEntity* parent = readParent(stream, MissingParent::Refused);
    AttributeSerializer::read(entity->attributes(), stream);
    if (entity->dimension() == 0) {
        readPoint(entity, stream);
    } else {
        readMeshAdjacencies(entity, stream);
    }
    return parent;
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
    AttributeSerializer::write(entity->attributes(), stream);
    if (entity->dimension() == 0) {
        writePoint(entity, stream);
    } else {
        writeMeshAdjacencies(entity, stream);
    }
}

void MeshSerializer2013::write(QTextStream& stream)
{
    writeText(stream);
}

} // namespace Ovra::Geo
