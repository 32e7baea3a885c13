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
    // A network that sorts four in registers: keys are made of every side of every element, and
    // sorting them in an array takes several times as long.
    const std::size_t size = numbers.size();
    const auto numberAt = [&](std::size_t i) {
        return i < size ? numbers[i] : std::numeric_limits<int>::max();
    };
    const auto order = [](int& low, int& high) {
        const int lower = std::min(low, high);
        high = std::max(low, high);
        low = lower;
    };
    int a = numberAt(0);
    int b = numberAt(1);
    int c = numberAt(2);
    int d = numberAt(3);
    order(a, b);
    order(c, d);
    order(a, c);
    order(b, d);
    order(b, c);
    return {size > 0 ? a : filler, size > 1 ? b : filler, size > 2 ? c : filler,
            size > 3 ? d : filler};
}

} // namespace Ovra::GeoTool
