#pragma once

#include "Sides.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace Ovra::GeoPython
{

/// \brief Some entities of one dimension by their ids, which stay those of the time it was made.
///
/// Elements of a kind are looked for no earlier than they are asked for, or than the mesh is about to
/// change: to tell their kind is to touch them all, and so what is asked first is answered in the same
/// walk. All functions throw Gone once the ids are those of other entities, or Busy.
template <typename Side>
class Selection final : private Unsettled
{
public:
    using Entity = typename Side::Entity;
    using Ids = std::vector<int>;

    Selection(CasePointer state, int dimension, Ids ids)
        : state_(std::move(state))
        , dimension_(dimension)
        , ids_(std::move(ids))
    {
    }

    /// \brief The elements of so many vertices that the case has now; throws Gone if it is closed, or Busy.
    Selection(CasePointer state, int dimension, int vertexCount)
        : state_(std::move(state))
        , dimension_(dimension)
        , vertexCount_(vertexCount)
    {
        container();
        state_->enter(*this);
    }

    ~Selection() { state_->leave(*this); }
    Selection(const Selection&) = delete;
    Selection& operator=(const Selection&) = delete;

    /// \brief The ids, in their order.
    const Ids& ids()
    {
        requireSameIds();
        settle();
        return ids_;
    }

    /// \brief Whether \p id is in it, be the entity there or not. The first question sorts.
    bool has(int id)
    {
        if (sorted_.empty()) {
            sorted_ = ids();
            std::sort(sorted_.begin(), sorted_.end());
        }
        requireSameIds();
        return std::binary_search(sorted_.begin(), sorted_.end(), id);
    }

    /// \brief No less than the number of ids, and no work.
    std::size_t most() const
    {
        requireSameIds();
        return vertexCount_ ? static_cast<std::size_t>(container().count(dimension_)) : ids_.size();
    }

    /// \brief Calls \p visit with each entity in the order of ids(); throws Gone if one is no more.
    /// \param visit runs no Python
    template <typename Visit>
    void forEach(Visit visit)
    {
        requireSameIds();
        if (vertexCount_) {
            settle(visit);
            return;
        }
        auto& all = container();
        for (const int id : ids_) {
            Entity* const entity = all.entity(dimension_, id);
            if (entity == nullptr) {
                throw Gone(entityText(Side::noun, dimension_, id) + " is no more");
            }
            visit(*entity);
        }
    }

    /// \brief Throws Gone where the ids are those of other entities by now.
    void requireSameIds() const { requireEpoch<Side>(*state_, epoch_, "selection was made"); }

private:
    auto& container() const { return Side::container(*state_); }

    void settle() override
    {
        if (vertexCount_) {
            settle([](Entity&) {});
        }
    }

    template <typename Visit>
    void settle(Visit visit)
    {
        Ids found;
        for (auto walk = container().iterator(dimension_); walk.hasNext();) {
            const auto entry = walk.next();
            if (entry.value()->adjacencyCount(0) == *vertexCount_) {
                found.push_back(entry.key());
                visit(*entry.value());
            }
        }
        ids_ = std::move(found);
        vertexCount_.reset();
        state_->leave(*this);
    }

    CasePointer state_;
    int dimension_;
    Ids ids_;
    Ids sorted_;
    std::optional<int> vertexCount_; ///< of those that ids_ has yet to name
    int epoch_ = Side::epoch(*state_);
};

} // namespace Ovra::GeoPython
