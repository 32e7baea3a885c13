#pragma once

#include <QHash>
#include <QList>

#include <algorithm>
#include <limits>
#include <utility>

/// \file
/// \brief The tables of Model, Mesh and ModelEntity, id to entity of one dimension. Not for hosts.

namespace Ovra::Geo
{

template <typename Entity>
class IdTableWalk;

/// \brief A table of entities by id, walked by ascending id.
///
/// The ids of a container are dense or nearly so, and a list with a slot for each id takes a third
/// of the memory of a hash and one access to look up. So the table has a window of slots, which
/// follows the ids as long as a quarter of it is in use when it grows; ids that lie far off stand
/// in a hash. Memory follows the number of entities, whatever their ids.
///
/// Copies share their data until one of them is changed, as those of Qt's containers do; a walk is
/// over such a copy. Looking up, inserting and removing take constant time on average.
template <typename Entity>
class IdTable
{
public:
    /// \brief Number of entities.
    qsizetype size() const { return inWindow_ + outliers_.size(); }

    /// \brief Whether there are no entities.
    bool isEmpty() const { return size() == 0; }

    /// \brief The entity of that id, or null.
    Entity* value(int id) const
    {
        if (isInWindow(id)) {
            return window_.at(placeOf(id));
        }
        return outliers_.isEmpty() ? nullptr : outliers_.value(id, nullptr);
    }

    /// \brief Whether there is an entity of that id.
    bool contains(int id) const { return value(id) != nullptr; }

    /// \brief Stores \p entity under \p id, in place of the one that may stand there.
    /// \param id,entity the latter not null
    void insert(int id, Entity* entity)
    {
        if (isEmpty()) {
            first_ = id;
        }
        if (id == end() && outliers_.isEmpty() && isWithinReach(id)) {
            window_.append(entity); // as nearly every id follows the one before
            ++inWindow_;
            return;
        }
        if (!isInWindow(id) && isWithinReach(id)) {
            stretchTo(id);
        }
        if (isInWindow(id)) {
            setSlot(id, entity);
        } else {
            insertOutlier(id, entity);
        }
    }

    /// \brief Takes the entity of that id out, if there is one.
    void remove(int id)
    {
        if (isInWindow(id)) {
            setSlot(id, nullptr);
        } else {
            outliers_.remove(id);
        }
        if (isEmpty()) {
            *this = {};
        }
    }

    /// \brief An id from 1 on that no entity has: behind the window if there is one, or else behind
    ///        the last that was given, so that a run of new entities finds each at once.
    int freeId()
    {
        qint64 id = std::max<qint64>(1, end());
        if (id > Highest || contains(static_cast<int>(id))) {
            id = std::max<qint64>(nextFree_, size() + 1);
            while (contains(static_cast<int>(id))) {
                id = id < Highest ? id + 1 : 1;
            }
        }
        nextFree_ = id < Highest ? static_cast<int>(id) + 1 : 1;
        return static_cast<int>(id);
    }

    /// \brief Makes room for \p count entities of ids without gaps.
    void reserve(qsizetype count) { window_.reserve(count); }

private:
    friend class IdTableWalk<Entity>;

    static constexpr qint64 LeastRange = 16;
    static constexpr qint64 SlotsPerEntity = 4;
    static constexpr qint64 Highest = std::numeric_limits<int>::max();

    // 64 bits, since the ids are any of 32.
    qint64 placeOf(int id) const { return qint64{id} - first_; }
    int idAt(qsizetype place) const { return first_ + static_cast<int>(place); }
    qint64 end() const { return first_ + qint64{window_.size()}; }
    bool isInWindow(int id) const { return id >= first_ && id < end(); }

    static bool isDense(qint64 first, qint64 end, qint64 count)
    {
        return end - first <= SlotsPerEntity * count + LeastRange;
    }

    bool isWithinReach(int id) const
    {
        return isDense(std::min<qint64>(first_, id), std::max<qint64>(end(), qint64{id} + 1),
                       size() + 1);
    }

    void setSlot(int id, Entity* entity)
    {
        Entity*& slot = window_[placeOf(id)];
        inWindow_ += (entity != nullptr ? 1 : 0) - (slot != nullptr ? 1 : 0);
        slot = entity;
    }

    void stretchTo(int id)
    {
        // Downwards by as much again as there is, as lists grow upwards.
        const qint64 below = std::max<qint64>(1, first_ - qint64{window_.size()});
        stretch(id < first_ ? std::min<qint64>(id, below) : first_,
                std::max<qint64>(end(), qint64{id} + 1));
    }

    void stretch(qint64 first, qint64 end)
    {
        const qint64 oldFirst = first_;
        const qint64 oldEnd = this->end();
        window_.insert(0, oldFirst - first, nullptr);
        window_.resize(end - first);
        first_ = static_cast<int>(first);
        takeOutliersIn(first, oldFirst);
        takeOutliersIn(oldEnd, end);
    }

    void takeOutliersIn(qint64 first, qint64 end)
    {
        for (qint64 id = first; id < end && !outliers_.isEmpty(); ++id) {
            if (Entity* entity = outliers_.take(static_cast<int>(id))) {
                setSlot(static_cast<int>(id), entity);
            }
        }
    }

    void insertOutlier(int id, Entity* entity)
    {
        outliers_.insert(id, entity);
        if (outliers_.size() > settleAt_) {
            settleOutliers();
            settleAt_ = 2 * std::max<qsizetype>(LeastRange, outliers_.size());
        }
    }

    // Ids that lay far off when they came may be dense by now, with the window or without it.
    void settleOutliers()
    {
        const auto [lowest, highest] =
            std::minmax_element(outliers_.keyBegin(), outliers_.keyEnd());
        const qint64 first = *lowest;
        const qint64 end = qint64{*highest} + 1;
        if (isDense(std::min<qint64>(first, first_), std::max(end, this->end()), size())) {
            stretch(std::min<qint64>(first, first_), std::max(end, this->end()));
        } else if (outliers_.size() > inWindow_ && isDense(first, end, outliers_.size())) {
            moveWindow(first, end);
        }
    }

    void moveWindow(qint64 first, qint64 end)
    {
        const QList<Entity*> old = std::exchange(window_, {});
        const int oldFirst = std::exchange(first_, static_cast<int>(first));
        inWindow_ = 0;
        stretch(first, end);
        for (qsizetype place = 0; place < old.size(); ++place) {
            if (old.at(place) != nullptr) {
                outliers_.insert(static_cast<int>(oldFirst + place), old.at(place));
            }
        }
    }

    QList<Entity*> window_; // from the id first_ on; null where there is none
    int first_ = 1;
    int nextFree_ = 1; // behind the last free id that was given
    qsizetype inWindow_ = 0;
    QHash<int, Entity*> outliers_; // none of an id in the window
    qsizetype settleAt_ = 2 * LeastRange;
};

/// \brief An id and the entity that stands under it.
template <typename Entity>
class IdTableEntry
{
public:
    IdTableEntry() = default;
    /** \brief Of these two. */ IdTableEntry(int id, Entity* entity)
        : id_(id)
        , entity_(entity)
    {
    }

    // By value: entries are handed out by value themselves, and a reference would outlive them.

    /// \brief The id.
    int key() const { return id_; }

    /// \brief The entity.
    Entity* value() const { return entity_; }

    /// \brief The entity, as iterators of Qt's hashes have it.
    Entity* operator*() const { return entity_; }

private:
    int id_ = 0;
    Entity* entity_ = nullptr;
};

/// \brief A walk over a snapshot of an IdTable by ascending id, or over the entries of a hash.
///
/// Made of a table in constant time, and in O(m log m) if m ids lie far off the others.
template <typename Entity>
class IdTableWalk
{
public:
    using Entry = IdTableEntry<Entity>; ///< an id and its entity

    /// \brief A walk that stands before the lowest id of \p table.
    explicit IdTableWalk(const IdTable<Entity>& table)
        : table_(table)
        , outliers_(entries(table.outliers_))
    {
        sortById(outliers_);
        skipEmptySlots();
    }

    /// \brief A walk over \p entries in the order of the list.
    explicit IdTableWalk(const QList<Entry>& entries)
        : outliers_(entries)
    {
    }

    /// \brief The entries of \p hash in its own order.
    static QList<Entry> entries(const QHash<int, Entity*>& hash)
    {
        QList<Entry> entries;
        entries.reserve(hash.size());
        for (auto i = hash.cbegin(); i != hash.cend(); ++i) {
            entries.append(Entry(i.key(), i.value()));
        }
        return entries;
    }

    /// \brief Sorts \p entries by ascending id.
    static void sortById(QList<Entry>& entries)
    {
        std::sort(entries.begin(), entries.end(),
                  [](const Entry& a, const Entry& b) { return a.key() < b.key(); });
    }

    /// \brief Whether entries remain.
    bool hasNext() const { return slot_ < slotCount() || outlier_ < outliers_.size(); }

    /// \brief Steps over the next entry and returns it.
    /// \pre hasNext()
    Entry next()
    {
        const Entry entry = peekNext();
        if (outlierIsNext()) {
            ++outlier_;
        } else {
            ++slot_;
            skipEmptySlots();
        }
        return entry;
    }

    /// \brief The next entry, without stepping over it.
    /// \pre hasNext()
    Entry peekNext() const
    {
        return outlierIsNext() ? outliers_.at(outlier_)
                               : Entry(table_.idAt(slot_), table_.window_.at(slot_));
    }

    /// \brief Starts again.
    void toFront()
    {
        slot_ = 0;
        outlier_ = 0;
        skipEmptySlots();
    }

private:
    qsizetype slotCount() const { return table_.window_.size(); }

    bool outlierIsNext() const
    {
        return outlier_ < outliers_.size() &&
               (slot_ >= slotCount() || outliers_.at(outlier_).key() < table_.idAt(slot_));
    }

    void skipEmptySlots()
    {
        while (slot_ < slotCount() && table_.window_.at(slot_) == nullptr) {
            ++slot_;
        }
    }

    IdTable<Entity> table_; // only ever read
    QList<Entry> outliers_;
    qsizetype slot_ = 0;
    qsizetype outlier_ = 0;
};

} // namespace Ovra::Geo
