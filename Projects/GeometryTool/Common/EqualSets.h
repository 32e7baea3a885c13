#pragma once

#include "Buckets.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <span>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Finds elements of the same vertices, whatever their order.
///
/// Elements are put together by their smallest vertex and a hash of all of them; those that agree
/// in both, which are few in any mesh but a broken one, are looked at. A sort of all sets of
/// vertices took five times as long.
class EqualSets
{
public:
    static constexpr std::size_t MostVertices = 8;

    using Group = std::vector<int>; ///< positions of elements, ascending

    /// \param vertexCount vertices are numbers below it
    /// \param elementCount elements are numbers below it
    /// \param verticesOf gives the span of at most eight vertices of an element; of none, if it is
    ///        not to be looked at
    template <typename VerticesOf>
    static std::vector<Group> find(std::size_t vertexCount, std::size_t elementCount,
                                   VerticesOf verticesOf)
    {
        Buckets<Hashed> bySmallest(vertexCount, [&](auto add) {
            for (std::size_t i = 0; i < elementCount; ++i) {
                const std::span<const int> vertices = verticesOf(i);
                if (!vertices.empty()) {
                    add(smallestOf(vertices), [&] {
                        return Hashed{hashOf(vertices), static_cast<int>(i)};
                    });
                }
            }
        });
        std::vector<Member> members;
        for (std::size_t vertex = 0; vertex < bySmallest.count(); ++vertex) {
            forEachCandidate(bySmallest[vertex], [&](int element) {
                members.push_back({setOf(verticesOf(static_cast<std::size_t>(element))), element});
            });
        }
        return groupsOf(members);
    }

private:
    struct Hashed
    {
        unsigned hash;
        int element;

        auto operator<=>(const Hashed&) const = default; // NOLINT(modernize-use-nullptr)
    };

    /// Ascending, behind as many -1 as there are places left.
    using Set = std::array<int, MostVertices>;

    struct Member
    {
        Set set;
        int element;

        auto operator<=>(const Member&) const = default; // NOLINT(modernize-use-nullptr)
    };

    static std::size_t smallestOf(std::span<const int> vertices)
    {
        return static_cast<std::size_t>(*std::min_element(vertices.begin(), vertices.end()));
    }

    static unsigned hashOf(std::span<const int> vertices);
    static Set setOf(std::span<const int> vertices);
    static std::vector<Group> groupsOf(std::vector<Member>& members);

    /// \param elements of the same smallest vertex; come to be sorted
    template <typename Action>
    static void forEachCandidate(std::span<Hashed> elements, Action action)
    {
        std::sort(elements.begin(), elements.end());
        for (std::size_t i = 0; i < elements.size(); ++i) {
            const bool likeLast = i > 0 && elements[i - 1].hash == elements[i].hash;
            const bool likeNext =
                i + 1 < elements.size() && elements[i + 1].hash == elements[i].hash;
            if (likeLast || likeNext) {
                action(elements[i].element);
            }
        }
    }
};

} // namespace Ovra::GeoTool
