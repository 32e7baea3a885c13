#pragma once

#include "CaseMatch.h"
#include "PlacedCase.h"

#include <vector>

namespace Ovra::GeoTool
{

/// \brief Matches the mesh entities of two cases whose ids mean nothing: vertices by their places,
/// and elements, faces and edges by their vertices, then by the places of these.
///
/// Vertices in the same place, on the two sides of a split interface for instance, are told apart
/// by their attributes and by what uses them; elements of the same vertices by what they stand on.
class MeshMatching
{
public:
    /// \param a, b, match not owned; must outlive this object
    /// \param match has the model matched, and takes in what is matched of the mesh
    /// \param tolerance how far each coordinate of a vertex may differ
    MeshMatching(const PlacedCase& a, const PlacedCase& b, double tolerance, CaseMatch& match);

    void run();

private:
    using Owner = EntityName::Owner;
    using Signatures = std::vector<Signature>;

    /// Which of the two cases.
    enum class Side
    {
        A,
        B
    };

    /// By what vertices in the same place are told apart.
    enum class By
    {
        Everything, ///< own attributes and parent, what uses it, and what that stands on
        Users,      ///< what uses it, and what that stands on
        UserPlaces, ///< where that lies
        Parents,    ///< what that stands on
        Place       ///< nothing
    };

    void matchVertices();
    void matchVerticesLeft();
    void matchElements(int dimension, bool withParents);
    void matchElementsByPlace(int dimension, bool withParents);
    Signatures vertexSignatures(Side side, By by) const;
    Signature vertexSignature(Side side, int vertex, By by) const;
    Signature ownSignature(Side side, int vertex) const;
    Signature usersSignature(Side side, int vertex, By by) const;
    Signatures elementSignatures(Side side, int dimension, bool withParents) const;
    Signatures elementPlaces(Side side, int dimension, bool withParents) const;
    Signature parentSignature(Side side, int dimension, int position) const;
    Signature vertexNumber(Side side, int vertex) const;
    bool isMatched(Side side, int vertex) const;
    std::vector<int> verticesLeft(Side side) const;

    const PlacedCase& placed(Side side) const { return side == Side::A ? a_ : b_; }

    const PlacedCase& a_;
    const PlacedCase& b_;
    double tolerance_;
    CaseMatch& match_;
};

} // namespace Ovra::GeoTool
