#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Disjoint sets of the numbers 0 to size - 1, which grow together.
///
/// The root of a set is its smallest member, whatever the order of joining.
class UnionFind
{
public:
    /// \param size of less than 32 bits
    explicit UnionFind(std::size_t size)
        : parents_(size)
    {
        std::iota(parents_.begin(), parents_.end(), std::uint32_t(0));
    }

    std::size_t find(std::size_t member)
    {
        while (parents_[member] != member) {
            parents_[member] = parents_[parents_[member]];
            member = parents_[member];
        }
        return member;
    }

    void join(std::size_t a, std::size_t b)
    {
        a = find(a);
        b = find(b);
        if (a < b) {
            parents_[b] = static_cast<std::uint32_t>(a);
        } else {
            parents_[a] = static_cast<std::uint32_t>(b);
        }
    }

private:
    std::vector<std::uint32_t> parents_;
};

} // namespace Ovra::GeoTool
