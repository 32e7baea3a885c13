#include "NodeMarks.h"

#include <algorithm>

namespace Ovra::GeoTool
{

NodeMarks::NodeMarks(const ImportedMesh& mesh, int dimension)
    : marked_(mesh.nodes.size(), false)
{
    for (const ImportedElement& element : mesh.elementsOf(dimension)) {
        for (int n = 0; n < element.nodeCount; ++n) {
            marked_[static_cast<std::size_t>(element.nodes[static_cast<std::size_t>(n)])] = true;
        }
    }
}

int NodeMarks::countOn(const ImportedElement& element) const
{
    return static_cast<int>(std::count_if(element.nodes.begin(),
                                          element.nodes.begin() + element.nodeCount,
                                          [this](int node) { return has(node); }));
}

} // namespace Ovra::GeoTool
