#include "MeshSerializer2014a.h"

#include "AttributeSerializer.h"
#include "AttributeType.h"
#include "InputBlock.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "OutputBlock.h"
#include "StreamReading.h"
#include "VariantReader.h"

#include <QTextStream>
#include <QVariant>

namespace Ovra::Geo
{

MeshSerializer2014a::MeshSerializer2014a(Model* model, Mesh* mesh)
    : MeshSerializer(Format2014a, model, mesh)
{
}

void MeshSerializer2014a::read(QDataStream& stream)
{
    InputBlock block(stream);
    readAttributes(mesh()->attributes(), block);
    readAttributeDictionary(block.stream());
    readEntities(0, block, [&](MeshEntity* vertex) { return readMeshVertex(vertex, block); });
    readMeshEntityAttributes(0, block.stream());
    for (int dimension = 1; dimension <= 3; ++dimension) {
        readEntities(dimension, block,
                     [&](MeshEntity* entity) { return readMeshEntity(entity, block); });
        readMeshEntityAttributes(dimension, block.stream());
    }
}

ModelEntity* MeshSerializer2014a::readMeshVertex(MeshEntity* vertex, InputBlock& block)
{
    vertex->setId(readValue<qint32>(block));
    ModelEntity* parent = readParent(block, MissingParent::Ignored);
    readPoint(vertex, block);
    return parent;
}

ModelEntity* MeshSerializer2014a::readMeshEntity(MeshEntity* entity, InputBlock& block)
{
    entity->setId(readValue<qint32>(block));
    ModelEntity* parent = readParentId(entity->dimension(), block, MissingParent::Ignored);
    readMeshAdjacencies(entity, block);
    return parent;
}

void MeshSerializer2014a::readAttributeDictionary(QDataStream& stream)
{
    while (isOk(stream)) {
        const auto number = readValue<qint16>(stream);
        if (!isOk(stream) || number == EndOfSection) {
            return;
        }
        const QString tag = AttributeSerializer::readTag(stream);
        insertIntoDictionary(number, tag);
    }
}

void MeshSerializer2014a::readMeshEntityAttributes(int dimension, QDataStream& stream)
{
    while (isOk(stream)) {
        const auto id = readValue<qint32>(stream);
        if (!isOk(stream) || id == EndOfSection) {
            return;
        }
        MeshEntity* entity = mesh()->entity(dimension, id);
        if (entity != nullptr) {
            readAttribute(entity, stream);
        } else {
            stream.setStatus(QDataStream::ReadCorruptData);
        }
    }
}

void MeshSerializer2014a::readAttribute(MeshEntity* entity, QDataStream& stream)
{
    const auto number = readValue<qint16>(stream);
    QVariant value;
    if (VariantReader(stream).read(value)) {
        const QString tag = dictionaryIdsToTags_.value(number);
        entity->attributes().insert(AttributeType::fromString(tag), value);
    }
}

void MeshSerializer2014a::write(QDataStream& stream)
{
    OutputBlock block(stream);
    writeHead(block);
    setAttributeDictionary();
    writeAttributeDictionary(block.stream());
    writeEntities(0, block, [&](MeshEntity* vertex) { writeMeshVertex(vertex, block); });
    writeMeshEntityAttributes(0, block.stream());
    for (int dimension = 1; dimension <= 3; ++dimension) {
        writeEntities(dimension, block,
                      [&](MeshEntity* entity) { writeMeshEntity(entity, block); });
        writeMeshEntityAttributes(dimension, block.stream());
    }
}

void MeshSerializer2014a::setAttributeDictionary()
{
    short number = 0;
    const QList<QString> tags = AttributeType::tags();
    for (const QString& tag : tags) {
        insertIntoDictionary(++number, tag);
    }
}

void MeshSerializer2014a::insertIntoDictionary(short number, const QString& tag)
{
    dictionaryIdsToTags_.insert(number, tag);
    dictionaryTagsToIds_.insert(tag, number);
}

void MeshSerializer2014a::writeAttributeDictionary(QDataStream& stream)
{
    for (auto i = dictionaryIdsToTags_.cbegin(); i != dictionaryIdsToTags_.cend(); ++i) {
        stream << static_cast<qint16>(i.key());
        AttributeSerializer::writeTag(i.value(), stream);
    }
    stream << static_cast<qint16>(EndOfSection);
}

void MeshSerializer2014a::writeMeshVertex(MeshEntity* vertex, OutputBlock& block)
{
    block << static_cast<qint32>(vertex->id());
    writeParent(vertex, block);
    writePoint(vertex, block);
}

void MeshSerializer2014a::writeMeshEntity(MeshEntity* entity, OutputBlock& block)
{
    block << static_cast<qint32>(entity->id());
    writeParentId(entity, block);
    writeMeshAdjacencies(entity, block);
}

void MeshSerializer2014a::writeMeshEntityAttributes(int dimension, QDataStream& stream)
{
    auto entities = mesh()->iterator(dimension);
    while (entities.hasNext()) {
        entities.next();
        // The id -1 would end the section.
        if (entities.value()->id() != EndOfSection && !entities.value()->attributes().isEmpty()) {
            writeAttributeRecords(entities.value(), stream);
        }
    }
    stream << static_cast<qint32>(EndOfSection);
}

void MeshSerializer2014a::writeAttributeRecords(MeshEntity* entity, QDataStream& stream)
{
    const AttributeMap& attributes = entity->attributes();
    const QList<AttributeType> types = attributes.types();
    for (const AttributeType& type : types) {
        stream << static_cast<qint32>(entity->id());
        stream << static_cast<qint16>(dictionaryTagsToIds_.value(type.toString(), 0));
        stream << attributes.value(type, QVariant());
    }
}

void MeshSerializer2014a::write(QTextStream& stream)
{
    writeShortText(stream);
}

} // namespace Ovra::Geo
