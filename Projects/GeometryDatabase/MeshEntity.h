#pragma once

#include "AttributeMap.h"
#include "Box.h"
#include "GeometryDatabaseExport.h"
#include "NeighbourList.h"
#include "Vector.h"

#include <QList>
#include <QListIterator>
#include <QSet>
#include <QVarLengthArray>

#include <array>

namespace Ovra::Geo
{

class ModelEntity;
class NeighbourSets;

/// \brief One entity of the mesh: a vertex, edge, face or region, classified on a model entity.
///
/// Connectivity is four lists of entity pointers, one for each dimension of the entities listed.
/// List 0 of an edge, face or region is its ordered vertex list: the definition of the element, in
/// its node order (see Utility), and the only stored downward relation. The other lists are derived
/// from the vertex lists by Mesh::setUpwardAdjacencies(), and their order means nothing:
///
/// | class      | list 0           | list 1         | list 2          | list 3           |
/// |------------|------------------|----------------|-----------------|------------------|
/// | MeshVertex | empty            | edges that use | faces that use  | regions that use |
/// | MeshEdge   | 2 vertices       | empty          | faces with both | empty            |
/// | MeshFace   | 3 or 4 vertices  | empty          | empty           | regions with all |
/// | MeshRegion | 4, 5, 6 or 8     | empty          | empty           | empty            |
///
/// The Mesh owns its entities; the parent and the list entries are not owned. A copy shares parent
/// and neighbours, which know nothing of it, and its destructor detaches it from the parent by its
/// id, as that of the original does.
///
/// Dimensions must be 0 to 3 and pointers not null; neither is checked. One thread at a time.
class OVRA_GEO_EXPORT MeshEntity
{
public:
    /// \brief A new entity; the caller owns it until it is handed to Mesh::add().
    /// \param dimension 0 MeshVertex, 1 MeshEdge, 2 MeshFace, 3 MeshRegion
    /// \return null for any other dimension
    static MeshEntity* create(int dimension);

    /// \brief Comparator by ascending id, for sorting lists of entities of one dimension.
    static bool lessThan(MeshEntity* a, MeshEntity* b);

    /// \brief The entities of \p dimension that list \p entity among their neighbours and share a
    ///        vertex with it.
    ///
    /// Answers where the upward relation is stored: the edges of a face, the faces of a region. A
    /// region has no edges in this sense; vertices are read from list 0. Only edges and faces that
    /// exist as entities are found.
    /// \pre the upward lists are set; without them the result is empty
    static QSet<MeshEntity*> getDownwardAdjacencies(MeshEntity* entity, int dimension);

    /// \brief The entities of \p dimension that use all vertices of \p entity, read from the lists
    ///        of those vertices. Levels can be skipped: an edge has regions in this sense.
    ///
    /// The test is by vertices only: two opposite corners of a quadrilateral count as adjacent to
    /// it.
    /// \param entity,dimension an edge, face or region, as a vertex gives the empty set; 0 to 3
    static QSet<MeshEntity*> getUpwardAdjacencies(MeshEntity* entity, int dimension);

    /// \brief The entities of \p dimension that stand in the lists of all of \p entities.
    /// \param entities,dimension usually vertices, and no entities give the empty set; 0 to 3
    static QSet<MeshEntity*> getUpwardAdjacencies(const QList<MeshEntity*>& entities,
                                                  int dimension);

    /// \brief An entity without id, parent, attributes and neighbours.
    MeshEntity() = default;

    /// \brief Copies id, attributes, parent and lists; no table and no list takes the copy in.
    MeshEntity(const MeshEntity&) = default;

    /// \brief Copies id, attributes, parent and lists; no table and no list learns of it.
    MeshEntity& operator=(const MeshEntity&) = default;

    /// \brief Releases the entity's lists and attributes; the destructors of the derived classes
    ///        detach the entity from its parent, but not from its neighbours.
    virtual ~MeshEntity();

    /// \brief 0 for a vertex, 1 for an edge, 2 for a face, 3 for a region.
    virtual int dimension() const = 0;

    /// \brief The smallest box that holds the entity's vertices.
    virtual Box boundingBox() const = 0;

    /// \brief The mean of the entity's vertices.
    virtual Vector centroid() const = 0;

    /// \brief Unit normal of an edge (in the xy plane) or face; zero for a vertex or region.
    virtual Vector normal() const = 0;

    /// \brief Length of an edge, area of a face, 0 of a vertex; of a region see there.
    virtual double boundaryArea() const = 0;

    /// \brief Appends to the entity's upward lists what uses all its vertices; does not clear
    ///        first, so that a second call enters everything twice.
    /// \pre the vertices' own lists are complete
    virtual void setUpwardAdjacencies();

    /// \brief Empties the entity's upward lists; list 0 of an element stays.
    virtual void clearUpwardAdjacencies();

    /// \brief Takes the entity out of the lists of its neighbours, ahead of its deletion; its own
    ///        lists stay. Does nothing for a vertex: delete what uses it first.
    virtual void removeFromAdjacencies();

    /// \brief The id within the entity's dimension of its mesh; 0 means none yet.
    int id() const { return id_; }

    /// \brief Changes the id; neither a Mesh nor a ModelEntity that holds the entity under its old
    ///        id is told.
    void setId(int id) { id_ = id; }

    /// \brief The model entity on which the entity is classified, or null; not owned.
    ModelEntity* parent() const { return parent_; }

    /// \brief Sets the parent alone; ModelEntity::addChild() classifies.
    void setParent(ModelEntity* parent) { parent_ = parent; }

    /// \brief The entity's attributes, for reading and writing.
    AttributeMap& attributes() { return attributes_; }

    /// \brief Appends \p entity to the list of its dimension; duplicates are not prevented.
    ///
    /// Adjacency is one-sided: linking two entities takes one call on each.
    void addAdjacency(MeshEntity* entity);

    /// \brief The entry at \p index of the list of \p dimension; \p index must be in range.
    MeshEntity* adjacencyAt(int dimension, int index) const
    {
        return adjacencies(dimension).at(index);
    }

    /// \brief Number of entries in the list of \p dimension.
    int adjacencyCount(int dimension) const
    {
        return static_cast<int>(adjacencies(dimension).size());
    }

    /// \brief Walks the list of \p dimension as it is now; later changes do not reach the walk.
    QListIterator<MeshEntity*> adjacencyIterator(int dimension) const
    {
        return QListIterator<MeshEntity*>(adjacencies(dimension).snapshot());
    }

    /// \brief Whether this entity lists \p entity; the other direction may differ.
    bool isAdjacentTo(MeshEntity* entity) const;

    /// \brief Removes the first occurrence of \p entity from the list of its dimension, if any.
    void removeAdjacency(MeshEntity* entity);

    /// \brief Puts \p newEntity in the place of the first occurrence of \p oldEntity, so that the
    ///        node order stays intact.
    /// \param oldEntity,newEntity the new one goes into the list of the old one's dimension
    /// \return false, with nothing changed, if \p oldEntity is no neighbour
    bool replaceAdjacency(MeshEntity* oldEntity, MeshEntity* newEntity);

    /// \brief Same id and same dimension; not the address.
    bool operator==(const MeshEntity& other) const;

    /// \brief The negation of operator==.
    bool operator!=(const MeshEntity& other) const;

    /// \brief Compares ids only.
    bool operator<(const MeshEntity& other) const;

protected:
    /// \brief As MeshEntity(), with room in the derived class for the usual number of vertices.
    /// \param vertices of a member of the derived class; only its address is taken here
    explicit MeshEntity(NeighbourList::Block& vertices)
        : adjacencies_{NeighbourList(vertices), {}, {}, {}}
    {
    }

    /// \brief Position of the vertex at \p index of list 0, which must be in range.
    Vector vertexPoint(int index) const { return adjacencyAt(0, index)->centroid(); }

    /// \brief The default box, grown by the first \p count vertices in list order, as far as there
    ///        are so many.
    Box vertexBox(int count) const;

    /// \brief Empties the list of \p dimension.
    void clearAdjacencies(int dimension);

    /// \brief Appends to the list of \p dimension what uses all the entity's vertices. While a Mesh
    ///        sets the upward lists of all its entities, long lists are shared among the entities
    ///        on the same vertices.
    void addUpwardAdjacencies(int dimension);

    /// \brief Takes the entity out of the lists of its vertices.
    void removeFromVertices();

    /// \brief Takes the entity out of the lists of its sides of \p sideDimension.
    void removeFromSides(int sideDimension);

    /// \brief Tells the parent, if any, that the entity goes; for destructors of derived classes,
    ///        in which dimension() still answers.
    void detachFromParent();

private:
    friend class Mesh;
    friend class MeshSerializer;
    friend class UpwardLists;
    friend class VertexListFiller;

    using Neighbours = QVarLengthArray<MeshEntity*, 16>;

    template <typename Entities>
    static Neighbours neighboursOfAll(const Entities& entities, int dimension, NeighbourSets* sets);
    template <typename Entities>
    static Neighbours commonNeighbours(const Entities& entities, int dimension,
                                       NeighbourSets* sets = nullptr);

    void appendUpwardAdjacencies(int dimension, NeighbourSets* sets);

    // Without asking the entity for its dimension: it lies anywhere in memory, and as a mesh is
    // read nothing else of it is needed.
    void append(MeshEntity* entity, int itsDimension) { adjacencies(itsDimension).append(entity); }

    NeighbourList& adjacencies(int dimension)
    {
        return adjacencies_[static_cast<size_t>(dimension)];
    }
    const NeighbourList& adjacencies(int dimension) const
    {
        return adjacencies_[static_cast<size_t>(dimension)];
    }

    int id_ = 0;
    AttributeMap attributes_;
    ModelEntity* parent_ = nullptr;
    std::array<NeighbourList, 4> adjacencies_;
};

} // namespace Ovra::Geo
