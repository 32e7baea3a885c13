#pragma once

#include "MeshSerializer.h"

namespace Ovra::Geo
{

/// \brief Mesh format 2: as format 1, but edges, faces and regions lack the dimension of their
///        parent, which is taken to be their own.
///
/// | item                             | form                                             |
/// |----------------------------------|--------------------------------------------------|
/// | format, version                  | StreamHeader                                     |
/// | mesh attributes                  | attribute record, see AttributeSerializer        |
/// | vertex count                     | signed 32-bit integer                            |
/// | vertices                         | records of MeshSerializer2013, by ascending id   |
/// | for dimension 1, 2, 3: count     | signed 32-bit integer                            |
/// | and entities                     | records, by ascending id                         |
///
/// | item of an edge, face or region  | form                                             |
/// |----------------------------------|--------------------------------------------------|
/// | id                               | signed 32-bit integer                            |
/// | parent id                        | signed 32-bit integer, 0 without a parent        |
/// | attributes                       | attribute record                                 |
/// | vertex count, vertex ids         | signed 32-bit integers                           |
///
/// The id of a parent of another dimension is written all the same and then read as that of another
/// entity. A parent that the model does not hold is QDataStream::ReadCorruptData.
class OVRA_GEO_EXPORT MeshSerializer2014 : public MeshSerializer
{
public:
    /// \param model where parents are looked up; not owned
    /// \param mesh  what is read into or written; not owned
    MeshSerializer2014(Model* model, Mesh* mesh);

    void read(QDataStream& stream) override;
    void write(QTextStream& stream) override;
    void write(QDataStream& stream) override;

private:
    ModelEntity* readMeshVertex(MeshEntity* vertex, InputBlock& block);
    ModelEntity* readMeshEntity(MeshEntity* entity, InputBlock& block);
    void writeMeshVertex(MeshEntity* vertex, OutputBlock& block);
    void writeMeshEntity(MeshEntity* entity, OutputBlock& block);
};

} // namespace Ovra::Geo
