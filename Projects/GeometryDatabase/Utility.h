#pragma once

#include "Box.h"
#include "ElementFaceData.h"
#include "GeometryDatabaseExport.h"
#include "Vector.h"

#include <QList>
#include <QSet>
#include <QVarLengthArray>

#include <utility>

namespace Ovra::Geo
{

class AttributeType;
class MeshEntity;
class MeshVertex;
class Model;
class ModelEdge;
class ModelEntity;
class ModelFace;
class ModelVertex;

/// \brief Static operations on elements, model and mesh: local numbering of element faces, queries
///        on the classification, point location and interpolation weights.
///
/// Nothing here holds state, owns what it is given or changes anything, except copyAttribute() and
/// replaceAdjacencies(). Pointers must not be null unless an operation says otherwise.
///
/// Node order of the elements: the number is the position in the vertex list. A local face number
/// is the row in the table of the element's kind; the solver input names boundary faces by it, so
/// that the order of the rows is part of that format. Rows are sets: they record no orientation.
///
/// \code{.unparsed}
///   triangle, faces are edges          quadrilateral, faces are edges
///
///     2                                  3-----------2
///     |\          0: 0 1                 |           |      0: 0 1
///     | \         1: 1 2                 |           |      1: 1 2
///     |  \        2: 2 0                 |           |      2: 2 3
///     0---1                              0-----------1      3: 3 0
///
///   tetrahedron                        pyramid
///
///          3                                   4
///         /|\                                 /|\           0: 3 2 1 0
///        / | \      0: 1 2 3                 / | \          1: 0 1 4
///       /  |  \     1: 0 3 2                /  |  \         2: 1 2 4
///      0 - | - 2    2: 0 1 3               3 - | - 2        3: 2 3 4
///       \  |  /     3: 0 2 1              /    |  /         4: 3 0 4
///        \ | /                           0---------1
///          1
///
///   wedge                              hexahedron
///
///      3-------5                           7-----------6
///      |\     /|    0: 0 1 4 3            /|          /|    0: 0 4 7 3
///      | \   / |    1: 1 2 5 4           4-----------5 |    1: 1 2 6 5
///      |   4   |    2: 2 0 3 5           | |         | |    2: 0 1 5 4
///      0 - | - 2    3: 0 2 1             | 3---------|-2    3: 2 3 7 6
///       \  |  /     4: 3 4 5             |/          |/     4: 0 3 2 1
///        \ | /                           0-----------1      5: 4 5 6 7
///          1
/// \endcode
class OVRA_GEO_EXPORT Utility
{
public:
    Utility() = delete;

    /// \name Local numbering of elements
    /// @{

    /// \brief The positions in \p element's vertex list of the vertices of \p subEntity.
    ///
    /// A vertex that \p element lists twice counts with its last position, one that it does not
    /// list as position 0.
    static QSet<int> getLocalVertexIndexSet(MeshEntity* subEntity, MeshEntity* element);

    /// \brief The local face number of \p face in \p element, or -1 if its vertices are no row of
    ///        the table of \p element's kind.
    ///
    /// Foreign vertices count as position 0, see getLocalVertexIndexSet(), and may complete a row.
    /// \param face an edge for an \p element of dimension 2, a face for one of dimension 3
    /// \param element of any kind shown above; another number of vertices gives -1
    static int getLocalFaceIndex(MeshEntity* face, MeshEntity* element);

    /// @}
    /// \name Classification
    /// @{

    /// \brief All vertices of \p entity's mesh children, that is of the elements of its own
    ///        dimension.
    static QSet<MeshEntity*> getMeshVerticesOnModelEntity(ModelEntity const* entity);

    /// \brief Whether the region's attribute MaterialType is "fluid" or one of the devices that the
    ///        fluid flows through: "resistance", "internal_fan", "check_valve", "rotating_device",
    ///        "centrifugal_fan", "heat_exchanger", "heat_sink". Exact and case sensitive.
    static bool isFluid(ModelEntity* region);

    /// \brief Whether the region's attribute MaterialType names a device that gets no elements of
    ///        its own: "ecomp_2resist", "ecomp_tec", "led_device". Exact and case sensitive.
    static bool isUnmeshedDevice(ModelEntity* region);

    /// \brief Whether the number of neighbours of \p face one dimension up is not 2.
    /// \param face an entity of any dimension; true for a region, which has nothing above it
    static bool isExternalFace(ModelEntity* face);

    /// \brief Whether all regions at \p face, and at \p otherFace, are fluid; true for faces
    ///        without regions.
    /// \param face,otherFace the second may be null
    static bool isFluidFluidInterface(ModelEntity* face, ModelEntity* otherFace);

    /// \brief The first neighbour of \p face one dimension up that is not \p region, or null.
    static ModelEntity* getOtherAdjacentRegion(ModelEntity* face, ModelEntity* region);

    /// \brief The other entities of \p entity's dimension that share a bounding entity with it.
    ///
    /// If \p entity has the attribute MeshByExtrusion, a bounding entity with a NonExtrudedFace
    /// other than 0 is replaced by the entity of that id, which must exist in \p model.
    static QSet<ModelEntity*> getAdjacentRegions(ModelEntity* entity, Model* model);

    /// \brief One of getAdjacentRegions() whose MaterialType is exactly "fluid", without
    ///        NewMotionRegion and not IsSuppressed; null if there is none.
    static ModelEntity* getAdjacentFluidRegion(ModelEntity* entity, Model* model);

    /// \brief Whether an element of any region of \p model is no simplex; the regions of a planar
    ///        model are its faces.
    static bool hasNonSimplexMeshEntities(Model* model);

    /// \brief Whether a mesh child of \p entity is no simplex: not of 3 vertices on a face, not of
    ///        4 elsewhere.
    static bool hasNonSimplexMeshEntities(ModelEntity* entity);

    /// \brief Copies the attribute \p type, if \p source has it; otherwise \p target keeps its own.
    static void copyAttribute(ModelEntity* source, ModelEntity* target, AttributeType const& type);

    /// \brief Replaces \p oldEntity by \p newEntity as a neighbour of \p entity, and moves the back
    ///        link; \p newEntity always gets a back link, also a second one.
    /// \return false, with nothing changed, if neither of \p entity and \p oldEntity lists the
    ///         other
    static bool replaceAdjacencies(MeshEntity* entity, MeshEntity* oldEntity,
                                   MeshEntity* newEntity);

    /// \brief Replaces \p oldEntity by \p newEntity as a neighbour of \p entity, and moves the back
    ///        link; \p newEntity gets a back link only if it has none.
    /// \return false, with nothing changed, unless \p entity and \p oldEntity list each other
    static bool replaceAdjacencies(ModelEntity* entity, ModelEntity* oldEntity,
                                   ModelEntity* newEntity);

    /// \brief The first two vertices of \p edge, counter-clockwise about the stored centroid and
    ///        normal of \p face; swapped if the edge runs through the centroid.
    ///
    /// An edge with fewer than two vertices stops the process with the assertion "i.hasNext()".
    static std::pair<ModelVertex*, ModelVertex*> getCounterClockwiseEdge(ModelFace const* face,
                                                                         ModelEdge const* edge);

    /// \brief For each mesh child of \p face and each element in its list 3: the element's face,
    ///        not sorted.
    /// \param face,otherFace the second may be null; with \p face it decides ElementFaceData::fluidInterface_, see
    ///                  isFluidFluidInterface()
    static QList<ElementFaceData> getElementFaceDataOnModelFace(ModelEntity* face,
                                                                ModelEntity* otherFace);

    /// \brief The box about the mesh children of \p entity; the default box if there are none.
    static Box getMeshBoundingBox(ModelEntity* entity);

    /// @}
    /// \name Point location
    /// @{

    /// \brief Weights of \p entity's vertices, in their order, that express \p point.
    ///
    /// On an edge the weights are linear. On a polygon they are mean value coordinates (M. S.
    /// Floater, Mean value coordinates, Computer Aided Geometric Design 20, 2003), oriented by the
    /// first three vertices and with distances taken in space.
    /// \param point must not coincide with a corner of a polygon, nor lie on the line of a side
    ///              beyond its ends: the result would be not a number
    /// \param entity an edge, or a face of at least three vertices
    /// \param tolerance as height over edge length, below which a point counts as lying on an edge
    ///                  of the polygon; as distance over summed distances to the ends, below which
    ///                  it snaps to a corner; and as the weight below which a weight is dropped and
    ///                  the others scaled up
    static QVarLengthArray<double, 4> computeWeights(const Vector& point, MeshEntity* entity,
                                                     double tolerance);

    /// \brief Whether \p point lies inside \p entity, an edge or a convex polygon.
    ///
    /// On an edge: strictly between the ends in projection. On a polygon the boundary counts as
    /// inside, and the distance from its plane is not looked at.
    static bool containsPoint(const Vector& point, MeshEntity* entity);

    /// \brief Distance from \p point to the segment between two vertices at different points.
    static double distanceTo(const Vector& point, MeshVertex* first, MeshVertex* second);

    /// \brief The first element about \p vertex, of \p face's dimension and classified on the
    ///        entity of \p face's id, that contains \p point; null if there is none.
    /// \pre the upward lists of \p vertex are set
    static MeshEntity* findEnclosingMeshFace(const Vector& point, MeshVertex* vertex,
                                             ModelEntity* face);

    /// \brief The element about \p vertex, of \p face's dimension and classified on the entity of
    ///        \p face's id, of whose two sides at \p vertex one is nearest to \p point; the first
    ///        of several, null if there is none within 1e10.
    /// \pre the upward lists of \p vertex are set
    static MeshEntity* findClosestMeshFace(const Vector& point, MeshVertex* vertex,
                                           ModelEntity* face);

    /// \brief The first vertex in \p face's list of vertices at exactly \p point, or null.
    static ModelVertex* findModelVertexOnFace(const Vector& point, ModelEntity* face);

    /// @}

private:
    static bool init();

    static QList<QSet<int>> TriFaces;
    static QList<QSet<int>> QuadFaces;
    static QList<QSet<int>> TetFaces;
    static QList<QSet<int>> PyramidFaces;
    static QList<QSet<int>> WedgeFaces;
    static QList<QSet<int>> HexFaces;
    static bool init_;
};

} // namespace Ovra::Geo
