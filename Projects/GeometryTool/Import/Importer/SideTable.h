#pragma once

#include "ElementShape.h"
#include "ImportedMesh.h"
#include "SidesByVertex.h"

namespace Ovra::GeoTool
{

class NodeMarks;

/// \brief The sides of all elements of one dimension, sorted by their nodes: the faces of volume
/// elements or the edges of surface elements.
///
/// It reads the mesh once, when it is made, and keeps positions of elements in their dimension.
class SideTable
{
public:
    using Side = SidesByVertex::Side;
    using Run = SidesByVertex::Run;

    SideTable(const ImportedMesh& mesh, int dimension);

    /// \brief Of the sides of elements of \p dimension those whose nodes all lie on elements of one
    /// dimension less: all that can be found by one of these, and a fraction of all.
    static SideTable onElementsBelow(const ImportedMesh& mesh, int dimension);

    /// \brief The sides with these nodes; ascending by element.
    Run find(const NodeKey& key) const { return sides_.find(key.nodes); }

    /// \brief Calls \p action with the key and the run of all sides that have these nodes.
    template <typename Action>
    void forEachRun(Action action) const
    {
        sides_.forEachRun(
            [&action](const SidesByVertex::Key& nodes, Run run) { action(NodeKey{nodes}, run); });
    }

private:
    /// \param on nodes that all nodes of a side are among, or null for all
    SideTable(const ImportedMesh& mesh, int dimension, const NodeMarks* on);

    SidesByVertex sides_;
};

} // namespace Ovra::GeoTool
