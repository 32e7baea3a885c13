#include "FaceShells.h"

#include <algorithm>
#include <utility>

namespace Ovra::GeoTool
{

FaceShells::FaceShells(const std::map<int, std::vector<int>>& edgesOfFace)
    : edgesOfFace_(edgesOfFace)
{
    for (const auto& [face, edges] : edgesOfFace_) {
        shellCount_.emplace(face, 0);
        for (const int edge : edges) {
            facesAtEdge_[edge].push_back(face);
        }
    }
    for (const auto& [face, edges] : edgesOfFace_) {
        if (shellCount_.at(face) == 0) {
            grow(face);
        }
    }
}

void FaceShells::grow(int first)
{
    Growth growth;
    for (int face = first; face >= 0; face = nextFace(growth)) {
        add(face, growth);
    }
    if (!growth.open.empty()) {
        growth = withoutSharedFaces(growth);
    }
    for (const int face : growth.faces) {
        ++shellCount_[face];
    }
    shells_.push_back(
        {{growth.faces.begin(), growth.faces.end()}, static_cast<int>(growth.open.size())});
}

void FaceShells::add(int face, Growth& growth) const
{
    growth.faces.insert(face);
    for (const int edge : edgesOfFace_.at(face)) {
        if (++growth.uses[edge] == 1) {
            growth.open.insert(edge);
        } else {
            growth.open.erase(edge);
        }
    }
}

/// \brief The face to go on with, one of no shell first; -1 if there is none.
int FaceShells::nextFace(const Growth& growth) const
{
    constexpr int sides = 2;
    std::pair<int, int> best(sides, -1);
    for (const int edge : growth.open) {
        for (const int face : facesAtEdge_.at(edge)) {
            const std::pair<int, int> candidate(shellCount_.at(face), face);
            if (candidate < best && growth.faces.count(face) == 0 && fits(face, growth)) {
                best = candidate;
            }
        }
    }
    return best.second;
}

/// \brief Whether the edges of the face are all open or unused.
bool FaceShells::fits(int face, const Growth& growth) const
{
    const auto& edges = edgesOfFace_.at(face);
    return std::all_of(edges.begin(), edges.end(), [&growth](int edge) {
        return growth.open.count(edge) > 0 || growth.uses.count(edge) == 0;
    });
}

FaceShells::Growth FaceShells::withoutSharedFaces(const Growth& growth) const
{
    Growth own;
    for (const int face : growth.faces) {
        if (shellCount_.at(face) == 0) {
            add(face, own);
        }
    }
    return own;
}

} // namespace Ovra::GeoTool
