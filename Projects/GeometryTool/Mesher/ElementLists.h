#pragma once

#include <cstddef>
#include <vector>

namespace Ovra::GeoTool
{

/// \brief Elements of Gmsh's current model, of which its getElements() makes long lists, and leaves
/// some out: those of another order than the first of their kind on the same entity.
///
/// Types stand here for all orders: that of linear tetrahedra for tetrahedra of ten nodes too where
/// these lie on an entity whose first tetrahedron is linear.
class ElementLists
{
public:
    /// \brief How many elements of the type there are on an entity, or on all entities.
    static std::size_t count(int gmshType, int entity = allEntities);

    /// \brief Their tags.
    static std::vector<std::size_t> tags(int gmshType, int entity);

private:
    static constexpr int allEntities = -1;
};

} // namespace Ovra::GeoTool
