#pragma once

#include "Signatures.h"

#include <cstddef>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Which of the entities of one kind in a case A stands for which in a case B, both by their
/// positions in ascending order of ids.
class EntityMatch
{
public:
    EntityMatch() = default;
    EntityMatch(std::size_t countInA, std::size_t countInB);

    /// \brief What stands in B for \p a; -1 if nothing does, or \p a is -1.
    int inB(int a) const { return a < 0 ? -1 : inB_[static_cast<std::size_t>(a)]; }

    /// \brief What stands in A for \p b; -1 if nothing does, or \p b is -1.
    int inA(int b) const { return b < 0 ? -1 : inA_[static_cast<std::size_t>(b)]; }

    /// \pre neither has been paired
    void pair(int a, int b);

    /// \brief What becomes of several entities of the same signature.
    enum class Several
    {
        ByPosition, ///< they are paired in their order as far as there are as many
        None        ///< they are left alone
    };

    /// \brief Pairs those of the same signature that have not been paired yet.
    void pairAlike(const std::vector<Signature>& a, const std::vector<Signature>& b,
                   Several several = Several::ByPosition);

    /// \brief Whether nothing is left to pair in A or in B.
    bool isExhausted() const;

    std::size_t countInA() const { return inB_.size(); }
    std::size_t countInB() const { return inA_.size(); }

private:
    std::vector<int> inB_;
    std::vector<int> inA_;
    std::size_t pairCount_ = 0;
};

} // namespace Ovra::GeoTool
