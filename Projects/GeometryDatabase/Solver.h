#pragma once

#include "GeometryDatabaseExport.h"
#include "VertexMap.h"

#include <QList>
#include <QSet>
#include <QString>

namespace Ovra::Geo
{

class Database;
class InterpolationData;
class MeshEntity;
class MeshVertex;
class ModelEntity;
class NearTree;
class PeriodicTransform;
class Vector;

/// \brief Turns the meshed model of a database into the shape that the flow solver needs.
///
/// Every operation changes model and mesh in place, and leaves its results as new entities, changed
/// adjacencies and attributes, which GbiWriter reads. The database is not owned and must outlive
/// the operations. The order of the operations is the caller's; each says what it requires and
/// leaves.
///
/// Faces and regions of the model are those of the model's face dimension and one above, so that
/// planar models, whose faces are edges and whose regions are faces, are served alike.
///
/// No operation tests its input, returns a status or records an error: material kinds, links and
/// adjacencies outside an operation's contract end in a null dereference. Walks over entities go by
/// ascending id, so that new entities get the same ids in every run.
class OVRA_GEO_EXPORT Solver
{
public:
    /// \brief A solver preparation without error and with an extrusion tolerance of 0.01.
    /// \param database what is worked on; not owned, not null
    Solver(Database* database);

    /// \brief The last error text that the host recorded; empty if there is none.
    QString error() const;

    /// \brief Records \p text as the error; no operation of this class does so itself.
    void setError(const QString& text);

    /// \brief Whether no error is recorded.
    bool isOk() const;

    /// \brief The tolerance of the interpolation weights of extruded faces.
    double extrusionTolerance() const;

    /// \brief Sets the tolerance of the interpolation weights of extruded faces.
    ///
    /// A vertex exactly on a side of a mesh face gets weights that are no numbers without any
    /// tolerance; 1e-12 will do. From a quarter on all weights of a quadrilateral may be dropped,
    /// from a third on those of a triangle, which leaves no numbers either.
    /// \param tolerance taken as it is, without a test
    void setExtrusionTolerance(double tolerance);

    /// \brief Doubles every model face between a fluid region and another one.
    ///
    /// The old face stays with the fluid region and names the new one in `solid_face`; the new one
    /// goes to the other region and names the old one in `fluid_face`. Mesh faces with an element
    /// on the other side, and all of those towards an unmeshed device, get a twin of the same
    /// vertex order. Elements and mesh faces of meshed "solid" regions take copies of the vertices;
    /// those of any other region that is not fluid keep the old ones. Mesh edges are not touched.
    /// The copies of vertices have no parent and no attributes. The new faces have neither name nor
    /// geometry, and nothing but equal places tells which vertex is the copy of which.
    ///
    /// A face is split if it has exactly two regions, one of them fluid and one not, each of them
    /// meshed or an unmeshed device. Of a device's lists `hot_faces`, `cold_faces` and
    /// `case_faces`, each that is not empty must hold the id of the face.
    ///
    /// Logs "Split fluid-solid face %1" with the id of each, then "Created %1 new vertices".
    ///
    /// \pre upward adjacencies of the mesh are set, every mesh entity has a parent, and the regions
    ///      have their `material_type`
    /// \post upward adjacencies are kept; a second call splits nothing
    void splitFluidSolidFaces();

    /// \brief Gives every moving region that touches a fluid a copy that moves in its place.
    ///
    /// A new region, with faces in the order of the old one's and a copy of the mesh, takes
    /// material and motion. The old region loses its motion and takes the material of the adjacent
    /// "fluid" region. `new_motion_region` and `original_motion_region` link the regions,
    /// `new_motion_vertex` and `original_motion_vertex` the vertices; a vertex of two moving
    /// regions has two copies and names the first one made. Mesh edges are not copied. Nothing links
    /// a face to its copy but the position in the lists of the two regions, or an element to its
    /// own but its vertices; copies have neither name nor geometry.
    ///
    /// Logs "Replicate region %1" with the id of each region that is replicated.
    ///
    /// \pre the elements list their vertices; every region with `motion_type` that has a neighbour
    ///      which is "fluid" or moves itself also has a neighbour that is "fluid", not suppressed
    ///      and not replicated
    /// \post the copies have their upward adjacencies; a second call replicates nothing
    void replicateMovingRegions();

    /// \brief Doubles the faces between each rotating device and the meshed fluid around it.
    ///
    /// The device keeps the old faces, mesh faces and vertices (the rotor), the fluid takes new
    /// ones (the stator). `stator_face` and `stator_vertex` stand on the rotor's entities and name
    /// the stator's, `rotor_face` and `rotor_vertex` the other way round. A vertex of two devices
    /// has two copies and names the later one. Solid elements stay with the rotor.
    ///
    /// \pre upward adjacencies of the mesh are set, every mesh entity has a parent, the regions
    ///      have their `material_type`, and each mesh face of a peripheral face has an element
    ///      outside the device
    /// \post upward adjacencies are kept; a second call finds no peripheral face
    void addPeripheralFaces();

    /// \brief Ties the vertices of each face of a periodic pair to the mesh of its partner.
    ///
    /// Pairs are the faces with equal `periodic_pair_id`; `periodic_side_id` 1 marks the first one.
    /// Both get `periodic_face`. The transform is computed from the planar pair of the lowest pair
    /// id and serves all pairs; it is stored as six attributes of the model, all zero if there is
    /// no planar pair. Each vertex gets `periodic_entity_type`, `periodic_entity_id` and
    /// `periodic_weights`, unless it has them already.
    ///
    /// \pre each pair has one first and one second face, both meshed; mesh vertices list their mesh
    ///      faces
    /// \post no entity and no adjacency is changed; the ids stored hold until the mesh is
    ///       renumbered
    void interpolatePeriodicFaces();

    /// \brief Ties the vertices of each extruded face and of its partner to each other's mesh.
    ///
    /// `extruded_face` names the partner. Clears the links of earlier runs first. Each vertex gets
    /// `extruded_entity_type`, `extruded_entity_id` and `extruded_weights`, computed with
    /// extrusionTolerance().
    ///
    /// Logs "Found face", the face's id, "and face" and the partner's id for each extruded face.
    ///
    /// \pre both faces exist and are meshed; mesh vertices list their mesh faces
    /// \post no entity and no adjacency is changed; the ids stored hold until the mesh is
    ///       renumbered
    void interpolateExtrudedFaces();

    /// \brief Replaces every wedge, an element with six vertices, by three tetrahedra.
    ///
    /// Each quadrilateral is cut along the diagonal through its vertex of the smallest id, so that
    /// wedges which share it agree; see J. Dompierre, P. Labbé, M.-G. Vallet, R. Camarero, "How to
    /// subdivide pyramids, prisms and hexahedra into tetrahedra". The tetrahedra have no
    /// attributes. Then renumbers the elements, unless there was no wedge.
    ///
    /// \pre the keys of the regions' children are the ids of the elements, that is, no renumbering
    ///      of elements has changed ids since they were classified
    /// \post upward adjacencies are out of date: neither vertices nor mesh faces list the
    ///       tetrahedra, and the quadrilaterals stay without an element; call
    ///       Mesh::clearUpwardAdjacencies() and Mesh::setUpwardAdjacencies() where they are needed
    void decomposeWedgesToTets();

    /// \brief Removes mesh faces without element, then edges without face, then vertices without
    ///        element, other than those classified on a neighbour of an unmeshed device.
    ///
    /// In a planar model the mesh faces are the elements, and are kept. Ids of what is removed stay
    /// unused. A vertex on no element is removed even where a mesh face lists it, which then holds
    /// a dangling pointer.
    ///
    /// Logs "There are %1 unreferenced mesh entities of dimension %2" for each dimension, with the
    /// number found, those that are kept included.
    ///
    /// \pre upward adjacencies of the mesh are set: an entity without them counts as unreferenced
    void removeUnreferencedMeshEntities();

    /// \brief The mesh vertices that no element uses, in the order of Mesh::iterator(); removes
    ///        nothing.
    /// \pre upward adjacencies of the mesh are set
    QList<MeshEntity*> getUnreferencedMeshVertices();

private:
    // Shared
    bool isSolid(ModelEntity* entity) const;
    bool isRotatingDevice(ModelEntity* entity) const;

    // Fluid-solid faces
    bool shouldSplitFluidSolidFace(ModelEntity* face) const;
    void splitFluidSolidFace(ModelEntity* face);
    void splitMesh(ModelEntity* oldFace, ModelEntity* newFace, ModelEntity* fluidRegion,
                   ModelEntity* otherRegion);
    MeshVertex* addSplitVertex(MeshVertex* vertex);
    void breakFluidSolidVertexAdjacencies();

    // Moving regions
    bool shouldReplicate(ModelEntity* region) const;
    void replicateMovingRegion(ModelEntity* region);
    void replicateMesh(ModelEntity* oldEntity, ModelEntity* newEntity);
    MeshVertex* addReplicatedVertex(MeshVertex* vertex);

    // Peripheral faces
    void addPeripheralFaces(ModelEntity* device);
    QList<ModelEntity*> getPeripheralFaces(ModelEntity* device);
    void splitPeripheralMesh(ModelEntity* oldFace, ModelEntity* newFace, ModelEntity* device,
                             ModelEntity* otherRegion);
    MeshVertex* addPeripheralVertex(MeshVertex* vertex);
    void breakRotorStatorVertexAdjacencies();

    // Periodic and extruded faces
    void interpolatePeriodicFace(ModelEntity* first, ModelEntity* second,
                                 const PeriodicTransform& transform) const;
    void interpolateExtrudedFace(ModelEntity* first, ModelEntity* second) const;
    PeriodicTransform computePeriodicTransform(ModelEntity* first, ModelEntity* second) const;
    void transformPoint(Vector& point, const PeriodicTransform& transform) const;
    InterpolationData interpolate(const Vector& point, MeshVertex* nearest, ModelEntity* face,
                                  double tolerance) const;
    void storePeriodicAttributes(MeshVertex* vertex, const InterpolationData& data) const;
    void storeExtrusionAttributes(MeshVertex* vertex, const InterpolationData& data) const;
    void clearExtrusionAttributes() const;
    /// The tree is owned by the caller.
    NearTree* buildNearTree(const QSet<MeshEntity*>& vertices) const;

    // Wedges
    void decomposeWedgesToTets(const QList<MeshEntity*>& wedges);
    int indexOfSmallest(const QList<MeshEntity*>& entities) const;
    void addTetrahedron(MeshEntity* first, MeshEntity* second, MeshEntity* third,
                        MeshEntity* fourth, ModelEntity* parent);

    // Unreferenced entities
    void removeUnreferencedMeshEntities(int dimension, int upwardDimension);
    QList<MeshEntity*> getUnreferencedMeshEntities(int dimension, int upwardDimension);
    bool isAdjacentToUnmeshedDevice(MeshEntity* entity) const;

    Database* database_;
    QString error_;
    double extrusionTolerance_ = 0.01;
    /// From a mesh vertex to its duplicate; scratch of the current duplicating operation.
    VertexMap vertexMap_;
};

} // namespace Ovra::Geo
