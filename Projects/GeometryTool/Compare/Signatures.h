#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief A number that entities of two cases share if they are alike in some respect; 0 takes part
/// in nothing.
///
/// Two that are not alike may share it by accident, once in many thousand million cases. What is
/// matched by signatures is compared afterwards, so that an accident is told as a difference.
using Signature = std::uint64_t;

/// \brief Spreads the bits of \p value (Steele, Lea and Flood, Fast splittable pseudorandom number
/// generators, 2014). Sums of what it gives tell sets from one another, whatever their order.
inline Signature mixed(Signature value)
{
    value += 0x9e3779b97f4a7c15U;
    value = (value ^ value >> 30U) * 0xbf58476d1ce4e5b9U;
    value = (value ^ value >> 27U) * 0x94d049bb133111ebU;
    return value ^ value >> 31U;
}

/// \brief The signature of two respects at once; their order counts.
inline Signature joined(Signature first, Signature second)
{
    return mixed(mixed(first) + second);
}

/// \brief A signature and the position of what has it.
struct Signed
{
    Signature signature;
    int position;

    auto operator<=>(const Signed&) const = default; // NOLINT(modernize-use-nullptr)
};

/// \brief Those of \p signatures that are not 0, in ascending order, then by position.
std::vector<Signed> inOrder(const std::vector<Signature>& signatures);

/// \brief Calls \p action with what has the same signature in the one and in the other list, for
/// each signature of either; one of both spans may be empty.
/// \param a, b in ascending order
template <typename Action>
void forEachLike(std::span<const Signed> a, std::span<const Signed> b, Action action)
{
    const auto takeFrom = [](std::span<const Signed>& list, Signature signature) {
        std::size_t count = 0;
        while (count < list.size() && list[count].signature == signature) {
            ++count;
        }
        return std::exchange(list, list.subspan(count)).first(count);
    };
    while (!a.empty() || !b.empty()) {
        const bool takesA = b.empty() || (!a.empty() && a[0].signature <= b[0].signature);
        const Signature next = takesA ? a[0].signature : b[0].signature;
        const std::span<const Signed> likeInA = takeFrom(a, next);
        action(likeInA, takeFrom(b, next));
    }
}

} // namespace Ovra::GeoTool
