#include "UpwardPositions.h"

#include "InParallel.h"
#include "VertexLists.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

namespace
{

/// It takes a millisecond to look for what lies below these.
constexpr std::size_t fewEntities = 65536;

using Meeting = std::pair<int, int>; ///< a lower entity and an upper one

bool hasAll(std::span<const int> upper, std::span<const int> lower)
{
    return std::all_of(lower.begin(), lower.end(), [upper](int vertex) {
        return std::find(upper.begin(), upper.end(), vertex) != upper.end();
    });
}

Buckets<int> bySmallestVertex(const VertexLists& lists, std::size_t vertexCount)
{
    return Buckets<int>(vertexCount, [&lists](auto add) {
        for (std::size_t i = 0; i < lists.size(); ++i) {
            const std::span<const int> vertices = lists.of(i);
            if (!vertices.empty()) {
                add(static_cast<std::size_t>(*std::min_element(vertices.begin(), vertices.end())),
                    static_cast<int>(i));
            }
        }
    });
}

} // namespace

UpwardPositions::UpwardPositions(const VertexLists& lower, const VertexLists& upper,
                                 std::size_t vertexCount)
{
    const Buckets<int> lowerAt = bySmallestVertex(lower, vertexCount);
    const auto meetings = gatherInParallel<Meeting>(
        upper.size(), fewEntities, [&](std::size_t place, std::vector<Meeting>& found) {
            const std::span<const int> vertices = upper.of(place);
            for (auto vertex = vertices.begin(); vertex != vertices.end(); ++vertex) {
                const std::span<const int> some = lowerAt[static_cast<std::size_t>(*vertex)];
                if (some.empty() || std::find(vertices.begin(), vertex, *vertex) != vertex) {
                    continue; // a vertex that is listed twice is looked at once
                }
                for (const int each : some) {
                    if (hasAll(vertices, lower.of(static_cast<std::size_t>(each)))) {
                        found.emplace_back(each, static_cast<int>(place));
                    }
                }
            }
        });
    upper_ = Buckets<int>(lower.size(), [&meetings](auto add) {
        for (const auto& [below, above] : meetings) {
            add(static_cast<std::size_t>(below), above);
        }
    });
}

} // namespace Ovra::GeoTool
