#pragma once

#include <map>
#include <set>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Parts faces that share edges into shells.
///
/// A shell grows over its open edges, edges that one of its faces uses and no other, by the face of
/// the lowest number there that belongs to none yet; where several bodies meet in an edge, each so
/// takes those of the lowest numbers. Where all others are taken, a shell may take one
/// as its second side: it is then a face between two bodies. A face used twice at one edge, as at
/// the seam of a cylinder, is no opening.
class FaceShells
{
public:
    struct Shell
    {
        std::vector<int> faces; ///< ascending
        int freeEdges = 0;      ///< edges that one of the faces uses; 0 for a closed shell
    };

    /// \param edgesOfFace the edges of each face, by numbers of faces and edges; those without
    /// length left out
    explicit FaceShells(const std::map<int, std::vector<int>>& edgesOfFace);

    /// \brief Ascending by the first face. A face stands in two closed shells at most, and in one
    /// open one if in no closed one.
    const std::vector<Shell>& shells() const { return shells_; }

private:
    struct Growth
    {
        std::set<int> faces;
        std::map<int, int> uses;
        std::set<int> open; ///< edges with one use
    };

    void grow(int first);
    void add(int face, Growth& growth) const;
    int nextFace(const Growth& growth) const;
    bool fits(int face, const Growth& growth) const;
    Growth withoutSharedFaces(const Growth& growth) const;

    std::map<int, std::vector<int>> edgesOfFace_;
    std::map<int, std::vector<int>> facesAtEdge_;
    std::map<int, int> shellCount_; ///< of the shells that a face belongs to
    std::vector<Shell> shells_;
};

} // namespace Ovra::GeoTool
