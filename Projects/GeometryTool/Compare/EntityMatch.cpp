#include "EntityMatch.h"

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

/// The signatures of what has no partner yet.
std::vector<Signed> unpaired(const std::vector<Signature>& signatures,
                             const std::vector<int>& partners)
{
    std::vector<Signed> list = inOrder(signatures);
    list.erase(std::remove_if(list.begin(), list.end(),
                              [&](const Signed& each) {
                                  return partners[static_cast<std::size_t>(each.position)] >= 0;
                              }),
               list.end());
    return list;
}

} // namespace

EntityMatch::EntityMatch(std::size_t countInA, std::size_t countInB)
    : inB_(countInA, -1)
    , inA_(countInB, -1)
{
}

void EntityMatch::pair(int a, int b)
{
    inB_[static_cast<std::size_t>(a)] = b;
    inA_[static_cast<std::size_t>(b)] = a;
    ++pairCount_;
}

void EntityMatch::pairAlike(const std::vector<Signature>& a, const std::vector<Signature>& b,
                            Several several)
{
    if (isExhausted()) {
        return;
    }
    const auto pairAll = [&](std::span<const Signed> inA, std::span<const Signed> inB) {
        const std::size_t count = std::min(inA.size(), inB.size());
        if (several == Several::None && (inA.size() > 1 || inB.size() > 1)) {
            return;
        }
        for (std::size_t i = 0; i < count; ++i) {
            pair(inA[i].position, inB[i].position);
        }
    };
    forEachLike(unpaired(a, inB_), unpaired(b, inA_), pairAll);
}

bool EntityMatch::isExhausted() const
{
    return pairCount_ == std::min(inB_.size(), inA_.size());
}

} // namespace Ovra::GeoTool
