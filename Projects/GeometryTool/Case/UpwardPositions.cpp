#include "UpwardPositions.h"

#include "CaseView.h"
#include "EntityNames.h"
#include "EqualSets.h"
#include "InParallel.h"
#include "MeshEntity.h"
#include "ToolError.h"

#include <QVarLengthArray>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <numeric>
#include <utility>

namespace Ovra::GeoTool
{

using namespace Ovra::Geo;

namespace
{

/// It takes a millisecond to look for what lies below these.
constexpr std::size_t fewEntities = 65536;

using Meeting = std::pair<int, int>; ///< a lower entity and an upper one
using VertexSet = QVarLengthArray<int, 8>;

/// \brief What may lie within an upper entity.
struct Lower
{
    std::uint64_t marks;
    int place;
};

/// \brief A bit for each vertex, out of 64: what has not all bits of another has not all its vertices.
std::uint64_t marksOf(std::span<const int> vertices)
{
    std::uint64_t marks = 0;
    for (const int vertex : vertices) {
        marks |= std::uint64_t(1) << (static_cast<unsigned>(vertex) % 64U);
    }
    return marks;
}

/// \brief The vertices of an entity in ascending order, each once.
VertexSet vertexSet(std::span<const int> vertices)
{
    VertexSet set(vertices.begin(), vertices.end());
    std::sort(set.begin(), set.end());
    set.erase(std::unique(set.begin(), set.end()), set.end());
    return set;
}

bool hasAll(const VertexSet& upper, std::span<const int> lower)
{
    return std::all_of(lower.begin(), lower.end(), [&upper](int vertex) {
        return std::binary_search(upper.begin(), upper.end(), vertex);
    });
}

/// \brief For each entity the first of those that have the same vertices.
std::vector<int> firstTwins(const VertexLists& lists, std::size_t vertexCount)
{
    std::vector<int> twins(lists.size());
    std::iota(twins.begin(), twins.end(), 0);
    const auto groups = EqualSets::find(vertexCount, lists.size(), [&lists](std::size_t i) {
        const std::span<const int> vertices = lists.of(i);
        return vertices.size() <= EqualSets::MostVertices ? vertices : std::span<const int>();
    });
    for (const EqualSets::Group& group : groups) {
        for (const int twin : group) {
            twins[static_cast<std::size_t>(twin)] = group.front();
        }
    }
    return twins;
}

std::vector<int> entityCounts(const VertexLists& lists, std::size_t vertexCount)
{
    std::vector<int> counts(vertexCount, 0);
    for (std::size_t i = 0; i < lists.size(); ++i) {
        for (const int vertex : lists.of(i)) {
            ++counts[static_cast<std::size_t>(vertex)];
        }
    }
    return counts;
}

/// Where many meet at one vertex, as at the tip of a cone, each stands at another of its own.
Buckets<Lower> byRarestVertex(const VertexLists& lists, const std::vector<int>& twins,
                              std::size_t vertexCount)
{
    const std::vector<int> counts = entityCounts(lists, vertexCount);
    const auto isRarer = [&counts](int a, int b) {
        return counts[static_cast<std::size_t>(a)] < counts[static_cast<std::size_t>(b)];
    };
    return Buckets<Lower>(vertexCount, [&](auto add) {
        for (std::size_t i = 0; i < lists.size(); ++i) {
            const std::span<const int> vertices = lists.of(i);
            if (!vertices.empty() && twins[i] == static_cast<int>(i)) {
                const int rarest = *std::min_element(vertices.begin(), vertices.end(), isRarer);
                add(static_cast<std::size_t>(rarest), [&] {
                    return Lower{marksOf(vertices), static_cast<int>(i)};
                });
            }
        }
    });
}

/// \brief What is left to be looked at and found, by all threads together, where entities have many
/// below them.
class Proportion
{
public:
    /// \brief Thrown when nothing is left.
    struct Exceeded
    {
    };

    /// \param size how many vertices the upper entities list
    explicit Proportion(std::int64_t size)
        : looks_(256 * size + (std::int64_t(1) << 30))
        , finds_(8 * size + (std::int64_t(1) << 20))
    {
    }

    void spend(std::size_t looks, std::size_t finds)
    {
        constexpr std::size_t few = 64;
        if (looks <= few) {
            return; // for which threads need not wait for one another
        }
        const std::int64_t looksLeft = looks_ -= static_cast<std::int64_t>(looks);
        const std::int64_t findsLeft = finds_ -= static_cast<std::int64_t>(finds);
        if (looksLeft < 0 || findsLeft < 0) {
            throw Exceeded();
        }
    }

private:
    std::atomic<std::int64_t> looks_;
    std::atomic<std::int64_t> finds_;
};

std::int64_t listedVertices(const VertexLists& lists)
{
    std::int64_t count = 0;
    for (std::size_t i = 0; i < lists.size(); ++i) {
        count += static_cast<std::int64_t>(lists.of(i).size());
    }
    return count;
}

/// \brief How many of the lower may lie within an upper entity.
std::size_t countAbout(std::span<const int> vertices, const Buckets<Lower>& lowerAt)
{
    return std::accumulate(vertices.begin(), vertices.end(), std::size_t(0),
                           [&lowerAt](std::size_t sum, int vertex) {
                               return sum + lowerAt[static_cast<std::size_t>(vertex)].size();
                           });
}

/// \brief The first of the upper entities about which there are most of the lower.
std::size_t mostCrowded(const VertexLists& upper, const Buckets<Lower>& lowerAt)
{
    std::size_t crowded = 0;
    std::size_t most = 0;
    for (std::size_t i = 0; i < upper.size(); ++i) {
        const std::size_t count = countAbout(upper.of(i), lowerAt);
        if (count > most) {
            crowded = i;
            most = count;
        }
    }
    return crowded;
}

/// \brief Adds what of \p lowerAt lies within one upper entity.
void addMeetings(int upper, std::span<const int> vertices, const VertexLists& lower,
                 const Buckets<Lower>& lowerAt, Proportion& proportion, std::vector<Meeting>& found)
{
    const std::size_t looks = countAbout(vertices, lowerAt);
    if (looks == 0) {
        return; // as of nearly all within a volume
    }
    const std::size_t before = found.size();
    const VertexSet set = vertexSet(vertices);
    const std::uint64_t marks = marksOf(vertices);
    for (const int vertex : set) {
        for (const Lower& each : lowerAt[static_cast<std::size_t>(vertex)]) {
            if ((each.marks & ~marks) == 0 &&
                hasAll(set, lower.of(static_cast<std::size_t>(each.place)))) {
                found.emplace_back(each.place, upper);
            }
        }
    }
    proportion.spend(looks, found.size() - before);
}

/// \brief All that lies within one another.
std::vector<Meeting> meetingsOf(const VertexLists& lower, const VertexLists& upper,
                                const Buckets<Lower>& lowerAt)
{
    Proportion proportion(listedVertices(upper));
    return gatherInParallel<Meeting>(upper.size(), fewEntities,
                                     [&](std::size_t place, std::vector<Meeting>& found) {
                                         addMeetings(static_cast<int>(place), upper.of(place),
                                                     lower, lowerAt, proportion, found);
                                     });
}

ToolError outOfProportion(const MeshEntity& crowded)
{
    return ToolError(ExitCode::InputDamaged,
                     QStringLiteral("the mesh is damaged: entities lie within one another in "
                                    "numbers that no mesher leaves, out of all proportion to its "
                                    "size, most of them about %1")
                         .arg(nameOf(crowded)));
}

} // namespace

UpwardPositions::UpwardPositions(const CaseView& view, int dimension)
    : twins_(firstTwins(view.vertexLists(dimension), view.meshEntities(0).size()))
{
    const VertexLists& lower = view.vertexLists(dimension);
    const VertexLists& upper = view.vertexLists(dimension + 1);
    const Buckets<Lower> lowerAt = byRarestVertex(lower, twins_, view.meshEntities(0).size());
    std::vector<Meeting> meetings;
    try {
        meetings = meetingsOf(lower, upper, lowerAt);
    } catch (const Proportion::Exceeded&) {
        throw outOfProportion(*view.meshEntities(dimension + 1)[mostCrowded(upper, lowerAt)]);
    }
    upper_ = Buckets<int>(lower.size(), [&meetings](auto add) {
        for (const auto& [below, above] : meetings) {
            add(static_cast<std::size_t>(below), above);
        }
    });
}

} // namespace Ovra::GeoTool
