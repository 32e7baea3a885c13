#pragma once

#include "ImportedMesh.h"

#include <vector>

namespace Ovra::GeoTool
{

/// \brief For each node of a mesh, whether one of the elements of a dimension has it.
///
/// Most elements of the dimension above have none or few such nodes, and need not be looked at
/// further.
class NodeMarks
{
public:
    NodeMarks(const ImportedMesh& mesh, int dimension);

    bool has(int node) const { return marked_[static_cast<std::size_t>(node)]; }
    int countOn(const ImportedElement& element) const;

private:
    std::vector<bool> marked_;
};

} // namespace Ovra::GeoTool
