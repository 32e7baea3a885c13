#pragma once

#include "Selection.h"
#include "Sides.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Ovra::GeoPython
{

/// \brief Stands for an entity of a case that may be gone.
///
/// It looks the entity up at every use, so that one that was removed or renumbered, or whose case was
/// closed, is an exception and not a dangling pointer.
template <typename Side>
struct Handle
{
    using Entity = typename Side::Entity;

    Handle(CasePointer ofCase, Entity& of)
        : state(std::move(ofCase))
        , dimension(of.dimension())
        , id(of.id())
        , entity(&of)
        , epoch(Side::epoch(*state))
        , removals(state->removalsAt(entity))
    {
    }

    /// \brief The entity; throws Gone, or Busy.
    Entity& get() const
    {
        if (!isThere()) {
            throw Gone(text() + " was removed or renumbered; ask the case for it anew");
        }
        return *entity;
    }

    /// \brief Whether get() has it to give; throws Gone if the case is closed, or Busy.
    bool isThere() const
    {
        return Side::container(*state).entity(dimension, id) == entity &&
               Side::epoch(*state) == epoch && state->removalsAt(entity) == removals;
    }

    std::string text() const { return entityText(Side::noun, dimension, id); }

    bool operator==(const Handle& other) const
    {
        return state == other.state && dimension == other.dimension && id == other.id &&
               entity == other.entity && epoch == other.epoch && removals == other.removals;
    }

    CasePointer state;
    int dimension;
    int id;
    Entity* entity; ///< only ever compared before get() has found it in the case
    int epoch;
    int removals;
};

using ModelHandle = Handle<ModelSide>;
using MeshHandle = Handle<MeshSide>;

/// \brief A class of its own for each dimension, as Python knows them: ModelFace, MeshRegion.
template <typename Side, int Dimension>
struct HandleOf : Handle<Side>
{
    explicit HandleOf(const Handle<Side>& handle)
        : Handle<Side>(handle)
    {
    }
};

/// \brief The Python object of \p handle, of the class of its dimension.
template <typename Side>
pybind11::object wrap(const Handle<Side>& handle)
{
    switch (handle.dimension) {
    case 0:
        return pybind11::cast(HandleOf<Side, 0>(handle));
    case 1:
        return pybind11::cast(HandleOf<Side, 1>(handle));
    case 2:
        return pybind11::cast(HandleOf<Side, 2>(handle));
    default:
        return pybind11::cast(HandleOf<Side, 3>(handle));
    }
}

/// \brief The Python object that stands for \p entity.
template <typename Side>
pybind11::object wrap(const CasePointer& state, typename Side::Entity& entity)
{
    return wrap(Handle<Side>(state, entity));
}

/// \brief A list of those that stand for \p entities.
///
/// All handles ahead of the first object, at which Python may collect garbage, and so do anything.
template <typename Side, typename Entities>
pybind11::list wrapAll(const CasePointer& state, const Entities& entities)
{
    std::vector<Handle<Side>> handles;
    for (auto* const entity : entities) {
        handles.emplace_back(state, *entity);
    }
    pybind11::list list;
    for (const Handle<Side>& handle : handles) {
        list.append(wrap(handle));
    }
    return list;
}

/// \brief Entities of one dimension: all that the case has at the time of asking, or a selection.
template <typename Side>
struct View
{
    using Entity = typename Side::Entity;
    using Ids = std::vector<int>;

    /// \brief Calls \p visit with each id, ascending if they are all of the case.
    /// \param visit runs no Python
    template <typename Visit>
    void forEachId(Visit visit) const
    {
        if (selection) {
            const Ids& ids = selection->ids();
            std::for_each(ids.begin(), ids.end(), visit);
            return;
        }
        for (auto walk = container().iterator(dimension); walk.hasNext();) {
            visit(walk.next().key());
        }
    }

    /// \brief The ids in the order of forEachId().
    Ids ids() const
    {
        Ids found;
        found.reserve(count());
        forEachId([&found](int id) { found.push_back(id); });
        return found;
    }

    /// \brief Calls \p visit with each entity in the order of ids(); throws Gone if one of a selection
    ///        is no more.
    /// \param visit runs no Python, which could change the case
    template <typename Visit>
    void forEach(Visit visit) const
    {
        if (selection) {
            selection->forEach(visit);
            return;
        }
        for (auto walk = container().iterator(dimension); walk.hasNext();) {
            visit(*walk.next().value());
        }
    }

    /// \brief The entities in the order of ids(); throws Gone if one of a selection is no more.
    std::vector<Entity*> entities() const
    {
        std::vector<Entity*> found(most());
        std::size_t place = 0;
        forEach([&place, entities = found.data()](Entity& entity) { entities[place++] = &entity; });
        found.resize(place);
        return found;
    }

    /// \brief Whether \p id is in it, be the entity there or not.
    bool has(int id) const { return !selection || selection->has(id); }

    /// \brief Throws Gone where the ids of a selection are those of other entities by now.
    void requireSameIds() const
    {
        if (selection) {
            selection->requireSameIds();
        }
    }

    /// \brief Number of ids(); throws Gone as that does.
    std::size_t count() const { return selection ? selection->ids().size() : most(); }

    /// \brief No less than count(), and no work.
    std::size_t most() const
    {
        return selection ? selection->most()
                         : static_cast<std::size_t>(container().count(dimension));
    }

    auto& container() const { return Side::container(*state); }

    CasePointer state;
    int dimension;
    std::shared_ptr<Selection<Side>> selection = nullptr; ///< null for all
};

/// \brief The entities of \p ids.
template <typename Side>
View<Side> selected(const CasePointer& state, int dimension, std::vector<int> ids)
{
    return {state, dimension, std::make_shared<Selection<Side>>(state, dimension, std::move(ids))};
}

using ModelEntities = View<ModelSide>;
using MeshEntities = View<MeshSide>;

} // namespace Ovra::GeoPython
