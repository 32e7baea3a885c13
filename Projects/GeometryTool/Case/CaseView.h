#pragma once

#include "MeshQuality.h"
#include "UpwardPositions.h"
#include "Vector.h"
#include "VertexLists.h"

#include <array>
#include <optional>
#include <vector>

namespace Ovra::Geo
{
class Database;
class Mesh;
class MeshEntity;
class Model;
class ModelEntity;
} // namespace Ovra::Geo

namespace Ovra::GeoTool
{

/// \brief All entities of a case in ascending id, for checks that walk them more than once.
///
/// It owns nothing and holds as long as no entity is added or removed.
class CaseView
{
public:
    enum class Part
    {
        Case,
        Model ///< as if there were no mesh, which costs a walk over all of it
    };

    explicit CaseView(const Geo::Database& database, Part part = Part::Case);

    Geo::Model& model() const { return *model_; }
    Geo::Mesh& mesh() const { return *mesh_; }

    /// \brief Dimension of what bounds the domain, 1 in a model without regions.
    int faceDimension() const { return faceDimension_; }
    int elementDimension() const { return faceDimension_ + 1; }

    const std::vector<Geo::ModelEntity*>& modelEntities(int dimension) const;
    const std::vector<Geo::MeshEntity*>& meshEntities(int dimension) const;

    /// \brief The ids of meshEntities(dimension), made at the first call: to ask each of these
    /// again is a cache miss.
    const std::vector<int>& ids(int dimension) const;

    /// \brief Positions in meshEntities(dimension) by id, made at the first call.
    const IdPositions& positions(int dimension) const;

    /// \brief The vertices of meshEntities(dimension), made at the first call.
    /// \pre all vertices that are listed are in the mesh
    const VertexLists& vertexLists(int dimension) const;

    /// \brief What of the next dimension lies at meshEntities(dimension), 1 or 2, made at the first
    /// call.
    /// \pre as of vertexLists()
    const UpwardPositions& upward(int dimension) const;

    /// \brief How good the mesh entities of \p dimension, 1 to 3, are, judged at the first call.
    /// \pre as of vertexLists(); no vertex moves between two calls
    const MeshQuality& quality(int dimension, Progress& progress) const;

    /// \brief The points of meshEntities(0), made at the first call.
    const std::vector<Geo::Vector>& points() const;

    /// \brief Mesh entities of the model entity's own dimension that stand on it, by id.
    static std::vector<Geo::MeshEntity*> childrenOf(const Geo::ModelEntity& entity);

    /// \brief The vertices of those, by id.
    static std::vector<Geo::MeshEntity*> verticesOn(const Geo::ModelEntity& entity);

private:
    Geo::Model* model_;
    Geo::Mesh* mesh_;
    int faceDimension_;
    std::array<std::vector<Geo::ModelEntity*>, 4> modelEntities_;
    std::array<std::vector<Geo::MeshEntity*>, 4> meshEntities_;
    mutable std::array<std::optional<std::vector<int>>, 4> ids_;
    mutable std::array<std::optional<IdPositions>, 4> positions_;
    mutable std::array<std::optional<VertexLists>, 4> vertexLists_;
    mutable std::array<std::optional<UpwardPositions>, 3> upward_;
    mutable std::array<std::optional<MeshQuality>, 4> qualities_;
    mutable std::optional<std::vector<Geo::Vector>> points_;
};

} // namespace Ovra::GeoTool
