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
    static constexpr const char* noun = "model";
    static constexpr bool isRenumbered = false;
};

/// \brief The mesh of a case, for templates that serve both sides.
struct MeshSide
{
    using Entity = Geo::MeshEntity;
    static Geo::Mesh& container(CaseState& state) { return state.mesh(); }
    static constexpr const char* noun = "mesh";
    static constexpr bool isRenumbered = true; ///< whether an entity's id may change
};

/// \brief "mesh face 7".
std::string entityText(const char* side, int dimension, int id);

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
    {
    }

    /// \brief The entity; throws Gone, or Busy.
    Entity& get() const
    {
        if (Side::container(*state).entity(dimension, id) != entity) {
            throw Gone(text() + " was removed or renumbered; ask the case for it anew");
        }
        return *entity;
    }

    std::string text() const { return entityText(Side::noun, dimension, id); }

    bool operator==(const Handle& other) const
    {
        return state == other.state && dimension == other.dimension && id == other.id &&
               entity == other.entity;
    }

    CasePointer state;
    int dimension;
    int id;
    Entity* entity; ///< only ever compared before get() has found it in the case
};

using ModelHandle = Handle<ModelSide>;
using MeshHandle = Handle<MeshSide>;

/// \brief A class of its own for each dimension, as Python knows them: ModelFace, MeshRegion.
template <typename Side, int Dimension>
struct HandleOf : Handle<Side>
{
    using Handle<Side>::Handle;
};

/// \brief The Python object that stands for \p entity, of the class of its dimension.
template <typename Side>
pybind11::object wrap(const CasePointer& state, typename Side::Entity& entity)
{
    switch (entity.dimension()) {
    case 0:
        return pybind11::cast(HandleOf<Side, 0>(state, entity));
    case 1:
        return pybind11::cast(HandleOf<Side, 1>(state, entity));
    case 2:
        return pybind11::cast(HandleOf<Side, 2>(state, entity));
    default:
        return pybind11::cast(HandleOf<Side, 3>(state, entity));
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
        Side::container(*state);
        if (Side::isRenumbered && numbering != state->numbering()) {
            throw Gone("the mesh was renumbered after this selection was made");
        }
    }

    std::size_t count() const
    {
        const int all = Side::container(*state).count(dimension);
        return selection ? selection->size() : static_cast<std::size_t>(all);
    }

    CasePointer state;
    int dimension;
    std::shared_ptr<const Ids> selection = nullptr; ///< null for all
    mutable std::shared_ptr<const Ids> sorted = nullptr;
    int numbering = state->numbering(); ///< as the selection was made
};

using ModelEntities = View<ModelSide>;
using MeshEntities = View<MeshSide>;

} // namespace Ovra::GeoPython
