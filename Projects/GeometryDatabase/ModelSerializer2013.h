#pragma once

#include "ModelSerializer.h"

namespace Ovra::Geo
{

class AttributeMap;
class ModelEdge;
class ModelEntity;
class ModelFace;
class ModelRegion;
class ModelVertex;

/// \brief Model format 1, the form of ".geo_model" files.
///
/// Numbers are big-endian at QDataStream version 12, each double 8 bytes:
///
/// | item                                        | form                                          |
/// |---------------------------------------------|-----------------------------------------------|
/// | format, version                             | StreamHeader                                  |
/// | bounding box                                | Box                                           |
/// | region count                                | signed 32-bit integer                         |
/// | regions                                     | that many RefinementRegion, in list order     |
/// | model attributes                            | attribute record, see AttributeSerializer     |
/// | for dimension 0, 1, 2, 3: count             | signed 32-bit integer                         |
/// | and entities                                | entity records, by ascending id               |
/// | for dimension 0, 1, 2, 3: adjacency         | a record for each entity, by ascending id     |
///
/// An entity record is id (32 bits), tag and name (QString), an attribute record, and
///
/// | dimension | rest of the record                                                         |
/// |-----------|----------------------------------------------------------------------------|
/// | 0         | Vector point                                                               |
/// | 1         | Box, double length, Vector centroid, Vector normal, bool planar (one byte) |
/// | 2         | Box, double area, Vector centroid, Vector normal, bool planar              |
/// | 3         | Box, double volume, Vector centroid                                        |
///
/// An adjacency record is, for each dimension but the entity's own, a 32-bit count and that many
/// ids of neighbours, in list order. It names no entity: records belong to entities by position, so
/// that reading into a model that holds entities already misplaces them. Neighbours of the entity's
/// own dimension are not stored.
///
/// Counts below 0 are read as 0. QDataStream::ReadCorruptData besides what AttributeSerializer
/// refuses: an entity id that is 0 or occurs twice in one dimension of the stream, and a
/// neighbour that the model does not hold.
class OVRA_GEO_EXPORT ModelSerializer2013 : public ModelSerializer
{
public:
    /// \param model what is read into or written; not owned
    ModelSerializer2013(Model* model);

    void read(QDataStream& stream) override;
    void write(QTextStream& stream) override;
    void write(QDataStream& stream) override;

private:
    void readRefinementRegions(QDataStream& stream);
    void readEntities(int dimension, QDataStream& stream);
    void readAllAdjacencies(QDataStream& stream);

    void readAttributes(AttributeMap& attributes, QDataStream& stream);
    void readModelEntity(ModelEntity* entity, QDataStream& stream);
    void readModelVertex(ModelVertex* vertex, QDataStream& stream);
    void readModelEdge(ModelEdge* edge, QDataStream& stream);
    void readModelFace(ModelFace* face, QDataStream& stream);
    void readModelRegion(ModelRegion* region, QDataStream& stream);
    void readAdjacencies(ModelEntity* entity, QDataStream& stream);
    void readNeighbours(ModelEntity* entity, int dimension, QDataStream& stream);

    template <typename Stream>
    void writeRefinementRegions(Stream& stream);
    template <typename Stream>
    void writeEntities(int dimension, Stream& stream);
    template <typename Stream>
    void writeGeometry(ModelEntity* entity, Stream& stream);
    template <typename Stream>
    void writeAllAdjacencies(Stream& stream);

    void writeAttributes(const AttributeMap& attributes, QDataStream& stream);
    void writeAttributes(const AttributeMap& attributes, QTextStream& stream);
    void writeModelEntity(ModelEntity* entity, QDataStream& stream);
    void writeModelEntity(ModelEntity* entity, QTextStream& stream);
    void writeModelVertex(ModelVertex* vertex, QDataStream& stream);
    void writeModelVertex(ModelVertex* vertex, QTextStream& stream);
    void writeModelEdge(ModelEdge* edge, QDataStream& stream);
    void writeModelEdge(ModelEdge* edge, QTextStream& stream);
    void writeModelFace(ModelFace* face, QDataStream& stream);
    void writeModelFace(ModelFace* face, QTextStream& stream);
    void writeModelRegion(ModelRegion* region, QDataStream& stream);
    void writeModelRegion(ModelRegion* region, QTextStream& stream);
    void writeAdjacencies(ModelEntity* entity, QDataStream& stream);
    void writeAdjacencies(ModelEntity* entity, QTextStream& stream);
};

} // namespace Ovra::Geo
