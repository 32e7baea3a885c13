#include "NeighbourComparison.h"

#include "MeshComparison.h"
#include "MeshEntity.h"
#include "ValueText.h"

#include <algorithm>
#include <array>

namespace Ovra::GeoTool
{

namespace
{

using Owner = EntityName::Owner;

/// Of neighbours of an edge or face. Where it has more, which none of a sound mesh does, edges and
/// faces on the same vertices share the list, of which files can name very many.
constexpr int mostListed = 64;

QString severalName(int dimension)
{
    static const std::array<const char*, 4> names = {"vertices", "edges", "faces", "regions"};
    return QLatin1String(names[static_cast<std::size_t>(dimension)]);
}

void mark(std::vector<char>& marks, std::span<const int> vertices)
{
    for (const int vertex : vertices) {
        marks[static_cast<std::size_t>(vertex)] = 1;
    }
}

bool isAnyMarked(const std::vector<char>& marks, std::span<const int> vertices)
{
    return !marks.empty() && std::any_of(vertices.begin(), vertices.end(), [&](int vertex) {
        return marks[static_cast<std::size_t>(vertex)] != 0;
    });
}

std::vector<int> idsOf(const ComparedCase& oneCase, Owner owner, int dimension,
                       const std::vector<int>& positions)
{
    std::vector<int> ids;
    ids.reserve(positions.size());
    for (const int position : positions) {
        ids.push_back(oneCase.id(owner, dimension, position));
    }
    return ids;
}

QVariantList listOf(const std::vector<int>& ids)
{
    return QVariantList(ids.begin(), ids.end());
}

std::optional<Change> changeOfCount(int dimension, int countInA, int countInB)
{
    if (countInA == countInB) {
        return std::nullopt;
    }
    return Change{QStringLiteral("number of ") + severalName(dimension), QString::number(countInA),
                  QString::number(countInB)};
}

void add(std::vector<Change>& changes, std::optional<Change> change)
{
    if (change) {
        changes.push_back(std::move(*change));
    }
}

/// What the one list has more often than the other, ascending.
std::vector<int> without(std::vector<int> list, std::vector<int> other)
{
    std::sort(list.begin(), list.end());
    std::sort(other.begin(), other.end());
    std::vector<int> rest;
    std::set_difference(list.begin(), list.end(), other.begin(), other.end(),
                        std::back_inserter(rest));
    return rest;
}

/// What stands in the other case for each of the list, as far as something does.
template <typename PartnerOf>
std::vector<int> partnersOf(const std::vector<int>& list, PartnerOf partnerOf)
{
    std::vector<int> partners;
    partners.reserve(list.size());
    for (const int each : list) {
        const int partner = partnerOf(each);
        if (partner >= 0) {
            partners.push_back(partner);
        }
    }
    return partners;
}

} // namespace

NeighbourComparison::NeighbourComparison(const CasePair& pair, const MeshComparison& mesh,
                                         CaseDifferences& differences)
    : pair_(pair)
    , mesh_(mesh)
    , differences_(differences)
{
}

void NeighbourComparison::run()
{
    for (int dimension = 0; dimension < 4; ++dimension) {
        compareModel(dimension);
    }
    for (int dimension = 1; dimension < 4; ++dimension) {
        marks_[static_cast<std::size_t>(dimension)] = verticesOfDiffering(dimension);
    }
    for (int dimension = 0; dimension < 3; ++dimension) {
        compareMesh(dimension);
    }
}

void NeighbourComparison::compareModel(int dimension) const
{
    const EntityMatch& match = pair_.match.of(Owner::Model, dimension);
    for (int i = 0; i < static_cast<int>(match.countInA()); ++i) {
        const int j = match.inB(i);
        std::vector<Change> changes;
        for (int neighbours = 0; neighbours < 4 && j >= 0; ++neighbours) {
            add(changes, changeOf(Owner::Model, dimension, i, j, neighbours));
        }
        tell(Owner::Model, dimension, i, j, std::move(changes));
    }
}

/// A vertex lists all that use it, an edge its faces, a face its regions.
void NeighbourComparison::compareMesh(int dimension) const
{
    const EntityMatch& match = pair_.match.of(Owner::Mesh, dimension);
    const int last = dimension == 0 ? 3 : dimension + 1;
    for (int i = 0; i < static_cast<int>(match.countInA()); ++i) {
        const int j = match.inB(i);
        std::vector<Change> changes;
        for (int upper = dimension + 1; upper <= last && j >= 0; ++upper) {
            if (mayDiffer(dimension, i, j, marks_[static_cast<std::size_t>(upper)])) {
                add(changes, changeOf(Owner::Mesh, dimension, i, j, upper));
            }
        }
        tell(Owner::Mesh, dimension, i, j, std::move(changes));
    }
}

NeighbourComparison::Marks NeighbourComparison::verticesOfDiffering(int dimension) const
{
    const EntityMatch& match = pair_.match.of(Owner::Mesh, dimension);
    const auto isAlike = [&](int inA, int inB) {
        return inA >= 0 && inB >= 0 && !mesh_.hasOtherVertices(dimension, inA);
    };
    Marks marks;
    for (int i = 0; i < static_cast<int>(match.countInA()); ++i) {
        if (!isAlike(i, match.inB(i))) {
            marks.inA.resize(pair_.a.count(Owner::Mesh, 0), 0);
            mark(marks.inA, pair_.a.vertices(dimension, i));
        }
    }
    for (int j = 0; j < static_cast<int>(match.countInB()); ++j) {
        if (!isAlike(match.inA(j), j)) {
            marks.inB.resize(pair_.b.count(Owner::Mesh, 0), 0);
            mark(marks.inB, pair_.b.vertices(dimension, j));
        }
    }
    return marks;
}

bool NeighbourComparison::mayDiffer(int dimension, int inA, int inB, const Marks& marks) const
{
    if (dimension == 0) {
        return isAnyMarked(marks.inA, {&inA, 1}) || isAnyMarked(marks.inB, {&inB, 1});
    }
    return mesh_.hasOtherVertices(dimension, inA) ||
           isAnyMarked(marks.inA, pair_.a.vertices(dimension, inA)) ||
           isAnyMarked(marks.inB, pair_.b.vertices(dimension, inB));
}

std::optional<Change> NeighbourComparison::changeOf(Owner owner, int dimension, int inA, int inB,
                                                    int neighbourDimension) const
{
    const EntityMatch& match = pair_.match.of(owner, neighbourDimension);
    if (owner == Owner::Mesh && dimension > 0) {
        const int countInA = pair_.a.meshEntity(dimension, inA).adjacencyCount(neighbourDimension);
        const int countInB = pair_.b.meshEntity(dimension, inB).adjacencyCount(neighbourDimension);
        if (std::max(countInA, countInB) > mostListed) {
            return changeOfCount(neighbourDimension, countInA, countInB);
        }
    }
    const std::vector<int> a = pair_.a.neighbours(owner, dimension, inA, neighbourDimension);
    const std::vector<int> b = pair_.b.neighbours(owner, dimension, inB, neighbourDimension);
    const std::vector<int> aInB = partnersOf(a, [&](int each) { return match.inB(each); });
    if (aInB == b && aInB.size() == a.size()) {
        return std::nullopt;
    }
    const QString name = severalName(neighbourDimension);
    const auto idsInA = [&](const std::vector<int>& list) {
        return idsOf(pair_.a, owner, neighbourDimension, list);
    };
    const auto idsInB = [&](const std::vector<int>& list) {
        return idsOf(pair_.b, owner, neighbourDimension, list);
    };
    const std::vector<int> onlyInA =
        without(a, partnersOf(b, [&](int each) { return match.inA(each); }));
    const std::vector<int> onlyInB = without(b, aInB);
    if (!onlyInA.empty() || !onlyInB.empty()) {
        return Change{QStringLiteral("other ") + name, ValueText::ofIds(idsInA(onlyInA)),
                      ValueText::ofIds(idsInB(onlyInB))};
    }
    if (!isOrderCompared(owner)) {
        return std::nullopt;
    }
    const auto [inOrderInA, inOrderInB] = ValueText::ofBoth(listOf(idsInA(a)), listOf(idsInB(b)));
    return Change{QStringLiteral("order of ") + name, inOrderInA, inOrderInB};
}

/// Files keep the order of the model's lists, in which the faces of a replica go by their place;
/// where ids are others, it may be another. Upward lists have no order.
bool NeighbourComparison::isOrderCompared(Owner owner) const
{
    return owner == Owner::Model && !pair_.match.isByPlace;
}

void NeighbourComparison::tell(Owner owner, int dimension, int inA, int inB,
                               std::vector<Change> changes) const
{
    if (!changes.empty()) {
        differences_.add(DifferenceKind::Neighbours, partOf(owner, dimension), [&] {
            return pair_.difference(owner, dimension, inA, inB, std::move(changes));
        });
    }
}

} // namespace Ovra::GeoTool
