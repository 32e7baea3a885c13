#pragma once

#include "ImportedMesh.h"

namespace Ovra::GeoTool
{

/// \brief Ties the entities of an ImportedMesh to one another and its nodes to the entities.
class TopologyLinks
{
public:
    /// \brief From the links between neighbouring dimensions makes those across dimensions: a
    /// vertex touches the faces of its edges, and so on.
    static void close(ImportedMesh& mesh);

    /// \brief Links entities that share nodes of the mesh: the side of an element on a lower entity
    /// makes it touch the entity of the element.
    static void addTouching(ImportedMesh& mesh);

    /// \brief Classifies each node on an entity of the lowest dimension whose elements use it, on
    /// the one that Gmsh says where there are several, else on the first.
    static void classifyNodes(ImportedMesh& mesh);

    /// \brief Marks the entities that have no elements and no geometry of their own, unless they are
    /// kept.
    /// \return how many there are
    static int discardEmpty(ImportedMesh& mesh);
};

} // namespace Ovra::GeoTool
