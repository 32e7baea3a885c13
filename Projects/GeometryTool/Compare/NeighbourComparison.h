#pragma once

#include "CasePair.h"

#include <array>
#include <vector>

namespace Ovra::GeoTool
{

class MeshComparison;

/// \brief Compares what the matched entities list as their neighbours: all lists of the model, and
/// the upward lists of the mesh.
///
/// The upward lists of a mesh follow from the vertices of its elements, so that only those are
/// looked at that have a vertex of an element which is in one case only or has other vertices.
class NeighbourComparison
{
public:
    /// \param pair, mesh, differences not owned; must outlive this object
    /// \param mesh   has been run
    NeighbourComparison(const CasePair& pair, const MeshComparison& mesh,
                        CaseDifferences& differences);

    void run();

private:
    using Owner = EntityName::Owner;

    /// Vertices, by position, of elements of one dimension that differ; empty where none does.
    struct Marks
    {
        std::vector<char> inA;
        std::vector<char> inB;
    };

    void compareModel(int dimension) const;
    void compareMesh(int dimension) const;
    Marks verticesOfDiffering(int dimension) const;
    bool mayDiffer(int dimension, int inA, int inB, const Marks& marks) const;
    std::optional<Change> changeOf(Owner owner, int dimension, int inA, int inB,
                                   int neighbourDimension) const;
    bool isOrderCompared(Owner owner) const;
    void tell(Owner owner, int dimension, int inA, int inB, std::vector<Change> changes) const;

    const CasePair& pair_;
    const MeshComparison& mesh_;
    CaseDifferences& differences_;
    std::array<Marks, 4> marks_; ///< by the dimension of the elements
};

} // namespace Ovra::GeoTool
