#pragma once

#include "ElementFaceData.h"
#include "GeometryDatabaseExport.h"
#include "LinkData.h"

#include <QList>
#include <QMap>
#include <QTextStream>

#include <utility>

namespace Ovra::Geo
{

class Database;
class Mesh;
class Model;

/// \brief Writes the text sections of the flow solver's input from a prepared model and its mesh.
///
/// Each `write` operation emits one section, or one group of labelled blocks, at the present
/// position of a stream that the host has opened. The host decides on the file, its header, its
/// encoding and the order of the sections. The writer owns neither model nor mesh; both must
/// outlive it.
///
/// <b>Conventions of the format</b>
/// - Fields stand one blank apart and are never padded. Integers and reals go through the stream,
///   so that locale, number flags and real number notation are the host's; the precision of reals
///   is changed only where a section says so below.
/// - Ids are those of the entities, without renumbering (Mesh::renumber() makes them dense); 0
///   means that there is no such entity. Local face numbers are those of
///   Utility::getLocalFaceIndex(); Utility has the node order of the elements as drawings.
/// - A section with a count in front ends by that count, any other by a terminator line.
/// - Records that are not said to be sorted are a set to the solver. They come by ascending id.
///
/// The operations without their `write`; a precision of 15 or 6 is put back at the end unless it
/// stays. Lines of surface connectivity ascend by their first element.
///
/// | operation               | order of records                          | precision | end        |
/// |-------------------------|-------------------------------------------|-----------|------------|
/// | Nodes                   | by id                                     | 15        | "-1"       |
/// | Elements                | by id                                     | no reals  | "-1"       |
/// | PartSurfaces            | regions by id; faces by id                | 15        | "-1"       |
/// | SurfaceConnectivity     | faces, nodes by id; lines by element      | 15        | "-1"       |
/// | ShellElements           | regions by id; elements by id             | no reals  | "-1"       |
/// | ShellRegionData         | by id                                     | no reals  | "-1"       |
/// | ShellSurfaceNodeLinks   | faces by id; nodes by id                  | no reals  | "-1 -1 -1" |
/// | PeriodicFaceList        | by element, then local face               | no reals  | counted    |
/// | PeriodicNodalData       | by node id                                | 6         | counted    |
/// | PeriodicTransform       | four lines                                | stream's  | fixed      |
/// | GmPeriodicData          | ascending                                 | stream's  | counted    |
/// | ExtrusionFaceList       | by element, then local face               | no reals  | counted    |
/// | ExtrusionNodalData      | by node id                                | 6         | counted    |
/// | GmExtrusionData         | ascending                                 | 6, stays  | counted    |
/// | MovingRegionData, Gm    | materials by region id; maps by key       | no reals  | counted    |
/// | RotatingRegionData, Gm  | regions by id; ascending within each      | no reals  | counted    |
/// | SpatiallyVaryingNodalBC | writes nothing                            |           |            |
///
/// <b>Caches.</b> The topics periodic, extrusion, moving regions and rotating regions exist in a
/// plain and in a labelled form (`Gm`), made from the same data. That data is gathered on first use
/// and kept, so that a writer does not notice later changes to model or mesh: make a new one. A
/// topic that the model does not have is looked for again on each call. writePeriodicFaceList() and
/// writeExtrusionFaceList() never gather: they write what the nodal operation of their topic found.
/// All other sections read model and mesh at each call.
///
/// Nothing is reported: neither the stream's state nor the completeness of model and mesh is
/// tested. Every element must have a parent, and each id kept in an attribute must name an existing
/// entity. As const operations fill the caches, one object serves one thread at a time.
///
/// Copies share the model and the mesh; each has caches of its own.
class OVRA_GEO_EXPORT GbiWriter
{
public:
    /// \brief A writer of \p database's model and mesh, with all caches empty.
    /// \param database not owned, not null; its model and mesh must outlive the writer
    GbiWriter(Database* database);

    /// \name Nodes and elements
    /// @{

    /// \brief Writes each mesh vertex as a line "id x y z", then "-1".
    /// \param stream where to write; its precision is 15 for the coordinates, and restored ahead of
    ///               the terminator
    /// \param scale  multiplies what is written; the mesh is not changed
    void writeNodes(QTextStream& stream, double scale) const;

    /// \brief Writes the elements whose region has no attribute `is_shell`, then "-1".
    ///
    /// A line holds: element id, type code, node count, material, region id, 1 if the element's
    /// `in_bl` is true and else 0, then the vertex ids in the element's node order. It is the
    /// presence of `is_shell` that counts here, not its value. The material is the region's
    /// `material_id`, or that of the region named by its `fluid_region`; a missing one is 0.
    ///
    /// | element                   | type code | node count |
    /// |---------------------------|-----------|------------|
    /// | tetrahedron, 4 vertices   | 4         | 4          |
    /// | pyramid, 5 vertices       | 6         | 5          |
    /// | wedge, 6 vertices         | 5         | 6          |
    /// | hexahedron, 8 vertices    | 3         | 8          |
    /// | triangle, 3 vertices      | 1         | 3          |
    /// | quadrilateral, 4 vertices | 2         | 4          |
    /// | any other number          | 0         | 0          |
    void writeElements(QTextStream& stream) const;

    /// @}
    /// \name Surfaces
    /// @{

    /// \brief Writes the parts, that is the model regions, then "-1".
    ///
    /// | line     | fields                                                           |
    /// |----------|------------------------------------------------------------------|
    /// | 1        | region id, number of bounding faces, name to the end of the line |
    /// | 2        | centroid times scale: x y z                                      |
    /// | 3 and on | ids of the bounding faces, ascending, 20 a line                  |
    ///
    /// In lists of ids a full line has no blank at its end, a short last line has one, and an empty
    /// list has no line at all.
    ///
    /// \param stream where to write; its precision is 15 meanwhile
    /// \param scale  multiplies the centroids
    void writePartSurfaces(QTextStream& stream, double scale) const;

    /// \brief Writes the surfaces, that is the model faces that have a region, then "-1".
    ///
    /// | line              | fields                                                            |
    /// |-------------------|-------------------------------------------------------------------|
    /// | 1                 | face id, first region id, number of mesh faces and of nodes, name |
    /// | 2                 | centroid times scale: x y z; normal: x y z                        |
    /// | 3 and on          | ids of the nodes on the face, ascending, 5 a line                 |
    /// | one per mesh face | connectivity, ascending by first element                          |
    ///
    /// Name, centroid and normal are those of the face named by `non_extruded_face`, if there is
    /// one. A connectivity line holds the element on one side, the vertex ids and the element on
    /// the other side, the smaller element id first, 0 for none. At the side of a shell (the mesh
    /// face has fewer than two elements, the surface is no shell itself and a vertex has
    /// `shell_vertex`) the line ends instead with the negative id of the one element that holds the
    /// partners of all the vertices, the ids of the partners, and a blank; unless there is no such
    /// single element. A mesh face without any element is written with the partners and that one
    /// element, not negated, in its stead. Where the face ought not to look across, as on the narrow
    /// sides of a sheet, set its `is_shell`: it would find its own element.
    ///
    /// The two sides of a split are linked by nothing that is written: they are surfaces with nodes
    /// in the same places. A host that wants more says so in the names.
    /// \param stream where to write; its precision is 15 meanwhile. Connectivity lines do not
    ///               follow its locale and number flags
    /// \param scale  multiplies the centroids, not the normals
    /// \pre the upward adjacency lists of the mesh are set
    void writeSurfaceConnectivity(QTextStream& stream, double scale) const;

    /// @}
    /// \name Shells
    /// @{

    /// \brief Writes the elements of the regions whose `is_shell` is true, then "-1".
    ///
    /// The columns are those of writeElements() with three differences: the sixth is always 1, the
    /// material is the region's own `material_id` or else -1, and among elements of dimension 2 it
    /// is 5 vertices that give type code 2 and node count 4, while 4 vertices give 0 and 0.
    void writeShellElements(QTextStream& stream) const;

    /// \brief Writes a line "region id, material_id, original_shell_face" for each region whose
    ///        `is_shell` is true, with -1 for a missing value, then "-1".
    void writeShellRegionData(QTextStream& stream) const;

    /// \brief Writes which node of a face goes with which node of its shell twin, then "-1 -1 -1".
    ///
    /// For each model face with the attribute `new_shell_face`: a line of face id, `new_shell_face`
    /// and number of nodes; then per node, ascending, a line of node id and `shell_vertex`, 0 if
    /// there is none.
    void writeShellSurfaceNodeLinks(QTextStream& stream) const;

    /// @}
    /// \name Periodic boundaries
    /// Made from the attributes that Solver::interpolatePeriodicFaces() leaves. Side A are the
    /// faces with `periodic_side_id` 1, side B all others that have a `periodic_pair_id`.
    ///
    /// Each side's nodes are tied to the other's, so that imposing both lists of stencils is
    /// circular; a node on the axis of a rotation is tied to itself. Weights at a precision of 6 do
    /// not quite sum to 1.
    /// @{

    /// \brief Writes the element faces of side A, then those of side B, each as a count and lines
    ///        "element id, local face". Gathers nothing.
    void writePeriodicFaceList(QTextStream& stream) const;

    /// \brief Writes the stencils of the nodes of side A, then those of side B, each as a count and
    ///        lines "node id, status, link count, link ids, weights" with a blank at their ends.
    ///
    /// The status is the bitwise or, over the periodic faces on which the node lies, of the bit
    /// 2 * pair - 3 + side, modulo 32.
    /// \param stream where to write; its precision is 6 meanwhile
    /// \pre every vertex on a periodic face has `periodic_entity_type`
    void writePeriodicNodalData(QTextStream& stream) const;

    /// \brief Writes the transform from side A to side B, of the model's attributes, in four lines.
    ///
    /// The translation times `visual_scale_factor`; the origin; the three axes; the matrix row by
    /// row. A missing value is 0, a missing factor is 1. Precision is the stream's.
    void writePeriodicTransform(QTextStream& stream) const;

    /// \brief Writes the whole topic in labelled blocks, at the stream's own precision.
    ///
    /// | label                             | what follows                                         |
    /// |-----------------------------------|------------------------------------------------------|
    /// | "--- nPeriodic ---"               | number of periodic model faces                       |
    /// | "--- node_per_status ---"         | count; node id, status                               |
    /// | "--- AFaceList ---"               | count; element id, local face                        |
    /// | "--- BFaceList ---"               | the same for side B                                  |
    /// | "--- ANodeList ---"               | count; the ids, 20 a line                            |
    /// | "--- BNodeList ---"               | the same for side B                                  |
    /// | "--- nMaxANabors ---"             | 4 if the model has regions, else 2                   |
    /// | "--- nMaxBNabors ---"             | the same number                                      |
    /// | "--- ALinksCon and ALinksWht ---" | count; node id, link count, link ids, weights, blank |
    /// | "--- BLinksCon and BLinksWht ---" | the same for side B                                  |
    /// | "--- Transform ---"               | half the number of periodic faces; the transform     |
    ///
    /// \pre as for writePeriodicNodalData()
    void writeGmPeriodicData(QTextStream& stream) const;

    /// @}
    /// \name Extrusion
    /// Made from the attributes that Solver::interpolateExtrudedFaces() leaves. The nodes of both
    /// faces of a pair stand in one list, each tied to the other face: imposing all is circular.
    /// @{

    /// \brief Writes the element faces on extruded faces and their partners: a count, then lines
    ///        "element id, local face, 1 on a fluid-fluid interface and else 0". Gathers nothing.
    void writeExtrusionFaceList(QTextStream& stream) const;

    /// \brief Writes the stencils of extruded nodes: a count, then lines "node id, link count, link
    ///        ids, weights" with a blank at their ends.
    /// \param stream where to write; its precision is 6 meanwhile
    void writeExtrusionNodalData(QTextStream& stream) const;

    /// \brief Writes the whole topic in labelled blocks.
    ///
    /// | label                 | what follows                                        |
    /// |-----------------------|-----------------------------------------------------|
    /// | none                  | number of stencils                                  |
    /// | "--- i_extrusion ---" | per stencil: node id, link count, link ids, a blank |
    /// | "--- f_extrusion ---" | per stencil: weights, each with a blank behind it   |
    /// | "--- EFaceList ---"   | count; element id, local face                       |
    ///
    /// \param stream where to write
    /// \post the stream's real number precision is 6
    void writeGmExtrusionData(QTextStream& stream) const;

    /// \brief Writes nothing: there are no nodal boundary conditions that vary in space.
    void writeSpatiallyVaryingNodalBC(QTextStream& stream) const;

    /// @}
    /// \name Moving and rotating regions
    /// Made from the attributes that Solver::replicateMovingRegions() and
    /// Solver::addPeripheralFaces() leave.
    /// @{

    /// \brief Writes the number of replica regions and, if there are any, the material of each, and
    ///        the counted maps of elements and of nodes, as lines "id in the old region, id in the
    ///        replica" in ascending order.
    ///
    /// The map of elements pairs the children of the two regions by their position in a walk, and
    /// is no correspondence of places; that of nodes is one. A node of two moving regions has a
    /// copy in each but one entry, that of the region walked last.
    void writeMovingRegionData(QTextStream& stream) const;

    /// \brief Writes the number of rotating regions and the total numbers of their rotor and stator
    ///        faces in one line; then per region its id and material, the counted pairs of rotor
    ///        and stator node, and the counted element faces of the rotor and of the stator side.
    /// \pre every vertex on a rotor side face has `stator_vertex`, and every mesh face on either
    ///      side has one element; asserted while the data is gathered
    void writeRotatingRegionData(QTextStream& stream) const;

    /// \brief The data of writeMovingRegionData() under the labels "--- nReplicate ---",
    ///        "--- RepElems ---" and "--- RepNodes ---", which stand also if there is no replica.
    void writeGmMovingRegionData(QTextStream& stream) const;

    /// \brief The number of rotating regions, the node pairs, the rotor faces and the stator faces
    ///        under the labels "--- nRotSystems ---", "--- RotatingNodeList ---",
    ///        "--- RotorFaceList ---" and "--- StatorFaceList ---".
    ///
    /// The counted list of each region stands under a line with the region's position from 0, such
    /// as "--- 0 ---". Neither id nor material of a region is written.
    /// \pre as for writeRotatingRegionData()
    void writeGmRotatingRegionData(QTextStream& stream) const;

    /// @}

private:
    void getExtrusionData() const;
    void getPeriodicData() const;
    void getMovingRegionData() const;
    void getRotatingRegionData() const;

    // Gather a topic unless that has been done.
    void requireExtrusionData() const;
    void requirePeriodicData() const;
    void requireMovingRegionData() const;
    void requireRotatingRegionData() const;

    void clearPeriodicData() const;
    void sortPeriodicData() const;

    int faceCount(QList<QList<ElementFaceData>>& lists) const;
    void removeDuplicates(QList<int>& values) const;
    void removeDuplicates(QList<LinkData>& values) const;

    Model* model_;
    Mesh* mesh_;
    mutable QList<LinkData> extrusionLinks_;
    mutable QList<ElementFaceData> extrusionFaces_;
    mutable int periodicFaceCount_ = 0;
    mutable QMap<int, int> nodePeriodicStatus_;
    mutable QList<ElementFaceData> periodicAFaces_;
    mutable QList<ElementFaceData> periodicBFaces_;
    mutable QList<int> periodicANodes_;
    mutable QList<int> periodicBNodes_;
    mutable QList<LinkData> periodicALinks_;
    mutable QList<LinkData> periodicBLinks_;
    mutable QList<int> rotatingSystems_;
    mutable QList<QList<ElementFaceData>> rotorFaces_;
    mutable QList<QList<ElementFaceData>> statorFaces_;
    mutable QList<QList<std::pair<int, int>>> rotatingNodes_;
    mutable QList<int> replicaMaterials_;
    mutable QMap<int, int> replicaElements_;
    mutable QMap<int, int> replicaNodes_;
};

} // namespace Ovra::Geo
