#pragma once

#include "NeighbourSets.h"

#include <QHash>
#include <QList>

namespace Ovra::Geo
{

class MeshEntity;

/// \brief Sets the upward lists of the edges or faces of a mesh, one after the other, when the lists
///        of the vertices are complete. Not for hosts.
///
/// Elements on the same vertices have the same neighbours. Where those are many, which no sound mesh
/// has, one list is made and shared: a list for each would take time and memory by the product of the
/// numbers of elements and neighbours, of which a short stream can name many.
class UpwardLists
{
public:
    /// \brief Does what MeshEntity::setUpwardAdjacencies() of \p element does.
    /// \param element of the same dimension in all calls
    void set(MeshEntity* element);

private:
    void setOrShare(MeshEntity* element, int upward);

    NeighbourSets sets_;
    QHash<QList<MeshEntity*>, MeshEntity*> firstOn_; // by vertices, sorted and each once
};

} // namespace Ovra::Geo
