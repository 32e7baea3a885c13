#include "TwinMesh.h"

#include "Mesh.h"
#include "MeshEntity.h"
#include "MeshVertex.h"
#include "Model.h"

#include <QVariant>

#include <algorithm>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

constexpr int endOfSection = -1;
constexpr int noParent = -1;

template <typename Value>
Value readValue(QDataStream& stream)
{
    Value value{};
    stream >> value;
    return value;
}

struct Shape
{
    int typeCode = 0;
    int nodeCount = 0;
};

Shape shapeOf(const TwinEntity& element)
{
    static const QHash<std::pair<int, qsizetype>, Shape> shapes{
        {{3, 4}, {4, 4}}, {{3, 5}, {6, 5}}, {{3, 6}, {5, 6}},
        {{3, 8}, {3, 8}}, {{2, 3}, {1, 3}}, {{2, 4}, {2, 4}},
    };
    return shapes.value({element.dimension, element.adjacencies[0].size()});
}

} // namespace

TwinMesh::TwinMesh(Model* model)
    : model_(model)
{
}

TwinMesh::~TwinMesh()
{
    clear();
}

void TwinMesh::copy(Mesh& mesh)
{
    version_ = mesh.version();
    attributes_ = mesh.attributes();
    for (int dimension = 0; dimension <= 3; ++dimension) {
        for (auto walk = mesh.iterator(dimension); walk.hasNext();) {
            MeshEntity* original = walk.next().value();
            auto* entity = new TwinEntity{original->id(),         dimension, original->parent(),
                                          original->attributes(), {},        {}};
            entity->point = dimension == 0 ? original->centroid() : Vector();
            for (auto vertices = original->adjacencyIterator(0); vertices.hasNext();) {
                entity->adjacencies[0].append(entities_[0].value(vertices.next()->id()));
            }
            add(entity);
        }
    }
}

int TwinMesh::count(int dimension) const
{
    return static_cast<int>(entities_[size_t(dimension)].size());
}

TwinEntity* TwinMesh::entity(int dimension, int id) const
{
    return entities_[size_t(dimension)].value(id);
}

QList<int> TwinMesh::ids(int dimension) const
{
    QList<int> ids = entities_[size_t(dimension)].keys();
    std::sort(ids.begin(), ids.end());
    return ids;
}

void TwinMesh::add(TwinEntity* entity)
{
    entities_[size_t(entity->dimension)].insert(entity->id, entity);
    if (entity->parent != nullptr && entity->parent->dimension() == entity->dimension) {
        children_[entity->parent].insert(entity->id, entity);
    }
}

void TwinMesh::clear()
{
    children_.clear();
    for (Entities& entities : entities_) {
        qDeleteAll(entities);
        entities.clear();
    }
}

// Upward lists

void TwinMesh::setUpwardAdjacencies()
{
    for (int dimension = 1; dimension <= 3; ++dimension) {
        for (TwinEntity* element : std::as_const(entities_[size_t(dimension)])) {
            for (TwinEntity* vertex : std::as_const(element->adjacencies[0])) {
                vertex->adjacencies[size_t(dimension)].append(element);
            }
        }
    }
    for (int dimension = 1; dimension <= 2; ++dimension) {
        for (TwinEntity* element : std::as_const(entities_[size_t(dimension)])) {
            element->adjacencies[size_t(dimension) + 1] +=
                usersOfAllVertices(*element, dimension + 1).values();
        }
    }
}

QSet<TwinEntity*> TwinMesh::usersOfAllVertices(const TwinEntity& element, int dimension)
{
    const QList<TwinEntity*>& vertices = element.adjacencies[0];
    QSet<TwinEntity*> users;
    const TwinEntity* first = vertices.at(0);
    for (TwinEntity* user : first->adjacencies[size_t(dimension)]) {
        if (std::all_of(vertices.cbegin(), vertices.cend(), [user](TwinEntity* vertex) {
                return user->adjacencies[0].contains(vertex);
            })) {
            users.insert(user);
        }
    }
    return users;
}

void TwinMesh::clearUpwardAdjacencies()
{
    for (int dimension = 0; dimension <= 2; ++dimension) {
        for (TwinEntity* entity : std::as_const(entities_[size_t(dimension)])) {
            for (int upward = 1; upward <= 3; ++upward) {
                entity->adjacencies[size_t(upward)].clear();
            }
        }
    }
}

// Reading

void TwinMesh::read(QDataStream& stream)
{
    const auto format = static_cast<Format>(readValue<qint32>(stream));
    stream >> version_;
    stream.setVersion(QDataStream::Qt_4_6);
    readAttributes(attributes_, stream);
    if (format == MeshSerializer::Format2014a) {
        readDictionary(stream);
    }
    for (int dimension = 0; dimension <= 3; ++dimension) {
        readEntities(dimension, stream, format);
        if (format == MeshSerializer::Format2014a) {
            readAttributeSection(dimension, stream);
        }
    }
    setUpwardAdjacencies();
}

void TwinMesh::readAttributes(AttributeMap& attributes, QDataStream& stream) const
{
    const auto count = readValue<qint32>(stream);
    for (qint32 i = 0; i < count; ++i) {
        const QString tag = QString::fromLatin1(readValue<QByteArray>(stream));
        attributes.insert(AttributeType::fromString(tag), readValue<QVariant>(stream));
    }
}

void TwinMesh::readDictionary(QDataStream& stream)
{
    while (stream.status() == QDataStream::Ok) {
        const auto number = readValue<qint16>(stream);
        if (number == endOfSection) {
            return;
        }
        tags_.insert(number, QString::fromLatin1(readValue<QByteArray>(stream)));
    }
}

void TwinMesh::readEntities(int dimension, QDataStream& stream, Format format)
{
    const auto count = readValue<qint32>(stream);
    for (qint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        add(readEntity(dimension, stream, format));
    }
}

TwinEntity* TwinMesh::readEntity(int dimension, QDataStream& stream, Format format) const
{
    auto* entity = new TwinEntity;
    entity->dimension = dimension;
    stream >> entity->id;
    int parentDimension = dimension;
    if (dimension == 0 || format == MeshSerializer::Format2013) {
        stream >> parentDimension;
    }
    const auto parentId = readValue<qint32>(stream);
    if (parentDimension != noParent && parentId != 0) {
        entity->parent = model_->entity(parentDimension, parentId);
    }
    if (format != MeshSerializer::Format2014a) {
        readAttributes(entity->attributes, stream);
    }
    if (dimension == 0) {
        stream >> entity->point;
    } else {
        readVertexList(entity, stream);
    }
    return entity;
}

void TwinMesh::readVertexList(TwinEntity* element, QDataStream& stream) const
{
    const auto count = readValue<qint32>(stream);
    for (qint32 i = 0; i < count; ++i) {
        element->adjacencies[0].append(entities_[0].value(readValue<qint32>(stream)));
    }
}

void TwinMesh::readAttributeSection(int dimension, QDataStream& stream) const
{
    while (stream.status() == QDataStream::Ok) {
        const auto id = readValue<qint32>(stream);
        if (id == endOfSection) {
            return;
        }
        const QString tag = tags_.value(readValue<qint16>(stream));
        entity(dimension, id)
            ->attributes.insert(AttributeType::fromString(tag), readValue<QVariant>(stream));
    }
}

// Writing

void TwinMesh::write(QDataStream& stream, Format format) const
{
    stream.setVersion(QDataStream::Qt_4_6);
    stream << static_cast<qint32>(format) << version_;
    writeAttributes(attributes_, stream);
    if (format == MeshSerializer::Format2014a) {
        writeDictionary(stream);
    }
    for (int dimension = 0; dimension <= 3; ++dimension) {
        writeEntities(dimension, stream, format);
        if (format == MeshSerializer::Format2014a) {
            writeAttributeSection(dimension, stream);
        }
    }
}

void TwinMesh::writeAttributes(const AttributeMap& attributes, QDataStream& stream) const
{
    const QList<AttributeType> types = attributes.types();
    stream << static_cast<qint32>(types.size());
    for (const AttributeType& type : types) {
        stream << type.toString().toLatin1() << attributes.value(type, QVariant());
    }
}

void TwinMesh::writeDictionary(QDataStream& stream) const
{
    qint16 number = 0;
    for (const QString& tag : AttributeType::tags()) {
        stream << ++number << tag.toLatin1();
    }
    stream << static_cast<qint16>(endOfSection);
}

void TwinMesh::writeEntities(int dimension, QDataStream& stream, Format format) const
{
    stream << static_cast<qint32>(count(dimension));
    for (const int id : ids(dimension)) {
        writeEntity(*entity(dimension, id), stream, format);
    }
}

void TwinMesh::writeEntity(const TwinEntity& entity, QDataStream& stream, Format format) const
{
    stream << static_cast<qint32>(entity.id);
    if (entity.dimension == 0 || format == MeshSerializer::Format2013) {
        stream << static_cast<qint32>(entity.parent != nullptr ? entity.parent->dimension()
                                                               : noParent);
    }
    stream << static_cast<qint32>(entity.parent != nullptr ? entity.parent->id() : 0);
    if (format != MeshSerializer::Format2014a) {
        writeAttributes(entity.attributes, stream);
    }
    if (entity.dimension == 0) {
        stream << entity.point;
        return;
    }
    stream << static_cast<qint32>(entity.adjacencies[0].size());
    for (const TwinEntity* vertex : entity.adjacencies[0]) {
        stream << static_cast<qint32>(vertex->id);
    }
}

void TwinMesh::writeAttributeSection(int dimension, QDataStream& stream) const
{
    const QList<QString> tags = AttributeType::tags();
    for (const int id : ids(dimension)) {
        const AttributeMap& attributes = entity(dimension, id)->attributes;
        for (const AttributeType& type : attributes.types()) {
            stream << static_cast<qint32>(id)
                   << static_cast<qint16>(tags.indexOf(type.toString()) + 1)
                   << attributes.value(type, QVariant());
        }
    }
    stream << static_cast<qint32>(endOfSection);
}

// Solver input

void TwinMesh::writeNodes(QTextStream& stream, double scale) const
{
    const int precision = stream.realNumberPrecision();
    stream.setRealNumberPrecision(15);
    for (const int id : ids(0)) {
        const Vector point = entity(0, id)->point * scale;
        stream << id << " " << point.x() << " " << point.y() << " " << point.z() << "\n";
    }
    stream.setRealNumberPrecision(precision);
    stream << "-1\n";
}

void TwinMesh::writeElements(QTextStream& stream) const
{
    const int dimension = model_->faceDimension() + 1;
    for (const int id : ids(dimension)) {
        const TwinEntity& element = *entity(dimension, id);
        if (!element.parent->attributes().contains(AttributeType::IsShell)) {
            writeElement(element, stream);
        }
    }
    stream << "-1\n";
}

void TwinMesh::writeElement(const TwinEntity& element, QTextStream& stream) const
{
    const Shape shape = shapeOf(element);
    const bool inLayer = element.attributes.value(AttributeType::InBL, QVariant()).toBool();
    stream << element.id << " " << shape.typeCode << " " << shape.nodeCount << " "
           << materialOf(*element.parent) << " " << element.parent->id() << " "
           << (inLayer ? 1 : 0);
    for (const TwinEntity* vertex : element.adjacencies[0]) {
        stream << " " << vertex->id;
    }
    stream << "\n";
}

int TwinMesh::materialOf(const ModelEntity& region) const
{
    const int fluid = region.attributes().value(AttributeType::FluidRegion, QVariant(0)).toInt();
    const ModelEntity& source =
        fluid == 0 ? region : *model_->entity(model_->faceDimension() + 1, fluid);
    return source.attributes().value(AttributeType::MaterialId, QVariant(0)).toInt();
}

} // namespace Benchmarks
