#pragma once

#include "GeometryDatabaseExport.h"

#include <QList>

/// \file
/// \brief How a mesh entity keeps its lists of neighbours. Not for hosts.

namespace Ovra::Geo
{

class MeshEntity;

/// \brief A list of mesh entities in the space of one pointer.
///
/// A mesh entity has four lists, most of them empty, and a mesh has millions of entities: in the
/// form of QList the lists alone take more than all else. Here an empty list is a null pointer. The
/// list that an element always has, that of its vertices, stands in the element itself, in an
/// EmbeddedNeighbours of the derived class, as long as it fits there; other lists take just what
/// they need if their length is known beforehand.
///
/// Copies of long lists share their data until one of them is changed, so that very many elements
/// can have one and the same. One thread at a time.
class OVRA_GEO_EXPORT NeighbourList
{
public:
    /// \brief What stands ahead of the entries, in the heap or in an element.
    struct Block
    {
        quint32 size = 0;       ///< entries that are there
        quint32 capacity : 30;  ///< entries that there is room for
        quint32 isEmbedded : 1; ///< 1 if it stands in an element
        quint32 isShared : 1;   ///< 1 if the slot behind the last entry counts the lists

        MeshEntity** entries() { return reinterpret_cast<MeshEntity**>(this + 1); } ///< the first
    };

    /// \brief An empty list.
    NeighbourList() = default;

    /// \brief An empty list that has its entries in \p block as long as they fit.
    /// \param block of an object that goes together with the list
    explicit NeighbourList(Block& block)
        : block_(&block)
    {
    }

    /// \brief The same entries; the data is shared if there are many.
    NeighbourList(const NeighbourList& other) { *this = other; }

    /// \brief Takes the entries of \p other over; the data is shared if there are many.
    NeighbourList& operator=(const NeighbourList& other);

    ~NeighbourList() { release(); }

    /// \brief Number of entries.
    qsizetype size() const { return block_ == nullptr ? 0 : qsizetype{block_->size}; }

    /// \brief Whether there are no entries.
    bool isEmpty() const { return size() == 0; }

    /// \brief The entry at \p index, which must be in range.
    MeshEntity* at(qsizetype index) const
    {
        Q_ASSERT(index >= 0 && index < size());
        return block_->entries()[index];
    }

    /// \brief The first entry; null in a list that has never had one.
    MeshEntity* const* begin() const { return block_ == nullptr ? nullptr : block_->entries(); }
    /// \brief Behind the last entry.
    MeshEntity* const* end() const { return begin() + size(); }

    /// \brief The place of the first occurrence of \p entity; -1 if there is none.
    qsizetype indexOf(const MeshEntity* entity) const;

    /// \brief Whether \p entity is in the list.
    bool contains(const MeshEntity* entity) const { return indexOf(entity) >= 0; }

    /// \brief Whether copies of the list share its data.
    bool isLong() const;

    /// \brief Whether one of the lists is a copy of the other and neither has been changed since.
    ///        Looks at the entries of short lists only, so that short lists of the same entries
    ///        count too.
    bool isCopyOf(const NeighbourList& other) const;

    /// \brief Makes room for \p count entries in all, and for no more.
    void reserve(qsizetype count);

    /// \brief Makes room for \p count more entries, which are none of the list's before takeIn().
    /// \return the place of the first of them; not null unless \p count is 0
    MeshEntity** makeRoom(qsizetype count);

    /// \brief Makes the list longer by \p count entries, which have been set where makeRoom() said.
    void takeIn(qsizetype count) { block_->size += static_cast<quint32>(count); }

    /// \brief Appends \p entity.
    void append(MeshEntity* entity)
    {
        if (block_ == nullptr || block_->isShared != 0 || block_->size == block_->capacity) {
            grow();
        }
        block_->entries()[block_->size++] = entity;
    }

    /// \brief Puts \p entity in the place of the entry at \p index, which must be in range.
    void replace(qsizetype index, MeshEntity* entity);

    /// \brief Removes the first occurrence of \p entity, if any.
    void removeOne(const MeshEntity* entity);

    /// \brief Empties the list and gives its memory back.
    void clear();

    /// \brief The entries as a list of Qt's, which later changes do not reach.
    QList<MeshEntity*> snapshot() const;

private:
    static constexpr quint32 MostEntries = (1U << 30U) - 1;

    static Block* allocate(quint32 capacity, bool withCounter);

    quintptr& counter() const; // of the size of the entry in whose place it is
    void share() const;
    void detach();
    void grow();
    void moveTo(quint32 capacity, bool withCounter) const;
    void release() const;

    mutable Block* block_ = nullptr; // another one, of the same entries, when it is shared
};

/// \brief Room within an element for the list of its \p Capacity vertices.
template <quint32 Capacity>
struct EmbeddedNeighbours
{
    EmbeddedNeighbours()
    {
        static_assert(Capacity <= 8, "the room is there whether it is used or not");
        block.capacity = Capacity;
        block.isEmbedded = 1;
        block.isShared = 0;
    }

    /// \brief Room only: what stands in it goes from element to element by their lists.
    EmbeddedNeighbours(const EmbeddedNeighbours& /*other*/)
        : EmbeddedNeighbours()
    {
    }
    EmbeddedNeighbours& operator=(const EmbeddedNeighbours& /*other*/) { return *this; } ///< NOLINT

    NeighbourList::Block block;    ///< what stands ahead of the entries
    MeshEntity* entries[Capacity]; ///< the room
};

} // namespace Ovra::Geo
