#include "CloserTies.h"

#include "Mesh.h"
#include "MeshEntity.h"
#include "Utility.h"

#include <QSet>
#include <queue>

#include <cmath>
#include <limits>
#include <tuple>
#include <vector>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// Weights below the tolerance are dropped, of two corners of a mesh face at most.
constexpr double missByTolerance = 2.0;
/// How far rounding may move a place, in longest edges.
constexpr double missByRounding = 1e-6;
/// An image beside the whole partner is not looked for all over it.
constexpr qsizetype mostMeshFaces = 256;

/// The mesh faces of the same model face that share a vertex with \p meshFace.
QList<MeshEntity*> neighboursOf(const MeshEntity& meshFace)
{
    QList<MeshEntity*> neighbours;
    for (auto vertices = meshFace.adjacencyIterator(0); vertices.hasNext();) {
        const MeshEntity* const vertex = vertices.next();
        for (auto others = vertex->adjacencyIterator(meshFace.dimension()); others.hasNext();) {
            MeshEntity* const other = others.next();
            if (other->parent() == meshFace.parent()) {
                neighbours.append(other);
            }
        }
    }
    return neighbours;
}

} // namespace

CloserTies::CloserTies(Mesh& mesh, const VertexTies& ties, double tolerance)
    : mesh_(mesh)
    , ties_(ties)
    , tolerance_(tolerance)
{
}

bool CloserTies::improve(MeshEntity& vertex, const Vector& image) const
{
    const MeshEntity& tied = ties_.entityOf(mesh_, vertex);
    const double miss = (ties_.placeOf(mesh_, vertex) - image).length();
    if (tied.dimension() == 0 || !isBeside(miss, tied)) {
        return false;
    }
    const Candidate best = closest(*mesh_.entity(tied.dimension(), tied.id()), image);
    if (best.miss >= 0.5 * miss) {
        return false;
    }
    ties_.set(vertex, *best.meshFace, {best.weights.begin(), best.weights.end()});
    return true;
}

QString CloserTies::report(qint64 count)
{
    return count > 0 ? QStringLiteral(", %1 of them to mesh faces away from the nearest vertex")
                           .arg(count)
                     : QString();
}

bool CloserTies::isBeside(double miss, const MeshEntity& meshFace) const
{
    return miss > (missByTolerance * tolerance_ + missByRounding) * longestEdge(meshFace);
}

/// The weights are no numbers for an image on the line of a side, beyond its ends.
CloserTies::Candidate CloserTies::candidate(MeshEntity& meshFace, const Vector& image) const
{
    Candidate result{&meshFace, Utility::computeWeights(image, &meshFace, tolerance_), 0.0};
    Vector place;
    for (int i = 0; i < meshFace.adjacencyCount(0); ++i) {
        place += result.weights.at(i) * meshFace.adjacencyAt(0, i)->centroid();
    }
    const double miss = (place - image).length();
    result.miss = std::isfinite(miss) ? miss : std::numeric_limits<double>::infinity();
    return result;
}

CloserTies::Candidate CloserTies::closest(MeshEntity& start, const Vector& image) const
{
    using Entry = std::tuple<double, qsizetype, MeshEntity*>; // those found first go first
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> open;
    open.emplace(0.0, 0, &start);
    QSet<MeshEntity*> seen{&start};
    Candidate best = candidate(start, image);
    while (!open.empty() && seen.size() < mostMeshFaces && isBeside(best.miss, *best.meshFace)) {
        const MeshEntity& next = *std::get<MeshEntity*>(open.top());
        open.pop();
        for (MeshEntity* neighbour : neighboursOf(next)) {
            if (seen.contains(neighbour)) {
                continue;
            }
            seen.insert(neighbour);
            const Candidate found = candidate(*neighbour, image);
            open.emplace(found.miss, seen.size(), neighbour);
            if (found.miss < best.miss) {
                best = found;
            }
        }
    }
    return best;
}

} // namespace Ovra::GeoTool
