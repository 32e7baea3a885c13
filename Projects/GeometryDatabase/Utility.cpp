#include "Utility.h"

#include "MeshEntity.h"
#include "ModelEntity.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace Ovra::Geo
{

namespace
{

// The local faces of one kind of element. The rows stand as constants, and as bit masks of their
// local vertices, so that lookups work before any static object of the library is made and without
// a heap.
class FaceTable
{
public:
    constexpr FaceTable(std::initializer_list<std::initializer_list<int>> rows)
    {
        for (const auto& row : rows) {
            for (const int vertex : row) {
                masks_[count_] |= 1U << vertex;
            }
            ++count_;
        }
    }

    int indexOf(unsigned mask) const
    {
        const auto end = masks_.cbegin() + count_;
        const auto found = std::find(masks_.cbegin(), end, mask);
        return found == end ? -1 : static_cast<int>(found - masks_.cbegin());
    }

    QList<QSet<int>> toSets() const
    {
        QList<QSet<int>> sets(count_);
        for (int row = 0; row < count_; ++row) {
            for (int vertex = 0; vertex < MaxVertices; ++vertex) {
                if ((masks_[static_cast<size_t>(row)] & (1U << vertex)) != 0) {
                    sets[row].insert(vertex);
                }
            }
        }
        return sets;
    }

private:
    static constexpr int MaxVertices = 8;
    std::array<unsigned, 6> masks_ = {};
    unsigned char count_ = 0;
};

constexpr FaceTable Triangle = {{0, 1}, {1, 2}, {2, 0}};
constexpr FaceTable Quadrilateral = {{0, 1}, {1, 2}, {2, 3}, {3, 0}};
constexpr FaceTable Tetrahedron = {{1, 2, 3}, {0, 3, 2}, {0, 1, 3}, {0, 2, 1}};
constexpr FaceTable Pyramid = {{3, 2, 1, 0}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}};
constexpr FaceTable Wedge = {{0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}, {0, 2, 1}, {3, 4, 5}};
constexpr FaceTable Hexahedron = {{0, 4, 7, 3}, {1, 2, 6, 5}, {0, 1, 5, 4},
                                  {2, 3, 7, 6}, {0, 3, 2, 1}, {4, 5, 6, 7}};

const FaceTable* surfaceTable(int vertexCount)
{
    switch (vertexCount) {
    case 3:
        return &Triangle;
    case 4:
        return &Quadrilateral;
    default:
        return nullptr;
    }
}

const FaceTable* volumeTable(int vertexCount)
{
    switch (vertexCount) {
    case 4:
        return &Tetrahedron;
    case 5:
        return &Pyramid;
    case 6:
        return &Wedge;
    case 8:
        return &Hexahedron;
    default:
        return nullptr;
    }
}

int localVertexIndex(const MeshEntity* vertex, const MeshEntity* element)
{
    int index = element->adjacencyCount(0) - 1;
    while (index > 0 && element->adjacencyAt(0, index) != vertex) {
        --index;
    }
    return std::max(index, 0);
}

} // namespace

QList<QSet<int>> Utility::TriFaces(3);
QList<QSet<int>> Utility::QuadFaces(4);
QList<QSet<int>> Utility::TetFaces(4);
QList<QSet<int>> Utility::PyramidFaces(5);
QList<QSet<int>> Utility::WedgeFaces(5);
QList<QSet<int>> Utility::HexFaces(6);
bool Utility::init_ = Utility::init();

bool Utility::init()
{
    TriFaces = Triangle.toSets();
    QuadFaces = Quadrilateral.toSets();
    TetFaces = Tetrahedron.toSets();
    PyramidFaces = Pyramid.toSets();
    WedgeFaces = Wedge.toSets();
    HexFaces = Hexahedron.toSets();
    return true;
}

QSet<int> Utility::getLocalVertexIndexSet(MeshEntity* subEntity, MeshEntity* element)
{
    QSet<int> indices;
    const int count = subEntity->adjacencyCount(0);
    for (int i = 0; i < count; ++i) {
        indices.insert(localVertexIndex(subEntity->adjacencyAt(0, i), element));
    }
    return indices;
}

int Utility::getLocalFaceIndex(MeshEntity* face, MeshEntity* element)
{
    const int vertexCount = element->adjacencyCount(0);
    const FaceTable* table =
        face->dimension() == 1 ? surfaceTable(vertexCount) : volumeTable(vertexCount);
    if (table == nullptr) {
        return -1;
    }
    unsigned mask = 0;
    const int count = face->adjacencyCount(0);
    for (int i = 0; i < count; ++i) {
        mask |= 1U << localVertexIndex(face->adjacencyAt(0, i), element);
    }
    return table->indexOf(mask);
}

QSet<MeshEntity*> Utility::getMeshVerticesOnModelEntity(ModelEntity const* entity)
{
    QSet<MeshEntity*> vertices;
    vertices.reserve(entity->childCount() / 4);
    for (auto children = entity->childIterator(); children.hasNext();) {
        const MeshEntity* child = children.next().value();
        const int count = child->adjacencyCount(0);
        for (int i = 0; i < count; ++i) {
            vertices.insert(child->adjacencyAt(0, i));
        }
    }
    return vertices;
}

} // namespace Ovra::Geo
