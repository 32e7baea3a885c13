#pragma once

#include "GeometryDatabaseExport.h"

#include <functional>

class QDataStream;
class QTextStream;

namespace Ovra::Geo
{

class AttributeMap;
class InputBlock;
class Mesh;
class MeshEntity;
class Model;
class ModelEntity;
class OutputBlock;

/// \brief Reads and writes the stream form of a Mesh; one derived class for each format.
///
/// A serializer is made for one operation. It sets neither version nor byte order of a stream: who
/// calls one directly sets QDataStream version 12, as Mesh does. Numbers are then big-endian, each
/// double 8 bytes. All formats begin with a StreamHeader and the mesh attributes, store the
/// entities by dimension, vertices first, each by ascending id, and of their connectivity only the
/// vertex lists.
///
/// Reading trusts no stream. It stops when the stream ends or contradicts itself; the stream's
/// status tells that: QDataStream::ReadPastEnd or QDataStream::ReadCorruptData. What came before
/// stays in the mesh, what was in it before stays valid, and memory grows with what is read rather
/// than with what the stream announces. Nothing is read from a stream whose status is not Ok to
/// begin with.
///
/// Counts below 0 are read as 0. QDataStream::ReadCorruptData besides what AttributeSerializer
/// refuses: an entity id that is 0 or occurs twice in one dimension of the stream, a vertex id that
/// the mesh does not hold, and a parent dimension outside -1 to 3; further cases stand with the
/// formats. Elements may have any number of vertices, none included.
class OVRA_GEO_EXPORT MeshSerializer
{
public:
    /// \brief The formats; the value stands in the stream.
    enum Format : int
    {
        Format2013 = 1,
        Format2014 = 2,
        Format2014a = 3
    };

    /// \brief A new serializer, which the caller deletes.
    /// \param format any number, as read from a stream
    /// \param model  where parents are looked up; not owned
    /// \param mesh   what is read into or written; not owned
    /// \return null for a number that is no format
    static MeshSerializer* create(Format format, Model* model, Mesh* mesh);

    virtual ~MeshSerializer();

    /// \brief Reads everything behind the header, which Mesh::read() takes in, and adds it to the
    ///        mesh; upward lists are left to the caller.
    virtual void read(QDataStream& stream) = 0;

    /// \brief Writes the text form, header included, which is for people and has no reader.
    virtual void write(QTextStream& stream) = 0;

    /// \brief Writes the binary form, header included.
    virtual void write(QDataStream& stream) = 0;

protected:
    /// \brief What to do about a parent that the model does not hold.
    enum class MissingParent
    {
        Refused, ///< QDataStream::ReadCorruptData
        Ignored  ///< the entity has no parent
    };

    /// \brief Fills a new entity from its record and returns the parent to classify it on, or null.
    using RecordReader = std::function<ModelEntity*(MeshEntity*)>;

    /// \brief Writes the record of an entity.
    using RecordWriter = std::function<void(MeshEntity*)>;

    /// \brief Writes an attribute record.
    static void writeAttributes(const AttributeMap& attributes, OutputBlock& block);

    /// \brief Writes a text block of attributes.
    static void writeAttributes(const AttributeMap& attributes, QTextStream& stream);

    /// \brief Replaces \p attributes by what the record holds.
    static void readAttributes(AttributeMap& attributes, InputBlock& block);

    MeshSerializer(Format format, Model* model, Mesh* mesh); ///< see create(); owns neither

    /// \brief The mesh that is read into or written.
    Mesh* mesh() const { return mesh_; }

    /// \brief Reads a count and that many records. Each entity is classified and added once its
    ///        record is complete and sound.
    void readEntities(int dimension, InputBlock& block, const RecordReader& readRecord);

    /// \brief Reads the dimension, -1 for none, and the id of a parent.
    /// \return null if there is none
    ModelEntity* readParent(InputBlock& block, MissingParent missing) const;

    /// \brief Reads the id, 0 for none, of a parent of \p dimension.
    /// \return null if there is none
    ModelEntity* readParentId(int dimension, InputBlock& block, MissingParent missing) const;

    /// \brief Reads the point of a vertex.
    static void readPoint(MeshEntity* vertex, InputBlock& block);

    /// \brief Reads the vertex list of an element: a count, then that many vertex ids.
    void readMeshAdjacencies(MeshEntity* element, InputBlock& block) const;

    /// \brief Writes the header and the mesh attributes.
    void writeHead(OutputBlock& block) const;

    /// \brief Writes the count of \p dimension and the records of its entities by ascending id.
    void writeEntities(int dimension, OutputBlock& block, const RecordWriter& writeRecord) const;

    /// \brief Writes the dimension and id of the parent; -1 and 0 without one.
    static void writeParent(const MeshEntity* entity, OutputBlock& block);

    /// \brief Writes the id of the parent; 0 without one.
    static void writeParentId(const MeshEntity* entity, OutputBlock& block);

    /// \brief Writes the point of a vertex.
    static void writePoint(const MeshEntity* vertex, OutputBlock& block);

    /// \brief Writes the vertex list of an element.
    static void writeMeshAdjacencies(const MeshEntity* element, OutputBlock& block);

    /// \brief Writes the vertex list of an element as a line.
    static void writeMeshAdjacencies(const MeshEntity* element, QTextStream& stream);

    /// \brief Writes the point of a vertex as a line.
    static void writePoint(const MeshEntity* vertex, QTextStream& stream);

    /// \brief Writes the line with id and parent by dimension and id.
    static void writeParentLine(const MeshEntity* entity, QTextStream& stream);

    /// \brief Writes the line with id and parent by id.
    static void writeParentIdLine(const MeshEntity* entity, QTextStream& stream);

    /// \brief Writes the text block of the attributes of \p entity, if it has any.
    static void writeAttributesIfAny(MeshEntity* entity, QTextStream& stream);

    /// \brief Writes the text form in which only the records of vertices have the dimension of the
    ///        parent.
    void writeShortText(QTextStream& stream) const;

    /// \brief Writes the text form; header, mesh attributes and counts here, the entities by
    ///        \p writeRecord.
    void writeText(QTextStream& stream, const RecordWriter& writeRecord) const;

private:
    Q_DISABLE_COPY_MOVE(MeshSerializer)

    ModelEntity* parent(int dimension, int id, InputBlock& block, MissingParent missing) const;

    Format format_;
    Model* model_;
    Mesh* mesh_;
};

} // namespace Ovra::Geo
