#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <vector>

namespace Ovra::Geo
{
class ModelEntity;
}

namespace Ovra::GeoTool
{

class CaseView;

/// \brief What can be seen of a case when it is taken apart into its regions: mesh faces, by the
/// model face on which they stand, and mesh edges, by the model edge.
///
/// Sides of elements that lie on the outside of the mesh and that no mesh face covers are put with
/// the region of the element. Mesh faces and edges within a region, and mesh edges within a face,
/// are left out, as are elements of no known kind and those with a vertex at no finite place. Vertices
/// are positions in CaseView::points().
class CaseSurface
{
public:
    struct Patch
    {
        const Geo::ModelEntity* entity = nullptr; ///< null of mesh faces that stand on nothing
        std::vector<int> triangles;               ///< three vertices each
        std::vector<int> quadrilaterals;          ///< four vertices each, in their order round it

        std::size_t polygonCount() const
        {
            return triangles.size() / 3 + quadrilaterals.size() / 4;
        }
    };

    struct Line
    {
        const Geo::ModelEntity* entity = nullptr;
        std::vector<int> ends; ///< two vertices for each mesh edge
    };

    /// \param view not owned; must outlive this object
    explicit CaseSurface(const CaseView& view);

    /// \brief By dimension of the entity, then by its id.
    const std::vector<Patch>& patches() const { return patches_; }
    const std::vector<Line>& lines() const { return lines_; }

    /// \brief Whether all of these vertices have a place where something can be drawn.
    bool isDrawable(std::span<const int> vertices) const;

private:
    void addFaces();
    void addBareSides();
    void addEdges();
    Patch& patchOf(const Geo::ModelEntity* entity);
    void addPolygon(const Geo::ModelEntity* entity, std::span<const int> vertices);

    const CaseView& view_;
    std::vector<Patch> patches_;
    std::map<const Geo::ModelEntity*, std::size_t> patchPositions_;
    std::vector<Line> lines_;
};

} // namespace Ovra::GeoTool
