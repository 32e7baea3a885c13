#include "ModelSerializer2013.h"

#include "AttributeSerializer.h"
#include "Box.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelEntity.h"
#include "ModelFace.h"
#include "ModelRegion.h"
#include "ModelVertex.h"
#include "RefinementRegion.h"
#include "StreamHeader.h"
#include "StreamIds.h"
#include "StreamReading.h"
#include "Vector.h"
#include "Version.h"

#include <QDataStream>
#include <QTextStream>

#include <memory>

namespace Ovra::Geo
{

namespace
{

// What edges and faces have between their box and the end of their record, but for the measure.
template <typename Entity>
void readPlane(Entity* entity, QDataStream& stream)
{
    entity->setCentroid(readValue<Vector>(stream));
    entity->setNormal(readValue<Vector>(stream));
    entity->setPlanar(readValue<bool>(stream));
}

void writePlane(const ModelEntity* entity, QDataStream& stream)
{
    stream << entity->centroid() << entity->normal() << entity->isPlanar();
}

void writePlane(const ModelEntity* entity, QTextStream& stream)
{
    stream << entity->centroid() << " centroid\n";
    stream << entity->normal() << " normal\n";
    stream << static_cast<int>(entity->isPlanar()) << " isPlanar\n";
}

void writeNeighbours(const ModelEntity* entity, int dimension, QDataStream& stream)
{
    stream << static_cast<qint32>(entity->adjacencyCount(dimension));
    auto neighbours = entity->adjacencyIterator(dimension);
    while (neighbours.hasNext()) {
        stream << static_cast<qint32>(neighbours.next()->id());
    }
}

void writeNeighbours(const ModelEntity* entity, int dimension, QTextStream& stream)
{
    stream << "... " << dimension << " ...\n";
    stream << entity->adjacencyCount(dimension) << " count\n";
    auto neighbours = entity->adjacencyIterator(dimension);
    while (neighbours.hasNext()) {
        stream << neighbours.next()->id() << " id\n";
    }
}

// Adjacency to entities of the entity's own dimension is not stored.
template <typename Operation>
void forOtherDimensions(const ModelEntity* entity, Operation operation)
{
    for (int dimension = 0; dimension <= 3; ++dimension) {
        if (dimension != entity->dimension()) {
            operation(dimension);
        }
    }
}

} // namespace

ModelSerializer2013::ModelSerializer2013(Model* model)
    : ModelSerializer(Format2013, model)
{
}

void ModelSerializer2013::read(QDataStream& stream)
{
    if (!isOk(stream)) {
        return;
    }
    const Box box = readValue<Box>(stream);
    if (!isOk(stream)) {
        return;
    }
    model()->setBoundingBox(box);
    readRefinementRegions(stream);
    readAttributes(model()->attributes(), stream);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        readEntities(dimension, stream);
    }
    readAllAdjacencies(stream);
}

void ModelSerializer2013::readRefinementRegions(QDataStream& stream)
{
    const qint32 count = readCount(stream);
    for (qint32 i = 0; i < count && isOk(stream); ++i) {
        auto region = std::make_unique<RefinementRegion>(model()->version());
        stream >> *region;
        if (isOk(stream)) {
            model()->addRefinementRegion(region.release());
        }
    }
}

void ModelSerializer2013::readEntities(int dimension, QDataStream& stream)
{
    StreamIds ids;
    const qint32 count = readCount(stream);
    for (qint32 i = 0; i < count && isOk(stream); ++i) {
        std::unique_ptr<ModelEntity> entity(ModelEntity::create(dimension));
        readModelEntity(entity.get(), stream);
        ids.check(entity->id(), stream);
        if (isOk(stream)) {
            model()->add(entity.release());
        }
    }
}

void ModelSerializer2013::readAllAdjacencies(QDataStream& stream)
{
    for (int dimension = 0; dimension <= 3; ++dimension) {
        auto entities = model()->orderedIterator(dimension);
        while (entities.hasNext() && isOk(stream)) {
            readAdjacencies(entities.next(), stream);
        }
    }
}

void ModelSerializer2013::readAttributes(AttributeMap& attributes, QDataStream& stream)
{
    AttributeSerializer::read(attributes, stream);
}

void ModelSerializer2013::readModelEntity(ModelEntity* entity, QDataStream& stream)
{
    entity->setId(readValue<qint32>(stream));
    entity->setTag(readValue<QString>(stream));
    entity->setName(readValue<QString>(stream));
    readAttributes(entity->attributes(), stream);
    switch (entity->dimension()) {
    case 0:
        readModelVertex(static_cast<ModelVertex*>(entity), stream);
        break;
    case 1:
        readModelEdge(static_cast<ModelEdge*>(entity), stream);
        break;
    case 2:
        readModelFace(static_cast<ModelFace*>(entity), stream);
        break;
    default:
        readModelRegion(static_cast<ModelRegion*>(entity), stream);
    }
}

void ModelSerializer2013::readModelVertex(ModelVertex* vertex, QDataStream& stream)
{
    vertex->setPoint(readValue<Vector>(stream));
}

void ModelSerializer2013::readModelEdge(ModelEdge* edge, QDataStream& stream)
{
    edge->setBoundingBox(readValue<Box>(stream));
    edge->setLength(readValue<double>(stream));
    readPlane(edge, stream);
}

void ModelSerializer2013::readModelFace(ModelFace* face, QDataStream& stream)
{
    face->setBoundingBox(readValue<Box>(stream));
    face->setArea(readValue<double>(stream));
    readPlane(face, stream);
}

void ModelSerializer2013::readModelRegion(ModelRegion* region, QDataStream& stream)
{
    region->setBoundingBox(readValue<Box>(stream));
    region->setVolume(readValue<double>(stream));
    region->setCentroid(readValue<Vector>(stream));
}

void ModelSerializer2013::readAdjacencies(ModelEntity* entity, QDataStream& stream)
{
    forOtherDimensions(entity, [&](int dimension) { readNeighbours(entity, dimension, stream); });
}

void ModelSerializer2013::readNeighbours(ModelEntity* entity, int dimension, QDataStream& stream)
{
    const qint32 count = readCount(stream);
    for (qint32 i = 0; i < count && isOk(stream); ++i) {
        ModelEntity* neighbour = model()->entity(dimension, readValue<qint32>(stream));
        if (neighbour == nullptr) {
            stream.setStatus(QDataStream::ReadCorruptData);
        } else if (isOk(stream)) {
            entity->addAdjacency(neighbour);
        }
    }
}

void ModelSerializer2013::write(QDataStream& stream)
{
    StreamHeader::write({format(), model()->version()}, stream);
    stream << model()->boundingBox();
    stream << static_cast<qint32>(model()->refinementRegionCount());
    writeRefinementRegions(stream);
    writeAttributes(model()->attributes(), stream);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        stream << static_cast<qint32>(model()->count(dimension));
        writeEntities(dimension, stream);
    }
    writeAllAdjacencies(stream);
}

void ModelSerializer2013::write(QTextStream& stream)
{
    stream << "*** Format ***\n" << static_cast<int>(format()) << "\n";
    stream << "*** Version ***\n" << model()->version() << "\n";
    stream << "*** Bounding Box ***\n" << model()->boundingBox() << "\n";
    stream << "*** Refinement Regions ***\n" << model()->refinementRegionCount() << " count\n";
    writeRefinementRegions(stream);
    stream << "*** Attributes ***\n";
    writeAttributes(model()->attributes(), stream);
    for (int dimension = 0; dimension <= 3; ++dimension) {
        stream << "*** Entities " << dimension << " ***\n";
        stream << model()->count(dimension) << " count\n";
        writeEntities(dimension, stream);
    }
    stream << "*** Adjacencies ***\n";
    writeAllAdjacencies(stream);
}

template <typename Stream>
void ModelSerializer2013::writeRefinementRegions(Stream& stream)
{
    auto regions = model()->refinementRegionIterator();
    while (regions.hasNext()) {
        stream << *regions.next();
    }
}

template <typename Stream>
void ModelSerializer2013::writeEntities(int dimension, Stream& stream)
{
    auto entities = model()->orderedIterator(dimension);
    while (entities.hasNext()) {
        writeModelEntity(entities.next(), stream);
    }
}

template <typename Stream>
void ModelSerializer2013::writeAllAdjacencies(Stream& stream)
{
    for (int dimension = 0; dimension <= 3; ++dimension) {
        auto entities = model()->orderedIterator(dimension);
        while (entities.hasNext()) {
            writeAdjacencies(entities.next(), stream);
        }
    }
}

void ModelSerializer2013::writeAttributes(const AttributeMap& attributes, QDataStream& stream)
{
    AttributeSerializer::write(attributes, stream);
}

void ModelSerializer2013::writeAttributes(const AttributeMap& attributes, QTextStream& stream)
{
    AttributeSerializer::write(attributes, stream);
}

void ModelSerializer2013::writeModelEntity(ModelEntity* entity, QDataStream& stream)
{
    stream << static_cast<qint32>(entity->id()) << entity->tag() << entity->name();
    writeAttributes(entity->attributes(), stream);
    writeGeometry(entity, stream);
}

void ModelSerializer2013::writeModelEntity(ModelEntity* entity, QTextStream& stream)
{
    stream << "*** Model Entity ***\n";
    stream << entity->dimension() << " dim\n";
    stream << entity->id() << " id\n";
    stream << entity->tag() << " tag\n";
    stream << entity->name() << " name\n";
    if (!entity->attributes().isEmpty()) {
        writeAttributes(entity->attributes(), stream);
    }
    writeGeometry(entity, stream);
}

template <typename Stream>
void ModelSerializer2013::writeGeometry(ModelEntity* entity, Stream& stream)
{
    switch (entity->dimension()) {
    case 0:
        writeModelVertex(static_cast<ModelVertex*>(entity), stream);
        break;
    case 1:
        writeModelEdge(static_cast<ModelEdge*>(entity), stream);
        break;
    case 2:
        writeModelFace(static_cast<ModelFace*>(entity), stream);
        break;
    default:
        writeModelRegion(static_cast<ModelRegion*>(entity), stream);
    }
}

void ModelSerializer2013::writeModelVertex(ModelVertex* vertex, QDataStream& stream)
{
    stream << vertex->point();
}

void ModelSerializer2013::writeModelVertex(ModelVertex* vertex, QTextStream& stream)
{
    stream << vertex->point() << " point\n";
}

void ModelSerializer2013::writeModelEdge(ModelEdge* edge, QDataStream& stream)
{
    stream << edge->boundingBox() << edge->length();
    writePlane(edge, stream);
}

void ModelSerializer2013::writeModelEdge(ModelEdge* edge, QTextStream& stream)
{
    stream << edge->boundingBox() << " box\n" << edge->length() << " length\n";
    writePlane(edge, stream);
}

void ModelSerializer2013::writeModelFace(ModelFace* face, QDataStream& stream)
{
    stream << face->boundingBox() << face->area();
    writePlane(face, stream);
}

void ModelSerializer2013::writeModelFace(ModelFace* face, QTextStream& stream)
{
    stream << face->boundingBox() << " box\n" << face->area() << " area\n";
    writePlane(face, stream);
}

void ModelSerializer2013::writeModelRegion(ModelRegion* region, QDataStream& stream)
{
    stream << region->boundingBox() << region->volume() << region->centroid();
}

void ModelSerializer2013::writeModelRegion(ModelRegion* region, QTextStream& stream)
{
    stream << region->boundingBox() << " box\n";
    stream << region->volume() << " volume\n";
    stream << region->centroid() << " centroid\n";
}

void ModelSerializer2013::writeAdjacencies(ModelEntity* entity, QDataStream& stream)
{
    forOtherDimensions(entity, [&](int dimension) { writeNeighbours(entity, dimension, stream); });
}

void ModelSerializer2013::writeAdjacencies(ModelEntity* entity, QTextStream& stream)
{
    stream << "--- Adjacencies for " << entity->id() << " ---\n";
    forOtherDimensions(entity, [&](int dimension) { writeNeighbours(entity, dimension, stream); });
}

} // namespace Ovra::Geo
