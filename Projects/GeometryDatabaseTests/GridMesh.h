#pragma once

#include "Database.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QString>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>
#include <utility>
#include <vector>

/// \brief How a GridMesh is made.
struct GridSpec
{
    enum class Shape
    {
        Block,  ///< hexahedra, or quadrilaterals in a planar grid
        Wedge,  ///< two wedges to a cell
        Simplex ///< six tetrahedra to a cell, or two triangles in a planar grid
    };

    std::array<int, 3> cells = {1, 1, 1}; ///< the third is not looked at in a planar grid
    Shape shape = Shape::Block;
    bool planar = false;
    /// The region of the cell at the three indices; 0 leaves the cell out of the model.
    std::function<int(int, int, int)> regionOf;
    /// `material_type` of each region.
    QMap<int, QString> materials;
    /// Regions that get no elements.
    QSet<int> unmeshed;
    /// 0 numbers vertices and elements as they come, any other value shuffles their ids.
    unsigned idSeed = 0;
};

/// \brief A meshed box of unit cells in several regions, with upward adjacencies set.
///
/// There is one model face for each two regions that touch and one for each region that touches the
/// outside; its mesh faces cover it, except where neither side has elements. Vertices on such faces
/// have one of them as parent, all others their region. In a planar grid edges stand for faces and
/// faces for regions.
class GridMesh
{
public:
    explicit GridMesh(GridSpec spec)
        : spec_(std::move(spec))
        , regionDimension_(spec_.planar ? 2 : 3)
    {
        if (spec_.planar) {
            spec_.cells[2] = 1;
        }
        addVertices();
        addRegions();
        addElements();
        addSides();
        removeUnusedVertices();
        database_.mesh()->setUpwardAdjacencies();
    }

    GridMesh(const GridMesh&) = delete;
    GridMesh& operator=(const GridMesh&) = delete;

    Ovra::Geo::Database* database() { return &database_; }
    Ovra::Geo::Model* model() { return database_.model(); }
    Ovra::Geo::Mesh* mesh() { return database_.mesh(); }

    int regionDimension() const { return regionDimension_; }
    int faceDimension() const { return regionDimension_ - 1; }

    Ovra::Geo::ModelEntity* region(int id) { return model()->entity(regionDimension_, id); }

    /// \brief The model face between two regions, 0 being the outside; null if they don't touch.
    Ovra::Geo::ModelEntity* face(int a, int b) { return faces_.value(std::minmax(a, b)); }

    /// \brief The vertex that was made at that point.
    Ovra::Geo::MeshVertex* vertexAt(int x, int y, int z) { return vertices_[vertexIndex(x, y, z)]; }

private:
    using Vertex = Ovra::Geo::MeshVertex;
    using Entity = Ovra::Geo::MeshEntity;
    using Parent = Ovra::Geo::ModelEntity;

    // A side: the element that it was first met on, its vertices, and the elements that have it.
    struct Side
    {
        QList<Entity*> vertices;
        Entity* element = nullptr;
        int regionAcross = 0;
    };

    size_t vertexIndex(int x, int y, int z) const
    {
        return static_cast<size_t>((z * (spec_.cells[1] + 1) + y) * (spec_.cells[0] + 1) + x);
    }

    std::vector<int> idsFor(size_t count)
    {
        std::vector<int> ids(count);
        std::iota(ids.begin(), ids.end(), 1);
        if (spec_.idSeed != 0) {
            std::shuffle(ids.begin(), ids.end(), std::mt19937(spec_.idSeed));
        }
        return ids;
    }

    void addVertices()
    {
        const int layers = spec_.planar ? 0 : spec_.cells[2];
        for (int z = 0; z <= layers; ++z) {
            for (int y = 0; y <= spec_.cells[1]; ++y) {
                for (int x = 0; x <= spec_.cells[0]; ++x) {
                    auto* vertex = new Vertex;
                    vertex->setPoint(Ovra::Geo::Vector(x, y, z));
                    vertices_.push_back(vertex);
                }
            }
        }
        const std::vector<int> ids = idsFor(vertices_.size());
        for (size_t i = 0; i < vertices_.size(); ++i) {
            vertices_[i]->setId(ids[i]);
            mesh()->add(vertices_[i]);
        }
    }

    int regionAt(int x, int y, int z) const
    {
        const bool inside = x >= 0 && y >= 0 && z >= 0 && x < spec_.cells[0] &&
                            y < spec_.cells[1] && z < spec_.cells[2];
        return inside ? spec_.regionOf(x, y, z) : 0;
    }

    template <typename Visit>
    void forEachCell(Visit visit)
    {
        for (int z = 0; z < spec_.cells[2]; ++z) {
            for (int y = 0; y < spec_.cells[1]; ++y) {
                for (int x = 0; x < spec_.cells[0]; ++x) {
                    visit(x, y, z);
                }
            }
        }
    }

    void addRegions()
    {
        forEachCell([this](int x, int y, int z) {
            const int id = regionAt(x, y, z);
            if (id == 0 || region(id)) {
                return;
            }
            Parent* added = Parent::create(regionDimension_);
            added->setId(id);
            model()->add(added);
            if (spec_.materials.contains(id)) {
                added->attributes().insert(Ovra::Geo::AttributeType::MaterialType,
                                           spec_.materials.value(id));
            }
        });
    }

    std::vector<std::vector<int>> pattern() const
    {
        using Shape = GridSpec::Shape;
        if (spec_.planar && spec_.shape == Shape::Block) {
            return {{0, 1, 2, 3}};
        }
        if (spec_.planar) {
            return {{0, 1, 2}, {0, 2, 3}};
        }
        if (spec_.shape == Shape::Block) {
            return {{0, 1, 2, 3, 4, 5, 6, 7}};
        }
        if (spec_.shape == Shape::Wedge) {
            return {{0, 1, 2, 4, 5, 6}, {0, 2, 3, 4, 6, 7}};
        }
        return {{0, 1, 2, 6}, {0, 2, 3, 6}, {0, 3, 7, 6}, {0, 7, 4, 6}, {0, 4, 5, 6}, {0, 5, 1, 6}};
    }

    std::vector<Vertex*> corners(int x, int y, int z)
    {
        std::vector<Vertex*> result;
        for (int level = 0; level < (spec_.planar ? 1 : 2); ++level) {
            result.push_back(vertexAt(x, y, z + level));
            result.push_back(vertexAt(x + 1, y, z + level));
            result.push_back(vertexAt(x + 1, y + 1, z + level));
            result.push_back(vertexAt(x, y + 1, z + level));
        }
        return result;
    }

    void addElements()
    {
        std::vector<std::pair<Entity*, int>> elements;
        forEachCell([&](int x, int y, int z) {
            const int id = regionAt(x, y, z);
            if (id == 0 || spec_.unmeshed.contains(id)) {
                return;
            }
            const std::vector<Vertex*> cell = corners(x, y, z);
            for (const std::vector<int>& positions : pattern()) {
                Entity* element = Entity::create(regionDimension_);
                for (const int position : positions) {
                    element->addAdjacency(cell[static_cast<size_t>(position)]);
                }
                elements.emplace_back(element, id);
            }
        });
        const std::vector<int> ids = idsFor(elements.size());
        for (size_t i = 0; i < elements.size(); ++i) {
            elements[i].first->setId(ids[i]);
            mesh()->add(elements[i].first);
            region(elements[i].second)->addChild(elements[i].first);
            elements_.append(elements[i].first);
        }
    }

    static std::vector<std::vector<int>> localSides(int dimension, int vertexCount)
    {
        if (dimension == 2 && vertexCount == 3) {
            return {{0, 1}, {1, 2}, {2, 0}};
        }
        if (dimension == 2) {
            return {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
        }
        if (vertexCount == 4) {
            return {{1, 2, 3}, {0, 3, 2}, {0, 1, 3}, {0, 2, 1}};
        }
        if (vertexCount == 6) {
            return {{0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}, {0, 2, 1}, {3, 4, 5}};
        }
        return {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4}, {2, 3, 7, 6}, {0, 3, 2, 1}, {4, 5, 6, 7}};
    }

    int regionBeyond(const Side& side) const
    {
        Ovra::Geo::Vector middle;
        for (const Entity* vertex : side.vertices) {
            middle += vertex->centroid() / static_cast<double>(side.vertices.size());
        }
        const Ovra::Geo::Vector beyond = middle + (middle - side.element->centroid()) * 0.01;
        const auto cell = [](double value) { return static_cast<int>(std::floor(value)); };
        return regionAt(cell(beyond.x()), cell(beyond.y()), spec_.planar ? 0 : cell(beyond.z()));
    }

    void addSides()
    {
        QSet<QList<int>> done;
        for (Entity* element : std::as_const(elements_)) {
            const auto sides = localSides(regionDimension_, element->adjacencyCount(0));
            for (const std::vector<int>& positions : sides) {
                Side side;
                side.element = element;
                QList<int> key;
                for (const int position : positions) {
                    side.vertices.append(element->adjacencyAt(0, position));
                    key.append(side.vertices.last()->id());
                }
                std::sort(key.begin(), key.end());
                if (done.contains(key)) {
                    continue;
                }
                done.insert(key);
                side.regionAcross = regionBeyond(side);
                if (side.regionAcross != element->parent()->id()) {
                    addSide(side);
                }
            }
        }
        classifyVertices();
    }

    void addSide(const Side& side)
    {
        Entity* meshFace = Entity::create(faceDimension());
        for (Entity* vertex : side.vertices) {
            meshFace->addAdjacency(vertex);
        }
        mesh()->add(meshFace);
        Parent* parent = ensureFace(side.element->parent()->id(), side.regionAcross);
        parent->addChild(meshFace);
        for (Entity* vertex : side.vertices) {
            if (!vertex->parent()) {
                parent->addChild(vertex);
            }
        }
    }

    Parent* ensureFace(int a, int b)
    {
        Parent*& face = faces_[std::minmax(a, b)];
        if (face) {
            return face;
        }
        face = Parent::create(faceDimension());
        model()->add(face);
        for (const int id : {a, b}) {
            if (id == 0) {
                continue;
            }
            region(id)->addAdjacency(face);
            face->addAdjacency(region(id));
        }
        return face;
    }

    void classifyVertices()
    {
        for (const Entity* element : std::as_const(elements_)) {
            for (int i = 0; i < element->adjacencyCount(0); ++i) {
                Entity* vertex = element->adjacencyAt(0, i);
                if (!vertex->parent()) {
                    element->parent()->addChild(vertex);
                }
            }
        }
    }

    // The inner vertices of regions without elements.
    void removeUnusedVertices()
    {
        for (Vertex*& vertex : vertices_) {
            if (vertex->parent()) {
                continue;
            }
            mesh()->remove(vertex);
            vertex = nullptr;
        }
    }

    GridSpec spec_;
    int regionDimension_;
    Ovra::Geo::Database database_;
    std::vector<Vertex*> vertices_;
    QList<Entity*> elements_;
    QMap<std::pair<int, int>, Parent*> faces_;
};
