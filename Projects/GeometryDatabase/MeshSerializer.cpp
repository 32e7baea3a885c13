#include "MeshSerializer.h"

#include "AttributeSerializer.h"
#include "Mesh.h"
#include "MeshSerializer2013.h"
#include "MeshSerializer2014.h"
#include "MeshSerializer2014a.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
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

void MeshSerializer::readEntities(int dimension, QDataStream& stream,
                                  const RecordReader& readRecord)
{
    StreamIds ids;
    const qint32 count = readCount(stream);
    for (qint32 i = 0; i < count && isOk(stream); ++i) {
        std::unique_ptr<MeshEntity> entity(MeshEntity::create(dimension));
        ModelEntity* parent = readRecord(entity.get());
        ids.check(entity->id(), stream);
        if (!isOk(stream)) {
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

ModelEntity* MeshSerializer::readParent(QDataStream& stream, MissingParent missing) const
{
    const auto dimension = readValue<qint32>(stream);
    const auto id = readValue<qint32>(stream);
    if (dimension == NoParentDimension) {
        return nullptr;
    }
    if (dimension < 0 || dimension > 3) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return nullptr;
    }
    return parent(dimension, id, stream, missing);
}

ModelEntity* MeshSerializer::readParentId(int dimension, QDataStream& stream,
                                          MissingParent missing) const
{
    const auto id = readValue<qint32>(stream);
    return id == NoParentId ? nullptr : parent(dimension, id, stream, missing);
}

ModelEntity* MeshSerializer::parent(int dimension, int id, QDataStream& stream,
                                    MissingParent missing) const
{
    ModelEntity* entity = model_->entity(dimension, id);
    if (entity == nullptr && missing == MissingParent::Refused) {
        stream.setStatus(QDataStream::ReadCorruptData);
    }
    return entity;
}

void MeshSerializer::readPoint(MeshEntity* vertex, QDataStream& stream)
{
    static_cast<MeshVertex*>(vertex)->setPoint(readValue<Vector>(stream));
}

void MeshSerializer::readMeshAdjacencies(MeshEntity* element, QDataStream& stream) const
{
    const qint32 count = readCount(stream);
    for (qint32 i = 0; i < count && isOk(stream); ++i) {
        MeshEntity* vertex = mesh_->entity(0, readValue<qint32>(stream));
        if (vertex != nullptr) {
            element->append(vertex, 0);
        } else {
            stream.setStatus(QDataStream::ReadCorruptData);
        }
    }
}

void MeshSerializer::writeHead(QDataStream& stream) const
{
    StreamHeader::write({format_, mesh_->version()}, stream);
    writeAttributes(mesh_->attributes(), stream);
}

void MeshSerializer::writeEntities(int dimension, QDataStream& stream,
                                   const RecordWriter& writeRecord) const
{
    stream << static_cast<qint32>(mesh_->count(dimension));
    auto entities = mesh_->orderedIterator(dimension);
    while (entities.hasNext()) {
        writeRecord(entities.next());
    }
}

void MeshSerializer::writeParent(const MeshEntity* entity, QDataStream& stream)
{
    stream << static_cast<qint32>(parentDimension(entity));
    writeParentId(entity, stream);
}

void MeshSerializer::writeParentId(const MeshEntity* entity, QDataStream& stream)
{
    stream << static_cast<qint32>(parentId(entity));
}

void MeshSerializer::writePoint(const MeshEntity* vertex, QDataStream& stream)
{
    stream << static_cast<const MeshVertex*>(vertex)->point();
}

void MeshSerializer::writeMeshAdjacencies(const MeshEntity* element, QDataStream& stream)
{
    stream << static_cast<qint32>(element->adjacencyCount(0));
    auto vertices = element->adjacencyIterator(0);
    while (vertices.hasNext()) {
        stream << static_cast<qint32>(vertices.next()->id());
    }
}

void MeshSerializer::readAttributes(AttributeMap& attributes, QDataStream& stream)
{
    AttributeSerializer::read(attributes, stream);
}

void MeshSerializer::writeAttributes(const AttributeMap& attributes, QDataStream& stream)
{
    AttributeSerializer::write(attributes, stream);
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
