#pragma once

#include "IdTable.h"

#include <QHash>
#include <QList>

#include <algorithm>
#include <utility>

namespace Ovra::Geo
{

/// \brief A walk over a live hash in ascending order of keys, for results that must be
///        reproducible.
///
/// The keys are those at construction: one that is added later is not visited, and one that is
/// removed later is visited with a default-constructed value, a null pointer for entities. Values
/// are looked up in the hash as the walk goes on; in contrast to HashIterator this is no snapshot
/// of them.
///
/// Owns its list of keys and refers to the hash. A copy goes on from the same place on its own.
/// \pre the hash outlives the iterator and stays at its address
template <typename Key, typename Value>
class OrderedHashIterator
{
public:
    /// \brief A walk that stands before the lowest key of \p hash. Costs one pass and one sort.
    explicit OrderedHashIterator(const QHash<Key, Value>* hash)
        : hash_(hash)
        , keys_(sortedKeys(*hash))
        , iterator_(new QListIterator<Key>(keys_))
    {
    }
    /// \brief A walk that goes on from the same place on its own.
    OrderedHashIterator(const OrderedHashIterator& other)
        : hash_(other.hash_)
        , keys_(other.keys_)
        , iterator_(new QListIterator<Key>(*other.iterator_))
    {
    }
    /// \brief Goes on from the place of \p other.
    OrderedHashIterator& operator=(const OrderedHashIterator& other)
    {
        OrderedHashIterator copy(other);
        std::swap(hash_, copy.hash_);
        std::swap(keys_, copy.keys_);
        std::swap(iterator_, copy.iterator_);
        return *this;
    }

    ~OrderedHashIterator() { delete iterator_; }

    /// \brief Whether keys remain.
    bool hasNext() const { return iterator_->hasNext(); }

    /// \brief Steps to the next key and returns its value, or a default-constructed one if the key
    ///        has left the hash since construction.
    /// \pre hasNext()
    Value next() { return hash_->value(iterator_->next()); }

private:
    static QList<Key> sortedKeys(const QHash<Key, Value>& hash)
    {
        QList<Key> keys = hash.keys();
        std::sort(keys.begin(), keys.end());
        return keys;
    }

    const QHash<Key, Value>* hash_;
    QList<Key> keys_;
    QListIterator<Key>* iterator_;
};

/// \brief The walk over the tables of Model, Mesh and ModelEntity, which needs no sort, and over
///        hashes of the same type.
template <typename Entity>
class OrderedHashIterator<int, Entity*>
{
public:
    /// \brief A walk that stands before the lowest id of \p table. Takes constant time while the
    ///        ids are dense.
    explicit OrderedHashIterator(const IdTable<Entity>* table)
        : table_(table)
        , keys_(*table)
    {
    }

    /// \brief A walk that stands before the lowest key of \p hash. Costs one pass and one sort.
    explicit OrderedHashIterator(const QHash<int, Entity*>* hash)
        : hash_(hash)
        , keys_(sortedEntries(*hash))
    {
    }

    /// \brief Whether keys remain.
    bool hasNext() const { return keys_.hasNext(); }

    /// \brief Steps to the next key and returns its value, or null if the key has left the table
    ///        since construction.
    /// \pre hasNext()
    Entity* next()
    {
        const int key = keys_.next().key();
        return table_ != nullptr ? table_->value(key) : hash_->value(key);
    }

private:
    static QList<IdTableEntry<Entity>> sortedEntries(const QHash<int, Entity*>& hash)
    {
        auto entries = IdTableWalk<Entity>::entries(hash);
        IdTableWalk<Entity>::sortById(entries);
        return entries;
    }

    const IdTable<Entity>* table_ = nullptr;
    const QHash<int, Entity*>* hash_ = nullptr;
    IdTableWalk<Entity> keys_;
};

} // namespace Ovra::Geo
