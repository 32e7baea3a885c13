#pragma once

#include "AttributeMap.h"
#include "Box.h"
#include "GeometryDatabaseExport.h"
#include "HashIterator.h"
#include "Vector.h"

#include <QList>
#include <QListIterator>
#include <QString>

#include <array>

namespace Ovra::Geo
{

class MeshEntity;

/// \brief One entity of the boundary representation: a vertex, edge, face or region of the model.
///
/// An entity carries an id, two strings, attributes, lists of its neighbours of each dimension, and
/// the table of the mesh entities of its own dimension that are classified on it, its children. The
/// geometric numbers of the derived classes come from the host or the model file and are stored as
/// given. An entity owns neither neighbours nor children: the Model owns model entities, the Mesh
/// mesh entities. A copy has the same id and the same neighbour pointers, but the neighbours know
/// nothing of it.
///
/// One thread at a time: const operations fill caches.
class OVRA_GEO_EXPORT ModelEntity
{
public:
    /// \brief A new entity; the caller owns it until it is handed to Model::add().
    /// \param dimension 0 ModelVertex, 1 ModelEdge, 2 ModelFace, 3 ModelRegion
    /// \return null for any other dimension
    static ModelEntity* create(int dimension);

    /// \brief Comparator by ascending id, for sorting lists of entities of one dimension.
    static bool lessThan(ModelEntity* a, ModelEntity* b);

    /// \brief Drops the entity's own lists; neighbours and children are not told.
    /// \pre the mesh entities classified on this one are gone, or are never destroyed or moved:
    ///      their destructors call back into their parent
    virtual ~ModelEntity();

    /// \brief 0 for a vertex, 1 for an edge, 2 for a face, 3 for a region.
    virtual int dimension() const = 0;

    /// \brief The stored bounding box; that of a vertex is its point.
    virtual Box boundingBox() const = 0;

    /// \brief The stored centroid; that of a vertex is its point.
    virtual Vector centroid() const = 0;

    /// \brief The stored normal of an edge or face; zero for a vertex or region.
    virtual Vector normal() const = 0;

    /// \brief The stored planarity of an edge or face; false for a vertex or region.
    virtual bool isPlanar() const = 0;

    /// \brief Centroid of the mesh on this entity, computed at the first call that finds children
    ///        and kept for the life of the entity, however the mesh changes afterwards.
    ///
    /// A vertex answers its point once it has a child; an edge the mean of its elements' centroids;
    /// a face or region the mean of the distinct vertices of its elements.
    /// \return the zero vector as long as there are no children
    virtual Vector meshCentroid() const = 0;

    /// \brief Arithmetic mean of the normals of the children of an edge or face: neither weighted
    ///        nor normalised. Computed and kept as, and together with, meshCentroid().
    /// \return the zero vector for a vertex or region and as long as there are no children
    virtual Vector meshNormal() const = 0;

    /// \brief The id within the entity's dimension of its model; 0 means none yet.
    int id() const { return id_; }

    /// \brief Changes the id; a Model that holds the entity under its old id is not told.
    void setId(int id) { id_ = id; }

    /// \brief A text of the host's.
    QString tag() const { return tag_; }

    /// \brief Stores a text of the host's.
    void setTag(const QString& tag) { tag_ = tag; }

    /// \brief The entity's name, which the surface sections of the solver input use.
    QString name() const { return name_; }

    /// \brief Stores the entity's name.
    void setName(const QString& name) { name_ = name; }

    /// \brief The entity's attributes, for reading and writing.
    AttributeMap& attributes() { return attributes_; }

    /// \brief The entity's attributes, for reading.
    const AttributeMap& attributes() const { return attributes_; }

    /// \brief Appends \p entity to the list of its dimension; duplicates are not prevented.
    ///
    /// Adjacency is one-sided: linking two entities takes one call on each.
    void addAdjacency(ModelEntity* entity);

    /// \brief Removes the first occurrence of \p entity from the list of its dimension, if any.
    void removeAdjacency(ModelEntity* entity);

    /// \brief Puts \p newEntity in the place of the first occurrence of \p oldEntity.
    /// \param oldEntity,newEntity the new one goes into the list of the old one's dimension
    /// \return false, with nothing changed, if \p oldEntity is no neighbour
    bool replaceAdjacency(ModelEntity* oldEntity, ModelEntity* newEntity);

    /// \brief Whether this entity lists \p entity; the other direction may differ.
    bool isAdjacentTo(ModelEntity* entity) const;

    /// \brief Number of entries in the list of \p dimension.
    int adjacencyCount(int dimension) const;

    /// \brief The neighbour at \p index of the list of \p dimension, or null out of range.
    ModelEntity* adjacencyAt(int dimension, int index) const;

    /// \brief Walks the list of \p dimension as it is now; later changes do not reach the walk.
    QListIterator<ModelEntity*> adjacencyIterator(int dimension) const;

    /// \brief Classifies \p child on this entity, detaching it from its present parent first.
    ///
    /// The child's parent becomes this entity; only a child of this entity's own dimension enters
    /// the table of children, under its present id, in place of another child of that id.
    void addChild(MeshEntity* child);

    /// \brief Takes \p child off this entity: out of the table, by its present id, if its dimension
    ///        is this entity's, and in every case its parent becomes null.
    ///
    /// After Mesh::renumber() of that dimension the table still has the old ids as keys, so that
    /// the call misses the entry or hits that of another child.
    void removeChild(MeshEntity* child);

    /// \brief Deletes every child and empties the table.
    /// \pre the children are gone from their Mesh, which is not told
    void removeAllChildren();

    /// \brief Number of mesh entities of this entity's own dimension classified on it.
    int childCount() const { return static_cast<int>(children_.size()); }

    /// \brief Walks the children as they are now, by ascending id, keyed by the ids that they had
    ///        when they were added.
    HashIterator<int, MeshEntity*> childIterator() const;

    /// \brief Same id and same dimension.
    bool operator==(const ModelEntity& other) const;

    /// \brief The negation of operator==.
    bool operator!=(const ModelEntity& other) const;

    /// \brief Compares ids only.
    bool operator<(const ModelEntity& other) const;

protected:
    ModelEntity() = default;
    ModelEntity(const ModelEntity&) = default;            ///< shares neighbours and children
    ModelEntity& operator=(const ModelEntity&) = default; ///< see the copy constructor

    /// \brief Arithmetic mean over the children, summed in ascending order of their ids so that the
    ///        last bits of the result do not hang on hash order.
    /// \param quantity the vector to take of each child
    /// \pre there are children
    Vector childMean(Vector (MeshEntity::*quantity)() const) const;

    /// \brief Mean position of the distinct vertices of the children, summed in ascending order of
    ///        the vertices' ids.
    /// \pre there are children
    Vector meshVertexMean() const;

private:
    QList<ModelEntity*>& adjacencies(int dimension)
    {
        return adjacencies_[static_cast<size_t>(dimension)];
    }
    const QList<ModelEntity*>& adjacencies(int dimension) const
    {
        return adjacencies_[static_cast<size_t>(dimension)];
    }

    int id_ = 0;
    QString tag_;
    QString name_;
    AttributeMap attributes_;
    std::array<QList<ModelEntity*>, 4> adjacencies_;
    IdTable<MeshEntity> children_;
};

} // namespace Ovra::Geo
