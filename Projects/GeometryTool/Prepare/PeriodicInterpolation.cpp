#include "PeriodicInterpolation.h"

#include "CloserTies.h"
#include "Counted.h"
#include "EntityName.h"
#include "EntityNames.h"
#include "IdOrder.h"
#include "IntAttribute.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"
#include "Progress.h"
#include "Solver.h"
#include "StoredTransform.h"
#include "TieSearch.h"
#include "Utility.h"
#include "VertexTies.h"

#include <QHash>

#include <algorithm>
#include <limits>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// A mean of unit normals that is shorter belongs to no plane.
constexpr double planeNormalLength = 0.99;
/// How far a vertex may land from its tie, in longest edges of the mesh entity it is tied to.
constexpr double allowedMiss = 0.5;
/// From here on it is worth a word; facets on a curved rim miss by less.
constexpr double notableMiss = 0.05;
/// That of the library for weights on periodic faces.
constexpr double weightTolerance = 1e-6;

const QString spread = QStringLiteral("a translation is that between the means of the mesh "
                                      "vertices of both faces, which must be spread alike");
const QString remedy = QStringLiteral("one transform, that of the first pair with planar faces, "
                                      "must serve all pairs, and ") +
                       spread;

int pairIdOf(const ModelEntity* face)
{
    return intOf(face->attributes(), AttributeType::PeriodicPairId);
}

bool isFirstSide(const ModelEntity* face)
{
    return intOf(face->attributes(), AttributeType::PeriodicSideId) == 1;
}

bool arePlanar(const std::pair<ModelEntity*, ModelEntity*>& pair)
{
    return pair.first->isPlanar() && pair.second->isPlanar();
}

} // namespace

PeriodicInterpolation::PeriodicInterpolation(Database& database, Progress& progress)
    : PreparationStep(database)
    , progress_(progress)
{
}

void PeriodicInterpolation::requireAtStart() const
{
    QMap<int, QList<const ModelEntity*>> faces;
    for (const ModelEntity* face : modelFaces()) {
        if (pairIdOf(face) != 0) {
            faces[pairIdOf(face)].append(face);
        }
    }
    for (auto entry = faces.begin(); entry != faces.end(); ++entry) {
        const qsizetype first = std::count_if(entry->begin(), entry->end(), isFirstSide);
        const qsizetype second = entry->size() - first;
        if (first != 1 || second != 1) {
            refuse(QStringLiteral("periodic pair %1 has %2 with periodic_side_id 1 and %3 with "
                                  "another, beginning with %4; it must have one of each")
                       .arg(entry.key())
                       .arg(counted(first, QStringLiteral("model face")))
                       .arg(second)
                       .arg(nameOf(*entry->first())));
        }
        for (const ModelEntity* face : *entry) {
            if (face->childCount() == 0) {
                refuse(QStringLiteral("%1 of periodic pair %2 has no mesh")
                           .arg(nameOf(*face))
                           .arg(entry.key()));
            }
        }
    }
    const Pairs all = pairs();
    if (!all.isEmpty() && std::none_of(all.begin(), all.end(), arePlanar)) {
        refuse(QStringLiteral("no periodic pair has two planar faces from which the transform "
                              "could be told; pair %1 has %2 and %3")
                   .arg(all.firstKey())
                   .arg(nameOf(*all.first().first), nameOf(*all.first().second)));
    }
}

PeriodicInterpolation::Pairs PeriodicInterpolation::pairs() const
{
    Pairs pairs;
    for (ModelEntity* face : modelFaces()) {
        if (pairIdOf(face) == 0) {
            continue;
        }
        Pair& pair = pairs[pairIdOf(face)];
        (isFirstSide(face) ? pair.first : pair.second) = face;
    }
    return pairs;
}

void PeriodicInterpolation::requirePlane(const ModelEntity& face) const
{
    const double length = face.meshNormal().length();
    if (!(length > planeNormalLength)) {
        refuse(QStringLiteral("%1 is periodic and counts as planar, but its mesh faces do not "
                              "face one way")
                   .arg(nameOf(face)));
    }
}

/// Sides that face opposite ways would be taken for a half turn, which may even fit. All mesh faces
/// facing into the domain are as good as all facing out of it.
void PeriodicInterpolation::requireOneSense(const Pair& pair) const
{
    const MeshEntity* outward = nullptr;
    const MeshEntity* inward = nullptr;
    for (const ModelEntity* face : {pair.first, pair.second}) {
        for (const MeshEntity* meshFace : inIdOrder(face->childIterator())) {
            const QList<MeshEntity*> elements = elementsAt(*meshFace);
            if (elements.isEmpty()) {
                continue;
            }
            const Vector away = meshFace->centroid() - elements.first()->centroid();
            (away * meshFace->normal() > 0.0 ? outward : inward) = meshFace;
        }
    }
    if (outward && inward) {
        refuse(QStringLiteral("%1 on %2 faces out of the domain, %3 on %4 into it; the mesh faces "
                              "of a periodic pair must all face one way")
                   .arg(nameOf(*outward), nameOf(*outward->parent()), nameOf(*inward),
                        nameOf(*inward->parent())));
    }
}

QList<MeshEntity*> PeriodicInterpolation::verticesOn(const Pairs& pairs) const
{
    QSet<MeshEntity*> vertices;
    for (const Pair& pair : pairs) {
        vertices += Utility::getMeshVerticesOnModelEntity(pair.first);
        vertices += Utility::getMeshVerticesOnModelEntity(pair.second);
    }
    QList<MeshEntity*> sorted = vertices.values();
    std::sort(sorted.begin(), sorted.end(), MeshEntity::lessThan);
    return sorted;
}

void PeriodicInterpolation::requireSearchable(const Pairs& pairs) const
{
    for (const Pair& pair : pairs) {
        for (const ModelEntity* face : {pair.first, pair.second}) {
            const QString fault = TieSearch::fault(*face);
            if (!fault.isEmpty()) {
                refuse(fault);
            }
        }
    }
}

/// The library computes the transform and follows it at once, also where it leads nowhere. With all
/// vertices marked as tied it goes no further than the transform.
PeriodicTransform PeriodicInterpolation::rehearse(Solver& solver, const Pairs& pairs) const
{
    const QList<MeshEntity*> vertices = verticesOn(pairs);
    const AttributeType mark = VertexTies::periodic().idType();
    for (MeshEntity* vertex : vertices) {
        vertex->attributes().insert(mark, 0);
    }
    solver.interpolatePeriodicFaces();
    for (MeshEntity* vertex : vertices) {
        vertex->attributes().remove(mark);
    }
    return storedTransform(model());
}

void PeriodicInterpolation::requireUsable(const Pairs& pairs,
                                          const PeriodicTransform& transform) const
{
    for (const MeshEntity* vertex : verticesOn(pairs)) {
        for (const PeriodicTransform& map : {transform, transform.inverse()}) {
            if (!TieSearch::isWithinReach(map.map(vertex->centroid()))) {
                refuse(QStringLiteral("the periodic transform takes %1 nowhere; %2")
                           .arg(nameOf(*vertex), remedy));
            }
        }
    }
}

QString PeriodicInterpolation::run(Solver& solver)
{
    requireAtStart(); // steps before this one may have removed mesh faces
    const Pairs all = pairs();
    if (all.isEmpty()) {
        return QString();
    }
    requireSearchable(all);
    const auto guide = std::find_if(all.begin(), all.end(), arePlanar);
    requireOneSense(*guide);
    requirePlane(*guide->first);
    requirePlane(*guide->second);
    const PeriodicTransform transform = rehearse(solver, all);
    requireUsable(all, transform);
    solver.interpolatePeriodicFaces();
    requireWeights(all);
    const Images images = imagesOn(all, transform);
    const qint64 closer = drawCloser(all, images);
    requireTies(all, images);
    return QStringLiteral("%1, %2 tied by %3%4")
        .arg(counted(all.size(), QStringLiteral("periodic pair")),
             counted(verticesOn(all).size(), QStringLiteral("vertex")),
             transform.translation.isZero() ? QStringLiteral("a rotation")
                                            : QStringLiteral("a translation"),
             CloserTies::report(closer));
}

PeriodicInterpolation::Images PeriodicInterpolation::imagesOn(const Pairs& pairs,
                                                              const PeriodicTransform& transform)
{
    Images images;
    for (const Pair& pair : pairs) {
        for (MeshEntity* vertex : Utility::getMeshVerticesOnModelEntity(pair.first)) {
            images[vertex].append({pair.second, transform.map(vertex->centroid())});
        }
        for (MeshEntity* vertex : Utility::getMeshVerticesOnModelEntity(pair.second)) {
            images[vertex].append({pair.first, transform.inverse().map(vertex->centroid())});
        }
    }
    return images;
}

void PeriodicInterpolation::requireWeights(const Pairs& pairs) const
{
    const VertexTies ties = VertexTies::periodic();
    for (MeshEntity* vertex : verticesOn(pairs)) {
        const QString fault = ties.fault(mesh(), *vertex);
        if (!fault.isEmpty()) {
            refuse(QStringLiteral("%1 at %2 on a periodic face %3; %4")
                       .arg(nameOf(*vertex), placeText(vertex->centroid()), fault, remedy));
        }
    }
}

/// \return how many vertices are tied anew
qint64 PeriodicInterpolation::drawCloser(const Pairs& pairs, const Images& images) const
{
    const VertexTies ties = VertexTies::periodic();
    const CloserTies closer(mesh(), ties, weightTolerance);
    qint64 count = 0;
    for (MeshEntity* vertex : verticesOn(pairs)) {
        for (const Image& image : images.value(vertex)) {
            const bool isTiedThere = ties.entityOf(mesh(), *vertex).parent() == image.partner;
            if (isTiedThere && closer.improve(*vertex, image.place)) {
                ++count;
            }
        }
    }
    return count;
}

/// A vertex on faces of several pairs is tied by one of them alone: any of its images will do.
void PeriodicInterpolation::requireTies(const Pairs& pairs, const Images& images) const
{
    const VertexTies ties = VertexTies::periodic();
    qint64 notable = 0;
    double largest = 0.0;
    for (MeshEntity* vertex : verticesOn(pairs)) {
        const Vector place = ties.placeOf(mesh(), *vertex);
        double miss = std::numeric_limits<double>::infinity();
        for (const Image& image : images.value(vertex)) {
            miss = std::min(miss, (image.place - place).length());
        }
        const MeshEntity& partner = ties.entityOf(mesh(), *vertex);
        if (partner.dimension() == 0) {
            continue;
        }
        if (miss > allowedMiss * longestEdge(partner)) {
            refuse(QStringLiteral("%1 at %2 on a periodic face lands %3 beside the partner face; "
                                  "%4")
                       .arg(nameOf(*vertex), placeText(vertex->centroid()))
                       .arg(miss)
                       .arg(remedy));
        }
        if (miss > notableMiss * longestEdge(partner)) {
            ++notable;
            largest = std::max(largest, miss);
        }
    }
    warnOfMisses(notable, largest);
}

void PeriodicInterpolation::warnOfMisses(qint64 count, double largest) const
{
    if (count > 0) {
        progress_.warning(
            QStringLiteral(
                "%1 of periodic faces %2 up to %3 beside the partner face, which is more "
                "than a twentieth of an edge there; %4")
                .arg(counted(count, QStringLiteral("vertex")),
                     count == 1 ? QStringLiteral("lands") : QStringLiteral("land"))
                .arg(largest)
                .arg(spread));
    }
}

} // namespace Ovra::GeoTool
