#pragma once

#include <QHash>

namespace Ovra::Geo
{

/// \brief A walk over a snapshot of a hash, in the hash's own order, in the manner of
///        QHashIterator.
///
/// Changes to the container after the iterator is made don't disturb the walk: removed items are
/// still visited and new ones are not. What pointer values point to is not part of the snapshot.
/// Use it where any order will do; OrderedHashIterator gives the order of keys.
///
/// Before the first next() there is no current item; key() and value() must not be called then, nor
/// next() and peekNext() when hasNext() is false. A copy goes on from the same place on its own.
template <typename Key, typename Value>
class HashIterator
{
public:
    using Item = typename QHash<Key, Value>::const_iterator;

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

} // namespace Ovra::Geo
