#pragma once

#include "ImportedMesh.h"

namespace Ovra::GeoTool
{

/// \brief Finds box, measure, centroid, normal and planarity of every entity of an ImportedMesh.
///
/// Box, measure and centroid come from the OpenCASCADE kernel where it made the entity, otherwise
/// from the mesh, whose measures approach those of a curved shape from inside. A face is planar if
/// the kernel says so or if the points of its shape, or of its mesh, lie in a plane; its normal is
/// the mean normal of its mesh, weighted by area and of length 1, and so turned as the mesh is;
/// that of a closed face is zero. An edge is planar if it is straight; its normal is its direction
/// turned clockwise by a right angle in the xy plane, as for mesh edges, and zero for a closed
/// edge.
class EntityGeometry
{
public:
    explicit EntityGeometry(ImportedMesh& mesh);

    /// \brief Needs the mesh complete, and Gmsh's model of the entities still there.
    void compute();

private:
    void measureMesh(int dimension);
    void growBox(ImportedGeometry& geometry, const ImportedElement& element);
    void addPiece(int dimension, const ImportedElement& element);
    void askKernel(int dimension);
    void decidePlanarity(int dimension);
    void boundByFaces();

    ImportedMesh& mesh_;
    /// What lies on each entity of the dimension in hand: nodes of its elements.
    std::vector<std::vector<Geo::Vector>> points_;
    /// For each node the entity of that dimension whose box has taken it in last.
    std::vector<int> boxedIn_;
};

} // namespace Ovra::GeoTool
