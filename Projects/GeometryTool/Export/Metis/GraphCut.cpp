#include "GraphCut.h"

#include "ElementGraph.h"
#include "ToolError.h"

#include <array>
#include <metis.h>
#include <new>

namespace Ovra::GeoTool
{

static_assert(sizeof(idx_t) == sizeof(std::int32_t));

std::vector<int> cutGraph(CutGraph& graph, int parts)
{
    std::array<idx_t, METIS_NOPTIONS> options = {};
    METIS_SetDefaultOptions(options.data()); // among them the seed
    auto nodes = static_cast<idx_t>(graph.nodeCount());
    idx_t constraints = 1;
    idx_t partCount = parts;
    idx_t cut = 0;
    std::vector<int> partOf(graph.nodeCount());
    const int result =
        METIS_PartGraphKway(&nodes, &constraints, graph.starts.data(), graph.neighbours.data(),
                            graph.nodeWeights.data(), nullptr, graph.linkWeights.data(), &partCount,
                            nullptr, nullptr, options.data(), &cut, partOf.data());
    if (result == METIS_ERROR_MEMORY) {
        throw std::bad_alloc();
    }
    if (result != METIS_OK) {
        throw ToolError(ExitCode::InternalError,
                        QStringLiteral("METIS cannot cut the elements in parts"));
    }
    return partOf;
}

} // namespace Ovra::GeoTool
