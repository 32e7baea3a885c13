#include "TieSearch.h"

#include "EntityName.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "MeshEntity.h"
#include "ModelEntity.h"

#include <QSet>

#include <cmath>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Two points within it are less than 1e10 apart.
constexpr double farthest = 1e9;

/// The vertices at the ends of sides that have a length.
QSet<const MeshEntity*> verticesAtSides(const QList<MeshEntity*>& meshFaces)
{
    QSet<const MeshEntity*> vertices;
    for (const MeshEntity* meshFace : meshFaces) {
        const int count = meshFace->adjacencyCount(0);
        for (int i = 0; i < count; ++i) {
            const MeshEntity* const first = meshFace->adjacencyAt(0, i);
            const MeshEntity* const second = meshFace->adjacencyAt(0, (i + 1) % count);
            if ((second->centroid() - first->centroid()).length() > 0.0) {
                vertices << first << second;
            }
        }
    }
    return vertices;
}

QString faultOf(const MeshEntity& vertex, const QSet<const MeshEntity*>& atSides)
{
    if (!TieSearch::isWithinReach(vertex.centroid())) {
        return QStringLiteral("lies too far out for it; %1 from the origin is the limit")
            .arg(farthest);
    }
    return atSides.contains(&vertex)
               ? QString()
               : QStringLiteral("has no neighbour there in another place than its own");
}

} // namespace

bool TieSearch::isWithinReach(const Vector& point)
{
    return std::abs(point.x()) < farthest && std::abs(point.y()) < farthest &&
           std::abs(point.z()) < farthest;
}

QString TieSearch::fault(const ModelEntity& face)
{
    const QList<MeshEntity*> meshFaces = inIdOrder(face.childIterator());
    const QSet<const MeshEntity*> atSides = verticesAtSides(meshFaces);
    for (const MeshEntity* meshFace : meshFaces) {
        for (int i = 0; i < meshFace->adjacencyCount(0); ++i) {
            const MeshEntity& vertex = *meshFace->adjacencyAt(0, i);
            const QString text = faultOf(vertex, atSides);
            if (!text.isEmpty()) {
                return QStringLiteral("vertices cannot be tied to %1: %2 at %3 %4")
                    .arg(nameOf(face), nameOf(vertex), placeText(vertex.centroid()), text);
            }
        }
    }
    return QString();
}

} // namespace Ovra::GeoTool
