#include "ModelMatching.h"

#include "AttributeMap.h"
#include "ModelEntity.h"
#include "PlaceNumbers.h"

#include <QHash>

#include <algorithm>
#include <map>
#include <tuple>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

using Owner = EntityName::Owner;
using Signatures = std::vector<Signature>;

std::size_t slot(int index)
{
    return static_cast<std::size_t>(index);
}

Signature signatureOf(const QString& text)
{
    return mixed(qHash(text));
}

Signature looksOf(const ModelEntity& entity)
{
    Signature looks = joined(signatureOf(entity.name()), signatureOf(entity.tag()));
    const QList<AttributeType> types = entity.attributes().types();
    for (const AttributeType& type : types) {
        looks = joined(looks, signatureOf(type.toString()));
    }
    return looks;
}

Signature looksOfNeighbours(const ComparedCase& oneCase, int dimension, int position,
                            const std::array<Signatures, 4>& looks)
{
    Signature sum = 1;
    for (int other = 0; other < 4; ++other) {
        for (const int each : oneCase.neighbours(Owner::Model, dimension, position, other)) {
            sum += mixed(looks[slot(other)][slot(each)]);
        }
    }
    return sum;
}

/// Of each model entity, the places of the mesh entities of its dimension on it; 0 without any.
Signatures meshesOf(const PlacedCase& placed, int dimension)
{
    Signatures sums(placed.oneCase().count(Owner::Model, dimension), 0);
    const std::vector<EntityPosition>& parents = placed.oneCase().parents(dimension);
    for (std::size_t i = 0; i < parents.size(); ++i) {
        if (parents[i].dimension == dimension && !parents[i].isNone()) {
            sums[slot(parents[i].position)] += mixed(placed.places(dimension)[i]);
        }
    }
    return sums;
}

/// For each mesh entity on a model entity of its own dimension, its place.
/// \param looks of the model entities, to be joined; none if null
Signatures placesOnModel(const PlacedCase& placed, int dimension, const Signatures* looks)
{
    Signatures signatures = placed.places(dimension);
    const std::vector<EntityPosition>& parents = placed.oneCase().parents(dimension);
    for (std::size_t i = 0; i < parents.size(); ++i) {
        if (parents[i].isNone() || parents[i].dimension != dimension) {
            signatures[i] = 0;
        } else if (looks) {
            signatures[i] = joined(signatures[i], (*looks)[slot(parents[i].position)]);
        }
    }
    return signatures;
}

Signatures joinedEach(Signatures list, const Signatures& others)
{
    for (std::size_t i = 0; i < list.size(); ++i) {
        list[i] = list[i] == 0 ? 0 : joined(list[i], others[i]);
    }
    return list;
}

std::vector<Vector> centroidsOf(const ComparedCase& oneCase, int dimension)
{
    std::vector<Vector> centroids;
    for (const ModelEntity* entity : oneCase.view().modelEntities(dimension)) {
        centroids.push_back(entity->centroid());
    }
    return centroids;
}

/// How many mesh entities speak for each pair of model entities, by their positions.
using Votes = std::map<std::pair<int, int>, int>;

/// Pairs those with the most votes first, as far as they are free.
void pairByVotes(const Votes& votes, EntityMatch& match)
{
    std::vector<std::tuple<int, int, int>> order;
    for (const auto& [pair, count] : votes) {
        order.emplace_back(-count, pair.first, pair.second);
    }
    std::sort(order.begin(), order.end());
    for (const auto& [count, a, b] : order) {
        if (match.inB(a) < 0 && match.inA(b) < 0) {
            match.pair(a, b);
        }
    }
}

} // namespace

ModelMatching::Looks::Looks(const ComparedCase& oneCase)
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        for (const ModelEntity* entity : oneCase.view().modelEntities(dimension)) {
            own[slot(dimension)].push_back(looksOf(*entity));
            names[slot(dimension)].push_back(
                entity->name().isEmpty() ? 0 : signatureOf(entity->name()));
        }
    }
    for (int dimension = 0; dimension < 4; ++dimension) {
        const int count = static_cast<int>(oneCase.count(Owner::Model, dimension));
        for (int i = 0; i < count; ++i) {
            neighbours[slot(dimension)].push_back(looksOfNeighbours(oneCase, dimension, i, own));
        }
    }
}

ModelMatching::ModelMatching(const PlacedCase& a, const PlacedCase& b, double tolerance,
                             CaseMatch& match)
    : a_(a)
    , b_(b)
    , tolerance_(tolerance)
    , match_(match)
    , looksInA_(a.oneCase())
    , looksInB_(b.oneCase())
{
}

void ModelMatching::run()
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        matchByMesh(dimension);
        matchByVotes(dimension, true);
        matchByVotes(dimension, false);
        matchByCentroids(dimension);
        matchByNames(dimension);
    }
}

void ModelMatching::matchByMesh(int dimension)
{
    matchWithLooks(dimension, meshesOf(a_, dimension), meshesOf(b_, dimension));
}

/// By mesh entities whose place only one has in each case, where the meshes are not the same.
void ModelMatching::matchByVotes(int dimension, bool withLooks)
{
    EntityMatch& match = match_.of(Owner::Model, dimension);
    if (match.isExhausted()) {
        return;
    }
    const auto signedPlaces = [&](const PlacedCase& placed, const Looks& looks) {
        return inOrder(
            placesOnModel(placed, dimension, withLooks ? &looks.own[slot(dimension)] : nullptr));
    };
    const std::vector<EntityPosition>& parentsInA = a_.oneCase().parents(dimension);
    const std::vector<EntityPosition>& parentsInB = b_.oneCase().parents(dimension);
    Votes votes;
    forEachLike(signedPlaces(a_, looksInA_), signedPlaces(b_, looksInB_),
                [&](std::span<const Signed> a, std::span<const Signed> b) {
                    if (a.size() == 1 && b.size() == 1) {
                        ++votes[{parentsInA[slot(a[0].position)].position,
                                 parentsInB[slot(b[0].position)].position}];
                    }
                });
    pairByVotes(votes, match);
}

void ModelMatching::matchByCentroids(int dimension)
{
    if (!match_.of(Owner::Model, dimension).isExhausted()) {
        const PlaceNumbers numbers = PlaceNumbers::of(
            centroidsOf(a_.oneCase(), dimension), centroidsOf(b_.oneCase(), dimension), tolerance_);
        matchWithLooks(dimension, numbers.inA, numbers.inB);
    }
}

void ModelMatching::matchByNames(int dimension)
{
    match_.of(Owner::Model, dimension)
        .pairAlike(looksInA_.names[slot(dimension)], looksInB_.names[slot(dimension)]);
}

/// Those of the same signature: first of the same looks and neighbours, at last of any.
void ModelMatching::matchWithLooks(int dimension, const Signatures& a, const Signatures& b)
{
    EntityMatch& match = match_.of(Owner::Model, dimension);
    const Signatures& ownInA = looksInA_.own[slot(dimension)];
    const Signatures& ownInB = looksInB_.own[slot(dimension)];
    const Signatures& neighboursInA = looksInA_.neighbours[slot(dimension)];
    const Signatures& neighboursInB = looksInB_.neighbours[slot(dimension)];
    match.pairAlike(joinedEach(joinedEach(a, ownInA), neighboursInA),
                    joinedEach(joinedEach(b, ownInB), neighboursInB));
    match.pairAlike(joinedEach(a, ownInA), joinedEach(b, ownInB));
    match.pairAlike(joinedEach(a, neighboursInA), joinedEach(b, neighboursInB));
    match.pairAlike(a, b);
}

} // namespace Ovra::GeoTool
