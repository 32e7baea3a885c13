#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <initializer_list>

namespace Ovra::GeoTool
{

/// \brief At most \p Capacity things, without memory of its own: for tables that inner loops read.
template <typename Thing, std::size_t Capacity>
class ShortList
{
public:
    constexpr ShortList() = default;

    /// \pre no more than \p Capacity
    constexpr ShortList(std::initializer_list<Thing> things)
    {
        for (const Thing& thing : things) {
            push_back(thing);
        }
    }

    /// \pre there are fewer than \p Capacity
    constexpr void push_back(const Thing& thing) { things_[size_++] = thing; }

    constexpr const Thing* begin() const { return things_.data(); }
    constexpr const Thing* end() const { return things_.data() + size_; }
    constexpr std::size_t size() const { return size_; }
    constexpr const Thing& front() const { return things_[0]; }
    constexpr const Thing& operator[](std::size_t place) const { return things_[place]; }

    constexpr bool operator==(const ShortList&) const = default;

    /// \brief Things one after the other, as of words in a dictionary.
    constexpr bool operator<(const ShortList& other) const
    {
        return std::lexicographical_compare(begin(), end(), other.begin(), other.end());
    }

private:
    std::array<Thing, Capacity> things_{};
    std::size_t size_ = 0;
};

} // namespace Ovra::GeoTool
