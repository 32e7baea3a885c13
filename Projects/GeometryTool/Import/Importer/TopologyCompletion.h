#pragma once

#include "ImportedMesh.h"
#include "SideTable.h"

#include <QString>

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Adds the faces, edges and vertices that the mesh calls for and the input does not give.
///
/// Each face of a volume element that no other element of its region shares must lie on a model
/// face, each edge of a surface element at the end of its model face on a model edge, each node
/// where model edges end or branch on a model vertex. What is missing goes to the entity that Gmsh
/// classifies its nodes on, if that is one without elements; the rest makes new entities, one for
/// each connected patch between the same regions and one for each chain between the same faces.
class TopologyCompletion
{
public:
    /// \param volumeSides of the mesh
    /// \param input the name of the file, for messages
    TopologyCompletion(ImportedMesh& mesh, const SideTable& volumeSides, const QString& input);

    /// \brief Adds faces, then edges, then vertices. Throws ToolError InputDamaged if more than two
    /// volume elements share a face.
    void complete();

private:
    using Missing = std::vector<ImportedElement>;
    using Owners = std::vector<std::vector<int>>; ///< for each missing element, what lies above it

    void completeFaces();
    void completeEdges();
    void completeVertices();
    void requireTwoSided(const NodeKey& key, SideTable::Run run) const;
    void placeOnEmptyEntities(int dimension, Missing& missing, Owners& owners);
    int emptyEntityUnder(int dimension, const ImportedElement& element,
                         const std::vector<bool>& empty) const;
    void addPatches(const Missing& faces, const Owners& owners);
    void addChains(const Missing& edges, const Owners& owners);
    void addParts(int dimension, const Missing& missing, const std::vector<std::size_t>& labels);
    bool isEnd(const std::vector<int>& edgesAtNode) const;

    ImportedMesh& mesh_;
    const SideTable& volumeSides_;
    QString input_;
};

} // namespace Ovra::GeoTool
