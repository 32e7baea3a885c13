#pragma once

#include "MeshSerializer.h"

#include <QMap>
#include <QString>

namespace Ovra::Geo
{

/// \brief Mesh format 3, which Mesh::write() produces: as format 2, but attributes stand behind the
///        records of a dimension, under numbers of a dictionary of tags.
///
/// | item                             | form                                               |
/// |----------------------------------|----------------------------------------------------|
/// | format, version                  | StreamHeader                                       |
/// | mesh attributes                  | attribute record, see AttributeSerializer          |
/// | dictionary, repeated: number     | signed 16-bit integer                              |
/// | and tag                          | QByteArray in Latin-1                              |
/// | end of the dictionary            | signed 16-bit integer -1                           |
/// | for dimension 0, 1, 2, 3: count  | signed 32-bit integer                              |
/// | and entities                     | records of MeshSerializer2014 without attributes,  |
/// |                                  | by ascending id                                    |
/// | and attributes                   | attribute section                                  |
///
/// | item of an attribute section     | form                                               |
/// |----------------------------------|----------------------------------------------------|
/// | repeated: entity id              | signed 32-bit integer, of the section's dimension  |
/// | dictionary number                | signed 16-bit integer                              |
/// | value                            | QVariant                                           |
/// | end                              | signed 32-bit integer -1                           |
///
/// The writer enters all tags of the vocabulary, whether in use or not, numbered from 1 in the
/// order of AttributeType::tags(), and writes the sections entity by entity by ascending id, each
/// entity's attributes by ascending type.
/// The reader takes numbers and sections in any order, aliases as tags, and a number outside the
/// dictionary as an unknown tag.
///
/// A parent that the model does not hold leaves the entity without one. A section's entity that the
/// mesh does not hold is QDataStream::ReadCorruptData.
class OVRA_GEO_EXPORT MeshSerializer2014a : public MeshSerializer
{
public:
    /// \param model where parents are looked up; not owned
    /// \param mesh  what is read into or written; not owned
    MeshSerializer2014a(Model* model, Mesh* mesh);

    void read(QDataStream& stream) override;
    void write(QTextStream& stream) override;
    void write(QDataStream& stream) override;

private:
    static constexpr int EndOfSection = -1;

    void setAttributeDictionary();
    void insertIntoDictionary(short number, const QString& tag);
    void readAttributeDictionary(QDataStream& stream);
    void writeAttributeDictionary(QDataStream& stream);
    void readMeshEntityAttributes(int dimension, QDataStream& stream);
    void readAttribute(MeshEntity* entity, QDataStream& stream);
    void writeMeshEntityAttributes(int dimension, QDataStream& stream);
    void writeAttributeRecords(MeshEntity* entity, QDataStream& stream);

    ModelEntity* readMeshVertex(MeshEntity* vertex, InputBlock& block);
    ModelEntity* readMeshEntity(MeshEntity* entity, InputBlock& block);
    void writeMeshVertex(MeshEntity* vertex, OutputBlock& block);
    void writeMeshEntity(MeshEntity* entity, OutputBlock& block);

    QMap<short, QString> dictionaryIdsToTags_;
    QMap<QString, short> dictionaryTagsToIds_;
};

} // namespace Ovra::Geo
