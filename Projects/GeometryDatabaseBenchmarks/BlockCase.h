#pragma once

#include "Database.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QList>

#include <array>
#include <memory>

/// \file
/// \brief The cases that the benchmarks run on.

namespace Benchmarks
{

/// \brief What the cells of a block are filled with.
enum class Filling
{
    Tetrahedra, ///< six a cell, in Kuhn's subdivision, so that neighbouring cells conform
    Wedges      ///< two a cell, the triangles in the planes of constant z
};

/// \brief A cube of unit cells, cut into a fluid and a solid half, as a mesher would leave it.
///
/// Region 1 (fluid) takes the cells of small x, region 2 (solid) the others. Face 1 bounds the
/// fluid outside, face 2 the solid, and face 3 lies between them; all three carry their mesh faces.
/// Vertices are classified on the face or region that they lie on. Upward adjacencies are not set.
class BlockCase
{
public:
    /// \param cells   number of cells along each edge of the cube, at least 2
    /// \param filling the kind of the elements
    /// \param stride  distance of consecutive ids: 1 is dense, more leaves gaps
    explicit BlockCase(int cells, Filling filling = Filling::Tetrahedra, int stride = 1);

    Ovra::Geo::Database& database() { return *database_; }
    Ovra::Geo::Mesh& mesh() { return *database_->mesh(); }
    Ovra::Geo::Model& model() { return *database_->model(); }

    /// \brief Adds the edges and faces of all tetrahedra that are not there yet, without parents.
    /// \pre the block is of tetrahedra
    void addInterior();

    /// \brief Number of volume elements.
    int elements() { return mesh().count(3); }

    /// \brief Number of mesh entities of all dimensions.
    int entities();

    /// \brief Number of cells along an edge for about \p elements volume elements.
    static int cellsFor(int elements, Filling filling = Filling::Tetrahedra);

private:
    void addModel();
    void addVertices();
    void addCells();
    void addSides();
    void addLayer(int axis, int layer);
    void addElement(const QList<int>& corners, Ovra::Geo::ModelEntity* region, int x, int y, int z);
    void addFace(const QList<Ovra::Geo::MeshEntity*>& vertices, Ovra::Geo::ModelEntity* face);
    void addInteriorAt(int x, int y, int z);
    void addInterior(const std::array<int, 3>& at, const QList<int>& corners);
    bool isInBlock(const std::array<int, 3>& at, int farCorner) const;
    bool isOnSide(const std::array<int, 3>& at, int farCorner) const;
    Ovra::Geo::MeshEntity* addSide(int dimension, const QList<Ovra::Geo::MeshEntity*>& vertices);
    Ovra::Geo::MeshEntity* vertexAt(int x, int y, int z) const;
    Ovra::Geo::ModelEntity* entityOfVertex(int x, int y, int z) const;
    int nextId(int dimension);

    int cells_;
    Filling filling_;
    int stride_;
    int lastIds_[4] = {0, 0, 0, 0};
    std::unique_ptr<Ovra::Geo::Database> database_;
    QList<Ovra::Geo::MeshEntity*> vertices_;
};

/// \brief The dense tetrahedral block of about \p elements elements with its upward lists set;
/// built
///        once for each size and kept, for benchmarks that change nothing.
BlockCase& sharedBlock(int elements);

} // namespace Benchmarks
