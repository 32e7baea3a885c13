#include "MeshSerializer2013.h"

#include "InputBlock.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "OutputBlock.h"
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
    InputBlock block(stream);
    readAttributes(mesh()->attributes(), block);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        readEntities(dimension, block,
                     [&](MeshEntity* entity) { return readMeshEntity(entity, block); });
    }
}

ModelEntity* MeshSerializer2013::readMeshEntity(MeshEntity* entity, InputBlock& block)
{
    entity->setId(readValue<qint32>(block));
    ModelEntity* parent = readParent(block, MissingParent::Refused);
    readAttributes(entity->attributes(), block);
    if (entity->dimension() == 0) {
        readMeshVertex(entity, block);
    } else {
        readMeshAdjacencies(entity, block);
    }
    return parent;
}

void MeshSerializer2013::readMeshVertex(MeshEntity* vertex, InputBlock& block)
{
    readPoint(vertex, block);
}

void MeshSerializer2013::write(QDataStream& stream)
{
    OutputBlock block(stream);
    writeHead(block);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        writeEntities(dimension, block,
                      [&](MeshEntity* entity) { writeMeshEntity(entity, block); });
    }
}

void MeshSerializer2013::writeMeshEntity(MeshEntity* entity, OutputBlock& block)
{
    block << static_cast<qint32>(entity->id());
    writeParent(entity, block);
    writeAttributes(entity->attributes(), block);
    if (entity->dimension() == 0) {
        writeMeshVertex(entity, block);
    } else {
        writeMeshAdjacencies(entity, block);
    }
}

void MeshSerializer2013::writeMeshVertex(MeshEntity* vertex, OutputBlock& block)
{
    writePoint(vertex, block);
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
