#include "BlockCase.h"

#include "AttributeType.h"
#include "Mesh.h"
#include "MeshVertex.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Vector.h"

#include <array>
#include <cmath>
#include <map>

using namespace Ovra::Geo;

namespace Benchmarks
{

namespace
{

// The corners of a cell are numbered by their offsets, bit 0 for x, bit 1 for y, bit 2 for z.
const QList<QList<int>> cellTetrahedra{{0, 1, 3, 7}, {0, 3, 2, 7}, {0, 2, 6, 7},
                                       {0, 6, 4, 7}, {0, 4, 5, 7}, {0, 5, 1, 7}};
const QList<QList<int>> cellWedges{{0, 1, 3, 4, 5, 7}, {0, 3, 2, 4, 7, 6}};

enum ModelFaceId
{
    FluidOutside = 1,
    SolidOutside = 2,
    Interface = 3
};

void link(ModelEntity* first, ModelEntity* second)
{
    first->addAdjacency(second);
    second->addAdjacency(first);
}

} // namespace

BlockCase::BlockCase(int cells, Filling filling, int stride)
    : cells_(cells)
    , filling_(filling)
    , stride_(stride)
    , database_(std::make_unique<Database>())
{
    addModel();
    addVertices();
    addCells();
    addSides();
}

int BlockCase::entities()
{
    return mesh().count(0) + mesh().count(1) + mesh().count(2) + mesh().count(3);
}

int BlockCase::cellsFor(int elements, Filling filling)
{
    const int elementsOfCell = filling == Filling::Tetrahedra ? 6 : 2;
    return static_cast<int>(std::lround(std::cbrt(elements / elementsOfCell)));
}

void BlockCase::addModel()
{
    for (const char* material : {"fluid", "solid"}) {
        ModelEntity* region = ModelEntity::create(3);
        region->attributes().insert(AttributeType::MaterialType, QString::fromLatin1(material));
        region->attributes().insert(AttributeType::MaterialId, model().count(3) + 1);
        model().add(region);
    }
    for (int id : {FluidOutside, SolidOutside, Interface}) {
        ModelEntity* face = ModelEntity::create(2);
        face->setId(id);
        model().add(face);
    }
    link(model().entity(2, FluidOutside), model().entity(3, 1));
    link(model().entity(2, SolidOutside), model().entity(3, 2));
    link(model().entity(2, Interface), model().entity(3, 1));
    link(model().entity(2, Interface), model().entity(3, 2));
}

void BlockCase::addVertices()
{
    for (int z = 0; z <= cells_; ++z) {
        for (int y = 0; y <= cells_; ++y) {
            for (int x = 0; x <= cells_; ++x) {
                auto* vertex = new MeshVertex;
                vertex->setPoint(Vector(x, y, z));
                vertex->setId(nextId(0));
                mesh().add(vertex);
                entityOfVertex(x, y, z)->addChild(vertex);
                vertices_.append(vertex);
            }
        }
    }
}

void BlockCase::addCells()
{
    const auto& shapes = filling_ == Filling::Tetrahedra ? cellTetrahedra : cellWedges;
    for (int z = 0; z < cells_; ++z) {
        for (int y = 0; y < cells_; ++y) {
            for (int x = 0; x < cells_; ++x) {
                for (const QList<int>& corners : shapes) {
                    addElement(corners, model().entity(3, x < cells_ / 2 ? 1 : 2), x, y, z);
                }
            }
        }
    }
}

void BlockCase::addElement(const QList<int>& corners, ModelEntity* region, int x, int y, int z)
{
    MeshEntity* element = MeshEntity::create(3);
    for (int corner : corners) {
        element->addAdjacency(vertexAt(x + (corner & 1), y + (corner >> 1 & 1), z + (corner >> 2)));
    }
    element->setId(nextId(3));
    mesh().add(element);
    region->addChild(element);
}

void BlockCase::addSides()
{
    for (int axis = 0; axis < 3; ++axis) {
        addLayer(axis, 0);
        addLayer(axis, cells_);
    }
    addLayer(0, cells_ / 2);
}

void BlockCase::addLayer(int axis, int layer)
{
    const bool inside = layer != 0 && layer != cells_;
    const bool quadrilaterals = filling_ == Filling::Wedges && axis != 2;
    for (int second = 0; second < cells_; ++second) {
        for (int first = 0; first < cells_; ++first) {
            const auto corner = [&](int i, int j) {
                std::array<int, 3> at{};
                at[static_cast<std::size_t>(axis)] = layer;
                at[axis == 0 ? 1 : 0] = first + i;
                at[axis == 2 ? 1 : 2] = second + j;
                return vertexAt(at[0], at[1], at[2]);
            };
            const int x = axis == 0 ? layer : first;
            const bool fluid = axis == 0 ? layer == 0 : x < cells_ / 2;
            ModelEntity* face =
                model().entity(2, inside ? Interface : (fluid ? FluidOutside : SolidOutside));
            if (quadrilaterals) {
                addFace({corner(0, 0), corner(1, 0), corner(1, 1), corner(0, 1)}, face);
                continue;
            }
            // Kuhn's subdivision cuts every side of a cell along the diagonal from its low corner.
            addFace({corner(0, 0), corner(1, 0), corner(1, 1)}, face);
            addFace({corner(0, 0), corner(1, 1), corner(0, 1)}, face);
        }
    }
}

void BlockCase::addFace(const QList<MeshEntity*>& vertices, ModelEntity* face)
{
    face->addChild(addSide(2, vertices));
}

MeshEntity* BlockCase::addSide(int dimension, const QList<MeshEntity*>& vertices)
{
    MeshEntity* side = MeshEntity::create(dimension);
    for (MeshEntity* vertex : vertices) {
        side->addAdjacency(vertex);
    }
    side->setId(nextId(dimension));
    mesh().add(side);
    return side;
}

void BlockCase::addInterior()
{
    for (int z = 0; z <= cells_; ++z) {
        for (int y = 0; y <= cells_; ++y) {
            for (int x = 0; x <= cells_; ++x) {
                addInteriorAt(x, y, z);
            }
        }
    }
}

// In Kuhn's subdivision the corners of a tetrahedron ascend from a cell's lowest to its highest, each
// with the offsets of the one before. So do those of its edges and faces, each of which is met once:
// at its lowest corner.
void BlockCase::addInteriorAt(int x, int y, int z)
{
    constexpr int highest = 7;
    for (int far = 1; far <= highest; ++far) {
        addInterior({x, y, z}, {0, far});
        for (int middle = 1; middle < far; ++middle) {
            if ((middle & far) == middle) {
                addInterior({x, y, z}, {0, middle, far});
            }
        }
    }
}

void BlockCase::addInterior(const std::array<int, 3>& at, const QList<int>& corners)
{
    const bool isFace = corners.size() == 3;
    if (!isInBlock(at, corners.last()) || (isFace && isOnSide(at, corners.last()))) {
        return;
    }
    QList<MeshEntity*> vertices;
    for (int corner : corners) {
        vertices.append(
            vertexAt(at[0] + (corner & 1), at[1] + (corner >> 1 & 1), at[2] + (corner >> 2)));
    }
    addSide(isFace ? 2 : 1, vertices);
}

bool BlockCase::isInBlock(const std::array<int, 3>& at, int farCorner) const
{
    return at[0] + (farCorner & 1) <= cells_ && at[1] + (farCorner >> 1 & 1) <= cells_ &&
           at[2] + (farCorner >> 2) <= cells_;
}

// Whether all between the two corners lies on a side of the block, or between its halves.
bool BlockCase::isOnSide(const std::array<int, 3>& at, int farCorner) const
{
    for (std::size_t axis = 0; axis < at.size(); ++axis) {
        const bool isFlat = (farCorner >> axis & 1) == 0;
        const bool isSide =
            at[axis] == 0 || at[axis] == cells_ || (axis == 0 && at[axis] == cells_ / 2);
        if (isFlat && isSide) {
            return true;
        }
    }
    return false;
}

MeshEntity* BlockCase::vertexAt(int x, int y, int z) const
{
    const int points = cells_ + 1;
    return vertices_.at((static_cast<qsizetype>(z) * points + y) * points + x);
}

ModelEntity* BlockCase::entityOfVertex(int x, int y, int z) const
{
    Model* model = database_->model();
    if (x == cells_ / 2) {
        return model->entity(2, Interface);
    }
    const bool fluid = x < cells_ / 2;
    const auto outside = [this](int i) { return i == 0 || i == cells_; };
    if (outside(x) || outside(y) || outside(z)) {
        return model->entity(2, fluid ? FluidOutside : SolidOutside);
    }
    return model->entity(3, fluid ? 1 : 2);
}

int BlockCase::nextId(int dimension)
{
    return lastIds_[dimension] += stride_;
}

BlockCase& sharedBlock(int elements)
{
    static std::map<int, std::unique_ptr<BlockCase>> cases;
    auto& block = cases[elements];
    if (!block) {
        block = std::make_unique<BlockCase>(BlockCase::cellsFor(elements));
        block->mesh().setUpwardAdjacencies();
    }
    return *block;
}

} // namespace Benchmarks
