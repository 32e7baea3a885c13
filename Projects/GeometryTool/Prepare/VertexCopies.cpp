#include "VertexCopies.h"

#include "IdOrder.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

void VertexCopies::add(const ModelEntity& face, const ModelEntity& twin)
{
    const QList<MeshEntity*> meshFaces = inIdOrder(face.childIterator());
    const QList<MeshEntity*> twins = inIdOrder(twin.childIterator());
    for (qsizetype i = 0; i < meshFaces.size(); ++i) {
        const MeshEntity& from = *meshFaces.at(i);
        for (int j = 0; j < from.adjacencyCount(0); ++j) {
            copies_.insert(from.adjacencyAt(0, j), twins.at(i)->adjacencyAt(0, j));
        }
    }
}

QList<MeshEntity*> VertexCopies::originals() const
{
    QList<MeshEntity*> vertices = copies_.keys();
    std::sort(vertices.begin(), vertices.end(), MeshEntity::lessThan);
    return vertices;
}

} // namespace Ovra::GeoTool
