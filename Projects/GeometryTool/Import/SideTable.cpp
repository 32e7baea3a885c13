#include "SideTable.h"

#include <algorithm>

namespace Ovra::GeoTool
{

SideTable::SideTable(const ImportedMesh& mesh, int dimension)
{
    std::vector<std::array<int, 2>> edges;
    const auto& elements = mesh.elementsOf(dimension);
    for (std::size_t e = 0; e < elements.size(); ++e) {
        int local = 0;
        if (dimension == 3) {
            for (const auto& face : ElementShape::faces(elements[e].nodeCount)) {
                sides_.push_back({ElementShape::key(ElementShape::face(elements[e], face)),
                                  static_cast<int>(e), local++});
            }
            continue;
        }
        ElementShape::edges(elements[e], dimension, edges);
        for (const auto& edge : edges) {
            sides_.push_back({ElementShape::key(edge), static_cast<int>(e), local++});
        }
    }
    std::sort(sides_.begin(), sides_.end());
}

std::span<const SideTable::Side> SideTable::find(const NodeKey& key) const
{
    const auto [begin, end] =
        std::equal_range(sides_.begin(), sides_.end(), Side{key, 0, 0},
                         [](const Side& a, const Side& b) { return a.key < b.key; });
    return std::span<const Side>(sides_).subspan(static_cast<std::size_t>(begin - sides_.begin()),
                                                 static_cast<std::size_t>(end - begin));
}

} // namespace Ovra::GeoTool
