#pragma once

#include "IdTable.h"

#include <QHash>

namespace Ovra::Geo
{

/// \brief A walk over a snapshot of a table, in the manner of QHashIterator.
///
/// Changes to the container after the iterator is made don't disturb the walk: removed items are
/// still visited and new ones are not. What pointer values point to is not part of the snapshot. A
/// hash is walked in its own order, which changes with the hash seed; the tables of Model, Mesh and
/// ModelEntity by ascending id.
///
/// Before the first next() there is no current item; key() and value() must not be called then, nor
/// next() and peekNext() when hasNext() is false. A copy goes on from the same place on its own.
template <typename Key, typename Value>
class HashIterator
{
public:
    using Item = typename QHash<Key, Value>::const_iterator; ///< a key and its value

    /// \brief A walk that stands before the first item of \p hash. Takes constant time.
    HashIterator(const QHash<Key, Value>& hash)
        : hash_(hash)
        , next_(hash_.constBegin())
        , current_(hash_.constEnd())
    {
    }

    /// \brief Whether items remain.
    bool hasNext() const { return next_ != hash_.constEnd(); }

    /// \brief Steps to the next item, which becomes the current one, and returns it.
    Item next()
    {
        current_ = next_++;
        return current_;
    }

    /// \brief The next item, without stepping to it.
    Item peekNext() const { return next_; }

    /// \brief The key of the current item.
    const Key& key() const { return current_.key(); }

    /// \brief The value of the current item.
    const Value& value() const { return current_.value(); }

    /// \brief Starts again before the first item, without a current one.
    void toFront()
    {
        next_ = hash_.constBegin();
        current_ = hash_.constEnd();
    }

    /// \brief Steps until the current item's value is \p value.
    /// \return false when the walk has come to its end without such an item
    bool findNext(const Value& value)
    {
        while (hasNext()) {
            if (next().value() == value) {
                return true;
            }
        }
        current_ = hash_.constEnd();
        return false;
    }

private:
    // Only ever read: a detach would leave the two iterators in the data of the former hash.
    QHash<Key, Value> hash_;
    Item next_;
    Item current_;
};

/// \brief The walk over the tables of Model, Mesh and ModelEntity, and over hashes of the same
///        type.
template <typename Entity>
class HashIterator<int, Entity*>
{
public:
    using Item = IdTableEntry<Entity>; ///< an id and its entity

    /// \brief A walk that stands before the entity of the lowest id of \p table. Takes constant
    ///        time while the ids are dense.
    HashIterator(const IdTable<Entity>& table)
        : walk_(table)
    {
    }

    /// \brief A walk that stands before the first item of \p hash. O(n).
    HashIterator(const QHash<int, Entity*>& hash)
        : walk_(IdTableWalk<Entity>::entries(hash))
    {
    }

    /// \brief Whether items remain.
    bool hasNext() const { return walk_.hasNext(); }

    /// \brief Steps to the next item, which becomes the current one, and returns it.
    Item next()
    {
        current_ = walk_.next();
        return current_;
    }

    /// \brief The next item, without stepping to it.
    Item peekNext() const { return walk_.peekNext(); }

    /// \brief The key of the current item.
    int key() const { return current_.key(); }

    /// \brief The value of the current item.
    Entity* value() const { return current_.value(); }

    /// \brief Starts again before the first item, without a current one.
    void toFront()
    {
        walk_.toFront();
        current_ = {};
    }

    /// \brief Steps until the current item's value is \p value.
    /// \return false when the walk has come to its end without such an item
    bool findNext(Entity* const& value)
    {
        while (hasNext()) {
            if (next().value() == value) {
                return true;
            }
        }
        current_ = {};
        return false;
    }

private:
    IdTableWalk<Entity> walk_;
    Item current_;
};

} // namespace Ovra::Geo
