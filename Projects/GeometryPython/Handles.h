#pragma once

#include "CaseState.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Ovra::GeoPython
{

/// \brief The model of a case, for templates that serve both sides.
struct ModelSide
{
    using Entity = Geo::ModelEntity;
    static Geo::Model& container(CaseState& state) { return state.model(); }
    static int epoch(const CaseState&) { return 0; }
    static constexpr const char* noun = "model";
};

/// \brief The mesh of a case, for templates that serve both sides.
struct MeshSide
{
    using Entity = Geo::MeshEntity;
    static Geo::Mesh& container(CaseState& state) { return state.mesh(); }
    static int epoch(const CaseState& state) { return state.meshEpoch(); }
    static constexpr const char* noun = "mesh";
};

/// \brief "mesh face 7".
std::string entityText(const char* side, int dimension, int id);

/// \brief Throws ValueError unless \p dimension is 0 to 3.
void requireDimension(int dimension);

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

/// \brief Throws Gone, "the mesh was renumbered after this walk began", unless ids are still those of
///        \p epoch, or Busy.
template <typename Side>
void requireEpoch(CaseState& state, int epoch, const char* since)
{
    Side::container(state);
    if (Side::epoch(state) != epoch) {
        throw Gone(std::string("the mesh was renumbered after this ") + since);
    }
}

/// \brief Entities of one dimension: all that the case has at the time of asking, or a selection.
template <typename Side>
struct View
{
    using Entity = typename Side::Entity;
    using Ids = std::vector<int>;

    /// \brief The ids, ascending if they are all of the case.
    Ids ids() const
    {
        if (selection) {
            requireSameIds();
            return *selection;
        }
        Ids found;
        auto& container = Side::container(*state);
        found.reserve(static_cast<std::size_t>(container.count(dimension)));
        for (auto walk = container.iterator(dimension); walk.hasNext();) {
            found.push_back(walk.next().key());
        }
        return found;
    }

    /// \brief The entities in the order of ids(); throws Gone if one of a selection is no more.
    std::vector<Entity*> entities() const
    {
        std::vector<Entity*> found;
        auto& container = Side::container(*state);
        found.reserve(count());
        if (!selection) {
            for (auto walk = container.iterator(dimension); walk.hasNext();) {
                found.push_back(walk.next().value());
            }
            return found;
        }
        requireSameIds();
        for (const int id : *selection) {
            Entity* const entity = container.entity(dimension, id);
            if (entity == nullptr) {
                throw Gone(entityText(Side::noun, dimension, id) + " is no more");
            }
            found.push_back(entity);
        }
        return found;
    }

    /// \brief Whether \p id is in it, be the entity there or not. The first question sorts a selection.
    bool has(int id) const
    {
        if (!selection) {
            return true;
        }
        requireSameIds();
        if (!sorted) {
            auto ids = std::make_shared<Ids>(*selection);
            std::sort(ids->begin(), ids->end());
            sorted = std::move(ids);
        }
        return std::binary_search(sorted->begin(), sorted->end(), id);
    }

    /// \brief Throws Gone where the ids of a selection are those of other entities by now.
    void requireSameIds() const
    {
        if (selection) {
            requireEpoch<Side>(*state, epoch, "selection was made");
        }
    }

    /// \brief Number of ids(); throws Gone as that does.
    std::size_t count() const
    {
        requireSameIds();
        const int all = Side::container(*state).count(dimension);
        return selection ? selection->size() : static_cast<std::size_t>(all);
    }

    CasePointer state;
    int dimension;
    std::shared_ptr<const Ids> selection = nullptr; ///< null for all
    mutable std::shared_ptr<const Ids> sorted = nullptr;
    int epoch = Side::epoch(*state); ///< as the selection was made
};

using ModelEntities = View<ModelSide>;
using MeshEntities = View<MeshSide>;

} // namespace Ovra::GeoPython
