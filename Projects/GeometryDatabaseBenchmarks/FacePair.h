#pragma once

#include "Database.h"
#include "Mesh.h"
#include "MeshEntity.h"
#include "Model.h"
#include "ModelEntity.h"

#include <memory>

namespace Benchmarks
{

/// \brief Two unit squares of triangles, one above the other, whose meshes do not match.
///
/// Face 1 lies at z = 0 with its normal down, face 2 at z = height with its normal up, as the faces of a
/// body do; a region without mesh lies between them. Upward adjacencies are set.
class FacePair
{
public:
    /// \param vertices about how many vertices each face has
    /// \param height   distance of the faces
    FacePair(int vertices, double height);

    Ovra::Geo::Database& database() { return *database_; }
    Ovra::Geo::Mesh& mesh() { return *database_->mesh(); }
    Ovra::Geo::Model& model() { return *database_->model(); }

private:
    void addFace(int id, int divisions, double z, bool upward);

    std::unique_ptr<Ovra::Geo::Database> database_;
};

} // namespace Benchmarks
