#pragma once

#include "Box.h"
#include "UnionFind.h"
#include "Vector.h"

#include <QString>

#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Turns the triangulated surface in Gmsh's current model into volumes to be meshed.
///
/// A body is a closed piece of the surface that hangs together by edges. A piece inside another one bounds the outer
/// volume from within; its own inside is a volume too, unless its triangles are turned inwards,
/// which makes it a hollow. The triangles stay the boundary of the mesh as they are, in a surface for
/// each piece and each surface that they come from.
class SurfaceFilling
{
public:
    /// \param namesBodies whether the name of a surface that bounds a volume alone is meant for the
    /// volume, as in STL files; other names stay on the surfaces
    explicit SurfaceFilling(bool namesBodies);

    /// \brief Reads the surface from Gmsh and parts it into pieces.
    void collect();

    /// \brief Why nothing can be filled, "its surface ..."; empty when all pieces are closed.
    QString obstacle() const { return obstacle_; }

    /// \brief Replaces Gmsh's model by one with the surfaces of the pieces, the volumes between
    /// them, and a physical group for each name; needs obstacle() to be empty.
    void addVolumes() const;

private:
    struct Triangle
    {
        std::array<std::size_t, 3> corners{}; ///< positions in points_
        std::size_t patch = 0;                ///< position in names_
    };

    struct Piece
    {
        std::vector<Triangle> triangles;
        Geo::Box box;
        double volume = 0; ///< negative when turned inwards
        int around = -1;   ///< the smallest piece that this one lies in
        int depth = 0;

        bool isHollow() const { return depth % 2 == 1 && volume < 0; }
    };

    /// Tags of entities by dimension and name.
    using Groups = std::map<std::pair<int, std::string>, std::vector<int>>;

    void readPoints();
    void readTriangles();
    void readPatch(int surface);
    void checkClosed();
    UnionFind connectedTriangles() const;
    void partIntoPieces();
    void nestPieces();
    bool isInside(const Piece& inner, const Piece& outer) const;
    Geo::Vector pointUnder(const Piece& piece, const Triangle& triangle) const;
    double solidAngle(const Piece& piece, const Geo::Vector& point) const;
    std::vector<int> addSurfaces(const Piece& piece, Groups& groups,
                                 std::set<std::size_t>& placed) const;
    void addNodes(int surface, const std::vector<std::size_t>& positions) const;
    bool givesItsNameToTheVolume(const Piece& piece) const;

    bool namesBodies_;
    std::unordered_map<std::size_t, std::size_t> positions_; ///< in points_, by tag of the node
    std::vector<Geo::Vector> points_;
    std::vector<Triangle> triangles_;
    std::vector<std::string> names_; ///< of the surfaces that were read
    std::vector<Piece> pieces_;
    QString obstacle_;
};

} // namespace Ovra::GeoTool
