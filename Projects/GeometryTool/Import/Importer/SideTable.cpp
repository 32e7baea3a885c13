#include "SideTable.h"

#include "ElementTopology.h"
#include "NodeMarks.h"

#include <algorithm>

namespace Ovra::GeoTool
{

namespace
{

int smallestOf(const ImportedElement& element, const ElementTopology::Side& local)
{
    int smallest = element.nodes[static_cast<std::size_t>(local.front())];
    for (const int node : local) {
        smallest = std::min(smallest, element.nodes[static_cast<std::size_t>(node)]);
    }
    return smallest;
}

bool isOn(const NodeMarks& marks, const ImportedElement& element,
          const ElementTopology::Side& local)
{
    return std::all_of(local.begin(), local.end(), [&](int node) {
        return marks.has(element.nodes[static_cast<std::size_t>(node)]);
    });
}

} // namespace

SideTable::SideTable(const ImportedMesh& mesh, int dimension)
    : SideTable(mesh, dimension, nullptr)
{
}

SideTable SideTable::onElementsBelow(const ImportedMesh& mesh, int dimension)
{
    const NodeMarks marks(mesh, dimension - 1);
    return {mesh, dimension, &marks};
}

SideTable::SideTable(const ImportedMesh& mesh, int dimension, const NodeMarks* on)
    : sides_(0, mesh.nodes.size(), [&](auto add) {
        const auto& elements = mesh.elementsOf(dimension);
        for (std::size_t e = 0; e < elements.size(); ++e) {
            const ImportedElement& element = elements[e];
            if (on != nullptr && on->countOn(element) < dimension) {
                continue;
            }
            for (const auto& local : ElementTopology::find(dimension, element.nodeCount)->sides) {
                if (on == nullptr || isOn(*on, element, local)) {
                    add(smallestOf(element, local),
                        [&] { return Side(ElementShape::sideKey(element, local).nodes, e); });
                }
            }
        }
    })
{
}

} // namespace Ovra::GeoTool
