#pragma once

#include "AttributeMap.h"
#include "GeometryDatabaseExport.h"
#include "HashIterator.h"
#include "IdGenerator.h"
#include "OrderedHashIterator.h"
#include "Version.h"

#include <QMap>

#include <array>

class QDataStream;
class QTextStream;

namespace Ovra::Geo
{

class AttributeType;
class MeshEntity;
class Model;

/// \brief The container of the mesh entities classified on one Model.
///
/// Entities are stored by dimension, 0 (MeshVertex) to 3 (MeshRegion), and by id, which is positive
/// and unique within its dimension. The Mesh owns the entities that were added to it, and must be
/// destroyed ahead of its Model, because every mesh entity takes itself off its parent as it is
/// destroyed; a Database sees to that.
///
/// Copies are shallow, as those of Model: both objects hold, and delete, the same entities.
///
/// Dimension arguments are not checked. One thread at a time.
class OVRA_GEO_EXPORT Mesh
{
public:
    /// \brief An empty mesh of version 0.0.0.
    /// \param model the model that the mesh is classified on; not owned
    Mesh(Model* model);

    /// \brief Shares the entities and the model of the other mesh; see the class.
    Mesh(const Mesh&) = default;

    /// \brief Shares the entities and the model of the other mesh; see the class.
    Mesh& operator=(const Mesh&) = default;

    /// \brief Deletes the entities, regions first.
    ~Mesh();

    /// \brief Takes \p entity over and stores it under its id.
    ///
    /// An entity without id gets the next one of its dimension; later ids lie above an id that the
    /// entity brings along, or are any that are free if that is the highest value of an int. An
    /// entity that already has that id is replaced in the table, but neither deleted nor
    /// unlinked. Parent and adjacency are not touched.
    void add(MeshEntity* entity);

    /// \brief Takes the entry of \p entity's id out of the table, the entity out of its neighbours'
    ///        lists and off its parent, and deletes it.
    ///
    /// The id is not used again until clear() or renumber().
    /// \pre for a vertex: nothing uses it any more
    void remove(MeshEntity* entity);

    /// \brief Deletes the entities of \p dimension, taking them off their parents; its ids start
    ///        from 1 again.
    ///
    /// Entities of the other dimensions keep their pointers to those deleted.
    void clear(int dimension);

    /// \brief Deletes all entities; version and attributes stay.
    void clear();

    /// \brief Number of entities of \p dimension.
    int count(int dimension) const;

    /// \brief Whether there are no entities.
    bool isEmpty() const;

    /// \brief The entity of that dimension and id, or null.
    MeshEntity* entity(int dimension, int id) const;

    /// \brief Walks a snapshot of the entities of \p dimension by ascending id.
    HashIterator<int, MeshEntity*> iterator(int dimension) const;

    /// \brief Walks the entities of \p dimension by ascending id. The mesh must
    ///        outlive it, and it does not survive a renumber() of its dimension.
    OrderedHashIterator<int, MeshEntity*> orderedIterator(int dimension) const;

    /// \brief The attributes of the mesh as a whole.
    AttributeMap& attributes() { return attributes_; }

    /// \brief The version of the stream that was read, or as set; writing does not change it.
    Version version() const { return version_; }

    /// \brief Stores the version.
    void setVersion(const Version& version) { version_ = version; }

    /// \brief Derives the upward lists of all entities from the vertex lists of edges, faces and
    ///        regions: a vertex lists what uses it, an edge its faces, a face its regions.
    ///
    /// Does not clear first, so that a second call enters everything twice. The order within the
    /// lists means nothing. O(n) for meshes with vertices of bounded valence.
    /// \pre the vertex lists are complete
    void setUpwardAdjacencies();

    /// \brief Empties the upward lists of all vertices, edges and faces; the vertex lists stay.
    void clearUpwardAdjacencies();

    /// \brief Reads a mesh of any binary format, adding to what is there, classifies it on the
    ///        model's entities and sets the upward lists. The stream is left at QDataStream version
    ///        12.
    ///
    /// Upward lists that are set already get everything a second time, as in
    /// setUpwardAdjacencies(): clear them first. A bad stream leaves its status at
    /// QDataStream::ReadPastEnd or QDataStream::ReadCorruptData, as told in MeshSerializer; an
    /// unknown format does too, and changes nothing but the version. What was read stays; all upward
    /// lists are then derived anew, each entry once. Corrupt data is also a mesh whose upward lists
    /// would outgrow it, as only elements can bring about that lie within one another by hundreds:
    /// the edges, or the faces, whose vertices all have more than 64 neighbours then have more
    /// neighbours than there are pairs of vertices in these, and the last of them have none.
    /// \pre the model is read
    void read(QDataStream& stream);

    /// \brief Reads the file \p fileName, NUL-terminated; a file that does not open changes
    ///        nothing. Tells of no failure: a host that must know reads from a stream of its own.
    void read(const wchar_t* fileName);

    /// \brief Writes the text form of the oldest format, which is for people: it cannot be read
    ///        back.
    void write(QTextStream& stream);

    /// \brief Writes the newest binary format and leaves the stream at QDataStream version 12.
    void write(QDataStream& stream);

    /// \brief Closes the gaps in the ids of \p dimension: the entities get 1 to count(), in the
    ///        order of their ids, and the next new one count() + 1.
    ///
    /// Does nothing if count() equals the highest id handed out. Otherwise O(n log n) in the number
    /// of entities, whatever their ids. With vertices, the attributes ShellVertex, RotorVertex,
    /// StatorVertex, OriginalMotionVertex and NewMotionVertex of all vertices follow the new ids; a
    /// value that names no present vertex stays. Ids kept anywhere else are void: in other
    /// attributes, and as keys of the child tables of ModelEntity, whose walks go on working.
    /// Ordered iterators of the dimension do not survive the call.
    /// \pre all ids of the dimension are positive
    void renumber(int dimension);

private:
    enum class Limit
    {
        None,
        ByVertexLists
    };

    /// Whether the limit allowed for all lists.
    bool setUpwardAdjacencies(Limit limit);
    void replaceAttribute(MeshEntity* entity, const AttributeType& type,
                          const QMap<int, int>& idMap);
    void replaceVertexAttributes(const QMap<int, int>& idMap);

    Model* model_;
    Version version_;
    AttributeMap attributes_;
    std::array<IdGenerator, 4> idGenerators_;
    std::array<IdTable<MeshEntity>, 4> entities_;
};

} // namespace Ovra::Geo
