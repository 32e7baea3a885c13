#include "MeshSerializer2014.h"

#include "InputBlock.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "OutputBlock.h"
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
    InputBlock block(stream);
    readAttributes(mesh()->attributes(), block);
    readEntities(0, block, [&](MeshEntity* vertex) { return readMeshVertex(vertex, block); });
    for (int dimension = 1; dimension <= 3; ++dimension) {
        readEntities(dimension, block,
                     [&](MeshEntity* entity) { return readMeshEntity(entity, block); });
    }
}

ModelEntity* MeshSerializer2014::readMeshVertex(MeshEntity* vertex, InputBlock& block)
{
    vertex->setId(readValue<qint32>(block));
    ModelEntity* parent = readParent(block, MissingParent::Refused);
    readAttributes(vertex->attributes(), block);
    readPoint(vertex, block);
    return parent;
}

ModelEntity* MeshSerializer2014::readMeshEntity(MeshEntity* entity, InputBlock& block)
{
    entity->setId(readValue<qint32>(block));
    ModelEntity* parent = readParentId(entity->dimension(), block, MissingParent::Refused);
    readAttributes(entity->attributes(), block);
    readMeshAdjacencies(entity, block);
    return parent;
}

void MeshSerializer2014::write(QDataStream& stream)
{
    OutputBlock block(stream);
    writeHead(block);
    writeEntities(0, block, [&](MeshEntity* vertex) { writeMeshVertex(vertex, block); });
    for (int dimension = 1; dimension <= 3; ++dimension) {
        writeEntities(dimension, block,
                      [&](MeshEntity* entity) { writeMeshEntity(entity, block); });
    }
}

void MeshSerializer2014::writeMeshVertex(MeshEntity* vertex, OutputBlock& block)
{
    block << static_cast<qint32>(vertex->id());
    writeParent(vertex, block);
    writeAttributes(vertex->attributes(), block);
    writePoint(vertex, block);
}

void MeshSerializer2014::writeMeshEntity(MeshEntity* entity, OutputBlock& block)
{
    block << static_cast<qint32>(entity->id());
    writeParentId(entity, block);
    writeAttributes(entity->attributes(), block);
    writeMeshAdjacencies(entity, block);
}

void MeshSerializer2014::write(QTextStream& stream)
{
    writeShortText(stream);
}

} // namespace Ovra::Geo
