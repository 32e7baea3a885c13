#include "MeshSerializer.h"

#include "AttributeSerializer.h"
#include "InputBlock.h"
#include "Mesh.h"
#include "MeshSerializer2013.h"
#include "MeshSerializer2014.h"
#include "MeshSerializer2014a.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
#include "OutputBlock.h"
#include "StreamHeader.h"
#include "StreamIds.h"
#include "StreamReading.h"

#include <QDataStream>
#include <QTextStream>

#include <memory>

namespace Ovra::Geo
{

namespace
{

constexpr int NoParentDimension = -1;
constexpr int NoParentId = 0;

int parentDimension(const MeshEntity* entity)
{
    return entity->parent() != nullptr ? entity->parent()->dimension() : NoParentDimension;
}

int parentId(const MeshEntity* entity)
{
    return entity->parent() != nullptr ? entity->parent()->id() : NoParentId;
}

} // namespace

MeshSerializer* MeshSerializer::create(Format format, Model* model, Mesh* mesh)
{
    switch (format) {
    case Format2013:
        return new MeshSerializer2013(model, mesh);
    case Format2014:
        return new MeshSerializer2014(model, mesh);
    case Format2014a:
        return new MeshSerializer2014a(model, mesh);
    default:
        return nullptr;
    }
}

MeshSerializer::MeshSerializer(Format format, Model* model, Mesh* mesh)
    : format_(format)
    , model_(model)
    , mesh_(mesh)
{
}

MeshSerializer::~MeshSerializer() = default;

void MeshSerializer::readEntities(int dimension, InputBlock& block, const RecordReader& readRecord)
{
    StreamIds ids;
    const qint32 count = readCount(block);
    for (qint32 i = 0; i < count && isOk(block); ++i) {
        std::unique_ptr<MeshEntity> entity(MeshEntity::create(dimension));
        ModelEntity* parent = readRecord(entity.get());
        ids.check(entity->id(), block);
        if (!isOk(block)) {
            return;
        }
        // Not earlier: an entity that is given up again would take a namesake's place under its
        // parent.
        if (parent != nullptr) {
            parent->addChild(entity.get());
        }
        mesh_->add(entity.release());
    }
}

ModelEntity* MeshSerializer::readParent(InputBlock& block, MissingParent missing) const
{
    const auto dimension = readValue<qint32>(block);
    const auto id = readValue<qint32>(block);
    if (dimension == NoParentDimension) {
        return nullptr;
    }
    if (dimension < 0 || dimension > 3) {
        block.setStatus(QDataStream::ReadCorruptData);
        return nullptr;
    }
    return parent(dimension, id, block, missing);
}

ModelEntity* MeshSerializer::readParentId(int dimension, InputBlock& block,
                                          MissingParent missing) const
{
    const auto id = readValue<qint32>(block);
    return id == NoParentId ? nullptr : parent(dimension, id, block, missing);
}

ModelEntity* MeshSerializer::parent(int dimension, int id, InputBlock& block,
                                    MissingParent missing) const
{
    ModelEntity* entity = model_->entity(dimension, id);
    if (entity == nullptr && missing == MissingParent::Refused) {
        block.setStatus(QDataStream::ReadCorruptData);
    }
    return entity;
}

void MeshSerializer::readPoint(MeshEntity* vertex, InputBlock& block)
{
    Vector point;
    for (int i = 0; i < 3; ++i) {
        point[i] = readValue<double>(block);
    }
    static_cast<MeshVertex*>(vertex)->setPoint(point);
}

void MeshSerializer::readMeshAdjacencies(MeshEntity* element, InputBlock& block) const
{
    const qint32 count = readCount(block);
    for (qint32 i = 0; i < count && isOk(block); ++i) {
        MeshEntity* vertex = mesh_->entity(0, readValue<qint32>(block));
        if (vertex != nullptr) {
            element->append(vertex, 0);
        } else {
            block.setStatus(QDataStream::ReadCorruptData);
        }
    }
}

void MeshSerializer::writeHead(OutputBlock& block) const
{
    StreamHeader::write({format_, mesh_->version()}, block.stream());
    writeAttributes(mesh_->attributes(), block);
}

void MeshSerializer::writeEntities(int dimension, OutputBlock& block,
                                   const RecordWriter& writeRecord) const
{
    block << static_cast<qint32>(mesh_->count(dimension));
    auto entities = mesh_->orderedIterator(dimension);
    while (entities.hasNext()) {
        writeRecord(entities.next());
    }
}

void MeshSerializer::writeParent(const MeshEntity* entity, OutputBlock& block)
{
    block << static_cast<qint32>(parentDimension(entity));
    writeParentId(entity, block);
}

void MeshSerializer::writeParentId(const MeshEntity* entity, OutputBlock& block)
{
    block << static_cast<qint32>(parentId(entity));
}

void MeshSerializer::writePoint(const MeshEntity* vertex, OutputBlock& block)
{
    const Vector point = static_cast<const MeshVertex*>(vertex)->point();
    block << point.x() << point.y() << point.z();
}

void MeshSerializer::writeMeshAdjacencies(const MeshEntity* element, OutputBlock& block)
{
    block << static_cast<qint32>(element->adjacencyCount(0));
    for (const MeshEntity* vertex : element->adjacencies(0)) {
        block << static_cast<qint32>(vertex->id());
    }
}

void MeshSerializer::readAttributes(AttributeMap& attributes, InputBlock& block)
{
    AttributeSerializer::read(attributes, block);
}

void MeshSerializer::writeAttributes(const AttributeMap& attributes, OutputBlock& block)
{
    AttributeSerializer::write(attributes, block.stream());
}

void MeshSerializer::writeAttributes(const AttributeMap& attributes, QTextStream& stream)
{
    AttributeSerializer::write(attributes, stream);
}

void MeshSerializer::writeMeshAdjacencies(const MeshEntity* element, QTextStream& stream)
{
    stream << element->adjacencyCount(0) << " ";
    auto vertices = element->adjacencyIterator(0);
    while (vertices.hasNext()) {
        stream << vertices.next()->id() << " ";
    }
    stream << "\n";
}

void MeshSerializer::writePoint(const MeshEntity* vertex, QTextStream& stream)
{
    stream << static_cast<const MeshVertex*>(vertex)->point() << "\n";
}

void MeshSerializer::writeParentLine(const MeshEntity* entity, QTextStream& stream)
{
    stream << entity->id() << " " << parentDimension(entity) << " " << parentId(entity) << "\n";
}

void MeshSerializer::writeParentIdLine(const MeshEntity* entity, QTextStream& stream)
{
    stream << entity->id() << " " << parentId(entity) << "\n";
}

void MeshSerializer::writeAttributesIfAny(MeshEntity* entity, QTextStream& stream)
{
    if (!entity->attributes().isEmpty()) {
        writeAttributes(entity->attributes(), stream);
    }
}

void MeshSerializer::writeShortText(QTextStream& stream) const
{
    writeText(stream, [&stream](MeshEntity* entity) {
        const bool isVertex = entity->dimension() == 0;
        isVertex ? writeParentLine(entity, stream) : writeParentIdLine(entity, stream);
        writeAttributesIfAny(entity, stream);
        isVertex ? writePoint(entity, stream) : writeMeshAdjacencies(entity, stream);
    });
}

void MeshSerializer::writeText(QTextStream& stream, const RecordWriter& writeRecord) const
{
    stream << "*** Format ***\n" << static_cast<int>(format_) << "\n";
    stream << "*** Version ***\n" << mesh_->version() << "\n";
    stream << "*** Attributes ***\n";
    writeAttributes(mesh_->attributes(), stream);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        stream << "*** Entities " << dimension << " ***\n";
        stream << mesh_->count(dimension) << " count\n";
        auto entities = mesh_->orderedIterator(dimension);
        while (entities.hasNext()) {
            writeRecord(entities.next());
        }
    }
}

} // namespace Ovra::Geo
