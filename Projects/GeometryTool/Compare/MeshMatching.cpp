#include "MeshMatching.h"

#include "AttributeMap.h"
#include "PlaceNumbers.h"

#include <QHash>

#include <algorithm>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// A vertex whose nearest is another's may be left at first, and have the next one.
constexpr int mostRounds = 3;

std::size_t slot(int index)
{
    return static_cast<std::size_t>(index);
}

std::vector<Vector> pointsOf(const ComparedCase& oneCase, const std::vector<int>& vertices)
{
    std::vector<Vector> points;
    points.reserve(vertices.size());
    for (const int vertex : vertices) {
        points.push_back(oneCase.view().points()[slot(vertex)]);
    }
    return points;
}

/// Each of the parents once, whatever their order.
Signature signatureOfSet(std::vector<Signature> parents)
{
    std::sort(parents.begin(), parents.end());
    parents.erase(std::unique(parents.begin(), parents.end()), parents.end());
    Signature sum = 1;
    for (const Signature parent : parents) {
        sum += mixed(parent);
    }
    return sum;
}

} // namespace

MeshMatching::MeshMatching(const PlacedCase& a, const PlacedCase& b, double tolerance,
                           CaseMatch& match)
    : a_(a)
    , b_(b)
    , tolerance_(tolerance)
    , match_(match)
{
}

void MeshMatching::run()
{
    matchVertices();
    if (tolerance_ > 0) {
        matchVerticesLeft();
    }
    for (int dimension = 1; dimension < 4; ++dimension) {
        matchElements(dimension, true);
        matchElements(dimension, false);
        matchElementsByPlace(dimension, true);
        matchElementsByPlace(dimension, false);
    }
}

void MeshMatching::matchVertices()
{
    EntityMatch& match = match_.of(Owner::Mesh, 0);
    match.pairAlike(a_.places(0), b_.places(0), EntityMatch::Several::None);
    for (const By by : {By::Everything, By::Users, By::UserPlaces, By::Parents, By::Place}) {
        if (!match.isExhausted()) {
            match.pairAlike(vertexSignatures(Side::A, by), vertexSignatures(Side::B, by));
        }
    }
}

void MeshMatching::matchVerticesLeft()
{
    EntityMatch& match = match_.of(Owner::Mesh, 0);
    for (int round = 0; round < mostRounds && !match.isExhausted(); ++round) {
        const std::vector<int> inA = verticesLeft(Side::A);
        const std::vector<int> inB = verticesLeft(Side::B);
        const PlaceNumbers numbers =
            PlaceNumbers::of(pointsOf(a_.oneCase(), inA), pointsOf(b_.oneCase(), inB), tolerance_);
        forEachLike(inOrder(numbers.inA), inOrder(numbers.inB),
                    [&](std::span<const Signed> a, std::span<const Signed> b) {
                        for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
                            match.pair(inA[slot(a[i].position)], inB[slot(b[i].position)]);
                        }
                    });
    }
}

void MeshMatching::matchElements(int dimension, bool withParents)
{
    EntityMatch& match = match_.of(Owner::Mesh, dimension);
    if (!match.isExhausted()) {
        match.pairAlike(elementSignatures(Side::A, dimension, withParents),
                        elementSignatures(Side::B, dimension, withParents));
    }
}

/// Those that are left: an element at a split interface may have got the vertices of the other side.
void MeshMatching::matchElementsByPlace(int dimension, bool withParents)
{
    EntityMatch& match = match_.of(Owner::Mesh, dimension);
    if (!match.isExhausted()) {
        match.pairAlike(elementPlaces(Side::A, dimension, withParents),
                        elementPlaces(Side::B, dimension, withParents));
    }
}

MeshMatching::Signatures MeshMatching::vertexSignatures(Side side, By by) const
{
    Signatures signatures(placed(side).places(0).size(), 0);
    for (const int vertex : verticesLeft(side)) {
        signatures[slot(vertex)] = vertexSignature(side, vertex, by);
    }
    return signatures;
}

Signature MeshMatching::vertexSignature(Side side, int vertex, By by) const
{
    const Signature place = placed(side).places(0)[slot(vertex)];
    if (by == By::Place) {
        return place;
    }
    const Signature users = joined(place, usersSignature(side, vertex, by));
    return by == By::Everything ? joined(users, ownSignature(side, vertex)) : users;
}

Signature MeshMatching::ownSignature(Side side, int vertex) const
{
    Signature own = parentSignature(side, 0, vertex);
    const QList<AttributeType> types =
        placed(side).oneCase().attributes(Owner::Mesh, 0, vertex).types();
    for (const AttributeType& type : types) {
        own = joined(own, qHash(type.toString()));
    }
    return own;
}

/// Of the edges, faces and regions that have the vertex.
Signature MeshMatching::usersSignature(Side side, int vertex, By by) const
{
    Signature places = 1;
    std::vector<Signature> parents;
    for (int dimension = 1; dimension < 4; ++dimension) {
        for (const int user :
             placed(side).oneCase().neighbours(Owner::Mesh, 0, vertex, dimension)) {
            const Signature place = placed(side).places(dimension)[slot(user)];
            const Signature parent = parentSignature(side, dimension, user);
            places += mixed(by == By::UserPlaces ? place : joined(place, parent));
            parents.push_back(parent);
        }
    }
    return by == By::Parents ? signatureOfSet(std::move(parents)) : places;
}

/// Of the vertices, whatever their order; none where one is in this case only.
MeshMatching::Signatures MeshMatching::elementSignatures(Side side, int dimension,
                                                         bool withParents) const
{
    const ComparedCase& oneCase = placed(side).oneCase();
    const int count = static_cast<int>(oneCase.count(Owner::Mesh, dimension));
    Signatures signatures(slot(count), 0);
    for (int i = 0; i < count; ++i) {
        const std::span<const int> vertices = oneCase.vertices(dimension, i);
        const bool allMatched = std::all_of(vertices.begin(), vertices.end(),
                                            [&](int vertex) { return isMatched(side, vertex); });
        Signature sum = vertices.size();
        for (const int vertex : vertices) {
            sum += mixed(vertexNumber(side, vertex));
        }
        sum = withParents ? joined(sum, parentSignature(side, dimension, i)) : sum;
        signatures[slot(i)] = allMatched ? sum : 0;
    }
    return signatures;
}

MeshMatching::Signatures MeshMatching::elementPlaces(Side side, int dimension,
                                                     bool withParents) const
{
    Signatures signatures = placed(side).places(dimension);
    for (std::size_t i = 0; i < signatures.size() && withParents; ++i) {
        signatures[i] =
            joined(signatures[i], parentSignature(side, dimension, static_cast<int>(i)));
    }
    return signatures;
}

/// What a mesh entity stands on, by a number that both cases have for it; the same of all that is
/// in one case only.
Signature MeshMatching::parentSignature(Side side, int dimension, int position) const
{
    const EntityPosition parent = placed(side).oneCase().parents(dimension)[slot(position)];
    if (parent.isNone()) {
        return 0;
    }
    const EntityMatch& match = match_.of(Owner::Model, parent.dimension);
    const int inB = side == Side::A                   ? match.inB(parent.position)
                    : match.inA(parent.position) >= 0 ? parent.position
                                                      : -1;
    const int number = inB + 1;
    return joined(static_cast<Signature>(parent.dimension), static_cast<Signature>(number));
}

/// The same in both cases.
Signature MeshMatching::vertexNumber(Side side, int vertex) const
{
    return static_cast<Signature>(side == Side::A ? match_.of(Owner::Mesh, 0).inB(vertex) : vertex);
}

bool MeshMatching::isMatched(Side side, int vertex) const
{
    const EntityMatch& match = match_.of(Owner::Mesh, 0);
    return (side == Side::A ? match.inB(vertex) : match.inA(vertex)) >= 0;
}

std::vector<int> MeshMatching::verticesLeft(Side side) const
{
    std::vector<int> left;
    for (int i = 0; i < static_cast<int>(placed(side).places(0).size()); ++i) {
        if (!isMatched(side, i)) {
            left.push_back(i);
        }
    }
    return left;
}

} // namespace Ovra::GeoTool
