#pragma once

#include "Box.h"
#include "Vector.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <set>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief An element of the mesh on its way from Gmsh to the database.
///
/// Nodes are positions in ImportedMesh::nodes, in the node order of Geo::MeshEntity.
struct ImportedElement
{
    std::array<int, 8> nodes{};
    int nodeCount = 0;
    int entity = 0; ///< position in ImportedMesh::entities of the element's own dimension
};

struct ImportedNode
{
    std::size_t gmshTag = 0;
    Geo::Vector point;
    int dimension = 4; ///< of the entity that the node is classified on; 4 while there is none
    int entity = -1;   ///< position in ImportedMesh::entities[dimension]
};

/// \brief Measures of a model entity; see the classes of Geo::ModelEntity for their meaning.
struct ImportedGeometry
{
    Geo::Box box;
    double measure = 0; ///< length, area or volume
    Geo::Vector centroid;
    Geo::Vector normal;
    bool planar = false;
};

/// \brief A model entity on its way from Gmsh, or from the mesh alone, to the database.
struct ImportedEntity
{
    int id = 0;
    int gmshTag = 0;        ///< of the entity that it is or was cut from; 0 when rebuilt
    bool fromCad = false;   ///< a geometry kernel knows its shape
    QString label;          ///< the entity's own name in the input
    QStringList groups;     ///< names of its physical groups, by ascending group number
    bool inGroup = false;   ///< belongs to a physical group, named or not
    bool kept = false;      ///< stays, even without any mesh
    bool discarded = false; ///< without any mesh, and no kernel knows its shape
    ImportedGeometry geometry;
    std::array<std::set<int>, 4> adjacent; ///< positions in ImportedMesh::entities, by dimension

    /// \brief All that it can be called by: its physical groups and its own name; none is empty.
    QStringList names() const;
};

/// \brief Model and mesh between Gmsh and the database, in plain vectors.
///
/// The steps of the import fill and complete it one after the other. Positions are stable: entities
/// and elements are only appended, and discarded entities stay in their place. Entities stand in
/// ascending order of id.
struct ImportedMesh
{
    int elementDimension = 3; ///< 3, or 2 for a model without regions
    std::vector<ImportedNode> nodes;
    std::array<std::vector<ImportedElement>, 4> elements;
    std::array<std::vector<ImportedEntity>, 4> entities;

    const Geo::Vector& point(const ImportedElement& element, int node) const
    {
        return nodes[static_cast<std::size_t>(element.nodes[static_cast<std::size_t>(node)])].point;
    }
    Geo::Box boxOf(const ImportedElement& element) const
    {
        Geo::Box box;
        for (int n = 0; n < element.nodeCount; ++n) {
            box += point(element, n);
        }
        return box;
    }
    ImportedEntity& entity(int dimension, int position)
    {
        return entities[static_cast<std::size_t>(dimension)][static_cast<std::size_t>(position)];
    }
    const ImportedEntity& entity(int dimension, int position) const
    {
        return entities[static_cast<std::size_t>(dimension)][static_cast<std::size_t>(position)];
    }
    std::vector<ImportedElement>& elementsOf(int dimension)
    {
        return elements[static_cast<std::size_t>(dimension)];
    }
    const std::vector<ImportedElement>& elementsOf(int dimension) const
    {
        return elements[static_cast<std::size_t>(dimension)];
    }
    std::vector<ImportedEntity>& entitiesOf(int dimension)
    {
        return entities[static_cast<std::size_t>(dimension)];
    }
    const std::vector<ImportedEntity>& entitiesOf(int dimension) const
    {
        return entities[static_cast<std::size_t>(dimension)];
    }

    /// \brief Appends an entity with the id above all others of its dimension; its position.
    int addEntity(int dimension, const ImportedEntity& entity);

    /// \brief Position of the entity with an id; -1 if there is none or it is discarded.
    int positionOf(int dimension, int id) const;

    /// \brief What each element of a dimension lies on, for walks in another order than theirs: in
    /// one array by itself it is found in the cache.
    std::vector<int> entitiesOfElements(int dimension) const;

    /// \brief Takes all elements off an entity; their nodes stay.
    void removeElementsOf(int dimension, int position);

    /// \brief Removes the nodes that no line, face or region uses, and the points on them.
    /// \return for each former position whether the node is gone
    std::vector<bool> removeUnusedNodes();

    /// \brief Notes, both ways and once, that two entities touch.
    void link(int dimensionA, int positionA, int dimensionB, int positionB);

    /// \brief Forgets all links of an entity, on both sides.
    void unlink(int dimension, int position);
};

} // namespace Ovra::GeoTool
