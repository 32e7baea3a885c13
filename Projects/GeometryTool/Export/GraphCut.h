#pragma once

#include <vector>

namespace Ovra::GeoTool
{

struct CutGraph;

/// \brief Throws ToolError if this build has no METIS.
void requireMetis();

/// \brief Cuts a graph in \p parts of about equal weight, so that as little as may be is cut; the
/// same graph gives the same parts.
/// \return the part of each node, from 0 on
/// \pre there are at least as many nodes as parts, and two parts or more
std::vector<int> cutGraph(CutGraph& graph, int parts);

} // namespace Ovra::GeoTool
