#pragma once

#include "MeshSerializer.h"

namespace Ovra::Geo
{

/// \brief Mesh format 1: every record has the dimension of its parent, and its attributes.
///
/// | item                             | form                                             |
/// |----------------------------------|--------------------------------------------------|
/// | format, version                  | StreamHeader                                     |
/// | mesh attributes                  | attribute record, see AttributeSerializer        |
/// | for dimension 0, 1, 2, 3: count  | signed 32-bit integer                            |
/// | and entities                     | records, by ascending id                         |
///
/// | item of a record                 | form                                             |
/// |----------------------------------|--------------------------------------------------|
/// | id                               | signed 32-bit integer                            |
/// | parent dimension                 | signed 32-bit integer, -1 without a parent       |
/// | parent id                        | signed 32-bit integer, 0 without a parent        |
/// | attributes                       | attribute record                                 |
/// | dimension 0: point               | Vector                                           |
/// | others: vertex count, vertex ids | signed 32-bit integers                           |
///
/// A parent that the model does not hold is QDataStream::ReadCorruptData.
class OVRA_GEO_EXPORT MeshSerializer2013 : public MeshSerializer
{
public:
    /// \param model where parents are looked up; not owned
    /// \param mesh  what is read into or written; not owned
    MeshSerializer2013(Model* model, Mesh* mesh);

    void read(QDataStream& stream) override;
    void write(QTextStream& stream) override;
    void write(QDataStream& stream) override;

private:
    ModelEntity* readMeshEntity(MeshEntity* entity, InputBlock& block);
    void readMeshVertex(MeshEntity* vertex, InputBlock& block);
    void writeMeshEntity(MeshEntity* entity, OutputBlock& block);
    void writeMeshEntity(MeshEntity* entity, QTextStream& stream);
    void writeMeshVertex(MeshEntity* vertex, OutputBlock& block);
    void writeMeshVertex(MeshEntity* vertex, QTextStream& stream);
};

} // namespace Ovra::Geo
