#pragma once

#include "Vector.h"

#include <QString>

#include <array>
#include <cstddef>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Turns the triangulated surface in Gmsh's current model into volumes to be meshed.
///
/// A body is a connected, closed piece of the surface. A piece inside another one bounds the outer
/// volume from within; its own inside is a volume too, unless its triangles are turned inwards,
/// which makes it a hollow. The triangles stay the boundary of the mesh as they are.
class SurfaceFilling
{
public:
    /// \brief Reads the surface from Gmsh and parts it into pieces.
    void collect();

    /// \brief Why nothing can be filled, in words; empty when all pieces are closed.
    QString openness() const { return openness_; }

    /// \brief Replaces Gmsh's model by one with a surface for each piece and the volumes between
    /// them; needs openness() to be empty.
    void addVolumes() const;

private:
    using Triangle = std::array<std::size_t, 3>;

    struct Piece
    {
        std::vector<Triangle> triangles; ///< positions in points_
        double volume = 0;               ///< negative when turned inwards
        int around = -1;                 ///< the smallest piece that this one lies in
        int depth = 0;
    };

    void readTriangles();
    void checkClosed();
    void partIntoPieces();
    void nestPieces();
    bool contains(const Piece& piece, const Geo::Vector& point) const;
    void addPiece(const Piece& piece, int tag) const;

    std::vector<Geo::Vector> points_;
    std::vector<Triangle> triangles_;
    std::vector<Piece> pieces_;
    QString openness_;
};

} // namespace Ovra::GeoTool
