#pragma once

#include "Database.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEdge.h"
#include "ModelFace.h"
#include "ModelVertex.h"

#include <QList>

#include <algorithm>
#include <functional>
#include <random>
#include <utility>
#include <vector>

/// \brief A database that is filled by hand, entity by entity.
class SurfaceMesh
{
public:
    using MeshEntity = Ovra::Geo::MeshEntity;
    using MeshVertex = Ovra::Geo::MeshVertex;
    using ModelEntity = Ovra::Geo::ModelEntity;
    using Vector = Ovra::Geo::Vector;

    Ovra::Geo::Database* database() { return &database_; }
    Ovra::Geo::Model* model() { return database_.model(); }
    Ovra::Geo::Mesh* mesh() { return database_.mesh(); }

    ModelEntity* addModelEntity(int dimension, int id = 0)
    {
        ModelEntity* entity = ModelEntity::create(dimension);
        entity->setId(id);
        model()->add(entity);
        return entity;
    }

    /// \brief A planar face, or a planar edge, which stands for a face in a planar model.
    ModelEntity* addFace(int dimension = 2, int id = 0)
    {
        ModelEntity* face = addModelEntity(dimension, id);
        setPlanar(face, true);
        return face;
    }

    static void setPlanar(ModelEntity* face, bool planar)
    {
        if (face->dimension() == 2) {
            static_cast<Ovra::Geo::ModelFace*>(face)->setPlanar(planar);
        } else {
            static_cast<Ovra::Geo::ModelEdge*>(face)->setPlanar(planar);
        }
    }

    static void link(ModelEntity* a, ModelEntity* b)
    {
        a->addAdjacency(b);
        b->addAdjacency(a);
    }

    MeshVertex* addVertex(const Vector& point, int id = 0)
    {
        auto* vertex = new MeshVertex;
        vertex->setId(id);
        vertex->setPoint(point);
        mesh()->add(vertex);
        return vertex;
    }

    /// \brief A mesh entity of its parent's dimension, without upward adjacencies.
    MeshEntity* addElement(ModelEntity* parent, const QList<MeshVertex*>& vertices, int id = 0)
    {
        MeshEntity* element = MeshEntity::create(parent->dimension());
        element->setId(id);
        for (MeshVertex* vertex : vertices) {
            element->addAdjacency(vertex);
        }
        mesh()->add(element);
        parent->addChild(element);
        return element;
    }

    MeshEntity* addElementAt(ModelEntity* parent, const QList<Vector>& points, int id = 0)
    {
        QList<MeshVertex*> vertices;
        for (const Vector& point : points) {
            vertices.append(addVertex(point));
        }
        return addElement(parent, vertices, id);
    }

    static QList<MeshVertex*> verticesOf(const MeshEntity* entity)
    {
        QList<MeshVertex*> result;
        for (int i = 0; i < entity->adjacencyCount(0); ++i) {
            result.append(static_cast<MeshVertex*>(entity->adjacencyAt(0, i)));
        }
        return result;
    }

private:
    Ovra::Geo::Database database_;
};

/// \brief How a patch of the unit square is meshed; see addPatch().
struct PatchSpec
{
    enum class Cells
    {
        Rising,      ///< two triangles, cut from the lower left to the upper right
        Falling,     ///< two triangles, cut the other way
        Alternating, ///< two triangles, cut now this way, now that
        Quads        ///< one quadrilateral
    };

    int columns = 1;
    int rows = 1;
    Cells cells = Cells::Rising;
    /// The largest displacement of an inner vertex as a share of the cell; vertices of the border
    /// move along it, corners stay.
    double jitter = 0.0;
    unsigned seed = 1;
    /// Turns the normals round.
    bool flipped = false;
};

/// \brief Where a point (u, v) of the unit square lies in space.
using Placement = std::function<Ovra::Geo::Vector(double, double)>;

/// \brief Displacements of count values, each the negative of its mirror image, so that their mean
///        stays: that of the vertices is what the library computes the transform from.
inline std::vector<double> mirroredJitter(size_t count, double amplitude, std::mt19937* engine)
{
    std::uniform_real_distribution<double> displacement(-amplitude, amplitude);
    std::vector<double> result(count, 0.0);
    for (size_t i = 0; i < count / 2; ++i) {
        result[i] = displacement(*engine);
        result[count - 1 - i] = -result[i];
    }
    return result;
}

/// \brief Meshes \a face with a structured, jittered grid over the unit square.
inline void addPatch(SurfaceMesh* surface, SurfaceMesh::ModelEntity* face, const PatchSpec& spec,
                     const Placement& place)
{
    using Cells = PatchSpec::Cells;
    const auto columns = static_cast<size_t>(spec.columns);
    const auto rows = static_cast<size_t>(spec.rows);
    const double du = 1.0 / spec.columns;
    const double dv = 1.0 / spec.rows;
    std::mt19937 engine(spec.seed);
    const size_t count = (columns + 1) * (rows + 1);
    const std::vector<double> jitterU = mirroredJitter(count, spec.jitter * du, &engine);
    const std::vector<double> jitterV = mirroredJitter(count, spec.jitter * dv, &engine);

    std::vector<SurfaceMesh::MeshVertex*> vertices;
    for (size_t j = 0; j <= rows; ++j) {
        for (size_t i = 0; i <= columns; ++i) {
            const bool inU = i > 0 && i < columns;
            const bool inV = j > 0 && j < rows;
            const size_t index = vertices.size();
            const double u = static_cast<double>(i) * du + (inU ? jitterU[index] : 0.0);
            const double v = static_cast<double>(j) * dv + (inV ? jitterV[index] : 0.0);
            vertices.push_back(surface->addVertex(place(u, v)));
        }
    }
    const auto addCell = [&](QList<SurfaceMesh::MeshVertex*> corners) {
        if (spec.flipped) {
            std::reverse(corners.begin(), corners.end());
        }
        surface->addElement(face, corners);
    };
    for (size_t j = 0; j < rows; ++j) {
        for (size_t i = 0; i < columns; ++i) {
            auto* a = vertices[j * (columns + 1) + i];
            auto* b = vertices[j * (columns + 1) + i + 1];
            auto* c = vertices[(j + 1) * (columns + 1) + i + 1];
            auto* d = vertices[(j + 1) * (columns + 1) + i];
            const bool rises = spec.cells == Cells::Rising ||
                               (spec.cells == Cells::Alternating && (i + j) % 2 == 0);
            if (spec.cells == Cells::Quads) {
                addCell({a, b, c, d});
            } else if (rises) {
                addCell({a, b, c});
                addCell({a, c, d});
            } else {
                addCell({a, b, d});
                addCell({b, c, d});
            }
        }
    }
}

/// \brief Meshes an edge of a planar model from \a start to \a end; jitter as in addPatch().
inline void addLine(SurfaceMesh* surface, SurfaceMesh::ModelEntity* edge, int segments,
                    double jitter, unsigned seed, const SurfaceMesh::Vector& start,
                    const SurfaceMesh::Vector& end)
{
    std::mt19937 engine(seed);
    const auto count = static_cast<size_t>(segments) + 1;
    const std::vector<double> displacements = mirroredJitter(count, jitter / segments, &engine);
    SurfaceMesh::MeshVertex* previous = nullptr;
    for (size_t i = 0; i < count; ++i) {
        const bool inside = i > 0 && i + 1 < count;
        const double t = static_cast<double>(i) / segments + (inside ? displacements[i] : 0.0);
        auto* vertex = surface->addVertex((1.0 - t) * start + t * end);
        if (previous) {
            surface->addElement(edge, {previous, vertex});
        }
        previous = vertex;
    }
}
