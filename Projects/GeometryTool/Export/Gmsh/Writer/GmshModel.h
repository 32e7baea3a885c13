#pragma once

#include "Buckets.h"
#include "GroupNames.h"
#include "IdPositions.h"

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace Ovra::Geo
{
class MeshEntity;
}

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Makes a case the current model of Gmsh: discrete entities with their boundaries, nodes,
/// elements and physical groups.
///
/// Entities keep their ids, nodes those of the mesh vertices, and elements of the highest dimension
/// those of the mesh entities; the other elements are numbered behind them. Elements that stand on
/// no region become an entity of their own, with an id behind all.
class GmshModel
{
public:
    /// \brief Throws ToolError Unsuitable for what Gmsh has no counterpart for: ids that are not
    /// positive, or so high that no others fit behind them, and numbers of vertices that make no
    /// element; and for numbers that the format has no room for.
    static void requireFit(const CaseView& view, const GmshFormat& format);

    /// \pre requireFit()
    GmshModel(const CaseView& view, const GmshFormat& format, const GroupNames& names);

    void make();

private:
    void addEntities(int dimension) const;
    Buckets<int> verticesByEntity() const;
    std::vector<bool> onPoints(const Buckets<int>& byEntity) const;
    std::vector<bool> verticesOf(int dimension) const;
    void addNodes(const Buckets<int>& byEntity, const std::vector<bool>& wanted);
    void addNodesOf(int dimension, int entity, std::span<const int> vertices) const;
    void addPoints();
    void addElements(int dimension, const std::vector<int>& positions);
    void addElementsOf(int dimension, int entity, std::span<const int> elements);
    void addGroups() const;

    std::vector<int> positionsOf(int dimension) const;
    int positionOf(const Geo::MeshEntity& entity, int dimension) const;
    std::vector<std::size_t> nodesOf(int dimension, std::size_t corners,
                                     std::span<const int> elements) const;
    std::vector<std::size_t> tagsOf(int dimension, std::span<const int> elements);

    const CaseView& view_;
    const GmshFormat& format_;
    const GroupNames& names_;
    std::array<std::vector<int>, 4> entities_; ///< ids, ascending
    std::array<IdPositions, 4> positions_;     ///< of the ids in entities_
    int strayEntity_ = 0;                      ///< for elements that stand on no region
    std::vector<std::size_t> nodeTags_;        ///< by position of the mesh vertex
    std::vector<bool> isAdded_;                ///< the same: whether Gmsh has the node
    std::size_t nextTag_;                      ///< for elements below the highest dimension
};

} // namespace Ovra::GeoTool
