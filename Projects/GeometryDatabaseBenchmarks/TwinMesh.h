#pragma once

#include "AttributeMap.h"
#include "AttributeType.h"
#include "MeshSerializer.h"
#include "ModelEntity.h"
#include "Vector.h"
#include "Version.h"

#include <QDataStream>
#include <QHash>
#include <QList>
#include <QSet>
#include <QTextStream>

#include <array>

namespace Ovra::Geo
{
class Mesh;
class Model;
} // namespace Ovra::Geo

namespace Benchmarks
{

/// \brief One entity of a TwinMesh.
struct TwinEntity
{
    int id = 0;
    int dimension = 0;
    Ovra::Geo::ModelEntity* parent = nullptr;
    Ovra::Geo::AttributeMap attributes;
    Ovra::Geo::Vector point;
    std::array<QList<TwinEntity*>, 4> adjacencies;
};

/// \brief A mesh in the plainest code that does what the library does: Qt's containers, an object
///        an entity, a stream operator a value.
///
/// It stands for what the library's containers, buffers and fast paths gain, and is the other
/// opinion of a test: bytes, text and upward lists must be the same. It has no more of a mesh than
/// that takes, trusts every stream, and shares nothing with the library but values, attributes and
/// the model.
class TwinMesh
{
public:
    /// \param model what the mesh is classified on; not owned
    explicit TwinMesh(Ovra::Geo::Model* model);
    ~TwinMesh();

    TwinMesh(const TwinMesh&) = delete;
    TwinMesh& operator=(const TwinMesh&) = delete;

    /// \brief Takes in what \p mesh holds, without its upward lists.
    void copy(Ovra::Geo::Mesh& mesh);

    int count(int dimension) const;
    TwinEntity* entity(int dimension, int id) const;

    /// \brief Reads any binary format of elements with vertices and sets the upward lists.
    void read(QDataStream& stream);

    /// \brief Writes a binary format.
    void write(QDataStream& stream, Ovra::Geo::MeshSerializer::Format format) const;

    void setUpwardAdjacencies();
    void clearUpwardAdjacencies();

    /// \brief The sections of the solver input.
    /// \pre every element has a parent
    void writeNodes(QTextStream& stream, double scale) const;
    void writeElements(QTextStream& stream) const;

    /// \brief Deletes all entities.
    void clear();

private:
    using Format = Ovra::Geo::MeshSerializer::Format;
    using Entities = QHash<int, TwinEntity*>;

    QList<int> ids(int dimension) const;
    void add(TwinEntity* entity);

    void readAttributes(Ovra::Geo::AttributeMap& attributes, QDataStream& stream) const;
    void readDictionary(QDataStream& stream);
    void readEntities(int dimension, QDataStream& stream, Format format);
    TwinEntity* readEntity(int dimension, QDataStream& stream, Format format) const;
    void readVertexList(TwinEntity* element, QDataStream& stream) const;
    void readAttributeSection(int dimension, QDataStream& stream) const;

    void writeAttributes(const Ovra::Geo::AttributeMap& attributes, QDataStream& stream) const;
    void writeDictionary(QDataStream& stream) const;
    void writeEntities(int dimension, QDataStream& stream, Format format) const;
    void writeEntity(const TwinEntity& entity, QDataStream& stream, Format format) const;
    void writeAttributeSection(int dimension, QDataStream& stream) const;
    void writeElement(const TwinEntity& element, QTextStream& stream) const;
    int materialOf(const Ovra::Geo::ModelEntity& region) const;

    static QSet<TwinEntity*> usersOfAllVertices(const TwinEntity& element, int dimension);

    Ovra::Geo::Model* model_;
    Ovra::Geo::Version version_;
    Ovra::Geo::AttributeMap attributes_;
    std::array<Entities, 4> entities_;
    QHash<Ovra::Geo::ModelEntity*, Entities> children_;
    QHash<qint16, QString> tags_;
};

} // namespace Benchmarks
