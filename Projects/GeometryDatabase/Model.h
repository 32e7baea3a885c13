#pragma once

#include "AttributeMap.h"
#include "Box.h"
#include "GeometryDatabaseExport.h"
#include "HashIterator.h"
#include "IdGenerator.h"
#include "OrderedHashIterator.h"
#include "Version.h"

#include <QList>
#include <QListIterator>
#include <QString>

#include <array>

class QDataStream;
class QTextStream;

namespace Ovra::Geo
{

class ModelEntity;
class RefinementRegion;

/// \brief The boundary representation of an assembly: the container of the model entities.
///
/// Entities are stored by dimension, 0 (ModelVertex) to 3 (ModelRegion), and by id, which is unique
/// within its dimension, and mostly positive. Beside them stand attributes of the model as a whole,
/// a stored bounding box, the version of the file that was read and a list of refinement regions.
/// The model never links entities and computes no geometry.
///
/// The Model owns the entities that were added to it. It takes refinement regions over too, but
/// deletes them only in clearRefinementRegions().
///
/// Copies are shallow: both objects hold the same entities and regions, and each deletes the
/// entities in its destructor. A host that copies a Model must see to it that only one of the two
/// is destroyed or cleared; assignment deletes nothing of the target's.
///
/// Dimension arguments are not checked. One thread at a time.
class OVRA_GEO_EXPORT Model
{
public:
    /// \brief "Unknown Tag", for hosts.
    static const QString UNKNOWN_TAG;

    /// \brief An empty model: version 0.0.0, inverted box, no regions, no attributes.
    Model() = default;

    /// \brief Shares the entities and regions of the other model; see the class.
    Model(const Model&) = default;

    /// \brief Shares the entities and regions of the other model; see the class.
    Model& operator=(const Model&) = default;

    /// \brief Deletes the entities, but not the refinement regions.
    /// \pre the mesh classified on the model is gone
    ~Model();

    /// \brief The version of the file that was read, or as set.
    Version version() const { return version_; }

    /// \brief Stores the version.
    void setVersion(const Version& version) { version_ = version; }

    /// \brief The stored box; never computed from the entities.
    Box boundingBox() const { return boundingBox_; }

    /// \brief Stores the box.
    void setBoundingBox(const Box& boundingBox) { boundingBox_ = boundingBox; }

    /// \brief The attributes of the model as a whole.
    AttributeMap& attributes() { return attributes_; }

    /// \brief The attribute AttributeType::CoordinateSystem, a number of the host's; 0 without it.
    int coordinateSystem() const;

    /// \brief Stores the attribute AttributeType::CoordinateSystem.
    void setCoordinateSystem(int coordinateSystem);

    /// \brief Whether there is at least one region.
    bool is3d() const;

    /// \brief The dimension of the entities that bound the domain: 2, or 1 in a planar model, which
    ///        is one without regions.
    int faceDimension() const;

    /// \brief Takes \p entity over and stores it under its id.
    ///
    /// An entity without id gets the next one of its dimension; later ids lie above an id that the
    /// entity brings along, or are any that are free if that is the highest value of an int. An
    /// entity that already has that id is replaced in the table, but neither deleted nor
    /// unlinked. Adjacency is not touched.
    void add(ModelEntity* entity);

    /// \brief Takes the entry of \p entity's id out of the table, and deletes the entity.
    ///
    /// The id is not used again until clear(). Neighbours and mesh entities keep their pointers to
    /// the entity: unlink it first with ModelEntity::removeAdjacency() and
    /// ModelEntity::removeChild().
    void remove(ModelEntity* entity);

    /// \brief Deletes the entities of \p dimension; its ids start from 1 again.
    ///
    /// Entities of the other dimensions keep their pointers to those deleted.
    void clear(int dimension);

    /// \brief Deletes all entities; version, box, attributes and refinement regions stay.
    void clear();

    /// \brief Number of entities of \p dimension.
    int count(int dimension) const;

    /// \brief The entity of that dimension and id, or null.
    ModelEntity* entity(int dimension, int id) const;

    /// \brief Whether there are no entities; attributes and refinement regions do not count.
    bool isEmpty() const;

    /// \brief Walks a snapshot of the entities of \p dimension by ascending id.
    HashIterator<int, ModelEntity*> iterator(int dimension) const;

    /// \brief Walks the entities of \p dimension by ascending id. The model
    ///        must outlive it.
    OrderedHashIterator<int, ModelEntity*> orderedIterator(int dimension) const;

    /// \brief Appends \p region to the list and takes it over.
    void addRefinementRegion(RefinementRegion* region);

    /// \brief The region at \p index, which must be in range.
    RefinementRegion* refinementRegion(int index) const;

    /// \brief Number of refinement regions.
    int refinementRegionCount() const;

    /// \brief Walks the regions as they are now, in the order in which they were added.
    QListIterator<RefinementRegion*> refinementRegionIterator() const;

    /// \brief Deletes the refinement regions.
    void clearRefinementRegions();

    /// \brief Reads a model in the binary form from \p stream, adding to what is there: the model's
    ///        version, box and attributes are replaced, regions and entities are added.
    ///
    /// The form is told in ModelSerializer2013. A bad stream leaves its status at
    /// QDataStream::ReadPastEnd or QDataStream::ReadCorruptData, as told in ModelSerializer; an
    /// unknown format does too, and changes nothing but the version.
    /// \pre the model holds no entities, since adjacency is read for every entity that it holds
    void read(QDataStream& stream);

    /// \brief Reads the file \p path, NUL-terminated; a file that does not open changes nothing.
    ///        Tells of no failure: a host that must know reads from a stream of its own.
    void read(const wchar_t* path);

    /// \brief Writes the binary form and leaves the stream at QDataStream version 12.
    void write(QDataStream& stream);

    /// \brief Writes the text form, which is for people: it cannot be read back.
    void write(QTextStream& stream);

    /// \brief Writes the file \p name with the suffix ".geo_model", or ".geo_model.txt" if \p text,
    ///        into \p directory.
    void write(const char* directory, const char* name, bool text);

private:
    Version version_;
    Box boundingBox_;
    QList<RefinementRegion*> refinementRegions_;
    AttributeMap attributes_;
    std::array<IdGenerator, 4> idGenerators_;
    std::array<IdTable<ModelEntity>, 4> entities_;
};

} // namespace Ovra::Geo
