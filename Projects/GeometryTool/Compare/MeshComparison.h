#pragma once

#include "CasePair.h"

#include <array>
#include <vector>

namespace Ovra::GeoTool
{

class Progress;

/// \brief Compares two meshes: what they are as a whole, and the entities that are matched, apart
/// from their upward lists.
class MeshComparison
{
public:
    /// \param pair, differences, progress not owned; must outlive this object
    MeshComparison(const CasePair& pair, CaseDifferences& differences, Progress& progress);

    void run();

    /// \brief Whether the entity at that position of A is matched and lists other vertices than in
    ///        B, or in another order.
    bool hasOtherVertices(int dimension, int inA) const;

private:
    void compareWhole() const;
    void compareEntities(int dimension);
    void comparePoints(int inA, int inB) const;
    void compareVertices(int dimension, int inA, int inB);
    void compareParents(int dimension, int inA, int inB) const;
    bool areVerticesMatched(std::span<const int> a, std::span<const int> b) const;

    const CasePair& pair_;
    CaseDifferences& differences_;
    Progress& progress_;
    std::array<std::vector<char>, 4> haveOtherVertices_;
};

} // namespace Ovra::GeoTool
