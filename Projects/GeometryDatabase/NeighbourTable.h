#pragma once

#include <QtGlobal>

#include <array>

/// \file
/// \brief Looking neighbours up without an allocation. Not for hosts.

namespace Ovra::Geo
{

class MeshEntity;

/// \brief A set of some mesh entities, none of them null: as many as stand at a vertex of a usual mesh.
///
/// Made for one look-up among the neighbours of an edge or face, of which a mesh has millions: a
/// QSet would take longer to be made than all its answers.
class NeighbourTable
{
public:
    /// \brief The most entities that there is room for.
    static constexpr qsizetype Most = 128;

    /// \brief Takes \p entity in.
    /// \return false if it was there before
    bool insert(const MeshEntity* entity)
    {
        const MeshEntity*& slot = slots_[slotOf(entity)];
        const bool isNew = slot == nullptr;
        slot = entity;
        return isNew;
    }

    /// \brief Whether \p entity is in the set.
    bool contains(const MeshEntity* entity) const { return slots_[slotOf(entity)] != nullptr; }

private:
    static constexpr std::size_t Slots = 2 * Most;

    // Fibonacci hashing (Knuth, The Art of Computer Programming 3, 6.4), then the next slot that is
    // free: half of them always are.
    std::size_t slotOf(const MeshEntity* entity) const
    {
        constexpr quint64 goldenRatio = 0x9E3779B97F4A7C15;
        std::size_t slot = (quint64{reinterpret_cast<quintptr>(entity)} * goldenRatio) >> 56U;
        while (slots_[slot] != nullptr && slots_[slot] != entity) {
            slot = (slot + 1) % Slots;
        }
        return slot;
    }

    std::array<const MeshEntity*, Slots> slots_{};
};

} // namespace Ovra::Geo
