#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <span>

namespace Ovra::GeoTool
{

/// \brief What an edge or face is found by, whatever the order of its vertices: up to four numbers
/// in ascending order, and behind them \p filler.
inline std::array<int, 4> ascendingKey(std::span<const int> numbers, int filler)
{
    std::array<int, 4> key;
    key.fill(std::numeric_limits<int>::max());
    std::copy(numbers.begin(), numbers.end(), key.begin());
    // A network that sorts four without a branch: keys are made of every side of every element, and
    // std::sort takes four times as long for one.
    const auto order = [&key](std::size_t a, std::size_t b) {
        const int low = std::min(key[a], key[b]);
        key[b] = std::max(key[a], key[b]);
        key[a] = low;
    };
    order(0, 1);
    order(2, 3);
    order(0, 2);
    order(1, 3);
    order(1, 2);
    std::fill(key.begin() + static_cast<std::ptrdiff_t>(numbers.size()), key.end(), filler);
    return key;
}

} // namespace Ovra::GeoTool
