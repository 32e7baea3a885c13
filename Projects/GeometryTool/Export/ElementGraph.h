#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

class CaseView;

/// \brief Which elements share a side: the dual graph of a mesh.
class ElementGraph
{
public:
    /// \brief Positions of two elements in CaseView::meshEntities(), the lower one first.
    using Link = std::pair<int, int>;

    explicit ElementGraph(const CaseView& view);

    std::size_t elementCount() const { return elementCount_; }

    /// \brief One for each side between two elements; where three or more have a side, from each to
    /// the next.
    const std::vector<Link>& links() const { return links_; }

private:
    std::size_t elementCount_;
    std::vector<Link> links_;
};

/// \brief A graph to be cut in parts, in the form that is common for that: the neighbours of node i
/// stand from starts[i] to starts[i + 1].
struct CutGraph
{
    /// \param nodeOf   the node of each element; elements of one node stay together
    /// \param nodeCount all nodes are below it, and each has an element
    CutGraph(const ElementGraph& elements, const std::vector<int>& nodeOf, std::size_t nodeCount);

    std::size_t nodeCount() const { return nodeWeights.size(); }

    std::vector<std::int32_t> starts;
    std::vector<std::int32_t> neighbours;  ///< ascending for each node
    std::vector<std::int32_t> linkWeights; ///< how many sides are between the two
    std::vector<std::int32_t> nodeWeights; ///< how many elements a node has
};

} // namespace Ovra::GeoTool
