#include "NeighbourList.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <new>

namespace Ovra::Geo
{

namespace
{

// Lists as long as this are copied by sharing.
constexpr qsizetype Many = 64;

// Memory of snapshots. A walk lets go of its snapshot before the next few are made, nearly always,
// and leaves its memory to these: then it costs a copy of a few pointers and no allocation.
class SnapshotPool
{
public:
    ~SnapshotPool() { isGone() = true; }

    /// Of this thread; null for objects that are destroyed after it.
    static SnapshotPool* current()
    {
        thread_local SnapshotPool pool;
        return isGone() ? nullptr : &pool;
    }

    QList<MeshEntity*> take(MeshEntity* const* begin, MeshEntity* const* end)
    {
        for (QList<MeshEntity*>& list : lists_) {
            if (list.capacity() == 0) {
                list.reserve(Many);
            }
            if (list.isDetached()) {
                list.resize(end - begin);
                std::copy(begin, end, list.begin());
                return list;
            }
        }
        return QList<MeshEntity*>(begin, end);
    }

private:
    static bool& isGone()
    {
        thread_local bool gone = false;
        return gone;
    }

    std::array<QList<MeshEntity*>, 4> lists_;
};

} // namespace

NeighbourList& NeighbourList::operator=(const NeighbourList& other)
{
    if (this == &other || (block_ != nullptr && block_ == other.block_)) {
        return *this;
    }
    clear();
    if (other.isLong()) {
        other.share();
        release();
        block_ = other.block_;
        ++counter();
        return *this;
    }
    reserve(other.size());
    for (MeshEntity* entity : other) {
        append(entity);
    }
    return *this;
}

bool NeighbourList::isLong() const
{
    return size() >= Many;
}

bool NeighbourList::isCopyOf(const NeighbourList& other) const
{
    return block_ == other.block_ ||
           (!isLong() && std::equal(begin(), end(), other.begin(), other.end()));
}

qsizetype NeighbourList::indexOf(const MeshEntity* entity) const
{
    const auto* const place = std::find(begin(), end(), entity);
    return place == end() ? -1 : place - begin();
}

void NeighbourList::reserve(qsizetype count)
{
    if (block_ == nullptr ? count > 0 : count > qsizetype{block_->capacity}) {
        moveTo(static_cast<quint32>(count), false);
    }
}

MeshEntity** NeighbourList::makeRoom(qsizetype count)
{
    const qsizetype before = size();
    if (count == 0) {
        return nullptr;
    }
    if (block_ == nullptr || block_->isShared != 0 ||
        before + count > qsizetype{block_->capacity}) {
        moveTo(static_cast<quint32>(before + count), false);
    }
    return block_->entries() + before;
}

void NeighbourList::replace(qsizetype index, MeshEntity* entity)
{
    Q_ASSERT(index >= 0 && index < size());
    detach();
    block_->entries()[index] = entity;
}

void NeighbourList::removeOne(const MeshEntity* entity)
{
    const qsizetype index = indexOf(entity);
    if (index < 0) {
        return;
    }
    detach();
    MeshEntity** const entries = block_->entries();
    std::copy(entries + index + 1, entries + block_->size, entries + index);
    --block_->size;
}

void NeighbourList::clear()
{
    if (block_ != nullptr && block_->isEmbedded != 0) {
        block_->size = 0;
    } else {
        release();
    }
}

QList<MeshEntity*> NeighbourList::snapshot() const
{
    SnapshotPool* const pool = size() <= Many ? SnapshotPool::current() : nullptr;
    return pool != nullptr ? pool->take(begin(), end()) : QList<MeshEntity*>(begin(), end());
}

NeighbourList::Block* NeighbourList::allocate(quint32 capacity, bool withCounter)
{
    const std::size_t entries = capacity + (withCounter ? 1U : 0U);
    // NOLINTNEXTLINE(bugprone-sizeof-expression): pointers are what a list has
    void* const memory = std::malloc(sizeof(Block) + entries * sizeof(MeshEntity*));
    if (memory == nullptr || capacity > MostEntries) {
        std::free(memory);
        throw std::bad_alloc();
    }
    auto* const block = new (memory) Block;
    block->capacity = capacity & MostEntries;
    block->isEmbedded = 0;
    block->isShared = withCounter ? 1 : 0;
    return block;
}

quintptr& NeighbourList::counter() const
{
    return *reinterpret_cast<quintptr*>(block_->entries() + block_->capacity);
}

void NeighbourList::share() const
{
    if (block_->isShared == 0) {
        moveTo(block_->size, true);
        counter() = 1;
    }
}

void NeighbourList::detach()
{
    if (block_->isShared != 0) {
        moveTo(block_->size, false);
    }
}

void NeighbourList::grow()
{
    constexpr quint32 least = 2;
    moveTo(block_ == nullptr ? least : std::max(least, 2 * block_->size), false);
}

void NeighbourList::moveTo(quint32 capacity, bool withCounter) const
{
    Block* const block = allocate(capacity, withCounter);
    block->size = static_cast<quint32>(size());
    std::copy(begin(), end(), block->entries());
    release();
    block_ = block;
}

void NeighbourList::release() const
{
    if (block_ != nullptr && block_->isEmbedded == 0 &&
        (block_->isShared == 0 || --counter() == 0)) {
        std::free(block_);
    }
    block_ = nullptr;
}

} // namespace Ovra::Geo
