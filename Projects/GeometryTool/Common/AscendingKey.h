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
    // Sorting all places, and not a run-time count of them, is quicker and lets the compiler see
    // that it stays within the array.
    std::array<int, 4> key;
    key.fill(std::numeric_limits<int>::max());
    std::copy(numbers.begin(), numbers.end(), key.begin());
    std::sort(key.begin(), key.end());
    std::fill(key.begin() + static_cast<std::ptrdiff_t>(numbers.size()), key.end(), filler);
    return key;
}

} // namespace Ovra::GeoTool
