#pragma once

#include "Buckets.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace Ovra::GeoTool
{

/// \brief Sides of elements, edges or faces, with those of the same vertices next to one another.
///
/// They are put together by their smallest vertex and sorted there, with all that tells them apart
/// in one place: whatever else is asked of an element is a cache miss. A sort of all sides took
/// twice the memory and a multiple of the time.
class SidesByVertex
{
public:
    /// \brief Vertices in ascending order, as numbers from 0 on; behind them -1.
    using Key = std::array<int, 4>;

    /// \brief In 16 bytes, as there are several for each element, which are two numbers to compare.
    class Side
    {
    public:
        Side() = default;
        Side(const Key& key, std::size_t element, bool rising = false)
            : middle_(packed(key[1], place(key[2])))
            , end_(packed(key[3], 2 * static_cast<std::uint32_t>(element) + (rising ? 1 : 0)))
        {
        }

        /// \brief The number of the element, an int.
        std::size_t element() const { return static_cast<std::uint32_t>(end_) / 2; }

        /// \brief Which of the two ways round the side runs, as whoever made it has it.
        bool isRising() const { return end_ % 2 == 1; }

        /// \param smallest the smallest vertex, which a side leaves out
        Key key(int smallest) const
        {
            return {smallest, vertex(middle_ >> 32U), vertex(middle_), vertex(end_ >> 32U)};
        }

        /// \brief Whether the vertices are the same, if the smallest is.
        bool isLike(const Side& other) const
        {
            return middle_ == other.middle_ && end_ >> 32U == other.end_ >> 32U;
        }

        /// \brief By key, and then by element.
        bool operator<(const Side& other) const
        {
            return middle_ != other.middle_ ? middle_ < other.middle_ : end_ < other.end_;
        }

    private:
        /// So that no vertex comes ahead of all.
        static std::uint32_t place(int vertex) { return static_cast<std::uint32_t>(vertex) + 1; }
        static int vertex(std::uint64_t place)
        {
            return static_cast<int>(static_cast<std::uint32_t>(place) - 1);
        }
        static std::uint64_t packed(int vertex, std::uint32_t low)
        {
            return std::uint64_t(place(vertex)) << 32U | low;
        }

        std::uint64_t middle_; ///< the second vertex and the third
        std::uint64_t end_;    ///< the fourth vertex, the element, and the way round
    };

    using Run = std::span<const Side>;

    SidesByVertex() = default;

    /// \param first   vertices begin with it
    /// \param counts  for each vertex how many sides it is the smallest of, or how many vertices
    ///                there are: forEach is called twice then
    /// \param forEach calls what it is given with the smallest vertex of each side and a function
    ///                that makes the side
    template <typename Counts, typename ForEach>
    SidesByVertex(int first, Counts counts, ForEach forEach)
        : first_(first)
        , sides_(counts, [&](auto add) {
            forEach([&](int smallest, const auto& make) {
                add(static_cast<std::size_t>(smallest - first), make);
            });
        })
    {
        for (std::size_t bucket = 0; bucket < sides_.count(); ++bucket) {
            std::sort(sides_[bucket].begin(), sides_[bucket].end());
        }
    }

    /// \brief The sides with these vertices, by element.
    Run find(const Key& key) const
    {
        const Run sides = sidesAt(key.front());
        const auto begin = std::lower_bound(sides.begin(), sides.end(), Side(key, 0));
        const auto end = std::find_if(begin, sides.end(), [like = Side(key, 0)](const Side& side) {
            return !side.isLike(like);
        });
        return {begin, end};
    }

    /// \brief Calls \p action with the key and the run of sides that have it, for each of which
    /// \p vertex is the smallest, in the order of the keys.
    template <typename Action>
    void forEachRun(int vertex, Action action) const
    {
        const Run sides = sidesAt(vertex);
        for (std::size_t begin = 0; begin < sides.size();) {
            std::size_t end = begin + 1;
            while (end < sides.size() && sides[end].isLike(sides[begin])) {
                ++end;
            }
            action(sides[begin].key(vertex), sides.subspan(begin, end - begin));
            begin = end;
        }
    }

    /// \brief The same for one vertex after the other.
    template <typename Action>
    void forEachRun(Action action) const
    {
        for (std::size_t bucket = 0; bucket < sides_.count(); ++bucket) {
            forEachRun(first_ + static_cast<int>(bucket), action);
        }
    }

private:
    Run sidesAt(int vertex) const { return sides_[static_cast<std::size_t>(vertex - first_)]; }

    int first_ = 0;
    Buckets<Side> sides_; ///< by the smallest vertex
};

} // namespace Ovra::GeoTool
