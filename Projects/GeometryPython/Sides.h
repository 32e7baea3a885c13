#pragma once

#include "CaseState.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <string>

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

} // namespace Ovra::GeoPython
