#pragma once

#include "GridMesh.h"
#include "MeshChecks.h"

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTest>

#include <utility>

/// \brief What the tests of the operations that double parts of a mesh have in common.
namespace GridCases
{

using Ovra::Geo::MeshEntity;
using Ovra::Geo::ModelEntity;

/// \brief Regions 1, 2, ... one behind the other along x, one cell each.
inline GridSpec row(const QStringList& materials)
{
    GridSpec spec;
    spec.cells = {static_cast<int>(materials.size()), 1, 1};
    spec.regionOf = [](int x, int, int) { return x + 1; };
    for (int i = 0; i < materials.size(); ++i) {
        spec.materials[i + 1] = materials.at(i);
    }
    return spec;
}

/// \brief The numbers of entities of the model and of the mesh, by dimension in turn.
inline QList<int> counts(GridMesh& grid)
{
    QList<int> result;
    for (int d = 0; d < 4; ++d) {
        result << grid.model()->count(d) << grid.mesh()->count(d);
    }
    return result;
}

/// \brief The first mesh entity on \p entity by id, or null.
inline MeshEntity* onlyChild(const ModelEntity* entity)
{
    return MeshChecks::sorted(entity->childIterator()).value(0);
}

/// \brief A mesh edge on a model edge of its own, which bounds \p face unless that is null; the
///        vertices list the edge.
inline MeshEntity* addMeshEdge(GridMesh& grid, MeshEntity* first, MeshEntity* second,
                               ModelEntity* face = nullptr)
{
    ModelEntity* modelEdge = ModelEntity::create(1);
    grid.model()->add(modelEdge);
    if (face) {
        face->addAdjacency(modelEdge);
        modelEdge->addAdjacency(face);
    }
    MeshEntity* edge = MeshEntity::create(1);
    for (MeshEntity* vertex : {first, second}) {
        edge->addAdjacency(vertex);
        vertex->addAdjacency(edge);
    }
    grid.mesh()->add(edge);
    modelEdge->addChild(edge);
    return edge;
}

/// \brief An element of \p region with the vertices of the mesh face and a point of its own, which
///        stands last in the list of the mesh face.
inline MeshEntity* addElementOver(GridMesh& grid, MeshEntity* meshFace, ModelEntity* region)
{
    MeshEntity* element = MeshEntity::create(region->dimension());
    auto* tip = new Ovra::Geo::MeshVertex;
    tip->setPoint(meshFace->centroid() + Ovra::Geo::Vector(9, 9, 9));
    grid.mesh()->add(tip);
    region->addChild(tip);
    QList<MeshEntity*> vertices = MeshChecks::neighbours(meshFace, 0);
    vertices.append(tip);
    for (MeshEntity* vertex : std::as_const(vertices)) {
        element->addAdjacency(vertex);
        vertex->addAdjacency(element);
    }
    grid.mesh()->add(element);
    region->addChild(element);
    meshFace->addAdjacency(element);
    return element;
}

/// \brief Columns and rows for bigGrid(): each kind of element, in space and in the plane, with ids
///        in order and shuffled.
inline void addBigGridRows()
{
    QTest::addColumn<int>("shape");
    QTest::addColumn<bool>("planar");
    QTest::addColumn<unsigned>("seed");
    using Shape = GridSpec::Shape;
    for (const bool planar : {false, true}) {
        for (const Shape shape : {Shape::Block, Shape::Wedge, Shape::Simplex}) {
            for (const unsigned seed : {0U, 5U}) {
                QTest::addRow("shape %d planar %d seed %u", static_cast<int>(shape),
                              static_cast<int>(planar), seed)
                    << static_cast<int>(shape) << planar << seed;
            }
        }
    }
}

/// \brief The grid of the present row; its regions and materials are still to be told.
inline GridSpec bigGrid()
{
    QFETCH(int, shape);
    QFETCH(bool, planar);
    QFETCH(unsigned, seed);
    GridSpec spec;
    spec.cells = {8, 6, 4};
    spec.shape = static_cast<GridSpec::Shape>(shape);
    spec.planar = planar;
    spec.idSeed = seed;
    return spec;
}

/// \brief Regions as they were before an operation, which must come out of it with as many elements
///        of the same measure, whatever vertices they have now.
class RegionRecords
{
public:
    /// \param count of the regions, whose ids start at 1
    RegionRecords(GridMesh& grid, int count)
        : grid_(grid)
    {
        for (int id = 1; id <= count; ++id) {
            const ModelEntity* region = grid.region(id);
            records_[id] = {region->childCount(), MeshChecks::meshMeasure(region),
                            MeshChecks::verticesOn(region)};
        }
    }

    double measure(int id) const { return records_[id].measure; }
    QSet<MeshEntity*> vertices(int id) const { return records_[id].vertices; }

    /// \brief The first thing wrong with the regions, or with any pointer or upward list of the
    ///        mesh; empty for nothing.
    QString findDamage() const
    {
        for (auto record = records_.cbegin(); record != records_.cend(); ++record) {
            const ModelEntity* region = grid_.region(record.key());
            if (region->childCount() != record->elements) {
                return QStringLiteral("region %1 has other elements").arg(record.key());
            }
            if (!qFuzzyCompare(1.0 + MeshChecks::meshMeasure(region), 1.0 + record->measure)) {
                return QStringLiteral("region %1 has another measure").arg(record.key());
            }
        }
        const QString dead = MeshChecks::findDeadPointer(grid_.database());
        return dead.isEmpty() ? MeshChecks::findStaleUpwardList(grid_.database()) : dead;
    }

private:
    struct Record
    {
        int elements = 0;
        double measure = 0.0;
        QSet<MeshEntity*> vertices;
    };

    GridMesh& grid_;
    QMap<int, Record> records_;
};

} // namespace GridCases
