#pragma once

#include "ImportedMesh.h"
#include "SideTable.h"

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Parts the entities of a mesh without geometry into entities that a model can have.
///
/// A file may put all that is on a surface under one number. A region becomes one region for each
/// connected body unless a physical group holds it together; a face, one for each set of regions
/// that it lies between and, without a physical group, for each connected patch; an edge without a
/// physical group, one for each chain between branchings with the same faces; a vertex, one for
/// each node. The first part keeps number and names, the others get new numbers and the same names.
/// Entities of a geometry kernel stay whole.
class EntitySplitting
{
public:
    /// \param volumeSides of the mesh
    EntitySplitting(ImportedMesh& mesh, const SideTable& volumeSides);

    /// \brief Splits regions, then faces, edges and vertices.
    void split();

private:
    void splitRegions();
    void splitFaces();
    void splitEdges();
    void splitVertices();
    bool staysWhole(int dimension, const ImportedElement& element) const;
    void apply(int dimension, const std::vector<std::size_t>& labels);

    std::vector<std::vector<int>> entitiesAbove(int dimension, const SideTable& sides) const;

    ImportedMesh& mesh_;
    const SideTable& volumeSides_;
};

} // namespace Ovra::GeoTool
